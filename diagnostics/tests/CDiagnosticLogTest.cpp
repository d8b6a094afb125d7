#include "CDiagnosticLog.h"
#include "CodePage.h"
#include "Diagnostics.h"
#include "HostContext.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

class CDiagnosticLogTest : public TempHomeTest
{
protected:
    static QString SysFile(const QString& name) { return HostContext::Instance().SysDataPath() + u'/' + name; }
    static QString DriveC(const QString& name) { return HostContext::Instance().DriveRoot(u'C') + u'/' + name; }
};

TEST_F(CDiagnosticLogTest, AnalyseAndTimeLogsAppendAStampedMessageOrSkipAMissingFolderSilently)
{
    QDateTime now;
    do { // again should the minute turn between the writes
        QFile::remove(SysFile(u"CalAnalyse.log"_s));
        ASSERT_TRUE(WriteBytes(DriveC(u"time.log"_s), "old\n"));
        now = QDateTime::currentDateTime();
        QXCommon::WriteAnalyseLog(u"计算完成"_s);
        QXCommon::WriteAnalyseLog(u"second"_s);
        QXCommon::WriteTimeLog(u"C:\\time.log"_s, u"step one\r\n"_s);
    } while (CDiagnosticLog::TimeStamp(now) != CDiagnosticLog::TimeStamp(QDateTime::currentDateTime()));
    const QString header = CDiagnosticLog::AnalyseHeader(now);
    EXPECT_EQ(ReadBytes(SysFile(u"CalAnalyse.log"_s)), CodePage::FromUnicode(header + u"计算完成"_s + header + u"second"_s, "GBK"));
    EXPECT_EQ(ReadBytes(DriveC(u"time.log"_s)),
              "old\n" + CodePage::FromUnicode(CDiagnosticLog::TimeStamp(now) + u"step one\r\n"_s, "GBK"));
    QXCommon::AppendToFile(u"C:\\no folder\\x.log"_s, u"text"_s);
    QXCommon::WriteTimeLog(u"C:\\no folder\\y.log"_s, u"text"_s);
    EXPECT_FALSE(QFile::exists(DriveC(u"no folder"_s)));
    ASSERT_TRUE(QDir(HostContext::Instance().SysDataPath()).removeRecursively());
    QXCommon::WriteAnalyseLog(u"text"_s);
    EXPECT_FALSE(QFile::exists(SysFile(u"CalAnalyse.log"_s)));
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(CDiagnosticLogTest, SessionLogDeletionKeepsTheOtherLogs)
{
    const std::pair<const char*, bool> logs[] = {{"mac.log", false}, {"jiaoben.log", false}, {"CalAnalyse.log", true}};
    for (const auto& [name, kept] : logs)
        ASSERT_TRUE(WriteBytes(SysFile(QString::fromLatin1(name)), "x"));
    CDiagnosticLog::DeleteSessionLogs();
    CDiagnosticLog::DeleteSessionLogs(); // nothing left to delete: no harm
    for (const auto& [name, kept] : logs)
        EXPECT_EQ(QFile::exists(SysFile(QString::fromLatin1(name))), kept) << name;
}
