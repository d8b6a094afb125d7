#include "CDiagnosticLog.h"
#include "CodePage.h"
#include "Diagnostics.h"
#include "HostContext.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>

class CDiagnosticLogTest : public TempHomeTest
{
protected:
    static QString SysFile(const QString& name) { return HostContext::Instance().SysDataPath() + QLatin1Char('/') + name; }
    static QString DriveC(const QString& name) { return HostContext::Instance().DriveRoot(QLatin1Char('C')) + '/' + name; }
};

TEST(CDiagnosticLogStampTest, StampsHaveTheExactForm)
{
    const struct { QDateTime time; const char* stamp; } cases[] = {
        {QDateTime(QDate(2024, 3, 5), QTime(9, 7)), "2024.3.05  09:07\r\n"},
        {QDateTime(QDate(2024, 12, 31), QTime(23, 59, 59)), "2024.12.31  23:59\r\n"},
        {QDateTime(QDate(2025, 1, 1), QTime(0, 0)), "2025.1.01  00:00\r\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CDiagnosticLog::TimeStamp(c.time), QString::fromLatin1(c.stamp));
        EXPECT_EQ(CDiagnosticLog::AnalyseHeader(c.time), QStringLiteral("\r\n\t\tTime\uFF1A") + QString::fromLatin1(c.stamp));
    }
}

TEST_F(CDiagnosticLogTest, AppendToFileKeepsWhatWasThereAndWritesTheCodePage)
{
    ASSERT_TRUE(WriteBytes(SysFile(QStringLiteral("分析.log")), QByteArray("old\n")));
    const QString path = HostContext::Instance().SysDataPath() + QStringLiteral("\\分析.log");
    QXCommon::AppendToFile(path, QStringLiteral("钢筋\r\n"));
    QXCommon::AppendToFile(path, QStringLiteral("abc"));
    QXCommon::AppendToFile(path, QString());
    EXPECT_EQ(ReadBytes(SysFile(QStringLiteral("分析.log"))), QByteArray("old\n\xB8\xD6\xBD\xEE\r\nabc"));
}

TEST_F(CDiagnosticLogTest, MissingFolderIsSkippedSilently)
{
    QXCommon::AppendToFile(QStringLiteral("C:\\no folder\\x.log"), QStringLiteral("text"));
    QXCommon::WriteTimeLog(QStringLiteral("C:\\no folder\\y.log"), QStringLiteral("text"));
    EXPECT_FALSE(QFile::exists(DriveC(QStringLiteral("no folder"))));
    ASSERT_TRUE(QDir(HostContext::Instance().SysDataPath()).removeRecursively());
    QXCommon::WriteAnalyseLog(QStringLiteral("text"));
    EXPECT_FALSE(QFile::exists(SysFile(QStringLiteral("CalAnalyse.log"))));
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(CDiagnosticLogTest, AnalyseAndTimeLogsAppendAStampedMessage)
{
    const QDateTime before = QDateTime::currentDateTime();
    QXCommon::WriteAnalyseLog(QStringLiteral("计算完成"));
    QXCommon::WriteAnalyseLog(QStringLiteral("second"));
    QXCommon::WriteTimeLog(QStringLiteral("C:\\time.log"), QStringLiteral("step one\r\n"));
    const QDateTime after = QDateTime::currentDateTime();
    // The minute may turn between the calls; any split of the writes over the two stamps is right.
    QList<QByteArray> analyse, time;
    for (const QDateTime& first : {before, after}) {
        time << CodePage::FromUnicode(CDiagnosticLog::TimeStamp(first) + QStringLiteral("step one\r\n"), "GBK");
        for (const QDateTime& second : {before, after})
            analyse << CodePage::FromUnicode(CDiagnosticLog::AnalyseHeader(first) + QStringLiteral("计算完成")
                                                 + CDiagnosticLog::AnalyseHeader(second) + QStringLiteral("second"), "GBK");
    }
    const QByteArray analyseBytes = ReadBytes(SysFile(QStringLiteral("CalAnalyse.log")));
    EXPECT_TRUE(analyse.contains(analyseBytes)) << analyseBytes.toStdString();
    EXPECT_TRUE(analyseBytes.startsWith(QByteArray("\r\n\t\tTime\xA3\xBA")));
    EXPECT_TRUE(time.contains(ReadBytes(DriveC(QStringLiteral("time.log")))));
}

TEST_F(CDiagnosticLogTest, LogFileNamesAndSessionLogDeletion)
{
    const std::pair<QString, const char*> paths[] = {
        {CDiagnosticLog::CalAnalyseLogPath(), "CalAnalyse.log"}, {CDiagnosticLog::MacroListLogPath(), "macrolist.log"},
        {CDiagnosticLog::MacLogPath(), "mac.log"}, {CDiagnosticLog::JiaobenLogPath(), "jiaoben.log"},
        {CDiagnosticLog::AllParmLogPath(), "AllParm.log"}};
    for (const auto& [path, name] : paths)
        EXPECT_EQ(path, HostContext::Instance().SysDataPath() + QLatin1Char('\\') + QLatin1String(name));
    EXPECT_EQ(CDiagnosticLog::VelmoraLogPath(), QStringLiteral("C:\\Velmora.log"));
    const struct { const char* name; bool kept; } logs[] = {
        {"mac.log", false}, {"jiaoben.log", false}, {"CalAnalyse.log", true}, {"macrolist.log", true}};
    for (const auto& log : logs)
        ASSERT_TRUE(WriteBytes(SysFile(QString::fromLatin1(log.name)), "x"));
    CDiagnosticLog::DeleteSessionLogs();
    CDiagnosticLog::DeleteSessionLogs(); // nothing left to delete: no harm
    for (const auto& log : logs)
        EXPECT_EQ(QFile::exists(SysFile(QString::fromLatin1(log.name))), log.kept) << log.name;
}
