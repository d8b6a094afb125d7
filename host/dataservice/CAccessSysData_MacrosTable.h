#pragma once
#include "CAccessSysData_ScriptTable.h"

inline constexpr char16_t kMacrosTableName[] = u"Macros";

// The host's script table "Macros" in the system database.
class CAccessSysData_MacrosTable : public CAccessSysData_NamedScriptTable<kMacrosTableName>
{
};
