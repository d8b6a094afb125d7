#include "CClockTable.h"
#include "Diagnostics.h"
#include "HostContext.h"
#include "TestEnvironment.h"

#include <QFile>

class CClockTableTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        CClockTable::Instance().Clear();
        CClockTable::Instance().SetTickSource([this] { return m_now; });
    }
    void TearDown() override
    {
        CClockTable::Instance().Clear();
        CClockTable::Instance().SetTickSource({});
        TempHomeTest::TearDown();
    }
    QByteArray MacroList() const
    {
        return ReadBytes(HostContext::Instance().SysDataPath() + QStringLiteral("/macrolist.log"));
    }
    quint32 Sum(quint32 id) const
    {
        const auto* clock = CClockTable::Instance().Find(id);
        return clock ? clock->sum : 0xDEADBEEF;
    }

    quint32 m_now = 1000;
};

TEST_F(CClockTableTest, StartStopAddsUp)
{
    QXCommon::StartClock(7, QStringLiteral("run"));
    m_now += 25;
    QXCommon::StopClock(7);
    EXPECT_EQ(Sum(7), 25u);
    m_now += 100; // not running: nothing added
    QXCommon::StartClock(7);
    m_now += 5;
    QXCommon::StopClock(7);
    EXPECT_EQ(Sum(7), 30u);
    EXPECT_EQ(CClockTable::Instance().Find(7)->label, QStringLiteral("run"));
}

TEST_F(CClockTableTest, StopWithoutNewStartAddsSinceTheSameStartAgain)
{
    QXCommon::StartClock(1, QStringLiteral("a"));
    m_now += 10;
    QXCommon::StopClock(1);
    m_now += 10;
    QXCommon::StopClock(1);
    EXPECT_EQ(Sum(1), 30u); // 10 + 20
}

TEST_F(CClockTableTest, RestartReplacesANonEmptyLabelAndKeepsTheSum)
{
    QXCommon::StartClock(2, QStringLiteral("old"));
    m_now += 3;
    QXCommon::StopClock(2);
    QXCommon::StartClock(2, QString());
    EXPECT_EQ(CClockTable::Instance().Find(2)->label, QStringLiteral("old"));
    QXCommon::StartClock(2, QStringLiteral("新"));
    EXPECT_EQ(CClockTable::Instance().Find(2)->label, QStringLiteral("新"));
    EXPECT_EQ(Sum(2), 3u);
    EXPECT_EQ(CClockTable::Instance().Find(2)->start, m_now);
}

TEST_F(CClockTableTest, WrapOfTheTickCounterStillGivesTheStretch)
{
    m_now = 0xFFFFFFF0u;
    QXCommon::StartClock(3, QStringLiteral("wrap"));
    m_now = 0x10u;
    QXCommon::StopClock(3);
    EXPECT_EQ(Sum(3), 0x20u);
}

TEST_F(CClockTableTest, UnknownIdsChangeNothing)
{
    QXCommon::StopClock(99);
    EXPECT_EQ(CClockTable::Instance().Count(), 0);
    EXPECT_EQ(CClockTable::Instance().Find(99), nullptr);
    QXCommon::DumpClock(99);
    EXPECT_FALSE(QFile::exists(HostContext::Instance().SysDataPath() + QStringLiteral("/macrolist.log")));
}

TEST_F(CClockTableTest, DumpClockAppendsItsLine)
{
    QXCommon::StartClock(12, QStringLiteral("解析"));
    m_now += 42;
    QXCommon::StopClock(12);
    QXCommon::DumpClock(12);
    QXCommon::DumpClock(12);
    const QByteArray line = QByteArray("clock[12]'s sum is (42) \t\xBD\xE2\xCE\xF6 \r\n");
    EXPECT_EQ(MacroList(), line + line);
}

TEST_F(CClockTableTest, DumpClocksWritesEveryLineInIdOrder)
{
    const struct
    {
        quint32 id;
        quint32 ms;
        const char* label;
    } clocks[] = {{30, 1, "c"}, {0xFFFFFFFFu, 2, "max"}, {4, 0, ""}, {10, 7, "b"}};
    for (const auto& c : clocks)
    {
        QXCommon::StartClock(c.id, QString::fromLatin1(c.label));
        m_now += c.ms;
        QXCommon::StopClock(c.id);
    }
    ASSERT_TRUE(WriteBytes(HostContext::Instance().SysDataPath() + QStringLiteral("/macrolist.log"), "****\r\n"));
    QXCommon::DumpClocks();
    EXPECT_EQ(MacroList(), QByteArray("****\r\n"
                                      "clock[4]'s sum is (0) \t \r\n"
                                      "clock[10]'s sum is (7) \tb \r\n"
                                      "clock[30]'s sum is (1) \tc \r\n"
                                      "clock[-1]'s sum is (2) \tmax \r\n"));
}

TEST_F(CClockTableTest, SumPrintsAsASignedNumber)
{
    QXCommon::ClockInfo_ clock;
    clock.sum = 0x80000000u;
    clock.label = QStringLiteral("x");
    EXPECT_EQ(CClockTable::FormatLine(5, clock), QStringLiteral("clock[5]'s sum is (-2147483648) \tx \r\n"));
}

TEST_F(CClockTableTest, ClearClocksForgetsEverything)
{
    QXCommon::StartClock(1, QStringLiteral("a"));
    QXCommon::StartClock(2, QStringLiteral("b"));
    QXCommon::ClearClocks();
    EXPECT_EQ(CClockTable::Instance().Count(), 0);
    m_now += 5;
    QXCommon::StopClock(1);
    EXPECT_EQ(CClockTable::Instance().Find(1), nullptr);
    QXCommon::StartClock(1);
    EXPECT_EQ(Sum(1), 0u);
    EXPECT_EQ(CClockTable::Instance().Find(1)->label, QString());
}
