#include "CScriptHost.h"
#include "CodePage.h"
#include "EngineTestSupport.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>

namespace
{
class ScriptHostTest : public TempHomeTest
{
protected:
    QString Eval(const QString& expression) { return m_host.Evaluate(expression).toString(); }

    CScriptHost m_host;
};

TEST_F(ScriptHostTest, NothingSurvivesAReset)
{
    const char* cases[][4] = { // setup, probe, before the reset, after it
        {"var a = 5; let q = 1;", "typeof a + typeof q", "numbernumber", "undefinedundefined"},
        {"function g() { return 1; }", "typeof g", "function", "undefined"},
        {"globalThis.z = 'z';", "typeof z", "string", "undefined"},
        {"Math.max = function () { return -1; };", "Math.max(1, 2)", "-1", "2"},
        {"Array.prototype.sum = function () { return 9; };", "typeof [].sum", "function", "undefined"},
        {"String = function () { return 'p'; };", "String(5)", "p", "5"},
        {"Object.freeze(Object.prototype);", "Object.isFrozen(Object.prototype)", "true", "false"},
    };
    for (const auto& c : cases)
    {
        ASSERT_TRUE(m_host.ExecuteStatement(U8(c[0])));
        EXPECT_EQ(Eval(U8(c[1])), U8(c[2]));
        m_host.ResetScript();
        EXPECT_EQ(Eval(U8(c[1])), U8(c[3]));
    }
}

TEST_F(ScriptHostTest, ValuesComeBackAsJavaScriptText)
{
    const char* cases[][2] = { // nullptr: the empty variant
        {"1 / 3", "0.3333333333333333"}, {"0.1 + 0.2", "0.30000000000000004"}, {"1e21", "1e+21"}, {"1e-7", "1e-7"},
        {"-0", "0"}, {"1 / 0", "Infinity"}, {"0 / 0", "NaN"}, {"null", "null"}, {"[1, 2]", "1,2"},
        {"({})", "[object Object]"}, {"'钢筋'", "钢筋"}, {"Symbol('s')", "Symbol(s)"}, {"''", ""},
        {"undefined", nullptr}, {"var x = 1", nullptr}, {"notDeclared", nullptr}, {"1 +", nullptr}, {"", nullptr},
    };
    for (const auto& c : cases)
    {
        const QVariant value = m_host.Evaluate(U8(c[0]));
        EXPECT_EQ(value.isValid(), c[1] != nullptr) << c[0];
        EXPECT_TRUE(!c[1] || value.typeId() == QMetaType::QString) << c[0];
        EXPECT_EQ(value.toString(), U8(c[1] ? c[1] : "")) << c[0];
    }
}

TEST_F(ScriptHostTest, ProcedureListHoldsTheLoadedGlobalFunctions)
{
    EXPECT_EQ(m_host.GetLanguage(), QStringLiteral("JScript"));
    ASSERT_TRUE(m_host.AddScript(QString()));
    EXPECT_EQ(m_host.GetProcedureCount(), 0); // the standard classes are not listed
    ASSERT_TRUE(m_host.AddScript(QStringLiteral(
        "function foo(a) { return a * 2; }\r\nvar bar = function () {};\r\nvar n = 3;\r\nfunction 计算(x) { return x + 1; }")));
    ASSERT_EQ(m_host.GetProcedureCount(), 3);
    QStringList names;
    for (int i = -1; i <= m_host.GetProcedureCount(); ++i)
        names << m_host.GetProcedureName(i);
    EXPECT_TRUE(names.front().isEmpty() && names.back().isEmpty());
    names.sort();
    EXPECT_EQ(names, (QStringList{QString(), QString(), QStringLiteral("bar"), QStringLiteral("foo"), QStringLiteral("计算")}));
    ASSERT_NE(m_host.FindProcedure(QStringLiteral("foo")), nullptr);
    EXPECT_EQ(m_host.FindProcedure(QStringLiteral("foo"))->Name(), QStringLiteral("foo"));
    EXPECT_EQ(m_host.FindProcedure(QStringLiteral("Foo")), nullptr);
    EXPECT_EQ(m_host.FindProcedure(QStringLiteral("n")), nullptr);
}

TEST_F(ScriptHostTest, ListIsRebuiltByLoadsOnlyAndEmptiedByResetOrLanguage)
{
    ASSERT_TRUE(m_host.AddScript(QStringLiteral("function a() {}")));
    ASSERT_TRUE(m_host.ExecuteStatement(QStringLiteral("function late() {}")));
    EXPECT_EQ(m_host.GetProcedureCount(), 1);
    ASSERT_TRUE(m_host.AddScript(QString()));
    EXPECT_EQ(m_host.GetProcedureCount(), 2);
    m_host.ResetScript();
    EXPECT_EQ(m_host.GetProcedureCount(), 0);
    EXPECT_EQ(m_host.FindProcedure(QStringLiteral("a")), nullptr);
    ASSERT_TRUE(m_host.AddScript(QStringLiteral("var a = 1; function f() {}")));
    m_host.SetLanguage(QStringLiteral("JavaScript"));
    EXPECT_EQ(m_host.GetLanguage(), QStringLiteral("JavaScript"));
    EXPECT_EQ(m_host.GetProcedureCount(), 0);
    EXPECT_EQ(Eval(QStringLiteral("typeof a")), QStringLiteral("undefined"));
}

TEST_F(ScriptHostTest, FailingAddKeepsWhatRanBeforeTheError)
{
    EXPECT_FALSE(m_host.AddScript(QStringLiteral("function kept() { return 7; }\r\nvar a = 1;\r\nboom();\r\nvar b = 2;")));
    EXPECT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_EQ(Eval(QStringLiteral("a")), QStringLiteral("1"));
    EXPECT_FALSE(m_host.Evaluate(QStringLiteral("b")).isValid());
    EXPECT_EQ(m_host.GetErrorText(), QStringLiteral("Error: boom is not defined, boom();; in line 3"));
}

TEST_F(ScriptHostTest, RunProcedureCallsListedProceduresOnly)
{
    ASSERT_TRUE(m_host.AddScript(QStringLiteral(
        "function 拼接(a, b) { return a + b; }\r\nfunction kinds(a, b, c) { return typeof a + typeof b + typeof c; }\r\n"
        "function nothing() {}\r\nfunction bad() {\r\n  throw new Error('坏');\r\n}")));
    ASSERT_TRUE(m_host.ExecuteStatement(QStringLiteral("function unlisted() { return 1; }")));
    QVariant result;
    ASSERT_TRUE(m_host.RunProcedure(QStringLiteral("拼接"), {QStringLiteral("钢"), 1.5}, result));
    EXPECT_EQ(result.toString(), QStringLiteral("钢1.5"));
    ASSERT_TRUE(m_host.RunProcedure(QStringLiteral("kinds"), {true, QVariant(), QStringLiteral("s")}, result));
    EXPECT_EQ(result.toString(), QStringLiteral("booleanundefinedstring"));
    ASSERT_TRUE(m_host.RunProcedure(QStringLiteral("nothing"), {}, result));
    EXPECT_FALSE(result.isValid());
    result = QStringLiteral("kept");
    EXPECT_FALSE(m_host.RunProcedure(QStringLiteral("missing"), {}, result));
    EXPECT_FALSE(m_host.RunProcedure(QStringLiteral("unlisted"), {}, result));
    EXPECT_EQ(result.toString(), QStringLiteral("kept"));
    EXPECT_FALSE(m_host.RunProcedure(QStringLiteral("bad"), {}, result));
    EXPECT_EQ(m_host.GetErrorText(), QStringLiteral("Error: 坏,   throw new Error('坏');; in line 5"));
}

TEST_F(ScriptHostTest, ScriptsSeeStandardJavaScriptOnly)
{
    for (const char* name : {"print", "load", "os", "readline", "quit", "WebAssembly", "require", "process"})
        EXPECT_EQ(Eval(QStringLiteral("typeof ") + QLatin1String(name)), QStringLiteral("undefined")) << name;
    EXPECT_EQ(Eval(QStringLiteral("typeof JSON.parse + typeof Date")), QStringLiteral("functionfunction"));
}

TEST_F(ScriptHostTest, PromiseJobsRunAtTheEndOfEachRunAndRejectionsAreNoFailure)
{
    ASSERT_TRUE(m_host.ExecuteStatement(QStringLiteral(
        "var r = 0, q = 0;\r\nPromise.resolve(1).then(function (x) { r = x; });\r\n"
        "(async function () { await null; q = 2; })();")));
    EXPECT_EQ(Eval(QStringLiteral("r + ',' + q")), QStringLiteral("1,2"));
    // Within one text the jobs have not run yet when it ends.
    EXPECT_EQ(Eval(QStringLiteral("var late = 0; Promise.resolve().then(function () { late = 1; }); late")),
              QStringLiteral("0"));
    EXPECT_EQ(Eval(QStringLiteral("late")), QStringLiteral("1"));
    EXPECT_TRUE(m_host.ExecuteStatement(QStringLiteral("Promise.reject(new Error('x'));\r\n"
                                                       "Promise.resolve().then(function () { throw 1; });")));
    EXPECT_TRUE(m_host.ExecuteStatement(QStringLiteral("import('nothing');")));
    EXPECT_EQ(m_host.GetErrorText(), QStringLiteral("Error: , ; in line 0"));
}

TEST_F(ScriptHostTest, LoadScriptFileReadsCodePageTextUpToAZeroByte)
{
    const QString text = QStringLiteral("var s = '钢筋';\r\nfunction 长度() { return s.length; }");
    const QByteArray gbk = CodePage::FromUnicode(text, QByteArrayLiteral("GBK"));
    ASSERT_EQ(gbk.size(), text.size() + 4); // two bytes per Chinese character
    ASSERT_TRUE(QDir().mkpath(NativePath::Map(QStringLiteral("C:\\lib"))));
    ASSERT_TRUE(WriteBytes(NativePath::Map(QStringLiteral("C:\\lib\\a.js")), gbk + QByteArray("\0 not ( code", 12)));
    ASSERT_TRUE(m_host.LoadScriptFile(QStringLiteral("C:\\lib\\a.js")));
    EXPECT_EQ(Eval(QStringLiteral("s")), QStringLiteral("钢筋"));
    ASSERT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_EQ(m_host.GetProcedureName(0), QStringLiteral("长度"));
    // UTF-8 bytes are read as code-page characters.
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("u.js")), QStringLiteral("var s = '钢';").toUtf8()));
    ASSERT_TRUE(m_host.LoadScriptFile(HomeFile(QStringLiteral("u.js"))));
    EXPECT_EQ(Eval(QStringLiteral("s")), CodePage::ToUnicode(QByteArrayLiteral("\xe9\x92\xa2"), "GBK"));
}

