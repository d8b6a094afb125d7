#include "CDiagnosticTrace.h"
#include "CParms.h"
#include "Diagnostics.h"
#include "NDataModelDataSet.h"

#include <gtest/gtest.h>

#include <ostream>

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

class TypedTable : public NDataModelDataSet
{
public:
    int CreateFields() override
    {
        AddField(QStringLiteral("s"), FT_String);
        AddField(QStringLiteral("i"), FT_Integer);
        AddField(QStringLiteral("d"), FT_Double);
        AddField(QStringLiteral("l"), FT_LongString);
        return GetFieldCount();
    }
};

} // namespace

TEST(CDiagnosticTraceTest, NullInputsGiveTheErrorTexts)
{
    EXPECT_EQ(QXCommon::TraceDataSet(nullptr), QStringLiteral("ERROR: dataset是空指针！"));
    EXPECT_EQ(QXCommon::TraceCParms(nullptr), QStringLiteral("ERROR: CParms是空指针！"));
}

TEST(CDiagnosticTraceTest, EmptyDataSetGivesBannerBeginAndEndOnly)
{
    TypedTable table;
    EXPECT_EQ(QXCommon::TraceDataSet(&table), kDataSetHead + kDataSetEnd);
    NDataModelDataSet noFields;
    noFields.InsertRow(0);
    EXPECT_EQ(QXCommon::TraceDataSet(&noFields), kDataSetHead + QStringLiteral("\r\n") + kDataSetEnd);
}

TEST(CDiagnosticTraceTest, RowsPrintEachFieldByItsType)
{
    TypedTable table;
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

TEST(CDiagnosticTraceTest, ParmsPrintNameValueTypeAndDescription)
{
    CParms parms;
    parms.AddParm(QStringLiteral("d"), QStringLiteral("25"), 1, QStringLiteral("直径"));
    parms.AddParm(QStringLiteral("name"), QStringLiteral("HRB400"), 0);
    parms.AddParm(QStringLiteral("x"), QString(), -3, QStringLiteral("a // b"));
    EXPECT_EQ(QXCommon::TraceCParms(&parms), kParmsHead + QStringLiteral("d=25<1> //直径\r\n")
                                                 + QStringLiteral("name=HRB400<0> //\r\n")
                                                 + QStringLiteral("x=<-3> //a // b\r\n") + kParmsEnd);
    CParms empty;
    EXPECT_EQ(QXCommon::TraceCParms(&empty), kParmsHead + kParmsEnd);
}

TEST(CDiagnosticTraceTest, ParmValuesOf200CharactersOrMoreAreNotPrinted)
{
    const struct
    {
        int length;
        bool printed;
    } cases[] = {{199, true}, {200, false}, {1000, false}};
    for (const auto& c : cases)
    {
        CParms parms;
        const QString value(c.length, QLatin1Char('7'));
        parms.AddParm(QStringLiteral("big"), value, 2, QStringLiteral("说明"));
        const QString line = c.printed ? QStringLiteral("big=") + value + QStringLiteral("<2> //说明\r\n")
                                       : QStringLiteral("big= <too large> //说明\r\n");
        EXPECT_EQ(QXCommon::TraceCParms(&parms), kParmsHead + line + kParmsEnd) << c.length;
    }
}
