#pragma once
#include "CAccessSysData_ScriptTable.h"

// The host's script table "Macros" in the system database.
class CAccessSysData_MacrosTable : public CAccessSysData_ScriptTable
{
public:
    static inline const QString kTableName = QStringLiteral("Macros");

    // Every script (key_ch, key_en, content, description) in key order;
    // nullptr when the database cannot be read.
    static std::unique_ptr<NDataModelDataSet> GetDataSet();
    // True when the key is found, with its text in `content`.
    static bool GetMacroContent(const QString& key, QString& content);
    // True when the text is stored under the key; a new key is added.
    static bool SetMacroContent(const QString& key, const QString& content);
};
