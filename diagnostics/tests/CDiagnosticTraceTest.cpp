#include "CDiagnosticTrace.h"
#include "CParms.h"
#include "Diagnostics.h"
#include "NDataModelDataSet.h"

#include <gtest/gtest.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString Rule(int before, const char* word) { return QString(before, u'-') + QLatin1String(word) + QString(22, u'-') + u"\r\n"_s; }

// The trace of a data set whose rows print as `rows`.
QString DataSetTrace(const QString& rows)
{
    return u"\r\n*************** TraceDataSet *****************\r\n"_s + Rule(22, " Begin ") + rows + Rule(21, " End ");
}

} // namespace

TEST(CDiagnosticTraceTest, RowsPrintEachFieldByItsType)
{
    EXPECT_EQ(QXCommon::TraceDataSet(nullptr), u"ERROR: dataset是空指针！"_s);
    NDataModelDataSet table, noFields;
    for (const auto& [name, type] : {std::pair{"s", FT_String}, {"i", FT_Integer}, {"d", FT_Double}, {"l", FT_LongString}})
        table.AddField(QString::fromLatin1(name), type);
    EXPECT_EQ(QXCommon::TraceDataSet(&table), DataSetTrace(QString()));
    noFields.InsertRow(0);
    EXPECT_EQ(QXCommon::TraceDataSet(&noFields), DataSetTrace(u"\r\n"_s));
    int r = table.InsertRow(0);
    table.SetAsString(u"s"_s, r, u"钢筋"_s);
    table.SetAsInteger(u"i"_s, r, -12);
    table.SetAsDouble(u"d"_s, r, 2.0 / 3.0);
    table.SetAsString(u"l"_s, r, u"a=b,c"_s);
    table.InsertRow(0); // nothing set: numbers print as zero
    r = table.InsertRow(0);
    table.SetAsDouble(u"d"_s, r, -1234.5675);
    table.SetAsInteger(u"i"_s, r, 2147483647);
    EXPECT_EQ(QXCommon::TraceDataSet(&table), DataSetTrace(u"s=钢筋,i=-12,d=0.667,l=a=b,c,\r\ns=,i=0,d=0.000,l=,\r\n"
                                                           "s=,i=2147483647,d=-1234.568,l=,\r\n"_s));
}

TEST(CDiagnosticTraceTest, ValuesOf50CharactersOrMoreAreReplacedAndLinesOf512OrMoreCutTo511)
{
    // Eleven fields "fNN=" + 40 characters + "," (45 each, 495 in all), then "g=" + value + ",". Chinese
    // counts per character, not per byte.
    for (const auto& [lastLength, printedLength] : {std::pair{12, 510}, {13, 511}, {14, 511}, {49, 511}, {50, 511}}) {
        NDataModelDataSet table;
        const int row = table.InsertRow(0);
        QString full;
        for (int f = 10; f <= 21; ++f) {
            const QString name = f < 21 ? u"f%1"_s.arg(f) : u"g"_s;
            const QString value = f < 21 ? QString(40, u'x') : QString(lastLength, QChar(0x94A2));
            table.AddField(name, FT_String);
            table.SetAsString(name, row, value);
            full += name + u'=' + (value.size() < 50 ? value : u"too-large-Parm"_s) + u',';
        }
        EXPECT_EQ(QXCommon::TraceDataSet(&table), DataSetTrace(full.left(printedLength) + u"\r\n"_s)) << lastLength;
    }
}

TEST(CDiagnosticTraceTest, ParmsPrintNameValueTypeAndDescriptionButNoValueOf200OrMore)
{
    EXPECT_EQ(QXCommon::TraceCParms(nullptr), u"ERROR: CParms是空指针！"_s);
    const struct { QString name, value; int type; QString des, line; } cases[] = {
        {"d", "25", 1, "直径", "d=25<1> //直径"}, {"name", "HRB400", 0, QString(), "name=HRB400<0> //"},
        {"x", QString(), -3, "a // b", "x=<-3> //a // b"},
        {"big", QString(199, '7'), 2, "说明", "big=" + QString(199, '7') + "<2> //说明"},
        {"big", QString(200, '7'), 2, "说明", "big= <too large> //说明"}};
    const QString head = u"\r\n*************** TraceCParms *****************\r\n"_s;
    CParms all, empty;
    QString lines;
    for (const auto& c : cases) {
        all.AddParm(c.name, c.value, c.type, c.des);
        lines += c.line + "\r\n";
    }
    EXPECT_EQ(QXCommon::TraceCParms(&all), head + lines + Rule(22, " End "));
    EXPECT_EQ(QXCommon::TraceCParms(&empty), head + Rule(22, " End "));
}
