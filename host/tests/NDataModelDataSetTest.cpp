#include "DataSetTestTables.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

class NumberTable : public NDataModelDataSet
{
public:
    int CreateFields() override
    {
        AddField(u"Name"_s, FT_String, 20);
        AddField(u"Count"_s, FT_Integer);
        AddField(u"Weight"_s, FT_Double);
        return GetFieldCount();
    }
};

void AddNames(CaseTable& table, std::initializer_list<const char*> names)
{
    for (const char* name : names)
        table.SetAsString(u"ParmName"_s, table.InsertRow(0), QString::fromLatin1(name));
}

} // namespace

TEST(NDataModelDataSetTest, CreateFieldsRunsOnceLazilyAndFieldsAddedLaterComeLastAndReachExistingRows)
{
    CaseTable table, fresh;
    EXPECT_EQ(table.created, 0);
    EXPECT_EQ(fresh.AddField(u"NewParmValue"_s, FT_LongString), 4); // CreateFields still goes first
    EXPECT_EQ(table.GetFieldIndex(u"parmvalue"_s), -1);
    EXPECT_EQ(table.GetFieldCount(), 4);
    EXPECT_EQ(table.created, 1);
    table.InsertRow(0);
    EXPECT_EQ(table.AddField(u"NewParmValue"_s, FT_LongString), 4);
    EXPECT_EQ(table.AddField(u"NewParmValue"_s, FT_Integer), 4);
    EXPECT_EQ(table.AddField(QString(), FT_String), -1);
    EXPECT_TRUE(table.IsNull(4, 1));
    EXPECT_TRUE(table.SetAsString(u"NewParmValue"_s, 1, u"3.0"_s));
    EXPECT_EQ(Dump(table), u"TestCase|ParmMode:3:0,ParmName:%1:0,ParmValue:%1:0,ParmMsg:%1:0,NewParmValue:%1:0,\n"
                           "<null>;<null>;<null>;<null>;[3.0];"_s.arg(int(FT_LongString)));
}

TEST(NDataModelDataSetTest, InsertAndDeleteRowPositionsAndCellsOutOfRangeReadEmptyAndRefuseWrites)
{
    const struct { int insertAt, expectedRow; const char* order; } cases[] = {
        {0, 4, "a b c N"}, {1, 1, "N a b c"}, {3, 3, "a b N c"}, {4, 4, "a b c N"}, {99, 4, "a b c N"}, {-1, 4, "a b c N"}};
    for (const auto& c : cases) {
        CaseTable table;
        AddNames(table, {"a", "b", "c"});
        const int row = table.InsertRow(c.insertAt);
        EXPECT_EQ(row, c.expectedRow) << c.insertAt;
        table.SetAsString(u"ParmName"_s, row, u"N"_s);
        EXPECT_EQ(Column(table, u"ParmName"_s), QString::fromLatin1(c.order)) << c.insertAt;
    }
    CaseTable table;
    AddNames(table, {"a", "b", "c"});
    EXPECT_FALSE(table.DeleteRow(0));
    EXPECT_FALSE(table.DeleteRow(4));
    EXPECT_TRUE(table.DeleteRow(2));
    EXPECT_EQ(Column(table, u"ParmName"_s), u"a c"_s);
    EXPECT_EQ(table.GetAsString(u"Nope"_s, 1), QString());
    EXPECT_EQ(table.GetAsString(1, 0), QString());
    EXPECT_EQ(table.GetAsInteger(9, 1), 0);
    EXPECT_FALSE(table.SetAsString(u"Nope"_s, 1, u"x"_s));
    EXPECT_FALSE(table.SetAsString(1, 3, u"x"_s));
    EXPECT_FALSE(table.SetAsInteger(-1, 1, 1));
    EXPECT_FALSE(table.SetAsDouble(4, 1, 1.0));
    EXPECT_TRUE(table.IsNull(1, 5));
    table.Reset();
    EXPECT_EQ(table.GetRowCount(), 0);
    EXPECT_EQ(table.GetFieldCount(), 4);
}

TEST(NDataModelDataSetTest, ConversionsBetweenTextAndNumberFields)
{
    // Steps on one cell each, setter 'S' text, 'I' integer, 'D' double; a refused write leaves the cell as it was.
    const struct { const char* field; char setter; const char* text; double number; bool ok; const char* cell;
                   int asInteger; double asDouble; } steps[] = {
        {"Count", 'S', "42", 0, true, "42", 42, 42},         {"Count", 'S', "4x", 0, false, "42", 42, 42},
        {"Count", 'S', "1.5", 0, false, "42", 42, 42},       {"Count", 'S', "", 0, true, "null", 0, 0},
        {"Count", 'D', "", 7.0, true, "7", 7, 7},            {"Count", 'D', "", 7.5, false, "7", 7, 7},
        {"Count", 'D', "", 1e12, false, "7", 7, 7},          {"Weight", 'D', "", 0.1, true, "0.1", 0, 0.1},
        {"Weight", 'I', "", 3, true, "3", 3, 3},             {"Name", 'D', "", 2.5, true, "2.5", 2, 2.5},
        {"Name", 'S', "abc", 0, true, "abc", 0, 0},          {"Name", 'S', "1e300", 0, true, "1e300", 0, 1e300},
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
    table.AddField(u"NewParmValue"_s, FT_LongString);
    AddNames(table, {"x"});
    auto copy = table.Clone();
    const QString before = Dump(table);
    EXPECT_EQ(Dump(*copy), before);
    copy->SetAsString(u"ParmName"_s, 1, u"changed"_s);
    copy->AddField(u"Extra"_s, FT_String);
    EXPECT_EQ(Dump(table), before);
}

TEST(NDataModelDataSetTest, SortIsStableAndTyped)
{
    NumberTable table;
    for (const auto& [name, count, weight] :
         {std::tuple{"b", "10", 2.0}, {"a", "9", NAN}, {"c", "", -1.0}, {"a", "10", NAN}, {"B", "-1", 0.5}}) {
        const int r = table.InsertRow(0);
        table.SetAsString(u"Name"_s, r, QString::fromLatin1(name));
        table.SetAsString(u"Count"_s, r, QString::fromLatin1(count));
        table.SetAsDouble(u"Weight"_s, r, weight);
    }
    auto columns = [&table] { return Column(table, u"Name"_s) + u" / "_s + Column(table, u"Count"_s); };
    ASSERT_TRUE(table.Sort(u"Count"_s));
    EXPECT_EQ(columns(), u"c B a b a / null -1 9 10 10"_s); // numeric, not textual; the two 10s keep their order
    ASSERT_TRUE(table.Sort(u"Name"_s, false));
    EXPECT_EQ(columns(), u"c b a a B / null 10 9 10 -1"_s);
    EXPECT_FALSE(table.Sort(u"Missing"_s));
    ASSERT_TRUE(table.Sort(u"Weight"_s));
    EXPECT_EQ(Column(table, u"Weight"_s), u"-1 0.5 2 nan nan"_s); // not-a-number sorts last
}
