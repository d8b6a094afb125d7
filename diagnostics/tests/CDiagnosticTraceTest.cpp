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

TEST(CDiagnosticTraceTest, RowsPrintEachFieldByItsTypeAndNullsGiveTheErrorText)
{
    EXPECT_EQ(QXCommon::TraceDataSet(nullptr), u"ERROR: dataset是空指针！"_s);
    EXPECT_EQ(QXCommon::TraceCParms(nullptr), u"ERROR: CParms是空指针！"_s);
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
