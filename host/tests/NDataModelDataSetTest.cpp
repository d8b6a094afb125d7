#include "DataSetTestTables.h"

#include <cmath>

namespace {

class NumberTable : public NDataModelDataSet
{
public:
    int CreateFields() override
    {
        AddField(QStringLiteral("Name"), FT_String, 20);
        AddField(QStringLiteral("Count"), FT_Integer);
        AddField(QStringLiteral("Weight"), FT_Double);
        return GetFieldCount();
    }
};

} // namespace

TEST(NDataModelDataSetTest, CreateFieldsRunsOnceAndLazily)
{
    CaseTable table;
    EXPECT_EQ(table.created, 0);
    EXPECT_EQ(table.GetFieldCount(), 4);
    EXPECT_EQ(table.GetFieldCount(), 4);
    EXPECT_EQ(table.created, 1);
    EXPECT_EQ(table.GetTableName(), QStringLiteral("TestCase"));
    EXPECT_EQ(table.GetFieldIndex(QStringLiteral("ParmValue")), 2);
    EXPECT_EQ(table.GetFieldIndex(QStringLiteral("parmvalue")), -1);
    EXPECT_EQ(table.GetFieldDataType(0), FT_Integer);
    EXPECT_EQ(table.GetFieldDataType(1), FT_LongString);
}

TEST(NDataModelDataSetTest, FieldAddedAfterCreateFieldsComesLastAndReachesExistingRows)
{
    CaseTable table;
    table.InsertRow(0);
    // AddField before any other use still lets CreateFields go first.
    CaseTable fresh;
    EXPECT_EQ(fresh.AddField(QStringLiteral("NewParmValue"), FT_LongString), 4);
    EXPECT_EQ(fresh.created, 1);

    EXPECT_EQ(table.AddField(QStringLiteral("NewParmValue"), FT_LongString), 4);
    EXPECT_EQ(table.AddField(QStringLiteral("NewParmValue"), FT_Integer), 4);
    EXPECT_EQ(table.GetFieldDataType(4), FT_LongString);
    EXPECT_EQ(table.AddField(QString(), FT_String), -1);
    EXPECT_TRUE(table.IsNull(4, 1));
    EXPECT_TRUE(table.SetAsString(QStringLiteral("NewParmValue"), 1, QStringLiteral("3.0")));
    EXPECT_EQ(table.GetAsString(4, 1), QStringLiteral("3.0"));
}

TEST(NDataModelDataSetTest, InsertRowPositions)
{
    struct Case
    {
        int insertAt;
        int expectedRow;
        const char* order;
    };
    const Case cases[] = {
        {0, 4, "a b c N"}, {1, 1, "N a b c"}, {2, 2, "a N b c"}, {3, 3, "a b N c"},
        {4, 4, "a b c N"}, {99, 4, "a b c N"}, {-1, 4, "a b c N"},
    };
    for (const Case& c : cases) {
        CaseTable table;
        for (const char* name : {"a", "b", "c"})
            table.SetAsString(QStringLiteral("ParmName"), table.InsertRow(0), QString::fromLatin1(name));
        const int row = table.InsertRow(c.insertAt);
        EXPECT_EQ(row, c.expectedRow) << c.insertAt;
        table.SetAsString(QStringLiteral("ParmName"), row, QStringLiteral("N"));
        EXPECT_EQ(Column(table, QStringLiteral("ParmName")), QString::fromLatin1(c.order)) << c.insertAt;
    }
}

TEST(NDataModelDataSetTest, DeleteRowAndResetKeepFields)
{
    CaseTable table;
    for (int i = 0; i < 3; ++i)
        table.SetAsInteger(QStringLiteral("ParmMode"), table.InsertRow(0), i + 10);
    EXPECT_FALSE(table.DeleteRow(0));
    EXPECT_FALSE(table.DeleteRow(4));
    EXPECT_TRUE(table.DeleteRow(2));
    EXPECT_EQ(Column(table, QStringLiteral("ParmMode")), QStringLiteral("10 12"));
    table.Reset();
    EXPECT_EQ(table.GetRowCount(), 0);
    EXPECT_EQ(table.GetFieldCount(), 4);
    EXPECT_EQ(table.created, 1);
}

TEST(NDataModelDataSetTest, OutOfRangeAndUnknownNamesReadEmptyAndRefuseWrites)
{
    CaseTable table;
    table.InsertRow(0);
    EXPECT_EQ(table.GetAsString(QStringLiteral("Nope"), 1), QString());
    EXPECT_EQ(table.GetAsString(1, 0), QString());
    EXPECT_EQ(table.GetAsString(1, 2), QString());
    EXPECT_EQ(table.GetAsInteger(9, 1), 0);
    EXPECT_EQ(table.GetFieldName(-1), QString());
    EXPECT_FALSE(table.SetAsString(QStringLiteral("Nope"), 1, QStringLiteral("x")));
    EXPECT_FALSE(table.SetAsString(1, 2, QStringLiteral("x")));
    EXPECT_FALSE(table.SetAsInteger(-1, 1, 1));
    EXPECT_FALSE(table.SetAsDouble(4, 1, 1.0));
    EXPECT_TRUE(table.IsNull(1, 1));
    EXPECT_TRUE(table.IsNull(1, 5));
}

