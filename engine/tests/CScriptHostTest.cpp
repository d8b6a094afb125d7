#include "CScriptHost.h"
#include "CodePage.h"
#include "EngineTestSupport.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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
    const char* cases[][4] = { // setup, probe, value before the reset, after it
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
    EXPECT_EQ(m_host.GetLanguage(), u"JScript"_s);
    ASSERT_TRUE(m_host.AddScript(QString()));
    EXPECT_EQ(m_host.GetProcedureCount(), 0); // the standard classes are not listed
    ASSERT_TRUE(m_host.AddScript(
        u"function foo(a) { return a * 2; }\r\nvar bar = function () {};\r\nvar n = 3;\r\nfunction 计算(x) { return x + 1; }"_s));
    ASSERT_EQ(m_host.GetProcedureCount(), 3);
    QStringList names;
    for (int i = -1; i <= m_host.GetProcedureCount(); ++i)
        names << m_host.GetProcedureName(i);
    EXPECT_TRUE(names.front().isEmpty() && names.back().isEmpty()); // out of range
    names.sort();
    EXPECT_EQ(names, (QStringList{QString(), QString(), u"bar"_s, u"foo"_s, u"计算"_s}));
    ASSERT_NE(m_host.FindProcedure(u"foo"_s), nullptr);
    EXPECT_EQ(m_host.FindProcedure(u"foo"_s)->Name(), u"foo"_s);
    EXPECT_EQ(m_host.FindProcedure(u"Foo"_s), nullptr);
    EXPECT_EQ(m_host.FindProcedure(u"n"_s), nullptr);
}

TEST_F(ScriptHostTest, ListIsRebuiltByLoadsOnlyAndEmptiedByResetOrLanguage)
{
    ASSERT_TRUE(m_host.AddScript(u"function a() {}"_s));
    ASSERT_TRUE(m_host.ExecuteStatement(u"function late() {}"_s));
    EXPECT_EQ(m_host.GetProcedureCount(), 1);
    ASSERT_TRUE(m_host.AddScript(QString()));
    EXPECT_EQ(m_host.GetProcedureCount(), 2);
    m_host.ResetScript();
    EXPECT_EQ(m_host.GetProcedureCount(), 0);
    EXPECT_EQ(m_host.FindProcedure(u"a"_s), nullptr);
    ASSERT_TRUE(m_host.AddScript(u"var a = 1; function f() {}"_s));
    m_host.SetLanguage(u"JavaScript"_s);
    EXPECT_EQ(m_host.GetLanguage(), u"JavaScript"_s);
    EXPECT_EQ(m_host.GetProcedureCount(), 0);
    EXPECT_EQ(Eval(u"typeof a"_s), u"undefined"_s);
}

TEST_F(ScriptHostTest, FailingAddKeepsWhatRanBeforeTheError)
{
    EXPECT_FALSE(m_host.AddScript(u"function kept() { return 7; }\r\nvar a = 1;\r\nboom();\r\nvar b = 2;"_s));
    EXPECT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_EQ(Eval(u"a"_s), u"1"_s);
    EXPECT_FALSE(m_host.Evaluate(u"b"_s).isValid());
    EXPECT_EQ(m_host.GetErrorText(), u"Error: boom is not defined, boom();; in line 3"_s);
}

TEST_F(ScriptHostTest, RunProcedureCallsListedProceduresOnly)
{
    ASSERT_TRUE(m_host.AddScript(
        u"function 拼接(a, b) { return a + b; }\r\nfunction kinds(a, b, c) { return typeof a + typeof b + typeof c; }\r\n"
        "function nothing() {}\r\nfunction bad() {\r\n  throw new Error('坏');\r\n}"_s));
    ASSERT_TRUE(m_host.ExecuteStatement(u"function unlisted() { return 1; }"_s));
    QVariant result;
    ASSERT_TRUE(m_host.RunProcedure(u"拼接"_s, {u"钢"_s, 1.5}, result));
    EXPECT_EQ(result.toString(), u"钢1.5"_s);
    ASSERT_TRUE(m_host.RunProcedure(u"kinds"_s, {true, QVariant(), u"s"_s}, result));
    EXPECT_EQ(result.toString(), u"booleanundefinedstring"_s);
    ASSERT_TRUE(m_host.RunProcedure(u"nothing"_s, {}, result));
    EXPECT_FALSE(result.isValid());
    result = u"kept"_s;
    EXPECT_FALSE(m_host.RunProcedure(u"missing"_s, {}, result));
    EXPECT_FALSE(m_host.RunProcedure(u"unlisted"_s, {}, result));
    EXPECT_EQ(result.toString(), u"kept"_s);
    EXPECT_FALSE(m_host.RunProcedure(u"bad"_s, {}, result));
    EXPECT_EQ(m_host.GetErrorText(), u"Error: 坏,   throw new Error('坏');; in line 5"_s);
}

