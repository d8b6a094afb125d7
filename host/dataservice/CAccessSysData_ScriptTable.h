#pragma once
#include "NDataModelDataSet.h"

#include <QString>
#include <memory>

// What the host's two script tables (Macros, MacrosV2) share: key_ch is the
// script's key (its relative path), content its text. Every call works on
// the calling thread's system-database service (CDBFactory::GetSingle(0)) and
// binds keys and texts as parameters, so any text is safe.
class CAccessSysData_ScriptTable
{
public:
    virtual ~CAccessSysData_ScriptTable();

protected:
    // Every row (key_ch, key_en, content, description) sorted on key_ch;
    // nullptr when the table cannot be read.
    static std::unique_ptr<NDataModelDataSet> ReadAll(const QString& table);
    // True when the key is found; `content` is left alone otherwise.
    static bool ReadContent(const QString& table, const QString& key, QString& content);
    // Replaces the content of the key, or adds the key (with empty key_en and
    // description). False for an empty key or when nothing was stored.
    static bool WriteContent(const QString& table, const QString& key, const QString& content);

private:
    static bool UpdateContent(const QString& table, const QString& key, const QString& content);
};

// One named script table: the three calls bound to the table `Name`.
template <const char16_t* Name>
class CAccessSysData_NamedScriptTable : public CAccessSysData_ScriptTable
{
public:
    static inline const QString kTableName = QString::fromUtf16(Name);

    // Every script (key_ch, key_en, content, description) in key order;
    // nullptr when the database cannot be read.
    static std::unique_ptr<NDataModelDataSet> GetDataSet() { return ReadAll(kTableName); }
    // True when the key is found, with its text in `content`.
    static bool GetMacroContent(const QString& key, QString& content) { return ReadContent(kTableName, key, content); }
    // True when the text is stored under the key; a new key is added.
    static bool SetMacroContent(const QString& key, const QString& content)
    {
        return WriteContent(kTableName, key, content);
    }
};