TEST(NDataModelDataSetTest, ConversionsBetweenTextAndNumberFields)
{
    // Steps on one cell each; a refused write leaves the cell as it was.
    const struct
    {
        const char* field;
        char setter; // 'S' text, 'I' integer, 'D' double
        const char* text;
        double number;
        bool ok;
        const char* cell; // "null" for a null cell
        int asInteger;
        double asDouble;
    } steps[] = {
        {"Count", 'S', "42", 0, true, "42", 42, 42},
        {"Count", 'S', "4x", 0, false, "42", 42, 42},
        {"Count", 'S', "1.5", 0, false, "42", 42, 42},
        {"Count", 'S', "", 0, true, "null", 0, 0},
        {"Count", 'D', "", 7.0, true, "7", 7, 7},
        {"Count", 'D', "", 7.5, false, "7", 7, 7},
        {"Count", 'D', "", 1e12, false, "7", 7, 7},
        {"Weight", 'D', "", 0.1, true, "0.1", 0, 0.1},
        {"Weight", 'I', "", 3, true, "3", 3, 3},
        {"Name", 'D', "", 2.5, true, "2.5", 2, 2.5},
        {"Name", 'S', "abc", 0, true, "abc", 0, 0},
        {"Name", 'S', "1e300", 0, true, "1e300", 0, 1e300},
    };
    NumberTable table;
    const int r = table.InsertRow(0);
    for (const auto& s : steps) {
        const QString field = QString::fromLatin1(s.field);
        SCOPED_TRACE(std::string(s.field) + " " + s.setter + " " + s.text + " " + std::to_string(s.number));
        const bool ok = s.setter == 'S'   ? table.SetAsString(field, r, QString::fromLatin1(s.text))
                        : s.setter == 'I' ? table.SetAsInteger(field, r, int(s.number))
                                          : table.SetAsDouble(field, r, s.number);
        EXPECT_EQ(ok, s.ok);
        EXPECT_EQ(Column(table, field), QString::fromLatin1(s.cell));
        EXPECT_EQ(table.GetAsInteger(field, r), s.asInteger);
        EXPECT_DOUBLE_EQ(table.GetAsDouble(field, r), s.asDouble);
    }
}

TEST(NDataModelDataSetTest, CloneIsIndependentAndKeepsEverything)
{
    CaseTable table;
    table.AddField(QStringLiteral("NewParmValue"), FT_LongString);
    const int r = table.InsertRow(0);
    table.SetAsString(QStringLiteral("ParmName"), r, QStringLiteral("x"));
    table.SetAsInteger(QStringLiteral("ParmMode"), r, 1);
    auto copy = table.Clone();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Dump(*copy), Dump(table));

    copy->SetAsString(QStringLiteral("ParmName"), 1, QStringLiteral("changed"));
    copy->InsertRow(0);
    copy->AddField(QStringLiteral("Extra"), FT_String);
    EXPECT_EQ(table.GetAsString(QStringLiteral("ParmName"), 1), QStringLiteral("x"));
    EXPECT_EQ(table.GetRowCount(), 1);
    EXPECT_EQ(table.GetFieldCount(), 5);
    table.SetAsString(QStringLiteral("ParmValue"), 1, QStringLiteral("y"));
    EXPECT_TRUE(copy->IsNull(2, 1));
}

TEST(NDataModelDataSetTest, SortIsStableAndTyped)
{
    NumberTable table;
    const struct
    {
        const char* name;
        const char* count;
    } rows[] = {{"b", "10"}, {"a", "9"}, {"c", ""}, {"a", "10"}, {"B", "-1"}};
    for (const auto& row : rows)
    {
        const int r = table.InsertRow(0);
        table.SetAsString(QStringLiteral("Name"), r, QString::fromLatin1(row.name));
        table.SetAsString(QStringLiteral("Count"), r, QString::fromLatin1(row.count));
    }
    auto column = [&table](const char* field) { return Column(table, QString::fromLatin1(field)); };
    ASSERT_TRUE(table.Sort(QStringLiteral("Count")));
    // Numeric, not textual ("9" before "10"); the two 10s keep their order.
    EXPECT_EQ(column("Count"), QStringLiteral("null -1 9 10 10"));
    EXPECT_EQ(column("Name"), QStringLiteral("c B a b a"));
    ASSERT_TRUE(table.Sort(QStringLiteral("Name"), false));
    EXPECT_EQ(column("Name"), QStringLiteral("c b a a B"));
    EXPECT_EQ(column("Count"), QStringLiteral("null 10 9 10 -1"));
    EXPECT_FALSE(table.Sort(QStringLiteral("Missing")));
}

TEST(NDataModelDataSetTest, SortCopesWithNotANumber)
{
    NumberTable table;
    for (double v : {2.0, std::nan(""), -1.0, std::nan(""), 0.5})
        table.SetAsDouble(QStringLiteral("Weight"), table.InsertRow(0), v);
    ASSERT_TRUE(table.Sort(QStringLiteral("Weight")));
    EXPECT_EQ(Column(table, QStringLiteral("Weight")), QStringLiteral("-1 0.5 2 nan nan"));
}
