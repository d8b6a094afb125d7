#include "CDialog_JaveList.h"
#include "DialogTestSupport.h"

#include <QLineEdit>

using JaveListTest = SampleHomeTest;

TEST_F(JaveListTest, SearchStartsAfterTheCurrentRowAndNeverWrapsBehindTheStart)
{
    // Sorted: two "图形法脚本\", "板\", "柱\", two "梁\", three "通用脚本\".
    const QStringList names = ScriptNames();
    ASSERT_EQ(names.size(), 9);
    ASSERT_TRUE(names[4].startsWith("梁\\") && names[5].startsWith("梁\\") && !names[6].startsWith("梁\\"));
    const struct { int current; const char* text; int found; bool notFound; } cases[] = {
        {-1, "梁\\", 4, false},      // nothing current: from row 1
        {4, "梁\\", 5, false},       // from the row after the current one
        {5, "梁\\", 9, true},        // failed: one past the last row
        {9, "梁\\", 4, false},       // ...so the next search restarts at row 1
        {8, "梁\\", 4, false},       // from the last row: the start is past the end, row 1
        {7, "图形法", 9, true},      // the rows before the start are not searched
        {-1, ".JS", 9, true},        // case-sensitive
        {0, "图形法脚本\\直", 1, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.current << " " << c.text);
        Ui().Clear();
        CDialog_JaveList dialog;
        auto& grid = Control<CGridCtrlForDataSet>(dialog, "1005");
        grid.SetCurrentRow(c.current);
        Control<QLineEdit>(dialog, "1023").setText(QString::fromUtf8(c.text));
        Click(dialog, "1024");
        EXPECT_EQ(grid.GetCurrentRow(), c.found);
        EXPECT_EQ(Ui().MessageTexts(), c.notFound ? QStringList{"没有找到!"} : QStringList{});
    }
}

TEST_F(JaveListTest, ListsEveryScriptAndChoosingNeedsAValidCurrentRow)
{
    const QStringList names = ScriptNames();
    CDialog_JaveList dialog;
    auto& grid = Control<CGridCtrlForDataSet>(dialog, "1005");
    QStringList shown;
    for (int row = 0; row < grid.model()->rowCount(); ++row)
        shown << grid.model()->index(row, 0).data().toString();
    EXPECT_EQ(shown, names);
    for (int row : {-1, int(names.size())}) {
        grid.SetCurrentRow(row);
        Click(dialog, "1");
    }
    EXPECT_EQ(Ui().MessageTexts(), QStringList({"请先选择要测试的脚本!", "请先选择要测试的脚本!"}));
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    grid.SetCurrentRow(5);
    Click(dialog, "1");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.GetChosenName(), names[5]);
    Click(dialog, "1006");
    EXPECT_EQ(dialog.GetChosenName(), "");
}
