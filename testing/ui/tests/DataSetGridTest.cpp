#include "CGridCtrlForDataSet.h"
#include "RunnerTestSupport.h"

// The grid reads and writes the data set it keeps: no copy, model row r is
// data-set row r + 1, edits and row changes land in the data set.
TEST(DataSetGridTest, ReadsAndWritesTheDataSetItselfAtAnySize)
{
    auto owned = std::make_unique<CTestCaseInfoTable>();
    CTestCaseInfoTable* table = owned.get();
    for (int i = 1; i <= 100000; ++i)
        table->SetAsString(CTestCaseInfoTable::ParmName, table->InsertRow(0), QString::number(i));
    CGridCtrlForDataSet grid;
    grid.SetColumns({{CTestCaseInfoTable::ParmValue, "参数值", 120}, {CTestCaseInfoTable::ParmName, "参数名称", 90}});
    grid.SetDataSet(std::move(owned));
    grid.SetEditable(true);
    QAbstractItemModel& model = *grid.model();
    EXPECT_EQ(model.rowCount(), 100000);
    EXPECT_EQ(model.index(99999, 1).data().toString(), "100000");

    // A change behind the grid's back shows at once: the model holds no copy.
    table->SetAsString(CTestCaseInfoTable::ParmName, 5, "改");
    EXPECT_EQ(model.index(4, 1).data().toString(), "改");
    ASSERT_TRUE(model.setData(model.index(2, 0), "7.5"));
    EXPECT_EQ(table->GetAsString(CTestCaseInfoTable::ParmValue, 3), "7.5");

    ASSERT_TRUE(model.insertRows(1, 2));
    ASSERT_TRUE(model.removeRows(0, 1));
    EXPECT_EQ(table->GetRowCount(), 100001);
    EXPECT_EQ(RowTexts(*table).mid(0, 3), (QStringList{"||", "||", "2||"}));
    EXPECT_FALSE(model.removeRows(100000, 2));
    EXPECT_FALSE(model.insertRows(100002, 1));

    // A current row outside the rows is kept as a number and highlights nothing.
    grid.SetCurrentRow(100001);
    EXPECT_EQ(grid.GetCurrentRow(), 100001);
    EXPECT_FALSE(grid.currentIndex().isValid());
    grid.SetCurrentRow(3);
    EXPECT_EQ(grid.currentIndex().row(), 3);
    grid.SetDataSet(nullptr);
    EXPECT_EQ((QList<int>{model.rowCount(), grid.GetCurrentRow()}), (QList<int>{0, -1}));
}
