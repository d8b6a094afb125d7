#include "CProgressDlg_Control.h"
#include "TestEnvironment.h"

class ProgressDlgControlTest : public TempHomeTest
{
protected:
    QStringList Kinds()
    {
        QStringList kinds;
        for (const auto& call : Ui().calls)
            kinds << call.kind;
        return kinds;
    }
    const QStringList kOneWindow{QStringLiteral("ProgressBegin"), QStringLiteral("ProgressUpdate"),
                                 QStringLiteral("ProgressEnd")};
};

TEST_F(ProgressDlgControlTest, ShowUpdateAndCloseGoThroughTheUiServicesOnce)
{
    {
        CProgressDlg_Control progress;
        EXPECT_FALSE(progress.IsShown());
        progress.Show(QStringLiteral("测试脚本"));
        progress.Show(QStringLiteral("again"));
        progress.SetProgressInfo(CProgressDlg_Control::CProgressInfo(QStringLiteral("开始测试脚本:a.js"), 1, 3));
        EXPECT_TRUE(progress.IsShown());
    } // the destructor closes
    EXPECT_EQ(Kinds(), kOneWindow);
    EXPECT_EQ(Ui().calls[0].text, QStringLiteral("测试脚本"));
    EXPECT_EQ(Ui().calls[1].text, QStringLiteral("开始测试脚本:a.js"));
    EXPECT_EQ(Ui().calls[1].pos, 1);
    EXPECT_EQ(Ui().calls[1].range, 3);
    Ui().Clear();
    CProgressDlg_Control progress; // an update shows the window first; a second close does nothing
    progress.SetProgressInfo(CProgressDlg_Control::CProgressInfo(QStringLiteral("x")));
    progress.Close();
    progress.Close();
    EXPECT_FALSE(progress.IsShown());
    EXPECT_EQ(Kinds(), kOneWindow);
}

TEST_F(ProgressDlgControlTest, PositionIsKeptWithinTheRange)
{
    const struct
    {
        int pos, range, shownPos, shownRange;
    } cases[] = {{5, 3, 3, 3}, {-2, 3, 0, 3}, {2, 0, 2, 0}, {4, -1, 4, 0}, {-4, -1, 0, 0}, {3, 3, 3, 3}};
    CProgressDlg_Control progress;
    for (const auto& c : cases) {
        Ui().Clear();
        progress.SetProgressInfo(CProgressDlg_Control::CProgressInfo(QStringLiteral("t"), c.pos, c.range));
        const auto updates = Ui().CallsOf(QStringLiteral("ProgressUpdate"));
        ASSERT_EQ(updates.size(), 1);
        EXPECT_EQ(updates[0].pos, c.shownPos) << c.pos << "/" << c.range;
        EXPECT_EQ(updates[0].range, c.shownRange) << c.pos << "/" << c.range;
        EXPECT_EQ(progress.GetProgressInfo().GetPos(), c.shownPos);
    }
}
