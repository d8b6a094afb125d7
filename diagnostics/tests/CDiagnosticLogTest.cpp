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
    QString SysFile(const QString& name) const { return HostContext::Instance().SysDataPath() + QLatin1Char('/') + name; }
    QString DriveC(const QString& name) const
    {
        return HostContext::Instance().DriveRoot(QLatin1Char('C')) + QLatin1Char('/') + name;
    }
    static QByteArray Gbk(const QString& text) { return CodePage::FromUnicode(text, "GBK"); }
};

TEST(CDiagnosticLogStampTest, StampsHaveTheExactForm)
{
    const struct
    {
        QDateTime time;
        const char* stamp;
    } cases[] = {
        {QDateTime(QDate(2024, 3, 5), QTime(9, 7)), "2024.3.05  09:07\r\n"},
        {QDateTime(QDate(2024, 12, 31), QTime(23, 59, 59)), "2024.12.31  23:59\r\n"},
        {QDateTime(QDate(2025, 1, 1), QTime(0, 0)), "2025.1.01  00:00\r\n"},
        {QDateTime(QDate(2023, 10, 10), QTime(12, 30, 1)), "2023.10.10  12:30\r\n"},
    };
    for (const auto& c : cases)
    {
        EXPECT_EQ(CDiagnosticLog::TimeStamp(c.time), QString::fromLatin1(c.stamp));
        EXPECT_EQ(CDiagnosticLog::AnalyseHeader(c.time),
                  QStringLiteral("\r\n\t\tTime\uFF1A") + QString::fromLatin1(c.stamp));
    }
}

TEST_F(CDiagnosticLogTest, AppendToFileCreatesThenAppendsInTheCodePage)
{
    const QString path = HostContext::Instance().SysDataPath() + QStringLiteral("\\分析.log");
    QXCommon::AppendToFile(path, QStringLiteral("钢筋\r\n"));
    EXPECT_EQ(ReadBytes(SysFile(QStringLiteral("分析.log"))), QByteArray("\xB8\xD6\xBD\xEE\r\n"));
    QXCommon::AppendToFile(path, QStringLiteral("abc"));
    QXCommon::AppendToFile(path, QString());
    EXPECT_EQ(ReadBytes(SysFile(QStringLiteral("分析.log"))), QByteArray("\xB8\xD6\xBD\xEE\r\nabc"));
}

TEST_F(CDiagnosticLogTest, AppendToFileKeepsWhatWasThere)
{
    ASSERT_TRUE(WriteBytes(DriveC(QStringLiteral("x.log")), QByteArray("old\n")));
    QXCommon::AppendToFile(QStringLiteral("c:\\x.log"), QStringLiteral("new"));
    EXPECT_EQ(ReadBytes(DriveC(QStringLiteral("x.log"))), QByteArray("old\nnew"));
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

TEST_F(CDiagnosticLogTest, WriteAnalyseLogAppendsHeaderAndMessage)
{
    const QDateTime before = QDateTime::currentDateTime();
    QXCommon::WriteAnalyseLog(QStringLiteral("计算完成"));
    QXCommon::WriteAnalyseLog(QStringLiteral("second"));
    const QDateTime after = QDateTime::currentDateTime();
    const QByteArray bytes = ReadBytes(SysFile(QStringLiteral("CalAnalyse.log")));
    // The minute may turn between the calls; any split of the two writes over
    // the two stamps is right.
    QList<QByteArray> accepted;
    for (const QDateTime& first : {before, after})
        for (const QDateTime& second : {before, after})
            accepted << Gbk(CDiagnosticLog::AnalyseHeader(first) + QStringLiteral("计算完成")
                            + CDiagnosticLog::AnalyseHeader(second) + QStringLiteral("second"));
    EXPECT_TRUE(accepted.contains(bytes)) << bytes.toStdString();
    EXPECT_TRUE(bytes.startsWith(QByteArray("\r\n\t\tTime\xA3\xBA")));
}

TEST_F(CDiagnosticLogTest, WriteTimeLogAppendsStampAndMessage)
{
    const QString path = QStringLiteral("C:\\time.log");
    const QDateTime before = QDateTime::currentDateTime();
    QXCommon::WriteTimeLog(path, QStringLiteral("step one\r\n"));
    const QDateTime after = QDateTime::currentDateTime();
    const QByteArray bytes = ReadBytes(DriveC(QStringLiteral("time.log")));
    EXPECT_TRUE(bytes == Gbk(CDiagnosticLog::TimeStamp(before) + QStringLiteral("step one\r\n"))
                || bytes == Gbk(CDiagnosticLog::TimeStamp(after) + QStringLiteral("step one\r\n")))
        << bytes.toStdString();
}

TEST_F(CDiagnosticLogTest, LogFileNames)
{
    const QString sys = HostContext::Instance().SysDataPath();
    EXPECT_EQ(CDiagnosticLog::CalAnalyseLogPath(), sys + QStringLiteral("\\CalAnalyse.log"));
    EXPECT_EQ(CDiagnosticLog::MacroListLogPath(), sys + QStringLiteral("\\macrolist.log"));
    EXPECT_EQ(CDiagnosticLog::MacLogPath(), sys + QStringLiteral("\\mac.log"));
    EXPECT_EQ(CDiagnosticLog::JiaobenLogPath(), sys + QStringLiteral("\\jiaoben.log"));
    EXPECT_EQ(CDiagnosticLog::AllParmLogPath(), sys + QStringLiteral("\\AllParm.log"));
    EXPECT_EQ(CDiagnosticLog::VelmoraLogPath(), QStringLiteral("C:\\Velmora.log"));
}

TEST_F(CDiagnosticLogTest, DeleteSessionLogsRemovesOnlyTheTwo)
{
    for (const char* name : {"mac.log", "jiaoben.log", "CalAnalyse.log", "macrolist.log"})
        ASSERT_TRUE(WriteBytes(SysFile(QString::fromLatin1(name)), "x"));
    CDiagnosticLog::DeleteSessionLogs();
    EXPECT_FALSE(QFile::exists(SysFile(QStringLiteral("mac.log"))));
    EXPECT_FALSE(QFile::exists(SysFile(QStringLiteral("jiaoben.log"))));
    EXPECT_TRUE(QFile::exists(SysFile(QStringLiteral("CalAnalyse.log"))));
    EXPECT_TRUE(QFile::exists(SysFile(QStringLiteral("macrolist.log"))));
    CDiagnosticLog::DeleteSessionLogs(); // nothing left to delete: no harm
}
