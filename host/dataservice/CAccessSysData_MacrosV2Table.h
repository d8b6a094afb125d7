#pragma once
#include "CAccessSysData_ScriptTable.h"

inline constexpr char16_t kMacrosV2TableName[] = u"MacrosV2";

// The host's script table "MacrosV2" in the system database.
class CAccessSysData_MacrosV2Table : public CAccessSysData_NamedScriptTable<kMacrosV2TableName>
{
};
