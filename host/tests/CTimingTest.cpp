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
        CTimingLog::Instance().Clear();
        CTimingLog::Instance().SetClock([this] {
            const qint64 now = m_ticks.empty() ? m_last : m_ticks.front();
            if (!m_ticks.empty())
                m_ticks.pop_front();
            m_last = now;
            return now;
        });
    }
    void TearDown() override
    {
        CTimingLog::Instance().SetClock({});
        CTimingLog::Instance().Clear();
        TempHomeTest::TearDown();
    }
    void Ticks(std::initializer_list<qint64> ns) { m_ticks.insert(m_ticks.end(), ns); }
    QString LogPath() const { return QxMfc::Fun::GetSysDataPath() + QStringLiteral("/timing.log"); }

private:
    std::deque<qint64> m_ticks;
    qint64 m_last = 0;
};

TEST_F(CTimingTest, StretchesAddUpPerGroupAndLabelInFirstSeenOrder)
{
    const QString label = QStringLiteral("CMacroImplement::ExecuteScript");
    const QString group = QStringLiteral("CMacroImplement");
    Ticks({0, 10, 100, 130, 1000, 1001, 2000, 2'500'000});
    { CTiming a(label, true, group, false); }
    { CTiming b(QStringLiteral("a"), true, group); }
    { CTiming c(label, true, group); }
    { CTiming d(label, true, QStringLiteral("H")); }
    const auto entries = CTimingLog::Instance().Entries();
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries[0].group, group);
    EXPECT_EQ(entries[0].label, label);
    EXPECT_EQ(entries[0].count, 2);
    EXPECT_EQ(entries[0].totalNs, 11);
    EXPECT_EQ(entries[1].label, QStringLiteral("a"));
    EXPECT_EQ(entries[1].totalNs, 30);
    EXPECT_EQ(entries[2].group, QStringLiteral("H"));
    EXPECT_EQ(entries[2].totalNs, 2'498'000);
    EXPECT_FALSE(QFile::exists(LogPath())); // nothing is written without the flag or a dump
}

TEST_F(CTimingTest, StopEndsEarlyOnceAndDisabledTimersRecordNothing)
{
    Ticks({0, 7, 50});
    {
        CTiming timing(QStringLiteral("x"), true, QStringLiteral("G"));
        timing.Stop();
        timing.Stop();
    }
    {
        CTiming off(QStringLiteral("off"), false, QStringLiteral("G"));
    }
    const auto entries = CTimingLog::Instance().Entries();
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries[0].count, 1);
    EXPECT_EQ(entries[0].totalNs, 7);
}

TEST_F(CTimingTest, DumpAppendsOneLinePerEntryInTheCodePage)
{
    EXPECT_TRUE(CTimingLog::Instance().Dump()); // an empty table writes nothing
    EXPECT_FALSE(QFile::exists(LogPath()));
    Ticks({0, 1'234'567, 0, 2'000'000, 10, 20});
    { CTiming a(QStringLiteral("CMacroImplement::脚本组合"), true, QStringLiteral("CMacroImplement")); }
    { CTiming b(QStringLiteral("CMacroImplement::脚本组合"), true, QStringLiteral("CMacroImplement")); }
    { CTiming c(QStringLiteral("L"), true, QString()); }
    const QString expected = QStringLiteral("timing[CMacroImplement]'s sum is (3.235 ms, 2 times) \tCMacroImplement::脚本组合 \r\n"
                                            "timing[]'s sum is (0.000 ms, 1 times) \tL \r\n");
    EXPECT_EQ(CTimingLog::Instance().DumpText(), expected);
    ASSERT_TRUE(WriteBytes(LogPath(), "old\r\n"));
    ASSERT_TRUE(CTimingLog::Instance().Dump());
    QString back;
    ASSERT_TRUE(QxMfc::Fun::File2CString(LogPath(), back));
    EXPECT_EQ(back, QStringLiteral("old\r\n") + expected);
    EXPECT_TRUE(ReadBytes(LogPath()).contains("\xBD\xC5\xB1\xBE")); // 脚本 in GBK
    EXPECT_FALSE(CTimingLog::Instance().Dump(HomeFile("no/such/dir/t.log")));
}

TEST_F(CTimingTest, WriteEachStretchAppendsAtOnce)
{
    Ticks({0, 500'000, 0, 1'500'000});
    { CTiming a(QStringLiteral("one"), true, QStringLiteral("G"), true); }
    EXPECT_EQ(ReadBytes(LogPath()), QByteArray("timing[G] (0.500 ms) \tone \r\n"));
    { CTiming b(QStringLiteral("one"), true, QStringLiteral("G"), true); }
    EXPECT_EQ(ReadBytes(LogPath()), QByteArray("timing[G] (0.500 ms) \tone \r\ntiming[G] (1.500 ms) \tone \r\n"));
    EXPECT_EQ(CTimingLog::Instance().Entries().at(0).count, 2);
}
