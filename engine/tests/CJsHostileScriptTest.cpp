#include "CMacroImplement.h"
#include "CScriptHost.h"
#include "EngineTestSupport.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
class HostileScriptTest : public EngineTest
{
protected:
    CScriptHost m_host;
};

TEST_F(HostileScriptTest, EndlessLoopRunsOutOfTimeWhereItWas)
{
    SetBudget(200);
    const QString script = u"var i = 0;\r\nwhile (true) {\r\n  i++;\r\n}"_s;
    EXPECT_FALSE(m_host.ExecuteStatement(script));
    const QString error = m_host.GetErrorText();
    const QRegularExpressionMatch match =
        QRegularExpression(u"^Error: 脚本运行超时\\(超过200毫秒\\), (.*); in line (\\d+)$"_s).match(error);
    ASSERT_TRUE(match.hasMatch()) << error.toStdString();
    const int line = match.captured(2).toInt();
    ASSERT_TRUE(line == 2 || line == 3) << line;
    EXPECT_EQ(match.captured(1), script.split(u"\r\n"_s)[line - 1]);
    EXPECT_EQ(m_host.Evaluate(u"i > 0"_s).toString(), u"true"_s); // what ran stays
}

// Each script fails with its error (null: it runs out of a 150 ms budget), nothing after the
// hostile part runs, queued jobs included, and the host runs the next script on the full budget.
TEST_F(HostileScriptTest, ScriptCannotCatchOrOutlastTheTimeoutNorRecurseOrGrowWithoutEnd)
{
    const struct { const char *script, *error, *after; } cases[] = {
        {"try { for (;;) {} } catch (e) {}\r\nvar after = 1;", nullptr, "undefined"},
        {"try { for (;;) {} } finally { for (;;) {} }\r\nvar after = 1;", nullptr, "undefined"},
        {"function f() { try { return f(); } catch (e) { return f(); } }\r\nwhile (true) { try { f(); } catch (e) {} }",
         nullptr, "undefined"},
        {"var hits = 0;\r\nPromise.resolve().then(function () { for (;;) {} });\r\n"
         "Promise.resolve().then(function () { hits++; });", nullptr, "undefined0"},
        {"(function again() { Promise.resolve().then(again); })();", nullptr, "undefined"},
        {"var o = { get x() { return this.x; } };\r\no.x;", "Error: too much recursion, ", "undefined"},
        {"var s = { toString: function () { return '' + s; } };\r\nString(s);", "Error: too much recursion, ", "undefined"},
        {"var s = 'x';\r\nwhile (true) s += s;", "Error: allocation size overflow, while (true) s += s;; in line 2",
         "undefined"},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.script);
        m_host.ResetScript();
        SetBudget(c.error ? HostContext::kDefaultScriptBudgetMs : 150);
        EXPECT_FALSE(m_host.ExecuteStatement(U8(c.script)));
        SetBudget(HostContext::kDefaultScriptBudgetMs);
        const QString error = m_host.GetErrorText();
        EXPECT_TRUE(error.startsWith(c.error ? U8(c.error) : u"Error: 脚本运行超时(超过150毫秒), "_s)) << error.toStdString();
        EXPECT_EQ(m_host.Evaluate(u"typeof after + (typeof hits == 'number' ? hits : '')"_s).toString(), U8(c.after));
        EXPECT_TRUE(m_host.ExecuteStatement(u"var fine = 1;"_s));
    }
}

TEST_F(HostileScriptTest, BudgetIsReadForEveryRun)
{
    const struct { int budgetMs, busyMs; bool ok; } cases[] = {
        {0, 300, true}, {2000, 50, true}, {100, 3000, false}, {5000, 50, true}};
    for (const auto& c : cases)
    {
        SetBudget(c.budgetMs);
        EXPECT_EQ(m_host.ExecuteStatement(u"var t = Date.now(); while (Date.now() - t < %1) {}"_s.arg(c.busyMs)), c.ok)
            << c.budgetMs << " " << c.busyMs;
    }
}

TEST_F(HostileScriptTest, OutputWhoseConversionNeverEndsIsMissing)
{
    SetBudget(200);
    CMacroImplement macro;
    CArray<CMacroParam> outputs = Outputs({"A", "B"});
    ASSERT_EQ(macro.ExecuteScript(u"var A = { toString: function () { for (;;) {} } };\r\nvar B = 2;"_s, outputs), 1);
    EXPECT_EQ(Values(outputs), (QStringList{u"参数不存在!"_s, u"2"_s}));
}

TEST_F(HostileScriptTest, HeapLimitEndsAnAllocatingScriptInsideOrOutsideTheGcHeap)
{
    CJsRuntime::Current()->SetHeapLimitBytes(32u * 1024u * 1024u);
    for (const char* push : {"[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12]", "a.length"})
    {
        const QString loop = u"while (true) a.push(%1);"_s.arg(U8(push));
        m_host.ResetScript();
        EXPECT_FALSE(m_host.ExecuteStatement(u"var a = [];\r\n"_s + loop));
        EXPECT_EQ(m_host.GetErrorText(), u"Error: 脚本内存不足(堆上限32 MB), %1; in line 2"_s.arg(loop));
        m_host.ResetScript();
        EXPECT_EQ(m_host.Evaluate(u"[1, 2, 3].map(function (x) { return x * 2; })"_s).toString(), u"2,4,6"_s);
    }
}

TEST_F(HostileScriptTest, ThousandsOfResetsKeepWorking)
{
    // Old globals are only reclaimed by the scheduled collections.
    CMacroImplement macro;
    const CArray<CMacroParam> inputs = Inputs({{"L", "3"}});
    CArray<CMacroParam> outputs = Outputs({"A"});
    for (int run = 0; run < 3000; ++run)
    {
        const QString script = u"var big = new Array(1000).fill(%1);\r\nvar A = L * %1;"_s.arg(run);
        ASSERT_EQ(macro.ExecuteScript(script, inputs, outputs), 1) << run << macro.GetError().toStdString();
        ASSERT_EQ(outputs[0].GetValue(), QString::number(3 * run));
    }
}
} // namespace
