#include "CDiagnosticTrace.h"
#include "CParms.h"
#include "Diagnostics.h"
#include "NDataModelDataSet.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(CDiagnosticTraceTest, NullsGiveTheErrorTextInsteadOfADump)
{
    EXPECT_EQ(QXCommon::TraceDataSet(nullptr), u"ERROR: dataset是空指针！"_s);
    EXPECT_EQ(QXCommon::TraceCParms(nullptr), u"ERROR: CParms是空指针！"_s);
}
