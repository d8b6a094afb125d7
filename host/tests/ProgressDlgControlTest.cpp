#include "CProgressDlg_Control.h"
#include "TestEnvironment.h"

using namespace Qt::StringLiterals;
using Info = CProgressDlg_Control::CProgressInfo;

class ProgressDlgControlTest : public TempHomeTest
{
protected:
    QString Kinds()
    {
        QStringList kinds;
        for (const auto& call : Ui().calls)
            kinds << call.kind;
        return kinds.join(u' ');
    }
};

TEST_F(ProgressDlgControlTest, ShowUpdateAndCloseGoThroughTheUiServicesOnce)
{
    const QString oneWindow = u"ProgressBegin ProgressUpdate ProgressEnd"_s;
    {
        CProgressDlg_Control progress;
        EXPECT_FALSE(progress.IsShown());
        progress.Show(u"测试脚本"_s);
        progress.Show(u"again"_s);
        progress.SetProgressInfo(Info(u"开始测试脚本:a.js"_s, 1, 3));
        EXPECT_TRUE(progress.IsShown());
    } // the destructor closes
    EXPECT_EQ(Kinds(), oneWindow);
    EXPECT_EQ(Ui().calls[0].text, u"测试脚本"_s);
    EXPECT_EQ(Ui().calls[1].text, u"开始测试脚本:a.js"_s);
    EXPECT_EQ(std::pair(Ui().calls[1].pos, Ui().calls[1].range), std::pair(1, 3));
    Ui().Clear();
    CProgressDlg_Control progress; // an update shows the window first; a second close does nothing
    progress.SetProgressInfo(Info(u"x"_s));
    progress.Close();
    progress.Close();
    EXPECT_FALSE(progress.IsShown());
    EXPECT_EQ(Kinds(), oneWindow);
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
        EXPECT_EQ(updates[0].pos, c.shownPos) << c.pos << "/" << c.range;
        EXPECT_EQ(updates[0].range, c.shownRange) << c.pos << "/" << c.range;
        EXPECT_EQ(progress.GetProgressInfo().GetPos(), c.shownPos);
    }
}
