#include "CAccessSysData_MacrosV2Table.h"

std::unique_ptr<NDataModelDataSet> CAccessSysData_MacrosV2Table::GetDataSet()
{
    return ReadAll(kTableName);
}

bool CAccessSysData_MacrosV2Table::GetMacroContent(const QString& key, QString& content)
{
    return ReadContent(kTableName, key, content);
}

bool CAccessSysData_MacrosV2Table::SetMacroContent(const QString& key, const QString& content)
{
    return WriteContent(kTableName, key, content);
}
