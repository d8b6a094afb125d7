#include "CMacrosTable.h"

#include "CSysMacrosTable.h"

CMacrosTable::CMacrosTable(CDataServiceAbsolute* db)
    : NDbDataSet(db)
{
    SetTableName(QStringLiteral("Macros"));
}

CMacrosTable::~CMacrosTable() = default;

int CMacrosTable::CreateFields()
{
    using Fields = CSysMacrosTable::CFieldInfo;
    AddField(Fields::key_ch, FT_String, 200);
    AddField(Fields::key_en, FT_LongString, 0);
    AddField(Fields::content, FT_LongString, 0);
    AddField(Fields::description, FT_LongString, 0);
    SetFieldPK(0, true);
    return GetFieldCount();
}