TEST_F(ScriptHostTest, LoadScriptFileFailsSilentlyForMissingOrBadFiles)
{
    EXPECT_FALSE(m_host.LoadScriptFile(HomeFile(QStringLiteral("missing.js"))));
    EXPECT_FALSE(m_host.LoadScriptFile(Home()));
    EXPECT_FALSE(m_host.LoadScriptFile(QString()));
    EXPECT_TRUE(Ui().calls.isEmpty());
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("bad.js")), QByteArray("function ok() {}\r\nvar = ;")));
    EXPECT_FALSE(m_host.LoadScriptFile(HomeFile(QStringLiteral("bad.js"))));
    EXPECT_EQ(m_host.GetErrorText(), QStringLiteral("Error: missing variable name, var = ;; in line 2"));
}

TEST_F(ScriptHostTest, LoadScriptResourceReadsQtResources)
{
    ASSERT_TRUE(m_host.LoadScriptResource(QStringLiteral("resource_lib.js"), QStringLiteral("scripts")));
    EXPECT_EQ(Eval(QStringLiteral("面积(2, 3)")), QStringLiteral("6"));
    EXPECT_EQ(Eval(QStringLiteral("单位")), QStringLiteral("平方米"));
    EXPECT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_TRUE(m_host.LoadScriptResource(QStringLiteral("scripts/resource_lib.js")));
    EXPECT_FALSE(m_host.LoadScriptResource(QStringLiteral("no_such.js")));
}
} // namespace
