#include "DataSetTestTables.h"

#include <cmath>

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
    table.SetAsInteger(QStringLiteral("ParmMode"), r, 1);
    table.SetAsString(QStringLiteral("ParmName"), r, QStringLiteral("x"));
    table.SetAsString(QStringLiteral("ParmValue"), r, QStringLiteral("1"));
    return Save(table);
}

} // namespace

TEST(DataSetXmlTest, ValuesSurviveARoundTrip)
{
    const QString values[] = {
        QStringLiteral("plain"),
        QString(),
        QStringLiteral("a\r\nb"),
        QStringLiteral("a\rb\nc\r\n\r\rd\n\n"),
        QStringLiteral("\r\n"),
        QStringLiteral("\r"),
        QStringLiteral("钢筋重量 = 0.617*d*d/100"),
        QStringLiteral("\"quoted\" and 'single'"),
        QStringLiteral("a < b && c > d ]]> &amp; &#13;"),
        QStringLiteral("  leading and trailing  "),
        QStringLiteral("   "),
        QStringLiteral("\t tab \t"),
        QStringLiteral("control\x01\x1f" "char"),
        QString(QChar(0xD800)) + QStringLiteral("lone surrogate"),
        QStringLiteral("emoji \U0001F600 pair"),
        QStringLiteral("<Cell field=\"ParmName\">inject</Cell>"),
        QString(QChar(0xFFFF)),
    };
    for (const QString& value : values)
    {
        CaseTable table;
        const int r = table.InsertRow(0);
        ASSERT_TRUE(table.SetAsString(QStringLiteral("ParmValue"), r, value));
        table.SetAsString(QStringLiteral("ParmMsg"), r, value);
        const QString xml = Save(table);
        CaseTable loaded;
        ASSERT_TRUE(loaded.LoadDataSetXMLBuf_NoDataBefore(xml, 0)) << xml.toStdString();
        ASSERT_EQ(loaded.GetRowCount(), 1);
        EXPECT_EQ(loaded.GetAsString(QStringLiteral("ParmValue"), 1), value) << xml.toStdString();
        EXPECT_EQ(loaded.GetAsString(QStringLiteral("ParmMsg"), 1), value);
        EXPECT_TRUE(loaded.IsNull(0, 1));
        EXPECT_EQ(Dump(loaded), Dump(table));
    }
}

TEST(DataSetXmlTest, NumbersNullsAndEmptyTextSurvive)
{
    NDataModelDataSet table;
    table.SetTableName(QStringLiteral("数据"));
    table.AddField(QStringLiteral("i"), FT_Integer, 8);
    table.AddField(QStringLiteral("d"), FT_Double);
    table.AddField(QStringLiteral("s"), FT_String, 30);
    const double doubles[] = {0.1, -0.0, 1e300, -2.5e-310, 1.0 / 3.0, INFINITY, -INFINITY, NAN};
    for (double v : doubles)
    {
        const int r = table.InsertRow(0);
        table.SetAsDouble(QStringLiteral("d"), r, v);
        table.SetAsInteger(QStringLiteral("i"), r, r % 2 ? -2147483647 - 1 : 2147483647);
        if (r % 3 == 0)
            table.SetAsString(QStringLiteral("s"), r, QString());
    }
    table.InsertRow(0); // a row with nothing set at all
    NDataModelDataSet loaded;
    ASSERT_TRUE(loaded.LoadDataSetXMLBuf_NoDataBefore(Save(table)));
    EXPECT_EQ(Dump(loaded), Dump(table));
    EXPECT_FALSE(loaded.IsNull(2, 3));
    EXPECT_TRUE(loaded.IsNull(2, 1));
    EXPECT_EQ(std::signbit(loaded.GetAsDouble(1, 2)), true);
    EXPECT_EQ(loaded.GetAsDouble(1, 5), 1.0 / 3.0);
    EXPECT_EQ(Save(loaded), Save(table));
}

