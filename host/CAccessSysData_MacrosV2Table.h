#pragma once
#include "CAccessSysData_ScriptTable.h"

// The host's script table "MacrosV2" in the system database.
class CAccessSysData_MacrosV2Table : public CAccessSysData_ScriptTable
{
public:
    static inline const QString kTableName = QStringLiteral("MacrosV2");

    // Every script (key_ch, key_en, content, description) in key order;
    // nullptr when the database cannot be read.
    static std::unique_ptr<NDataModelDataSet> GetDataSet();
    // True when the key is found, with its text in `content`.
    static bool GetMacroContent(const QString& key, QString& content);
    // True when the text is stored under the key; a new key is added.
    static bool SetMacroContent(const QString& key, const QString& content);
};
