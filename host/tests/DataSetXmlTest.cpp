#include "CDataSetXmlScanner.h"
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

TEST(DataSetXmlTest, TextsNumbersNullsEmptyTextAndNamesWithTabsAndBreaksSurviveARoundTripOtherControlsFailToSave)
{
    const QString texts[] = {
        u"plain"_s, QString(), u"a\rb\nc\r\n\r\rd\n\n"_s, u"\r"_s, u"钢筋重量 = 0.617*d*d/100"_s, u"\"q\" and 's'"_s,
        u"a < b && c > d ]]> &amp; &#13;"_s, u"  leading and trailing  "_s, u"\t tab \t"_s, u"control\x01\x1f" "char"_s,
        QString(QChar(0xD800)) + u"lone surrogate"_s, u"emoji \U0001F600 pair"_s, u"<Cell field=\"s\">i</Cell>"_s,
        QString(QChar(0xFFFF))};
    const double numbers[] = {0.1, -0.0, 1e300, -2.5e-310, 1.0 / 3.0, INFINITY, -INFINITY, NAN};
    NDataModelDataSet table, loaded;
    table.SetTableName(u"数据\tb\r\nc"_s);
    table.AddField(u"i"_s, FT_Integer, 8);
    table.AddField(u"d"_s, FT_Double);
    table.AddField(u"s"_s, FT_LongString);
    table.AddField(u"名 称\n"_s, FT_String);
    for (size_t n = 0; n < std::size(texts); ++n) {
        const int r = table.InsertRow(0);
        table.SetAsString(u"s"_s, r, texts[n]);
        table.SetAsDouble(u"d"_s, r, numbers[n % std::size(numbers)]);
        table.SetAsInteger(u"i"_s, r, r % 2 ? -2147483647 - 1 : 2147483647);
    }
    table.InsertRow(0); // a row with nothing set at all
    ASSERT_TRUE(loaded.LoadDataSetXMLBuf_NoDataBefore(Save(table)));
    EXPECT_EQ(Dump(loaded), Dump(table));
    EXPECT_TRUE(std::signbit(loaded.GetAsDouble(1, 2)));
    EXPECT_EQ(Save(loaded), Save(table));
    table.AddField(u"bad\x02name"_s, FT_String);
    QString xml = u"untouched"_s;
    EXPECT_FALSE(table.SaveDataSetXMLBuf_NoDelete(xml));
    EXPECT_EQ(xml, u"untouched"_s);
}

TEST(DataSetXmlTest, LayoutIsReadableLoadAppendsToRowsAlreadyThereAndSkipsCommentsAndWhitespace)
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
    const QString commentedXml = u"<?xml version=\"1.0\"?>\n"_s
                                 + QString(xml).replace(u"<Rows>"_s, u"<!-- rows --><Rows>\r\n\t"_s)
                                 + u"\n<!-- end -->\n"_s;
    CaseTable commented, plain;
    ASSERT_TRUE(commented.LoadDataSetXMLBuf_NoDataBefore(commentedXml));
    ASSERT_TRUE(plain.LoadDataSetXMLBuf_NoDataBefore(xml));
    EXPECT_EQ(Dump(commented), Dump(plain));
}

TEST(DataSetXmlTest, FieldsAreMatchedByNameUnknownOnesAddedLastKnownOnesKeepTheirType)
{
    CaseTable compare, table;
    compare.AddField(u"NewParmValue"_s, FT_LongString);
    compare.SetAsString(u"NewParmValue"_s, compare.InsertRow(0), u"3.0"_s);
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(Save(compare)));
    EXPECT_EQ(Dump(table), Dump(compare));
    NDataModelDataSet reordered;
    reordered.AddField(u"ParmValue"_s, FT_String);
    reordered.AddField(u"ParmName"_s, FT_String);
    ASSERT_TRUE(reordered.LoadDataSetXMLBuf_NoDataBefore(GoodBuffer()));
    EXPECT_EQ(Dump(reordered), u"TestCase|ParmValue:1:0,ParmName:1:0,ParmMode:3:0,ParmMsg:%1:0,\n[1];[x];[1];<null>;"_s
                                   .arg(int(FT_LongString)));
    // A text the existing integer field cannot take refuses the whole buffer.
    NDataModelDataSet source;
    source.AddField(u"ParmMode"_s, FT_String);
    source.SetAsString(0, source.InsertRow(0), u"12"_s);
    CaseTable typed;
    ASSERT_TRUE(typed.LoadDataSetXMLBuf_NoDataBefore(Save(source)));
    EXPECT_EQ(typed.GetFieldDataType(0), FT_Integer);
    EXPECT_EQ(typed.GetAsInteger(0, 1), 12);
    source.SetAsString(0, 1, u"twelve"_s);
    const QString before = Dump(typed);
    EXPECT_FALSE(typed.LoadDataSetXMLBuf_NoDataBefore(Save(source)));
    EXPECT_EQ(Dump(typed), before);
}

