#include "CDiagnosticTrace.h"
#include "CParms.h"
#include "Diagnostics.h"
#include "NDataModelDataSet.h"

#include <gtest/gtest.h>

#include <ostream>
#include <utility>

using namespace Qt::StringLiterals;

inline void PrintTo(const QString& text, std::ostream* out) { *out << text.toStdString(); }

namespace {

QString Rule(int before, const char* word) { return QString(before, u'-') + QLatin1String(word) + QString(22, u'-') + u"\r\n"_s; }

const QString kDataSetHead = u"\r\n*************** TraceDataSet *****************\r\n"_s + Rule(22, " Begin ");
const QString kDataSetEnd = Rule(21, " End ");
const QString kParmsHead = u"\r\n*************** TraceCParms *****************\r\n"_s;
const QString kParmsEnd = Rule(22, " End ");

// Four fields, one of each type.
void AddTypedFields(NDataModelDataSet& table)
{
    for (const auto& [name, type] : {std::pair{"s", FT_String}, {"i", FT_Integer}, {"d", FT_Double}, {"l", FT_LongString}})
        table.AddField(QString::fromLatin1(name), type);
}

} // namespace

TEST(CDiagnosticTraceTest, NullAndEmptyDataSets)
{
    EXPECT_EQ(QXCommon::TraceDataSet(nullptr), u"ERROR: dataset是空指针！"_s);
    NDataModelDataSet table, noFields;
    AddTypedFields(table);
    EXPECT_EQ(QXCommon::TraceDataSet(&table), kDataSetHead + kDataSetEnd);
    noFields.InsertRow(0);
    EXPECT_EQ(QXCommon::TraceDataSet(&noFields), kDataSetHead + u"\r\n"_s + kDataSetEnd);
}

TEST(CDiagnosticTraceTest, RowsPrintEachFieldByItsType)
{
    NDataModelDataSet table;
    AddTypedFields(table);
    int r = table.InsertRow(0);
    table.SetAsString(u"s"_s, r, u"钢筋"_s);
    table.SetAsInteger(u"i"_s, r, -12);
    table.SetAsDouble(u"d"_s, r, 2.0 / 3.0);
    table.SetAsString(u"l"_s, r, u"a=b,c"_s);
    table.InsertRow(0); // nothing set: numbers print as zero
    r = table.InsertRow(0);
    table.SetAsDouble(u"d"_s, r, -1234.5675);
    table.SetAsInteger(u"i"_s, r, 2147483647);
    EXPECT_EQ(QXCommon::TraceDataSet(&table), kDataSetHead + u"s=钢筋,i=-12,d=0.667,l=a=b,c,\r\ns=,i=0,d=0.000,l=,\r\n"_s
                                                  + u"s=,i=2147483647,d=-1234.568,l=,\r\n"_s + kDataSetEnd);
}

TEST(CDiagnosticTraceTest, ValuesOfFiftyCharactersOrMoreAreReplaced)
{
    const struct { int length; bool printed; } cases[] = {{0, true}, {49, true}, {50, false}, {51, false}, {500, false}};
    for (const auto& c : cases) {
        NDataModelDataSet table;
        table.AddField(u"v"_s, FT_LongString);
        const QString value(c.length, QChar(0x94A2)); // Chinese counts per character, not per byte
        table.SetAsString(0, table.InsertRow(0), value);
        const QString line = u"v="_s + (c.printed ? value : u"too-large-Parm"_s) + u",\r\n"_s;
        EXPECT_EQ(QXCommon::TraceDataSet(&table), kDataSetHead + line + kDataSetEnd) << c.length;
    }
}

TEST(CDiagnosticTraceTest, LinesOf512CharactersOrMoreAreCutTo511)
{
    // Eleven fields "fNN=" + 40 characters + "," (45 each, 495 in all), then
    // "g=" + value + ",": the line is 498 + the last value's length.
    const struct { int lastLength, printedLength; } cases[] = {{12, 510}, {13, 511}, {14, 511}, {15, 511}, {49, 511}};
    for (const auto& c : cases) {
        NDataModelDataSet table;
        const int row = table.InsertRow(0);
        QString full;
        for (int f = 10; f <= 21; ++f) {
            const QString name = f < 21 ? u"f%1"_s.arg(f) : u"g"_s;
            const QString value = f < 21 ? QString(40, u'x') : QString(c.lastLength, u'y');
            table.AddField(name, FT_String);
            table.SetAsString(name, row, value);
            full += name + u'=' + value + u',';
        }
        ASSERT_EQ(full.size(), 498 + c.lastLength);
        EXPECT_EQ(QXCommon::TraceDataSet(&table), kDataSetHead + full.left(c.printedLength) + u"\r\n"_s + kDataSetEnd)
            << c.lastLength;
    }
}

TEST(CDiagnosticTraceTest, ParmsPrintNameValueTypeAndDescriptionButNoValueOf200OrMore)
{
    EXPECT_EQ(QXCommon::TraceCParms(nullptr), u"ERROR: CParms是空指针！"_s);
    const struct { QString name, value; int type; QString des, line; } cases[] = {
        {"d", "25", 1, "直径", "d=25<1> //直径"},
        {"name", "HRB400", 0, QString(), "name=HRB400<0> //"},
        {"x", QString(), -3, "a // b", "x=<-3> //a // b"},
        {"big", QString(199, '7'), 2, "说明", "big=" + QString(199, '7') + "<2> //说明"},
        {"big", QString(200, '7'), 2, "说明", "big= <too large> //说明"},
        {"big", QString(1000, '7'), 2, "说明", "big= <too large> //说明"},
    };
    CParms all, empty;
    QString lines;
    for (const auto& c : cases) {
        all.AddParm(c.name, c.value, c.type, c.des);
        lines += c.line + "\r\n";
    }
    EXPECT_EQ(QXCommon::TraceCParms(&all), kParmsHead + lines + kParmsEnd);
    EXPECT_EQ(QXCommon::TraceCParms(&empty), kParmsHead + kParmsEnd);
}
