#include "CProgressDlg_Control.h"
#include "TestEnvironment.h"

using namespace Qt::StringLiterals;
using Info = CProgressDlg_Control::CProgressInfo;
using ProgressDlgControlTest = TempHomeTest;

TEST_F(ProgressDlgControlTest, ShowUpdateAndCloseGoThroughTheUiServicesOnce)
{
    auto calls = [this] {
        QStringList out;
        for (const auto& call : Ui().calls)
            out << u"%1:%2:%3/%4"_s.arg(call.kind, call.text).arg(call.pos).arg(call.range);
        Ui().Clear();
        return out.join(u' ');
    };
    {
        CProgressDlg_Control progress;
        progress.Show(u"测试脚本"_s);
        progress.Show(u"again"_s);
        progress.SetProgressInfo(Info(u"开始测试脚本:a.js"_s, 1, 3));
        EXPECT_TRUE(progress.IsShown());
    } // the destructor closes
    EXPECT_EQ(calls(), u"ProgressBegin:测试脚本:0/0 ProgressUpdate:开始测试脚本:a.js:1/3 ProgressEnd::0/0"_s);
    CProgressDlg_Control progress; // an update shows the window first; a second close does nothing
    progress.SetProgressInfo(Info(u"x"_s));
    progress.Close();
    progress.Close();
    EXPECT_FALSE(progress.IsShown());
    EXPECT_EQ(calls(), u"ProgressBegin::0/0 ProgressUpdate:x:0/0 ProgressEnd::0/0"_s);
}

TEST_F(ProgressDlgControlTest, PositionIsKeptWithinTheRange)
{
    const struct { int pos, range, shownPos, shownRange; } cases[] = {
        {5, 3, 3, 3}, {-2, 3, 0, 3}, {2, 0, 2, 0}, {4, -1, 4, 0}, {-4, -1, 0, 0}, {3, 3, 3, 3}};
    CProgressDlg_Control progress;
    for (const auto& c : cases) {
        Ui().Clear();
        progress.SetProgressInfo(Info(u"t"_s, c.pos, c.range));
        const auto updates = Ui().CallsOf(u"ProgressUpdate"_s);
        ASSERT_EQ(updates.size(), 1);
        EXPECT_EQ(std::pair(updates[0].pos, updates[0].range), std::pair(c.shownPos, c.shownRange)) << c.pos << "/" << c.range;
    }
}
