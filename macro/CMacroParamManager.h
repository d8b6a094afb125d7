#pragma once
#include "CArray.h"
#include "CMacroParam.h"

// The rows of SC_MACROPARAM, one per parameter of a stored macro, on the
// system-database service of the calling thread (CDBFactory::GetSingle(0)).
// No state; every statement commits by itself.
class CMacroParamManager
{
public:
    virtual ~CMacroParamManager();

    // The greatest ID of SC_MACROPARAM (0 for an empty table), or -1.
    int GetMaxParamId();
    // -1 on failure; otherwise the greatest ID read before the insert (not
    // the new row's ID: callers only test for -1).
    int InsertInputParam(int macroId, const CMacroParam& param);
    int InsertOutputParam(int macroId, const CMacroParam& param);
    // False when no row is found; the list is emptied and refilled otherwise.
    bool LoadInputParams(int macroId, CArray<CMacroParam>& params);
    bool LoadOutputParams(int macroId, CArray<CMacroParam>& params);

private:
    int InsertParam(int macroId, const CMacroParam& param, int direction);
    bool LoadParams(int macroId, int direction, CArray<CMacroParam>& params);
};
