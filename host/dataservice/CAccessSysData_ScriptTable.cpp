#include "CAccessSysData_ScriptTable.h"

#include "CDBFactory.h"
#include "CDataServiceAbsolute.h"
#include "CSysMacrosTable.h"
#include "NDbDataSet.h"

using Fields = CSysMacrosTable::CFieldInfo;

CAccessSysData_ScriptTable::~CAccessSysData_ScriptTable() = default;

std::unique_ptr<NDataModelDataSet> CAccessSysData_ScriptTable::ReadAll(const QString& table)
{
    auto set = std::make_unique<NDbDataSet>(CDBFactory::GetSingle(CDBFactory::kSystemDatabase));
    set->AddField(Fields::key_ch, FT_String, 200);
    set->AddField(Fields::key_en, FT_LongString, 0);
    set->AddField(Fields::content, FT_LongString, 0);
    set->AddField(Fields::description, FT_LongString, 0);
    set->SetFieldPK(0, true);
    set->SetTableName(table);
    const int rows = set->RetrieveByXml();
    // The service belongs to this thread; the caller may keep the rows longer.
    set->SetComDB(nullptr);
    if (rows < 0)
        return nullptr;
    set->Sort(Fields::key_ch, true);
    return set;
}

bool CAccessSysData_ScriptTable::ReadContent(const QString& table, const QString& key, QString& content)
{
    CDataServiceAbsolute* db = CDBFactory::GetSingle(CDBFactory::kSystemDatabase);
    QList<QVariantList> rows;
    const QString sql = QStringLiteral("select %1 from %2 where %3 = ?").arg(Fields::content, table, Fields::key_ch);
    if (!db || !db->Query(sql, {key}, rows) || rows.isEmpty())
        return false;
    content = rows.first().value(0).toString();
    return true;
}

bool CAccessSysData_ScriptTable::UpdateContent(const QString& table, const QString& key, const QString& content)
{
    CDataServiceAbsolute* db = CDBFactory::GetSingle(CDBFactory::kSystemDatabase);
    const QString sql = QStringLiteral("update %1 set %2 = ? where %3 = ?").arg(table, Fields::content, Fields::key_ch);
    int affected = 0;
    return db && db->ExecuteBound(sql, {content, key}, &affected) && affected > 0;
}

bool CAccessSysData_ScriptTable::WriteContent(const QString& table, const QString& key, const QString& content)
{
    CDataServiceAbsolute* db = CDBFactory::GetSingle(CDBFactory::kSystemDatabase);
    if (!db || key.isEmpty())
        return false;
    QString known;
    if (ReadContent(table, key, known))
        return UpdateContent(table, key, content);
    const QString sql = QStringLiteral("insert into %1 (%2, %3, %4, %5) values (?, ?, ?, ?)")
                            .arg(table, Fields::key_ch, Fields::key_en, Fields::content, Fields::description);
    if (db->ExecuteBound(sql, {key, QString(""), content, QString("")}))
        return true;
    // Another connection may have added the key in between.
    return UpdateContent(table, key, content);
}
