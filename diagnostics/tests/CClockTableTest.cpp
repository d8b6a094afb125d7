#include "CClockTable.h"
#include "Diagnostics.h"
#include "HostContext.h"
#include "TestEnvironment.h"

#include <QFile>

namespace {

// Start ('S', with its label) or stop ('T'), then move the tick counter on by `advance` ms.
struct Step { char op; quint32 id; const char* label; quint32 advance; };

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
            s.op == 'S' ? QXCommon::StartClock(s.id, QString::fromUtf8(s.label)) : QXCommon::StopClock(s.id);
            m_now += s.advance;
        }
    }
    static QString LogPath() { return HostContext::Instance().SysDataPath() + QStringLiteral("/macrolist.log"); }

    quint32 m_now = 1000;
};

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