TEST(DataSetXmlTest, DamagedBuffersAreRefusedAndChangeNothing)
{
    const QString good = GoodBuffer();
    auto replaced = [&good](const char* from, const char* to) {
        EXPECT_TRUE(good.contains(QString::fromUtf8(from))) << from;
        return QString(good).replace(QString::fromUtf8(from), QString::fromUtf8(to));
    };
    const QString cases[] = {
        QString(), u"var x = 1;"_s, good.left(good.size() / 2), good.left(good.size() - 3), replaced("DataSet", "Table"),
        replaced("version=\"1\"", "version=\"2\""), replaced("version=\"1\" ", ""),
        replaced(">1</Cell>", ">1</Cell><Cell field=\"ParmMode\">x</Cell>"),
        replaced("field=\"ParmMode\">1<", "field=\"ParmMode\">1.5<"), replaced("type=\"3\"", "type=\"4\""),
        replaced("type=\"3\"", "type=\"three\""), replaced("width=\"0\"", "width=\"wide\""),
        replaced("field=\"ParmName\"", "field=\"Unknown\""), replaced("name=\"ParmMsg\"", "name=\"ParmName\""),
        replaced("name=\"ParmMsg\"", "name=\"\""), replaced("\">x</Cell>", "\">x</Cell><Cell field=\"ParmName\">y</Cell>"),
        replaced("<Row>", "<Row><Other/>"), replaced("<Rows>", "<Rows>text"), replaced(">x</Cell>", "><b>x</b></Cell>"),
        replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"base64\">!!"),
        replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"base64\">YQ=="),
        replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"hex\">78"),
        replaced(" <Rows>", " <Nothing>").replace(u"</Rows>"_s, u"</Nothing>"_s), good + u"<DataSet version=\"1\"/>"_s,
        good + u"junk"_s, replaced(">x<", ">&bogus;<"),
        u"<!DOCTYPE d [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;\">]>"_s + replaced(">x<", ">&b;<")};
    for (const QString& xml : cases) {
        CaseTable table;
        table.SetAsString(u"ParmName"_s, table.InsertRow(0), u"kept"_s);
        EXPECT_FALSE(table.LoadDataSetXMLBuf_NoDataBefore(xml)) << xml.toStdString();
        EXPECT_EQ(Dump(table), u"TestCase|ParmMode:3:0,ParmName:%1:0,ParmValue:%1:0,ParmMsg:%1:0,\n<null>;[kept];<null>;<null>;"_s
                                .arg(int(FT_LongString)));
    }
}

// The scanner reads the writer's form and its harmless variants exactly as
// the XML parser does, and leaves to it everything that XML reads otherwise
// than as written (normalised line ends and blanks) or that it does not know.
TEST(DataSetXmlTest, ScannerReadsTheWritersFormAsTheXmlParserDoesAndLeavesTheRest)
{
    const QString good = GoodBuffer();
    auto replaced = [&good](const QString& from, const QString& to) {
        EXPECT_TRUE(good.contains(from)) << from.toStdString();
        return QString(good).replace(from, to);
    };
    const QString cell = u"field=\"ParmName\">x<"_s;
    const struct { QString xml; bool scanned; } cases[] = {
        {good, true},
        {replaced(u"<DataSet version=\"1\" table=\"TestCase\">"_s, u"\n <DataSet \t table = 'TestCase'\r\n version='1' >"_s), true},
        {replaced(cell, u"field=\"ParmName\">&lt;&gt;&amp;&quot;&apos;&#13;&#x4E2D;&#65;&#x1F600;\U0001F600 a]]b ]><"_s), true},
        {replaced(u"table=\"TestCase\""_s, u"table=\"钢筋&#9;&#10;&#13;&apos;\""_s), true},
        {replaced(u"<Cell field=\"ParmValue\">1</Cell>"_s,
                  u"<Cell field='ParmMsg'/><Cell field=\"ParmValue\" encoding=\"base64\">eABcAA==</Cell >"_s), true},
        {replaced(u"<Row>"_s, u"<Row/><Row>"_s), true},
        {u"<DataSet version=\"1\"><Fields/><Rows/></DataSet>"_s, true},
        // refused by both
        {replaced(cell, u"field=\"Nothing\">x<"_s), false},
        // read by the XML parser alone
        {u"<?xml version=\"1.0\"?>"_s + good, false},
        {replaced(u"<Rows>"_s, u"<!-- rows --><Rows>"_s), false},
        {replaced(cell, u"field=\"ParmName\"><![CDATA[<x>]]><"_s), false},
        {replaced(cell, u"field=\"ParmName\">a\r\nb<"_s), false},
        {replaced(u"table=\"TestCase\""_s, u"table=\"a\tb\""_s), false},
        {replaced(cell, u"field=\"ParmName\">&nbsp;<"_s), false},
        {replaced(cell, u"field=\"ParmName\">&#0;<"_s), false},
        {replaced(cell, u"field=\"ParmName\">&#+65;<"_s), false},
        {replaced(cell, u"field=\"ParmName\">a]]>b<"_s), false},
        {replaced(cell, u"field=\"ParmName\">"_s + QChar(0xD800) + u"<"_s), false},
        {replaced(u"<Row>"_s, u"<Row id=\"1\">"_s), false},
        {replaced(cell, u"field=\"ParmName\"encoding=\"base64\">eAA=<"_s), false},
        {replaced(u"<Rows>"_s, u"<x:Rows xmlns:x=\"urn:x\">"_s).replace(u"</Rows>"_s, u"</x:Rows>"_s), false},
    };
    for (const auto& c : cases) {
        CDataSetXmlCodec::Table scanned, parsed;
        const bool byParser = CDataSetXmlCodec::ReadWithXmlParser(c.xml, parsed);
        EXPECT_EQ(CDataSetXmlScanner::Read(c.xml, scanned), c.scanned) << c.xml.toStdString();
        if (c.scanned) {
            EXPECT_TRUE(byParser) << c.xml.toStdString();
            EXPECT_TRUE(scanned == parsed) << c.xml.toStdString();
        }
    }
}
