#pragma once
#include "CMacro.h"
#include "CMacroDataManager.h"
#include "CMacroParamManager.h"
#include "DbBackendTest.h"
#include "MacroParamFields.h"

#include <QString>

// A rebar macro with two inputs and one output.
inline CMacro MakeRebarMacro(const QString& name = QStringLiteral("钢筋重量"))
{
    CMacro macro(3, name, QStringLiteral("每米重量"), QStringLiteral("var W = 0.00617 * d * d;\r\n"));
    macro.InputParams().Add(MakeParam(QStringLiteral("d"), QStringLiteral("12"), QStringLiteral("直径"), 1));
    macro.InputParams().Add(MakeParam(QStringLiteral("grade"), QStringLiteral("HRB400"), QStringLiteral("牌号"), 0));
    macro.OutputParams().Add(MakeParam(QStringLiteral("W"), QString(""), QStringLiteral("kg/m"), 1));
    return macro;
}

// The macro and parameter stores over a fresh system database of each backend.
class MacroStoreFixture : public DbBackendTest
{
protected:
    void ExpectTablesHold(int macros, int params)
    {
        EXPECT_EQ(CountRows(QStringLiteral("SC_MACRO_DEFINE")), macros);
        EXPECT_EQ(CountRows(QStringLiteral("SC_MACROPARAM")), params);
    }

    CMacroDataManager m_macros;
    CMacroParamManager m_params;
};
