#include "CScriptHost.h"
#include "CodePage.h"
#include "NativePath.h"
#include "EngineTestSupport.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace
{
class ScriptHostTest : public TempHomeTest
{
protected:
    QString Eval(const QString& expression) { return m_host.Evaluate(expression).toString(); }

    CScriptHost m_host;
};

struct IsolationCase
{
    const char* name;
    const char* setup;
    const char* probe;
    const char* before; // value of the probe before the reset
    const char* after;  // and in the fresh scope
};

class ScriptHostResetTest : public TempHomeTest, public ::testing::WithParamInterface<IsolationCase>
{
};

TEST_P(ScriptHostResetTest, NothingSurvivesAReset)
{
    CScriptHost host;
    const IsolationCase& c = GetParam();
    ASSERT_TRUE(host.ExecuteStatement(QString::fromUtf8(c.setup)));
    EXPECT_EQ(host.Evaluate(QString::fromUtf8(c.probe)).toString(), QString::fromUtf8(c.before));
    host.ResetScript();
    EXPECT_EQ(host.Evaluate(QString::fromUtf8(c.probe)).toString(), QString::fromUtf8(c.after));
}

const IsolationCase kIsolationCases[] = {
    {"Variable", "var a = 5;", "typeof a", "number", "undefined"},
    {"Function", "function g() { return 1; }", "typeof g", "function", "undefined"},
    {"LetBinding", "let q = 1;", "typeof q", "number", "undefined"},
    {"GlobalThisProperty", "globalThis.z = 'z';", "typeof z", "string", "undefined"},
    {"PatchedMathMax", "Math.max = function () { return -1; };", "Math.max(1, 2)", "-1", "2"},
    {"PatchedPrototype", "Array.prototype.sum = function () { return 9; };", "typeof [].sum", "function", "undefined"},
    {"ReplacedString", "String = function () { return 'p'; };", "String(5)", "p", "5"},
    {"FrozenObject", "Object.freeze(Object.prototype);", "Object.isFrozen(Object.prototype)", "true", "false"},
};

INSTANTIATE_TEST_SUITE_P(Cases, ScriptHostResetTest, ::testing::ValuesIn(kIsolationCases),
                         [](const auto& info) { return std::string(info.param.name); });

struct ValueCase
{
    const char* expression;
    const char* text; // nullptr: the empty variant
};

class ScriptHostValueTest : public TempHomeTest, public ::testing::WithParamInterface<ValueCase>
{
};

TEST_P(ScriptHostValueTest, ValuesComeBackAsJavaScriptText)
{
    CScriptHost host;
    const QVariant value = host.Evaluate(QString::fromUtf8(GetParam().expression));
    if (!GetParam().text)
    {
        EXPECT_FALSE(value.isValid()) << value.toString().toStdString();
        return;
    }
    ASSERT_TRUE(value.isValid());
    EXPECT_EQ(value.typeId(), QMetaType::QString);
    EXPECT_EQ(value.toString(), QString::fromUtf8(GetParam().text));
}

const ValueCase kValueCases[] = {
    {"1200 * 2", "2400"},
    {"1 / 3", "0.3333333333333333"},
    {"0.1 + 0.2", "0.30000000000000004"},
    {"1e21", "1e+21"},
    {"1e-7", "1e-7"},
    {"-0", "0"},
    {"1 / 0", "Infinity"},
    {"0 / 0", "NaN"},
    {"true", "true"},
    {"null", "null"},
    {"[1, 2]", "1,2"},
    {"({})", "[object Object]"},
    {"'钢筋'", "钢筋"},
    {"'a\"b'", "a\"b"},
    {"Symbol('s')", "Symbol(s)"},
    {"''", ""},
    {"undefined", nullptr},
    {"var x = 1", nullptr},
    {"notDeclared", nullptr},
    {"1 +", nullptr},
    {"", nullptr},
};

INSTANTIATE_TEST_SUITE_P(Cases, ScriptHostValueTest, ::testing::ValuesIn(kValueCases));

TEST_F(ScriptHostTest, StartsWithJScriptAndNoProcedures)
{
    EXPECT_EQ(m_host.GetLanguage(), QStringLiteral("JScript"));
    ASSERT_TRUE(m_host.AddScript(QString()));
    // The standard classes are not the loaded code's functions.
    EXPECT_EQ(m_host.GetProcedureCount(), 0);
}

TEST_F(ScriptHostTest, ProcedureListHoldsTheLoadedGlobalFunctions)
{
    ASSERT_TRUE(m_host.AddScript(QStringLiteral(
        "function foo(a) { return a * 2; }\r\nvar bar = function () {};\r\nvar n = 3;\r\nfunction 计算(x) { return x + 1; }")));
    ASSERT_EQ(m_host.GetProcedureCount(), 3);
    QStringList names;
    for (int i = 0; i < m_host.GetProcedureCount(); ++i)
        names << m_host.GetProcedureName(i);
    names.sort();
    EXPECT_EQ(names, (QStringList{QStringLiteral("bar"), QStringLiteral("foo"), QStringLiteral("计算")}));
    ASSERT_NE(m_host.FindProcedure(QStringLiteral("foo")), nullptr);
    EXPECT_EQ(m_host.FindProcedure(QStringLiteral("foo"))->Name(), QStringLiteral("foo"));
    EXPECT_EQ(m_host.FindProcedure(QStringLiteral("Foo")), nullptr);
    EXPECT_EQ(m_host.FindProcedure(QStringLiteral("n")), nullptr);
}

TEST_F(ScriptHostTest, ProcedureNameOutsideTheListIsEmpty)
{
    ASSERT_TRUE(m_host.AddScript(QStringLiteral("function only() {}")));
    ASSERT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_EQ(m_host.GetProcedureName(0), QStringLiteral("only"));
    EXPECT_TRUE(m_host.GetProcedureName(-1).isEmpty());
    EXPECT_TRUE(m_host.GetProcedureName(1).isEmpty());
}

TEST_F(ScriptHostTest, ListIsRebuiltByLoadsOnlyAndEmptiedByReset)
{
    ASSERT_TRUE(m_host.AddScript(QStringLiteral("function a() {}")));
    ASSERT_TRUE(m_host.ExecuteStatement(QStringLiteral("function late() {}")));
    EXPECT_EQ(m_host.GetProcedureCount(), 1);
    ASSERT_TRUE(m_host.AddScript(QString()));
    EXPECT_EQ(m_host.GetProcedureCount(), 2);
    m_host.ResetScript();
    EXPECT_EQ(m_host.GetProcedureCount(), 0);
    EXPECT_EQ(m_host.FindProcedure(QStringLiteral("a")), nullptr);
}

TEST_F(ScriptHostTest, FailingAddKeepsWhatRanBeforeTheError)
{
    EXPECT_FALSE(m_host.AddScript(QStringLiteral("function kept() { return 7; }\r\nvar a = 1;\r\nboom();\r\nvar b = 2;")));
    EXPECT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_EQ(Eval(QStringLiteral("a")), QStringLiteral("1"));
    EXPECT_FALSE(m_host.Evaluate(QStringLiteral("b")).isValid());
    EXPECT_EQ(m_host.GetErrorText(), QStringLiteral("Error: boom is not defined, boom();; in line 3"));
}

TEST_F(ScriptHostTest, RunProcedureCallsWithArgumentsAndGivesTheResult)
{
    ASSERT_TRUE(m_host.AddScript(QStringLiteral(
        "function twice(a) { return a * 2; }\r\nfunction 拼接(a, b) { return a + b; }\r\n"
        "function kinds(a, b, c) { return typeof a + typeof b + typeof c; }\r\nfunction nothing() {}")));
    QVariant result;
    ASSERT_TRUE(m_host.RunProcedure(QStringLiteral("twice"), {21}, result));
    EXPECT_EQ(result.toString(), QStringLiteral("42"));
    ASSERT_TRUE(m_host.RunProcedure(QStringLiteral("拼接"), {QStringLiteral("钢"), 1.5}, result));
    EXPECT_EQ(result.toString(), QStringLiteral("钢1.5"));
    ASSERT_TRUE(m_host.RunProcedure(QStringLiteral("kinds"), {true, QVariant(), QStringLiteral("s")}, result));
    EXPECT_EQ(result.toString(), QStringLiteral("booleanundefinedstring"));
    ASSERT_TRUE(m_host.RunProcedure(QStringLiteral("nothing"), {}, result));
    EXPECT_FALSE(result.isValid());
}

TEST_F(ScriptHostTest, RunProcedureFailsForUnknownOrThrowingProcedures)
{
    ASSERT_TRUE(m_host.AddScript(QStringLiteral("function bad() {\r\n  throw new Error('坏');\r\n}")));
    ASSERT_TRUE(m_host.ExecuteStatement(QStringLiteral("function unlisted() { return 1; }")));
    QVariant result = QStringLiteral("kept");
    EXPECT_FALSE(m_host.RunProcedure(QStringLiteral("missing"), {}, result));
    EXPECT_FALSE(m_host.RunProcedure(QStringLiteral("unlisted"), {}, result));
    EXPECT_EQ(result.toString(), QStringLiteral("kept"));
    EXPECT_FALSE(m_host.RunProcedure(QStringLiteral("bad"), {}, result));
    EXPECT_EQ(m_host.GetErrorText(), QStringLiteral("Error: 坏,   throw new Error('坏');; in line 2"));
}

TEST_F(ScriptHostTest, SetLanguageResetsTheEngine)
{
    ASSERT_TRUE(m_host.AddScript(QStringLiteral("var a = 1; function f() {}")));
    m_host.SetLanguage(QStringLiteral("JavaScript"));
    EXPECT_EQ(m_host.GetLanguage(), QStringLiteral("JavaScript"));
    EXPECT_EQ(m_host.GetProcedureCount(), 0);
    EXPECT_EQ(Eval(QStringLiteral("typeof a")), QStringLiteral("undefined"));
}

TEST_F(ScriptHostTest, StatementsShareOneScopeUntilReset)
{
    ASSERT_TRUE(m_host.ExecuteStatement(QStringLiteral("var total = 1;")));
    ASSERT_TRUE(m_host.ExecuteStatement(QStringLiteral("total += 2;")));
    EXPECT_EQ(Eval(QStringLiteral("total")), QStringLiteral("3"));
}

TEST_F(ScriptHostTest, ScriptsSeeStandardJavaScriptOnly)
{
    for (const char* name : {"print", "load", "os", "readline", "quit", "WebAssembly", "require", "process"})
        EXPECT_EQ(Eval(QStringLiteral("typeof ") + QLatin1String(name)), QStringLiteral("undefined")) << name;
    EXPECT_EQ(Eval(QStringLiteral("typeof JSON.parse + typeof Math.sqrt + typeof Date")),
              QStringLiteral("functionfunctionfunction"));
}

TEST_F(ScriptHostTest, PromiseJobsRunAtTheEndOfEachRun)
{
    ASSERT_TRUE(m_host.ExecuteStatement(QStringLiteral(
        "var r = 0, q = 0;\r\nPromise.resolve(1).then(function (x) { r = x; });\r\n"
        "(async function () { await null; q = 2; })();")));
    EXPECT_EQ(Eval(QStringLiteral("r + ',' + q")), QStringLiteral("1,2"));
    // Within one text the jobs have not run yet when it ends.
    EXPECT_EQ(Eval(QStringLiteral("var late = 0; Promise.resolve().then(function () { late = 1; }); late")),
              QStringLiteral("0"));
    EXPECT_EQ(Eval(QStringLiteral("late")), QStringLiteral("1"));
}

TEST_F(ScriptHostTest, RejectedPromisesAreNoFailure)
{
    EXPECT_TRUE(m_host.ExecuteStatement(QStringLiteral("Promise.reject(new Error('x'));\r\n"
                                                       "Promise.resolve().then(function () { throw 1; });")));
    EXPECT_TRUE(m_host.ExecuteStatement(QStringLiteral("import('nothing');")));
    EXPECT_EQ(m_host.GetErrorText(), QStringLiteral("Error: , ; in line 0"));
}

TEST_F(ScriptHostTest, LoadScriptFileReadsCodePageText)
{
    const QString text = QStringLiteral("var s = '钢筋';\r\nfunction 长度() { return s.length; }");
    const QByteArray gbk = CodePage::FromUnicode(text, QByteArrayLiteral("GBK"));
    ASSERT_EQ(gbk.size(), text.size() + 4); // two bytes per Chinese character
    ASSERT_TRUE(QDir().mkpath(QFileInfo(NativePath::Map(QStringLiteral("C:\\lib\\a.js"))).path()));
    ASSERT_TRUE(WriteBytes(NativePath::Map(QStringLiteral("C:\\lib\\a.js")), gbk));
    ASSERT_TRUE(m_host.LoadScriptFile(QStringLiteral("C:\\lib\\a.js")));
    EXPECT_EQ(Eval(QStringLiteral("s")), QStringLiteral("钢筋"));
    ASSERT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_EQ(m_host.GetProcedureName(0), QStringLiteral("长度"));
}

TEST_F(ScriptHostTest, LoadScriptFileTakesUtf8AsCodePageCharacters)
{
    const QByteArray utf8 = QStringLiteral("var s = '钢';").toUtf8();
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("u.js")), utf8));
    ASSERT_TRUE(m_host.LoadScriptFile(HomeFile(QStringLiteral("u.js"))));
    EXPECT_EQ(Eval(QStringLiteral("s")), CodePage::ToUnicode(QByteArrayLiteral("\xe9\x92\xa2"), "GBK"));
    EXPECT_NE(Eval(QStringLiteral("s")), QStringLiteral("钢"));
}

TEST_F(ScriptHostTest, LoadScriptFileStopsAtAZeroByte)
{
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("z.js")), QByteArray("var a = 1;\0 this is ( not code", 30)));
    EXPECT_TRUE(m_host.LoadScriptFile(HomeFile(QStringLiteral("z.js"))));
    EXPECT_EQ(Eval(QStringLiteral("a")), QStringLiteral("1"));
}

TEST_F(ScriptHostTest, LoadScriptFileFailsForMissingFilesAndFolders)
{
    EXPECT_FALSE(m_host.LoadScriptFile(HomeFile(QStringLiteral("missing.js"))));
    EXPECT_FALSE(m_host.LoadScriptFile(Home()));
    EXPECT_FALSE(m_host.LoadScriptFile(QString()));
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(ScriptHostTest, LoadScriptFileWithAnErrorIsFalse)
{
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
