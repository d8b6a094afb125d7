#include "CTiming.h"
#include "CTimingLog.h"
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

TEST_F(CTimingTest, DumpOfAnEmptyTableWritesNothingAndAMissingFolderFails)
{
    EXPECT_TRUE(Log().Dump());
    EXPECT_FALSE(QFile::exists(LogPath()));
    { CTiming a(u"L"_s, true, u"G"_s); }
    EXPECT_FALSE(Log().Dump(HomeFile("no/such/dir/t.log")));
}
