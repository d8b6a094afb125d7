#include "DataSetTestTables.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

QString Save(const NDataModelDataSet& table)
{
    QString xml;
    EXPECT_TRUE(table.SaveDataSetXMLBuf_NoDelete(xml));
    return xml;
}

// A saved one-row case table with "x" / "1", used as the base of damaged buffers.
QString GoodBuffer()
{
    CaseTable table;
    const int r = table.InsertRow(0);
    table.SetAsInteger(u"ParmMode"_s, r, 1);
    table.SetAsString(u"ParmName"_s, r, u"x"_s);
    table.SetAsString(u"ParmValue"_s, r, u"1"_s);
    return Save(table);
}

} // namespace

TEST(DataSetXmlTest, ValuesSurviveARoundTrip)
{
    const QString values[] = {
        u"plain"_s, QString(), u"a\r\nb"_s, u"a\rb\nc\r\n\r\rd\n\n"_s, u"\r\n"_s, u"\r"_s, u"钢筋重量 = 0.617*d*d/100"_s,
        u"\"quoted\" and 'single'"_s, u"a < b && c > d ]]> &amp; &#13;"_s, u"  leading and trailing  "_s, u"   "_s,
        u"\t tab \t"_s, u"control\x01\x1f" "char"_s, QString(QChar(0xD800)) + u"lone surrogate"_s,
        u"emoji \U0001F600 pair"_s, u"<Cell field=\"ParmName\">inject</Cell>"_s, QString(QChar(0xFFFF)),
    };
    for (const QString& value : values) {
        CaseTable table, loaded;
        const int r = table.InsertRow(0);
        ASSERT_TRUE(table.SetAsString(u"ParmValue"_s, r, value));
        table.SetAsString(u"ParmMsg"_s, r, value);
        const QString xml = Save(table);
        ASSERT_TRUE(loaded.LoadDataSetXMLBuf_NoDataBefore(xml, 0)) << xml.toStdString();
        ASSERT_EQ(loaded.GetRowCount(), 1);
        EXPECT_EQ(loaded.GetAsString(u"ParmValue"_s, 1), value) << xml.toStdString();
        EXPECT_EQ(loaded.GetAsString(u"ParmMsg"_s, 1), value);
        EXPECT_TRUE(loaded.IsNull(0, 1));
        EXPECT_EQ(Dump(loaded), Dump(table));
    }
}

TEST(DataSetXmlTest, NumbersNullsAndEmptyTextSurvive)
{
    NDataModelDataSet table, loaded;
    table.SetTableName(u"数据"_s);
    table.AddField(u"i"_s, FT_Integer, 8);
    table.AddField(u"d"_s, FT_Double);
    table.AddField(u"s"_s, FT_String, 30);
    for (double v : std::initializer_list<double>{0.1, -0.0, 1e300, -2.5e-310, 1.0 / 3.0, INFINITY, -INFINITY, NAN}) {
        const int r = table.InsertRow(0);
        table.SetAsDouble(u"d"_s, r, v);
        table.SetAsInteger(u"i"_s, r, r % 2 ? -2147483647 - 1 : 2147483647);
        if (r % 3 == 0)
            table.SetAsString(u"s"_s, r, QString());
    }
    table.InsertRow(0); // a row with nothing set at all
    ASSERT_TRUE(loaded.LoadDataSetXMLBuf_NoDataBefore(Save(table)));
    EXPECT_EQ(Dump(loaded), Dump(table));
    EXPECT_FALSE(loaded.IsNull(2, 3));
    EXPECT_TRUE(loaded.IsNull(2, 1));
    EXPECT_EQ(std::signbit(loaded.GetAsDouble(1, 2)), true);
    EXPECT_EQ(loaded.GetAsDouble(1, 5), 1.0 / 3.0);
    EXPECT_EQ(Save(loaded), Save(table));
}

TEST(DataSetXmlTest, LayoutIsReadableAndLoadAppendsToRowsAlreadyThere)
{
    const QString xml = GoodBuffer();
    EXPECT_TRUE(xml.startsWith(u"<DataSet version=\"1\" table=\"TestCase\">\n <Fields>\n"_s));
    EXPECT_TRUE(xml.contains(u"  <Field name=\"ParmMode\" type=\"3\" width=\"0\"/>\n"_s));
    EXPECT_TRUE(xml.contains(u"   <Cell field=\"ParmName\">x</Cell>\n"_s));
    EXPECT_FALSE(xml.contains(u"field=\"ParmMsg\""_s));
    EXPECT_TRUE(xml.endsWith(u"</DataSet>\n"_s));
    CaseTable table;
    table.SetAsString(u"ParmName"_s, table.InsertRow(0), u"before"_s);
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(xml));
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(xml));
    EXPECT_EQ(Column(table, u"ParmName"_s), u"before x x"_s);
    EXPECT_EQ(table.GetAsInteger(u"ParmMode"_s, 2), 1);
}

TEST(DataSetXmlTest, FieldsUnknownToTheTableAreAddedAfterItsOwn)
{
    CaseTable compare, table;
    compare.AddField(u"NewParmValue"_s, FT_LongString);
    const int r = compare.InsertRow(0);
    compare.SetAsString(u"ParmName"_s, r, u"y"_s);
    compare.SetAsString(u"NewParmValue"_s, r, u"3.0"_s);
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(Save(compare)));
    ASSERT_EQ(table.GetFieldCount(), 5);
    EXPECT_EQ(table.GetFieldName(4), u"NewParmValue"_s);
    EXPECT_EQ(table.GetAsString(u"NewParmValue"_s, 1), u"3.0"_s);

    // A table with fields in another order still matches them by name.
    NDataModelDataSet reordered;
    reordered.AddField(u"ParmValue"_s, FT_String);
    reordered.AddField(u"ParmName"_s, FT_String);
    ASSERT_TRUE(reordered.LoadDataSetXMLBuf_NoDataBefore(GoodBuffer()));
    EXPECT_EQ(reordered.GetFieldIndex(u"ParmMode"_s), 2);
    EXPECT_EQ(reordered.GetAsString(1, 1), u"x"_s);
    EXPECT_EQ(reordered.GetAsString(0, 1), u"1"_s);
    EXPECT_EQ(reordered.GetTableName(), u"TestCase"_s);
}

