#include "CSysDataSchema.h"

#include "CDataServiceAbsolute.h"

namespace {

QString ScriptTable(const char* name)
{
    return QStringLiteral("create table if not exists %1 (key_ch text primary key, key_en text, "
                          "content text, description text)")
        .arg(QLatin1String(name));
}

} // namespace

QStringList CSysDataSchema::Statements()
{
    return {
        QStringLiteral("create table if not exists SC_MACRO_DEFINE (ID integer primary key, NAME text, "
                       "CONTENT text, TYPE integer, DESCRIPTION text)"),
        QStringLiteral("create table if not exists SC_MACROPARAM (ID integer primary key, NAME text, "
                       "VALUE text, DESCRIPTION text, TYPE integer, MACROID integer, DATATYPE integer)"),
        // Parameters are always read by their macro.
        QStringLiteral("create index if not exists SC_MACROPARAM_MACROID on SC_MACROPARAM (MACROID)"),
        ScriptTable("Macros"),
        ScriptTable("MacrosV2"),
    };
}

bool CSysDataSchema::Create(CDataServiceAbsolute& db)
{
    for (const QString& statement : Statements()) {
        if (!db.ExecuteNonQuery(statement))
            return false;
    }
    return true;
}
