#include "CScriptHost.h"
#include "EngineTestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
class GlobalClassTest : public EngineTest
{
protected:
    QString Eval(const char* expression) { return m_host.Evaluate(U8(expression)).toString(); }
    CScriptHost m_host;
};

// A fresh global finds every standard name on first use, whatever else was
// declared or looked up before it, and its prototype chain is there for
// names that are none of them.
TEST_F(GlobalClassTest, StandardNamesResolveInEveryFreshGlobal)
{
    const char* cases[][2] = { // expression, value
        {"typeof parseInt + typeof escape + typeof isFinite + typeof decodeURIComponent",
         "functionfunctionfunctionfunction"},
        {"[NaN, Infinity, typeof undefined, globalThis === this].join()", "NaN,Infinity,undefined,true"},
        {"[typeof Math.max, typeof JSON.stringify, typeof Reflect.ownKeys, typeof Proxy, typeof BigInt].join()",
         "function,function,function,function,function"},
        {"[typeof Array, typeof Map, typeof Promise, typeof Symbol.iterator, typeof RegExp].join()",
         "function,function,function,symbol,function"},
        {"var x = 1; this.hasOwnProperty('x') + ',' + typeof toString + ',' + typeof valueOf", "true,function,function"},
        {"typeof notDeclared + ',' + ('Math' in this) + ',' + ('nothing' in this)", "undefined,true,false"},
        {"var Math = 2; Math", "2"},
        {"Object.keys(globalThis).join()", "f1,f2,g"},
    };
    for (const auto& c : cases)
    {
        m_host.ResetScript();
        EXPECT_EQ(Eval("var f1 = 1, f2 = 2; function g() {} typeof g"), u"function"_s);
        EXPECT_EQ(Eval(c[0]), U8(c[1])) << c[0];
    }
}
} // namespace
