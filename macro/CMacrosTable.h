#pragma once
#include "NDbDataSet.h"

// The host's script table "Macros" as a data set: key_ch (text, 200) is the
// primary key, then key_en, content and description (long text).
class CMacrosTable : public NDbDataSet
{
public:
    explicit CMacrosTable(CDataServiceAbsolute* db = nullptr);
    ~CMacrosTable() override;

    int CreateFields() override;
};
