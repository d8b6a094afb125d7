#include "CTiming.h"
#include "CTimingLog.h"
#include "CodePage.h"
#include "QxMfcFun.h"
#include "TestEnvironment.h"

#include <deque>

using namespace Qt::StringLiterals;

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
    static QString LogPath() { return QxMfc::Fun::GetSysDataPath() + u"/timing.log"_s; }

    std::deque<qint64> m_ticks;
    qint64 m_last = 0;
};

TEST_F(CTimingTest, StretchesAddUpPerGroupAndLabelStopEndsOnceAndDisabledTimersRecordNothing)
{
    m_ticks = {0, 10, 100, 130, 1000, 1001, 2000, 2'500'000, 3'000'000, 3'000'007};
    { CTiming a(u"L"_s, true, u"G"_s, false); }
    { CTiming b(u"a"_s, true, u"G"_s); }
    { CTiming c(u"L"_s, true, u"G"_s); }
    { CTiming d(u"L"_s, true, u"H"_s); }
    {
        CTiming timing(u"x"_s, true, u"G"_s);
        timing.Stop();
        timing.Stop();
        CTiming off(u"off"_s, false, u"G"_s);
    }
    QString entries;
    for (const auto& e : Log().Entries())
        entries += u"%1|%2|%3|%4 "_s.arg(e.group, e.label).arg(e.count).arg(e.totalNs);
    EXPECT_EQ(entries, u"G|L|2|11 G|a|1|30 H|L|1|2498000 G|x|1|7 "_s); // in first-seen order
    EXPECT_FALSE(QFile::exists(LogPath())); // nothing is written without the flag or a dump
}

TEST_F(CTimingTest, WriteEachStretchAppendsAtOnceAndDumpAppendsOneLinePerEntryInTheCodePage)
{
    EXPECT_TRUE(Log().Dump()); // an empty table writes nothing
    EXPECT_FALSE(QFile::exists(LogPath()));
    m_ticks = {0, 500'000, 0, 1'500'000, 0, 1'234'567, 0, 2'000'000, 10, 20};
    { CTiming a(u"one"_s, true, u"G"_s, true); }
    { CTiming b(u"one"_s, true, u"G"_s, true); }
    const QByteArray stretches("timing[G] (0.500 ms) \tone \r\ntiming[G] (1.500 ms) \tone \r\n");
    EXPECT_EQ(ReadBytes(LogPath()), stretches);
    for (int i = 0; i < 2; ++i)
        CTiming(u"CMacroImplement::脚本组合"_s, true, u"CMacroImplement"_s);
    { CTiming c(u"L"_s, true, QString()); }
    const QString expected = u"timing[G]'s sum is (2.000 ms, 2 times) \tone \r\n"
                             "timing[CMacroImplement]'s sum is (3.235 ms, 2 times) \tCMacroImplement::脚本组合 \r\n"
                             "timing[]'s sum is (0.000 ms, 1 times) \tL \r\n"_s;
    ASSERT_TRUE(Log().Dump());
    EXPECT_EQ(ReadBytes(LogPath()), stretches + CodePage::FromUnicode(expected, "GBK"));
    EXPECT_FALSE(Log().Dump(HomeFile("no/such/dir/t.log")));
}