TEST(DataSetXmlTest, ExistingFieldKeepsItsTypeAndBufferTextMustFit)
{
    NDataModelDataSet source;
    source.AddField(u"ParmMode"_s, FT_String);
    source.SetAsString(0, source.InsertRow(0), u"12"_s);
    CaseTable table;
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(Save(source)));
    EXPECT_EQ(table.GetFieldDataType(0), FT_Integer);
    EXPECT_EQ(table.GetAsInteger(0, 1), 12);
    source.SetAsString(0, 1, u"twelve"_s);
    const QString before = Dump(table);
    EXPECT_FALSE(table.LoadDataSetXMLBuf_NoDataBefore(Save(source)));
    EXPECT_EQ(Dump(table), before);
}

TEST(DataSetXmlTest, DamagedBuffersAreRefusedAndChangeNothing)
{
    const QString good = GoodBuffer();
    auto replaced = [&good](const char* from, const char* to) {
        EXPECT_TRUE(good.contains(QString::fromUtf8(from))) << from;
        return QString(good).replace(QString::fromUtf8(from), QString::fromUtf8(to));
    };
    const struct { const char* what; QString xml; } cases[] = {
        {"empty", QString()}, {"not xml", u"var x = 1;"_s}, {"truncated", good.left(good.size() / 2)},
        {"truncated at the end", good.left(good.size() - 3)}, {"wrong root", replaced("DataSet", "Table")},
        {"wrong version", replaced("version=\"1\"", "version=\"2\"")}, {"no version", replaced("version=\"1\" ", "")},
        {"bad integer", replaced(">1</Cell>", ">1</Cell><Cell field=\"ParmMode\">x</Cell>")},
        {"integer with a fraction", replaced("field=\"ParmMode\">1<", "field=\"ParmMode\">1.5<")},
        {"bad type", replaced("type=\"3\"", "type=\"4\"")}, {"type not a number", replaced("type=\"3\"", "type=\"three\"")},
        {"bad width", replaced("width=\"0\"", "width=\"wide\"")},
        {"cell of an undeclared field", replaced("field=\"ParmName\"", "field=\"Unknown\"")},
        {"duplicate field", replaced("name=\"ParmMsg\"", "name=\"ParmName\"")},
        {"empty field name", replaced("name=\"ParmMsg\"", "name=\"\"")},
        {"duplicate cell", replaced("\">x</Cell>", "\">x</Cell><Cell field=\"ParmName\">y</Cell>")},
        {"stray element", replaced("<Row>", "<Row><Other/>")}, {"stray text", replaced("<Rows>", "<Rows>text")},
        {"element inside a cell", replaced(">x</Cell>", "><b>x</b></Cell>")},
        {"bad base64", replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"base64\">!!")},
        {"odd base64", replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"base64\">YQ==")},
        {"unknown encoding", replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"hex\">78")},
        {"no rows", replaced(" <Rows>", " <Nothing>").replace(u"</Rows>"_s, u"</Nothing>"_s)},
        {"second root", good + u"<DataSet version=\"1\"/>"_s}, {"trailing text", good + u"junk"_s},
        {"undefined entity", replaced(">x<", ">&bogus;<")},
        {"entity bomb", u"<!DOCTYPE d [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;\">]>"_s + replaced(">x<", ">&b;<")},
    };
    for (const auto& c : cases) {
        CaseTable table;
        table.SetAsString(u"ParmName"_s, table.InsertRow(0), u"kept"_s);
        const QString before = Dump(table);
        EXPECT_FALSE(table.LoadDataSetXMLBuf_NoDataBefore(c.xml)) << c.what;
        EXPECT_EQ(Dump(table), before) << c.what;
    }
}

TEST(DataSetXmlTest, CommentsAndWhitespaceBetweenElementsAreAccepted)
{
    const QString xml = u"<?xml version=\"1.0\"?>\n"_s + GoodBuffer().replace(u"<Rows>"_s, u"<!-- rows --><Rows>\r\n\t"_s)
        + u"\n<!-- end -->\n"_s;
    CaseTable table, plain;
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(xml));
    ASSERT_TRUE(plain.LoadDataSetXMLBuf_NoDataBefore(GoodBuffer()));
    EXPECT_EQ(Dump(table), Dump(plain));
}

TEST(DataSetXmlTest, NamesThatXmlCannotCarryMakeSaveFail)
{
    NDataModelDataSet table, tabs, loaded;
    table.AddField(u"bad\x02name"_s, FT_String);
    QString xml = u"untouched"_s;
    EXPECT_FALSE(table.SaveDataSetXMLBuf_NoDelete(xml));
    EXPECT_EQ(xml, u"untouched"_s);
    // Tabs and line breaks in names are carried.
    tabs.SetTableName(u"a\tb\r\nc"_s);
    tabs.AddField(u"名 称\n"_s, FT_String);
    ASSERT_TRUE(loaded.LoadDataSetXMLBuf_NoDataBefore(Save(tabs)));
    EXPECT_EQ(loaded.GetTableName(), u"a\tb\r\nc"_s);
    EXPECT_EQ(loaded.GetFieldName(0), u"名 称\n"_s);
}
