#include "CTestCaseInfoTable.h"

int CTestCaseInfoTable::CreateFields()
{
    // ParmMode is 1 on rows made from a global-parameter text, unset elsewhere.
    AddField(ParmMode, FT_Integer);
    AddField(ParmName, FT_LongString);
    AddField(ParmValue, FT_LongString);
    AddField(ParmMsg, FT_LongString);
    SetTableName(TableName);
    return GetFieldCount();
}
