#pragma once
#include <QStringList>

class CDataServiceAbsolute;

// The tables of a system database: the macro store (SC_MACRO_DEFINE,
// SC_MACROPARAM, columns in the order the positional inserts use) and the
// host's script tables Macros and MacrosV2. The same statements run on SQLite
// and PostgreSQL; tables that exist already are left alone.
class CSysDataSchema
{
public:
    static QStringList Statements();
    // Runs every statement; false at the first failure (GetError of `db`).
    static bool Create(CDataServiceAbsolute& db);
};
