#include "CTiming.h"
#include "CTimingLog.h"
#include "QxMfcFun.h"
#include "TestEnvironment.h"

#include <deque>

// Drives the timing table with a scripted clock so recorded figures are exact.
class CTimingTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        Log().Clear();
        Log().SetClock([this] { return m_ticks.empty() ? m_last : (m_last = m_ticks.front(), m_ticks.pop_front(), m_last); });
    }
    void TearDown() override
    {
        Log().SetClock({});
        Log().Clear();
        TempHomeTest::TearDown();
    }
    static CTimingLog& Log() { return CTimingLog::Instance(); }
    void Ticks(std::initializer_list<qint64> ns) { m_ticks.insert(m_ticks.end(), ns); }
    static QString LogPath() { return QxMfc::Fun::GetSysDataPath() + QStringLiteral("/timing.log"); }
    // Every entry as "group|label|count|totalNs", one a line.
    static QString Entries()
    {
        QString out;
        for (const auto& e : Log().Entries())
            out += QStringLiteral("%1|%2|%3|%4\n").arg(e.group, e.label).arg(e.count).arg(e.totalNs);
        return out;
    }

private:
    std::deque<qint64> m_ticks;
    qint64 m_last = 0;
};

TEST_F(CTimingTest, StretchesAddUpPerGroupAndLabelInFirstSeenOrder)
{
    const QString label = QStringLiteral("CMacroImplement::ExecuteScript"), group = QStringLiteral("CMacroImplement");
    Ticks({0, 10, 100, 130, 1000, 1001, 2000, 2'500'000});
    { CTiming a(label, true, group, false); }
    { CTiming b(QStringLiteral("a"), true, group); }
    { CTiming c(label, true, group); }
    { CTiming d(label, true, QStringLiteral("H")); }
    EXPECT_EQ(Entries(), QStringLiteral("CMacroImplement|CMacroImplement::ExecuteScript|2|11\nCMacroImplement|a|1|30\n"
                                        "H|CMacroImplement::ExecuteScript|1|2498000\n"));
    EXPECT_FALSE(QFile::exists(LogPath())); // nothing is written without the flag or a dump
}

TEST_F(CTimingTest, StopEndsEarlyOnceAndDisabledTimersRecordNothing)
{
    Ticks({0, 7, 50});
    {
        CTiming timing(QStringLiteral("x"), true, QStringLiteral("G"));
        timing.Stop();
        timing.Stop();
        CTiming off(QStringLiteral("off"), false, QStringLiteral("G"));
    }
    EXPECT_EQ(Entries(), QStringLiteral("G|x|1|7\n"));
}

TEST_F(CTimingTest, DumpAppendsOneLinePerEntryInTheCodePage)
{
    EXPECT_TRUE(Log().Dump()); // an empty table writes nothing
    EXPECT_FALSE(QFile::exists(LogPath()));
    Ticks({0, 1'234'567, 0, 2'000'000, 10, 20});
    for (int i = 0; i < 2; ++i)
        CTiming(QStringLiteral("CMacroImplement::脚本组合"), true, QStringLiteral("CMacroImplement"));
    { CTiming c(QStringLiteral("L"), true, QString()); }
    const QString expected = QStringLiteral("timing[CMacroImplement]'s sum is (3.235 ms, 2 times) \tCMacroImplement::脚本组合 \r\n"
                                            "timing[]'s sum is (0.000 ms, 1 times) \tL \r\n");
    EXPECT_EQ(Log().DumpText(), expected);
    ASSERT_TRUE(WriteBytes(LogPath(), "old\r\n"));
    ASSERT_TRUE(Log().Dump());
    QString back;
    ASSERT_TRUE(QxMfc::Fun::File2CString(LogPath(), back));
    EXPECT_EQ(back, QStringLiteral("old\r\n") + expected);
    EXPECT_TRUE(ReadBytes(LogPath()).contains("\xBD\xC5\xB1\xBE")); // 脚本 in GBK
    EXPECT_FALSE(Log().Dump(HomeFile("no/such/dir/t.log")));
}

TEST_F(CTimingTest, WriteEachStretchAppendsAtOnce)
{
    Ticks({0, 500'000, 0, 1'500'000});
    { CTiming a(QStringLiteral("one"), true, QStringLiteral("G"), true); }
    EXPECT_EQ(ReadBytes(LogPath()), QByteArray("timing[G] (0.500 ms) \tone \r\n"));
    { CTiming b(QStringLiteral("one"), true, QStringLiteral("G"), true); }
    EXPECT_EQ(ReadBytes(LogPath()), QByteArray("timing[G] (0.500 ms) \tone \r\ntiming[G] (1.500 ms) \tone \r\n"));
    EXPECT_EQ(Log().Entries().at(0).count, 2);
}
