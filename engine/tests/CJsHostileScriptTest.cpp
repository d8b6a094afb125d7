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
    // Runs that must succeed get the full budget, so a busy machine cannot fail them.
    static void RestoreBudget() { SetBudget(HostContext::kDefaultScriptBudgetMs); }
    // Runs the script on a short budget; true when it ran out of time.
    bool TimesOut(const QString& script, int ms = 150)
    {
        SetBudget(ms);
        const bool failed = !m_host.ExecuteStatement(script);
        RestoreBudget();
        return failed && m_host.GetErrorText().startsWith(u"Error: 脚本运行超时(超过%1毫秒), "_s.arg(ms));
    }
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

TEST_F(HostileScriptTest, ScriptCannotCatchOrOutlastTheTimeout)
{
    const char* scripts[] = {
        "try { for (;;) {} } catch (e) {}\r\nvar after = 1;",
        "try { for (;;) {} } finally { for (;;) {} }\r\nvar after = 1;",
        "function f() { try { return f(); } catch (e) { return f(); } }\r\nwhile (true) { try { f(); } catch (e) {} }",
        "var hits = 0;\r\nPromise.resolve().then(function () { for (;;) {} });\r\nPromise.resolve().then(function () { hits++; });",
        "(function again() { Promise.resolve().then(again); })();",
    };
    for (const char* script : scripts)
    {
        m_host.ResetScript();
        EXPECT_TRUE(TimesOut(U8(script))) << script;
        // Nothing after the endless part ran, queued jobs included.
        EXPECT_EQ(m_host.Evaluate(u"typeof after + (typeof hits == 'number' ? hits : '')"_s).toString(),
                  script[0] == 'v' ? u"undefined0"_s : u"undefined"_s) << script;
        EXPECT_TRUE(m_host.ExecuteStatement(u"var fine = 1;"_s)) << script;
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
        EXPECT_TRUE(m_host.ExecuteStatement(u"var b = [1, 2, 3].map(function (x) { return x * 2; });"_s));
        EXPECT_EQ(m_host.Evaluate(u"b"_s).toString(), u"2,4,6"_s);
    }
}

TEST_F(HostileScriptTest, RunawayRecursionAndOversizedStringsAreErrors)
{
    const char* cases[][2] = {
        {"var o = { get x() { return this.x; } };\r\no.x;", "Error: too much recursion, "},
        {"var s = { toString: function () { return '' + s; } };\r\nString(s);", "Error: too much recursion, "},
        {"var s = 'x';\r\nwhile (true) s += s;", "Error: allocation size overflow, while (true) s += s;; in line 2"},
    };
    for (const auto& c : cases)
    {
        m_host.ResetScript();
        EXPECT_FALSE(m_host.ExecuteStatement(U8(c[0]))) << c[0];
        EXPECT_TRUE(m_host.GetErrorText().startsWith(U8(c[1]))) << c[0];
        EXPECT_TRUE(m_host.ExecuteStatement(u"var fine = 1;"_s)) << c[0];
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