TEST(DataSetXmlTest, LayoutIsReadable)
{
    const QString xml = GoodBuffer();
    EXPECT_TRUE(xml.startsWith(QStringLiteral("<DataSet version=\"1\" table=\"TestCase\">\n <Fields>\n")));
    EXPECT_TRUE(xml.contains(QStringLiteral("  <Field name=\"ParmMode\" type=\"3\" width=\"0\"/>\n")));
    EXPECT_TRUE(xml.contains(QStringLiteral("   <Cell field=\"ParmName\">x</Cell>\n")));
    EXPECT_FALSE(xml.contains(QStringLiteral("field=\"ParmMsg\"")));
    EXPECT_TRUE(xml.endsWith(QStringLiteral("</DataSet>\n")));
}

TEST(DataSetXmlTest, LoadAppendsToRowsAlreadyThere)
{
    CaseTable table;
    table.SetAsString(QStringLiteral("ParmName"), table.InsertRow(0), QStringLiteral("before"));
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(GoodBuffer()));
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(GoodBuffer()));
    ASSERT_EQ(table.GetRowCount(), 3);
    EXPECT_EQ(table.GetAsString(QStringLiteral("ParmName"), 1), QStringLiteral("before"));
    EXPECT_EQ(table.GetAsString(QStringLiteral("ParmName"), 3), QStringLiteral("x"));
    EXPECT_EQ(table.GetAsInteger(QStringLiteral("ParmMode"), 2), 1);
}

TEST(DataSetXmlTest, FieldsUnknownToTheTableAreAddedAfterItsOwn)
{
    CaseTable compare;
    compare.AddField(QStringLiteral("NewParmValue"), FT_LongString);
    const int r = compare.InsertRow(0);
    compare.SetAsString(QStringLiteral("ParmName"), r, QStringLiteral("y"));
    compare.SetAsString(QStringLiteral("NewParmValue"), r, QStringLiteral("3.0"));

    CaseTable table;
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(Save(compare)));
    ASSERT_EQ(table.GetFieldCount(), 5);
    EXPECT_EQ(table.GetFieldName(4), QStringLiteral("NewParmValue"));
    EXPECT_EQ(table.GetAsString(QStringLiteral("NewParmValue"), 1), QStringLiteral("3.0"));

    // A table with fields in another order still matches them by name.
    NDataModelDataSet reordered;
    reordered.AddField(QStringLiteral("ParmValue"), FT_String);
    reordered.AddField(QStringLiteral("ParmName"), FT_String);
    ASSERT_TRUE(reordered.LoadDataSetXMLBuf_NoDataBefore(GoodBuffer()));
    EXPECT_EQ(reordered.GetFieldIndex(QStringLiteral("ParmMode")), 2);
    EXPECT_EQ(reordered.GetAsString(1, 1), QStringLiteral("x"));
    EXPECT_EQ(reordered.GetAsString(0, 1), QStringLiteral("1"));
    EXPECT_EQ(reordered.GetTableName(), QStringLiteral("TestCase"));
}

TEST(DataSetXmlTest, ExistingFieldKeepsItsTypeAndBufferTextMustFit)
{
    NDataModelDataSet source;
    source.AddField(QStringLiteral("ParmMode"), FT_String);
    source.SetAsString(0, source.InsertRow(0), QStringLiteral("12"));
    CaseTable table;
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(Save(source)));
    EXPECT_EQ(table.GetFieldDataType(0), FT_Integer);
    EXPECT_EQ(table.GetAsInteger(0, 1), 12);

    source.SetAsString(0, 1, QStringLiteral("twelve"));
    const QString before = Dump(table);
    EXPECT_FALSE(table.LoadDataSetXMLBuf_NoDataBefore(Save(source)));
    EXPECT_EQ(Dump(table), before);
}

