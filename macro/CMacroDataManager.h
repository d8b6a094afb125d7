#pragma once
#include "CArray.h"
#include "CMacro.h"
#include "CMacroParam.h"

#include <QString>

// Macros in SC_MACRO_DEFINE with their parameters in SC_MACROPARAM, on the
// system-database service of the calling thread (CDBFactory::GetSingle(0)).
// No state and no transactions: a failure half-way keeps what was written
// before it. A statement whose name, value or description holds a single
// quote is never sent and fails in its place; the steps before it stay.
class CMacroDataManager
{
public:
    virtual ~CMacroDataManager();

    // Init, then Connect on the system-database service.
    bool Connect(const QString& connection, const QString& user, const QString& password);
    // The greatest ID of SC_MACRO_DEFINE (0 for an empty table), or -1.
    int GetMaxMacroId();
    // The new macro's ID, or -1. The macro record itself is not changed.
    int InsertMacro(const CMacro& macro);
    // 1 on success, 0 when the first statement failed, -1 when a later step did.
    int UpdateMacro(int id, const CMacro& macro);
    bool DeleteMacro(int id);
    // The macro with its parameters; false also when it has no input or no
    // output parameter.
    bool LoadMacro(int id, CMacro& macro);
    // Every macro without parameters, in the database's order.
    bool LoadAllMacros(CArray<CMacro>& macros);
    bool SaveMacroParams(int id, const CArray<CMacroParam>& inputs, const CArray<CMacroParam>& outputs);
    bool DeleteMacroParams(int id);

private:
    bool WriteScript(int id, const QString& script);
};