TEST_F(ScriptHostTest, ScriptsSeeStandardJavaScriptOnly)
{
    for (const char* name : {"print", "load", "os", "readline", "quit", "WebAssembly", "require", "process"})
        EXPECT_EQ(Eval(u"typeof "_s + QLatin1String(name)), u"undefined"_s) << name;
    EXPECT_EQ(Eval(u"typeof JSON.parse + typeof Date"_s), u"functionfunction"_s);
}

TEST_F(ScriptHostTest, PromiseJobsRunAtTheEndOfEachRunAndRejectionsAreNoFailure)
{
    ASSERT_TRUE(m_host.ExecuteStatement(u"var r = 0, q = 0;\r\nPromise.resolve(1).then(function (x) { r = x; });\r\n"
                                        "(async function () { await null; q = 2; })();"_s));
    EXPECT_EQ(Eval(u"r + ',' + q"_s), u"1,2"_s);
    // Within one text the jobs have not run yet when it ends.
    EXPECT_EQ(Eval(u"var late = 0; Promise.resolve().then(function () { late = 1; }); late"_s), u"0"_s);
    EXPECT_EQ(Eval(u"late"_s), u"1"_s);
    EXPECT_TRUE(m_host.ExecuteStatement(u"Promise.reject(new Error('x'));\r\n"
                                        "Promise.resolve().then(function () { throw 1; });"_s));
    EXPECT_TRUE(m_host.ExecuteStatement(u"import('nothing');"_s));
    EXPECT_EQ(m_host.GetErrorText(), u"Error: , ; in line 0"_s);
}

TEST_F(ScriptHostTest, LoadScriptFileReadsCodePageTextUpToAZeroByte)
{
    const QString text = u"var s = '钢筋';\r\nfunction 长度() { return s.length; }"_s;
    const QByteArray gbk = CodePage::FromUnicode(text, QByteArrayLiteral("GBK"));
    ASSERT_EQ(gbk.size(), text.size() + 4); // two bytes per Chinese character
    ASSERT_TRUE(QDir().mkpath(NativePath::Map(u"C:\\lib"_s)));
    ASSERT_TRUE(WriteBytes(NativePath::Map(u"C:\\lib\\a.js"_s), gbk + QByteArray("\0 not ( code", 12)));
    ASSERT_TRUE(m_host.LoadScriptFile(u"C:\\lib\\a.js"_s));
    EXPECT_EQ(Eval(u"s"_s), u"钢筋"_s);
    ASSERT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_EQ(m_host.GetProcedureName(0), u"长度"_s);
    // UTF-8 bytes are read as code-page characters.
    ASSERT_TRUE(WriteBytes(HomeFile(u"u.js"_s), u"var s = '钢';"_s.toUtf8()));
    ASSERT_TRUE(m_host.LoadScriptFile(HomeFile(u"u.js"_s)));
    EXPECT_EQ(Eval(u"s"_s), CodePage::ToUnicode(QByteArrayLiteral("\xe9\x92\xa2"), "GBK"));
}

TEST_F(ScriptHostTest, LoadScriptFileFailsSilentlyForMissingOrBadFiles)
{
    for (const QString& path : {HomeFile(u"missing.js"_s), Home(), QString()})
        EXPECT_FALSE(m_host.LoadScriptFile(path)) << path.toStdString();
    EXPECT_TRUE(Ui().calls.isEmpty());
    ASSERT_TRUE(WriteBytes(HomeFile(u"bad.js"_s), QByteArray("function ok() {}\r\nvar = ;")));
    EXPECT_FALSE(m_host.LoadScriptFile(HomeFile(u"bad.js"_s)));
    EXPECT_EQ(m_host.GetErrorText(), u"Error: missing variable name, var = ;; in line 2"_s);
}

TEST_F(ScriptHostTest, LoadScriptResourceReadsQtResources)
{
    ASSERT_TRUE(m_host.LoadScriptResource(u"resource_lib.js"_s, u"scripts"_s));
    EXPECT_EQ(Eval(u"面积(2, 3) + 单位"_s), u"6平方米"_s);
    EXPECT_EQ(m_host.GetProcedureCount(), 1);
    EXPECT_TRUE(m_host.LoadScriptResource(u"scripts/resource_lib.js"_s));
    EXPECT_FALSE(m_host.LoadScriptResource(u"no_such.js"_s));
}
} // namespace