TEST(DataSetXmlTest, DamagedBuffersAreRefusedAndChangeNothing)
{
    const QString good = GoodBuffer();
    auto replaced = [&good](const char* from, const char* to) {
        QString text = good;
        const QString f = QString::fromUtf8(from);
        EXPECT_TRUE(text.contains(f)) << from;
        return text.replace(f, QString::fromUtf8(to));
    };
    const struct
    {
        const char* what;
        QString xml;
    } cases[] = {
        {"empty", QString()},
        {"not xml", QStringLiteral("var x = 1;")},
        {"truncated", good.left(good.size() / 2)},
        {"truncated at the end", good.left(good.size() - 3)},
        {"wrong root", replaced("DataSet", "Table")},
        {"wrong version", replaced("version=\"1\"", "version=\"2\"")},
        {"no version", replaced("version=\"1\" ", "")},
        {"bad integer", replaced(">1</Cell>", ">1</Cell><Cell field=\"ParmMode\">x</Cell>")},
        {"integer with a fraction", replaced("field=\"ParmMode\">1<", "field=\"ParmMode\">1.5<")},
        {"bad type", replaced("type=\"3\"", "type=\"4\"")},
        {"type not a number", replaced("type=\"3\"", "type=\"three\"")},
        {"bad width", replaced("width=\"0\"", "width=\"wide\"")},
        {"cell of an undeclared field", replaced("field=\"ParmName\"", "field=\"Unknown\"")},
        {"duplicate field", replaced("name=\"ParmMsg\"", "name=\"ParmName\"")},
        {"empty field name", replaced("name=\"ParmMsg\"", "name=\"\"")},
        {"duplicate cell", replaced("<Cell field=\"ParmName\">x</Cell>",
                                    "<Cell field=\"ParmName\">x</Cell><Cell field=\"ParmName\">y</Cell>")},
        {"stray element", replaced("<Row>", "<Row><Other/>")},
        {"element inside a cell", replaced(">x</Cell>", "><b>x</b></Cell>")},
        {"stray text", replaced("<Rows>", "<Rows>text")},
        {"bad base64", replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"base64\">!!")},
        {"odd base64", replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"base64\">YQ==")},
        {"unknown encoding", replaced("field=\"ParmName\">x", "field=\"ParmName\" encoding=\"hex\">78")},
        {"no rows", replaced(" <Rows>", " <Nothing>").replace(QStringLiteral("</Rows>"), QStringLiteral("</Nothing>"))},
        {"second root", good + QStringLiteral("<DataSet version=\"1\"/>")},
        {"trailing text", good + QStringLiteral("junk")},
        {"undefined entity", replaced(">x<", ">&bogus;<")},
        {"entity bomb", QStringLiteral("<!DOCTYPE d [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;\">]>") + replaced(">x<", ">&b;<")},
    };
    for (const auto& c : cases)
    {
        CaseTable table;
        table.SetAsString(QStringLiteral("ParmName"), table.InsertRow(0), QStringLiteral("kept"));
        const QString before = Dump(table);
        EXPECT_FALSE(table.LoadDataSetXMLBuf_NoDataBefore(c.xml)) << c.what;
        EXPECT_EQ(Dump(table), before) << c.what;
    }
}

TEST(DataSetXmlTest, CommentsAndWhitespaceBetweenElementsAreAccepted)
{
    QString xml = GoodBuffer();
    xml.replace(QStringLiteral("<Rows>"), QStringLiteral("<!-- rows --><Rows>\r\n\t"));
    xml = QStringLiteral("<?xml version=\"1.0\"?>\n") + xml + QStringLiteral("\n<!-- end -->\n");
    CaseTable table;
    ASSERT_TRUE(table.LoadDataSetXMLBuf_NoDataBefore(xml));
    CaseTable plain;
    ASSERT_TRUE(plain.LoadDataSetXMLBuf_NoDataBefore(GoodBuffer()));
    EXPECT_EQ(Dump(table), Dump(plain));
}

TEST(DataSetXmlTest, NamesThatXmlCannotCarryMakeSaveFail)
{
    NDataModelDataSet table;
    table.AddField(QStringLiteral("bad\x02name"), FT_String);
    QString xml = QStringLiteral("untouched");
    EXPECT_FALSE(table.SaveDataSetXMLBuf_NoDelete(xml));
    EXPECT_EQ(xml, QStringLiteral("untouched"));

    NDataModelDataSet tabs;
    tabs.SetTableName(QStringLiteral("a\tb\r\nc"));
    tabs.AddField(QStringLiteral("名 称\n"), FT_String);
    NDataModelDataSet loaded;
    ASSERT_TRUE(loaded.LoadDataSetXMLBuf_NoDataBefore(Save(tabs)));
    EXPECT_EQ(loaded.GetTableName(), QStringLiteral("a\tb\r\nc"));
    EXPECT_EQ(loaded.GetFieldName(0), QStringLiteral("名 称\n"));
}
