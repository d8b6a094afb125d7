#include "CAccessSysData_MacrosTable.h"

std::unique_ptr<NDataModelDataSet> CAccessSysData_MacrosTable::GetDataSet()
{
    return ReadAll(kTableName);
}

bool CAccessSysData_MacrosTable::GetMacroContent(const QString& key, QString& content)
{
    return ReadContent(kTableName, key, content);
}

bool CAccessSysData_MacrosTable::SetMacroContent(const QString& key, const QString& content)
{
    return WriteContent(kTableName, key, content);
}
