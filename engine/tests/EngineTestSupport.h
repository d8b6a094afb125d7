#pragma once
#include "CArray.h"
#include "CJsParserOpr.h"
#include "CJsRuntime.h"
#include "CMacroParam.h"
#include "CTimingLog.h"
#include "HostContext.h"
#include "TestEnvironment.h"

#include <QStringList>
#include <initializer_list>
#include <ostream>

// Lets GoogleTest show QString values as text in failure messages.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline QString U8(const char* text) { return QString::fromUtf8(text); }

// A macro parameter of the given type (1: number, 0: text).
inline CMacroParam Param(const QString& name, const QString& value, int type = 1)
{
    CMacroParam param(name, value, QStringLiteral("说明"));
    param.SetDataType(static_cast<std::uint32_t>(type));
    return param;
}

struct ParamSpec { QString name, value; int type = 1; };
inline CArray<CMacroParam> Inputs(std::initializer_list<ParamSpec> specs)
{
    CArray<CMacroParam> params;
    for (const ParamSpec& spec : specs)
        params.Add(Param(spec.name, spec.value, spec.type));
    return params;
}

// Outputs hold "old" until a run reads them.
inline CArray<CMacroParam> Outputs(const QStringList& names)
{
    CArray<CMacroParam> outputs;
    for (const QString& name : names)
        outputs.Add(Param(name, QStringLiteral("old")));
    return outputs;
}

inline QStringList Values(const CArray<CMacroParam>& params)
{
    QStringList values;
    for (const CMacroParam& param : params)
        values << param.GetValue();
    return values;
}

// Every test starts without the shared parser scope or earlier timings, and
// leaves the thread's engine as it found it: budget and heap limit put back.
class EngineTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        CJsParserOpr::Release();
        CTimingLog::Instance().Clear();
        m_heapLimit = CJsRuntime::Current()->HeapLimitBytes();
    }
    void TearDown() override
    {
        CJsRuntime::Current()->SetHeapLimitBytes(m_heapLimit);
        SetBudget(HostContext::kDefaultScriptBudgetMs);
        CJsParserOpr::Release();
        TempHomeTest::TearDown();
    }
    static void SetBudget(int ms) { HostContext::Instance().SetScriptTimeBudgetMs(ms); }

    std::uint32_t m_heapLimit = 0;
};
