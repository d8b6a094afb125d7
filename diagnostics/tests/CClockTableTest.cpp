#include "CClockTable.h"
#include "Diagnostics.h"
#include "HostContext.h"
#include "TestEnvironment.h"

#include <QFile>

namespace {

// Start ('S', with its label), stop ('T') or clear all ('C'), then move the tick counter on by `advance` ms.
struct Step { char op; quint32 id; const char* label; quint32 advance; };
constexpr quint32 kAbsent = 0xDEADBEEF;

} // namespace

class CClockTableTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        CClockTable::Instance().Clear();
        CClockTable::Instance().SetTickSource([this] { return m_now; });
    }
    void TearDown() override { CClockTable::Instance().SetTickSource({}); TempHomeTest::TearDown(); }
    void Run(const std::vector<Step>& steps)
    {
        for (const Step& s : steps) {
            s.op == 'S' ? QXCommon::StartClock(s.id, QString::fromUtf8(s.label))
                        : s.op == 'T' ? QXCommon::StopClock(s.id) : QXCommon::ClearClocks();
            m_now += s.advance;
        }
    }
    static QString LogPath() { return HostContext::Instance().SysDataPath() + QStringLiteral("/macrolist.log"); }

    quint32 m_now = 1000;
};

TEST_F(CClockTableTest, ScenariosGiveSumLabelAndCount)
{
    const struct { quint32 start; std::vector<Step> steps; quint32 id, sum; const char* label; int count; } cases[] = {
        {1000, {{'S', 1, "a", 10}, {'T', 1, "", 10}, {'T', 1, "", 0}}, 1, 30, "a", 1}, // a second stop adds since the start
        // A stopped clock gains nothing; a restart keeps the sum and, with an empty label, the label.
        {1000, {{'S', 2, "old", 3}, {'T', 2, "", 50}, {'S', 2, "", 4}, {'T', 2, "", 0}}, 2, 7, "old", 1},
        {1000, {{'S', 2, "old", 3}, {'T', 2, "", 0}, {'S', 2, "新", 0}}, 2, 3, "新", 1},  // a new label replaces the old
        {0xFFFFFFF0u, {{'S', 3, "wrap", 0x20}, {'T', 3, "", 0}}, 3, 0x20, "wrap", 1},      // the tick counter wraps
        {1000, {{'T', 99, "", 0}}, 99, kAbsent, "", 0},                                     // an unknown id makes nothing
        {1000, {{'S', 1, "a", 0}, {'S', 2, "b", 0}, {'C', 0, "", 5}, {'T', 1, "", 0}}, 1, kAbsent, "", 0}, // clear forgets
        {1000, {{'S', 1, "a", 5}, {'T', 1, "", 0}, {'C', 0, "", 0}, {'S', 1, "", 0}}, 1, 0, "", 1}}; // and starts afresh
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        CClockTable::Instance().Clear();
        m_now = c.start;
        Run(c.steps);
        const auto* clock = CClockTable::Instance().Find(c.id);
        EXPECT_EQ(std::pair(clock ? clock->sum : kAbsent, clock ? clock->label : QString()),
                  std::pair(c.sum, QString::fromUtf8(c.label)));
        EXPECT_EQ(CClockTable::Instance().Count(), c.count);
    }
}

TEST_F(CClockTableTest, DumpClockAppendsItsLineAndDumpClocksEveryLineInIdOrderWithSignedNumbers)
{
    QXCommon::DumpClock(99); // unknown ids write nothing
    EXPECT_FALSE(QFile::exists(LogPath()));
    Run({{'S', 12, "解析", 42}, {'T', 12, "", 0}});
    QXCommon::DumpClock(12);
    const QByteArray line12("clock[12]'s sum is (42) \t\xBD\xE2\xCE\xF6 \r\n"); // GBK label
    EXPECT_EQ(ReadBytes(LogPath()), line12);
    Run({{'S', 30, "c", 1}, {'T', 30, "", 0}, {'S', 0xFFFFFFFFu, "max", 0x80000000u}, {'T', 0xFFFFFFFFu, "", 0},
         {'S', 4, "", 0}, {'T', 4, "", 0}, {'S', 10, "b", 7}, {'T', 10, "", 0}});
    QXCommon::DumpClocks(); // appends
    EXPECT_EQ(ReadBytes(LogPath()), line12 + "clock[4]'s sum is (0) \t \r\nclock[10]'s sum is (7) \tb \r\n" + line12
                                        + "clock[30]'s sum is (1) \tc \r\nclock[-1]'s sum is (-2147483648) \tmax \r\n");
}
