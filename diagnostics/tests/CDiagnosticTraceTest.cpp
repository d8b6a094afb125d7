#include "CDiagnosticTrace.h"
#include "CParms.h"
#include "Diagnostics.h"
#include "NDataModelDataSet.h"

#include <gtest/gtest.h>

#include <ostream>
#include <utility>

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << text.toStdString();
}

namespace {

const QString kDataSetHead = QStringLiteral("\r\n*************** TraceDataSet *****************\r\n")
    + QString(22, QLatin1Char('-')) + QStringLiteral(" Begin ") + QString(22, QLatin1Char('-')) + QStringLiteral("\r\n");
const QString kDataSetEnd = QString(21, QLatin1Char('-')) + QStringLiteral(" End ") + QString(22, QLatin1Char('-'))
    + QStringLiteral("\r\n");
const QString kParmsHead = QStringLiteral("\r\n*************** TraceCParms *****************\r\n");
const QString kParmsEnd = QString(22, QLatin1Char('-')) + QStringLiteral(" End ") + QString(22, QLatin1Char('-'))
    + QStringLiteral("\r\n");

// Four fields, one of each type.
void AddTypedFields(NDataModelDataSet& table)
{
    for (const auto& [name, type] : {std::pair{"s", FT_String}, {"i", FT_Integer}, {"d", FT_Double}, {"l", FT_LongString}})
        table.AddField(QString::fromLatin1(name), type);
}

} // namespace

TEST(CDiagnosticTraceTest, NullAndEmptyDataSets)
{
    EXPECT_EQ(QXCommon::TraceDataSet(nullptr), QStringLiteral("ERROR: dataset是空指针！"));
    NDataModelDataSet table;
    AddTypedFields(table);
    EXPECT_EQ(QXCommon::TraceDataSet(&table), kDataSetHead + kDataSetEnd);
    NDataModelDataSet noFields;
    noFields.InsertRow(0);
    EXPECT_EQ(QXCommon::TraceDataSet(&noFields), kDataSetHead + QStringLiteral("\r\n") + kDataSetEnd);
}

TEST(CDiagnosticTraceTest, RowsPrintEachFieldByItsType)
{
    NDataModelDataSet table;
    AddTypedFields(table);
    int r = table.InsertRow(0);
    table.SetAsString(QStringLiteral("s"), r, QStringLiteral("钢筋"));
    table.SetAsInteger(QStringLiteral("i"), r, -12);
    table.SetAsDouble(QStringLiteral("d"), r, 2.0 / 3.0);
    table.SetAsString(QStringLiteral("l"), r, QStringLiteral("a=b,c"));
    table.InsertRow(0); // nothing set: numbers print as zero
    r = table.InsertRow(0);
    table.SetAsDouble(QStringLiteral("d"), r, -1234.5675);
    table.SetAsInteger(QStringLiteral("i"), r, 2147483647);
    EXPECT_EQ(QXCommon::TraceDataSet(&table),
              kDataSetHead + QStringLiteral("s=钢筋,i=-12,d=0.667,l=a=b,c,\r\n")
                  + QStringLiteral("s=,i=0,d=0.000,l=,\r\n")
                  + QStringLiteral("s=,i=2147483647,d=-1234.568,l=,\r\n") + kDataSetEnd);
}

TEST(CDiagnosticTraceTest, ValuesOfFiftyCharactersOrMoreAreReplaced)
{
    const struct
    {
        int length;
        bool printed;
    } cases[] = {{0, true}, {49, true}, {50, false}, {51, false}, {500, false}};
    for (const auto& c : cases)
    {
        NDataModelDataSet table;
        table.AddField(QStringLiteral("v"), FT_LongString);
        const QString value(c.length, QChar(0x94A2)); // Chinese counts per character, not per byte
        table.SetAsString(0, table.InsertRow(0), value);
        const QString line = QStringLiteral("v=") + (c.printed ? value : QStringLiteral("too-large-Parm"))
            + QStringLiteral(",\r\n");
        EXPECT_EQ(QXCommon::TraceDataSet(&table), kDataSetHead + line + kDataSetEnd) << c.length;
    }
}

TEST(CDiagnosticTraceTest, LinesOf512CharactersOrMoreAreCutTo511)
{
    // Eleven fields "fNN=" + 40 characters + "," (45 each, 495 in all), then
    // "g=" + value + ",": the line is 498 + the last value's length.
    const struct
    {
        int lastLength;
        int printedLength;
    } cases[] = {{12, 510}, {13, 511}, {14, 511}, {15, 511}, {49, 511}};
    for (const auto& c : cases)
    {
        NDataModelDataSet table;
        const int row = table.InsertRow(0);
        QString full;
        for (int f = 10; f < 21; ++f)
        {
            const QString name = QStringLiteral("f%1").arg(f);
            table.AddField(name, FT_String);
            table.SetAsString(name, row, QString(40, QLatin1Char('x')));
            full += name + QLatin1Char('=') + QString(40, QLatin1Char('x')) + QLatin1Char(',');
        }
        table.AddField(QStringLiteral("g"), FT_String);
        const QString last(c.lastLength, QLatin1Char('y'));
        table.SetAsString(QStringLiteral("g"), row, last);
        full += QStringLiteral("g=") + last + QLatin1Char(',');
        ASSERT_EQ(full.size(), 498 + c.lastLength);
        EXPECT_EQ(QXCommon::TraceDataSet(&table),
                  kDataSetHead + full.left(c.printedLength) + QStringLiteral("\r\n") + kDataSetEnd)
            << c.lastLength;
    }
}

TEST(CDiagnosticTraceTest, ParmsPrintNameValueTypeAndDescriptionButNoValueOf200OrMore)
{
    EXPECT_EQ(QXCommon::TraceCParms(nullptr), QStringLiteral("ERROR: CParms是空指针！"));
    const struct
    {
        QString name, value;
        int type;
        QString des, line;
    } cases[] = {
        {"d", "25", 1, "直径", "d=25<1> //直径"},
        {"name", "HRB400", 0, QString(), "name=HRB400<0> //"},
        {"x", QString(), -3, "a // b", "x=<-3> //a // b"},
        {"big", QString(199, '7'), 2, "说明", "big=" + QString(199, '7') + "<2> //说明"},
        {"big", QString(200, '7'), 2, "说明", "big= <too large> //说明"},
        {"big", QString(1000, '7'), 2, "说明", "big= <too large> //说明"},
    };
    CParms all;
    QString lines;
    for (const auto& c : cases) {
        all.AddParm(c.name, c.value, c.type, c.des);
        lines += c.line + "\r\n";
    }
    EXPECT_EQ(QXCommon::TraceCParms(&all), kParmsHead + lines + kParmsEnd);
    CParms empty;
    EXPECT_EQ(QXCommon::TraceCParms(&empty), kParmsHead + kParmsEnd);
}
