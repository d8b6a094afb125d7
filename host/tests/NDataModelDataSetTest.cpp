#include "NDataModelDataSet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// The shape of a test case table: four fields declared lazily, a table name.
class CaseTable : public NDataModelDataSet
{
public:
    int created = 0;
    int CreateFields() override
    {
        ++created;
        AddField(QStringLiteral("ParmMode"), FT_Integer);
        AddField(QStringLiteral("ParmName"), FT_LongString);
        AddField(QStringLiteral("ParmValue"), FT_LongString);
        AddField(QStringLiteral("ParmMsg"), FT_LongString);
        SetTableName(QStringLiteral("TestCase"));
        return GetFieldCount();
    }
};

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

// Every field, every cell (text and null state) and the table name.
::testing::AssertionResult SameTable(const NDataModelDataSet& a, const NDataModelDataSet& b)
{
    if (a.GetTableName() != b.GetTableName())
        return ::testing::AssertionFailure() << "table name " << a.GetTableName().toStdString() << " vs "
                                             << b.GetTableName().toStdString();
    if (a.GetFieldCount() != b.GetFieldCount() || a.GetRowCount() != b.GetRowCount())
        return ::testing::AssertionFailure() << "shape differs";
    for (int c = 0; c < a.GetFieldCount(); ++c)
    {
        if (a.GetFieldName(c) != b.GetFieldName(c) || a.GetFieldDataType(c) != b.GetFieldDataType(c)
            || a.GetFieldWidth(c) != b.GetFieldWidth(c))
            return ::testing::AssertionFailure() << "field " << c << " differs";
        for (int r = 1; r <= a.GetRowCount(); ++r)
        {
            if (a.IsNull(c, r) != b.IsNull(c, r) || a.GetAsString(c, r) != b.GetAsString(c, r))
                return ::testing::AssertionFailure()
                    << "cell (" << c << "," << r << "): [" << a.GetAsString(c, r).toStdString() << "] vs ["
                    << b.GetAsString(c, r).toStdString() << "]";
        }
    }
    return ::testing::AssertionSuccess();
}

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
        {0, 4, "abcN"}, {1, 1, "Nabc"}, {2, 2, "aNbc"}, {3, 3, "abNc"}, {4, 4, "abcN"}, {99, 4, "abcN"}, {-1, 4, "abcN"},
    };
    for (const Case& c : cases)
    {
        CaseTable table;
        for (const char* name : {"a", "b", "c"})
            table.SetAsString(QStringLiteral("ParmName"), table.InsertRow(0), QString::fromLatin1(name));
        const int row = table.InsertRow(c.insertAt);
        EXPECT_EQ(row, c.expectedRow) << c.insertAt;
        table.SetAsString(QStringLiteral("ParmName"), row, QStringLiteral("N"));
        QString order;
        for (int r = 1; r <= table.GetRowCount(); ++r)
            order += table.GetAsString(QStringLiteral("ParmName"), r);
        EXPECT_EQ(order, QString::fromLatin1(c.order)) << c.insertAt;
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
    ASSERT_EQ(table.GetRowCount(), 2);
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("ParmMode"), 1), 10);
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("ParmMode"), 2), 12);
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
    NumberTable table;
    const int r = table.InsertRow(0);
    EXPECT_TRUE(table.SetAsString(QStringLiteral("Count"), r, QStringLiteral("42")));
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("Count"), r), 42);
    EXPECT_FALSE(table.SetAsString(QStringLiteral("Count"), r, QStringLiteral("4x")));
    EXPECT_FALSE(table.SetAsString(QStringLiteral("Count"), r, QStringLiteral("1.5")));
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("Count"), r), 42);
    EXPECT_TRUE(table.SetAsString(QStringLiteral("Count"), r, QString()));
    EXPECT_TRUE(table.IsNull(1, r));

    EXPECT_TRUE(table.SetAsDouble(QStringLiteral("Count"), r, 7.0));
    EXPECT_EQ(table.GetAsString(QStringLiteral("Count"), r), QStringLiteral("7"));
    EXPECT_FALSE(table.SetAsDouble(QStringLiteral("Count"), r, 7.5));
    EXPECT_FALSE(table.SetAsDouble(QStringLiteral("Count"), r, 1e12));

    EXPECT_TRUE(table.SetAsDouble(QStringLiteral("Weight"), r, 0.1));
    EXPECT_EQ(table.GetAsString(QStringLiteral("Weight"), r), QStringLiteral("0.1"));
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("Weight"), r), 0);
    EXPECT_TRUE(table.SetAsInteger(QStringLiteral("Weight"), r, 3));
    EXPECT_DOUBLE_EQ(table.GetAsDouble(QStringLiteral("Weight"), r), 3.0);

    EXPECT_TRUE(table.SetAsDouble(QStringLiteral("Name"), r, 2.5));
    EXPECT_EQ(table.GetAsString(QStringLiteral("Name"), r), QStringLiteral("2.5"));
    EXPECT_DOUBLE_EQ(table.GetAsDouble(QStringLiteral("Name"), r), 2.5);
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("Name"), r), 2);
    EXPECT_TRUE(table.SetAsString(QStringLiteral("Name"), r, QStringLiteral("abc")));
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("Name"), r), 0);
    EXPECT_TRUE(table.SetAsString(QStringLiteral("Name"), r, QStringLiteral("1e300")));
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("Name"), r), 0);
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
    EXPECT_TRUE(SameTable(table, *copy));

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
    auto column = [&table](const char* field) {
        QStringList values;
        for (int r = 1; r <= table.GetRowCount(); ++r)
            values << (table.IsNull(table.GetFieldIndex(QString::fromLatin1(field)), r)
                           ? QStringLiteral("null")
                           : table.GetAsString(QString::fromLatin1(field), r));
        return values.join(QLatin1Char(' '));
    };
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
    const double values[] = {2.0, std::nan(""), -1.0, std::nan(""), 0.5};
    for (double v : values)
        table.SetAsDouble(QStringLiteral("Weight"), table.InsertRow(0), v);
    ASSERT_TRUE(table.Sort(QStringLiteral("Weight")));
    QStringList out;
    for (int r = 1; r <= table.GetRowCount(); ++r)
        out << table.GetAsString(QStringLiteral("Weight"), r);
    EXPECT_EQ(out.join(QLatin1Char(' ')), QStringLiteral("-1 0.5 2 nan nan"));
}
