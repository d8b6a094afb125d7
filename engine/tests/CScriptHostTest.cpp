#include "CScriptHost.h"
#include "CodePage.h"
#include "EngineTestSupport.h"
#include "NativePath.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
class ScriptHostTest : public EngineTest
{
protected:
    QString Eval(const QString& expression) { return m_host.Evaluate(expression).toString(); }

    CScriptHost m_host;
};

TEST_F(ScriptHostTest, NothingSurvivesAReset)
{
    const char* cases[][4] = { // setup, probe, value before the reset, after it
        {"var a = 5; let q = 1;", "typeof a + typeof q", "numbernumber", "undefinedundefined"},
        {"globalThis.z = 'z';", "typeof z", "string", "undefined"},
        {"Math.max = function () { return -1; };", "Math.max(1, 2)", "-1", "2"},
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
        {"1 / 3", "0.3333333333333333"}, {"1e21", "1e+21"}, {"-0", "0"}, {"0 / 0", "NaN"}, {"null", "null"},
        {"[1, 2]", "1,2"}, {"({})", "[object Object]"}, {"Symbol('s')", "Symbol(s)"}, {"''", ""},
        {"undefined", nullptr}, {"var x = 1", nullptr}, {"notDeclared", nullptr}, {"1 +", nullptr},
    };
    for (const auto& c : cases)
    {
        const QVariant value = m_host.Evaluate(U8(c[0]));
        EXPECT_EQ(value.isValid(), c[1] != nullptr) << c[0];
        EXPECT_TRUE(!c[1] || value.typeId() == QMetaType::QString) << c[0];
        EXPECT_EQ(value.toString(), U8(c[1] ? c[1] : "")) << c[0];
    }
}

// Only loads list procedures; a reset or a language change empties the list.
TEST_F(ScriptHostTest, ProcedureListHoldsTheLoadedGlobalFunctions)
{
    ASSERT_TRUE(m_host.AddScript(QString()));
    EXPECT_EQ(m_host.GetProcedureCount(), 0); // the standard classes are not listed
    ASSERT_TRUE(m_host.AddScript(u"function foo(a) { return a * 2; }\r\nvar bar = function () {};\r\nvar n = 3;"_s));
    ASSERT_TRUE(m_host.ExecuteStatement(u"function late() {}"_s));
    ASSERT_EQ(m_host.GetProcedureCount(), 2);
    ASSERT_TRUE(m_host.AddScript(u"function 计算(x) { return x + 1; }"_s));
    QStringList names;
    for (int i = -1; i <= m_host.GetProcedureCount(); ++i)
        names << m_host.GetProcedureName(i);
    EXPECT_TRUE(names.front().isEmpty() && names.back().isEmpty()); // out of range
    names.sort();
    EXPECT_EQ(names, (QStringList{QString(), QString(), u"bar"_s, u"foo"_s, u"late"_s, u"计算"_s}));
    ASSERT_NE(m_host.FindProcedure(u"foo"_s), nullptr);
    EXPECT_EQ(m_host.FindProcedure(u"foo"_s)->Name(), u"foo"_s);
    EXPECT_EQ(m_host.FindProcedure(u"Foo"_s), nullptr);
    EXPECT_EQ(m_host.FindProcedure(u"n"_s), nullptr);
    m_host.ResetScript();
    EXPECT_EQ(m_host.GetProcedureCount(), 0);
    EXPECT_EQ(m_host.FindProcedure(u"foo"_s), nullptr);
    ASSERT_TRUE(m_host.AddScript(u"var a = 1; function f() {}"_s));
    EXPECT_EQ(m_host.GetLanguage(), u"JScript"_s);
    m_host.SetLanguage(u"JavaScript"_s);
    EXPECT_EQ(QString::number(m_host.GetProcedureCount()) + Eval(u"typeof a"_s), u"0undefined"_s);
}

TEST_F(ScriptHostTest, FailingAddKeepsWhatRanBeforeTheError)
{
    EXPECT_FALSE(m_host.AddScript(u"function kept() { return 7; }\r\nvar a = 1;\r\nboom();\r\nvar b = 2;"_s));
    EXPECT_EQ(QString::number(m_host.GetProcedureCount()) + Eval(u"'|' + a + '|' + b"_s), u"1|1|undefined"_s);
    EXPECT_EQ(m_host.GetErrorText(), u"Error: boom is not defined, boom();; in line 3"_s);
}

TEST_F(ScriptHostTest, RunProcedureCallsListedProceduresOnly)
{
    ASSERT_TRUE(m_host.AddScript(u"function kinds(a, b, c) { return typeof a + typeof b + typeof c + a + c; }\r\n"
                                 "function nothing() {}\r\nfunction bad() {\r\n  throw new Error('坏');\r\n}"_s));
    ASSERT_TRUE(m_host.ExecuteStatement(u"function unlisted() { return 1; }"_s));
    QVariant result;
    ASSERT_TRUE(m_host.RunProcedure(u"kinds"_s, {1.5, QVariant(), u"钢"_s}, result));
    EXPECT_EQ(result.toString(), u"numberundefinedstring1.5钢"_s);
    ASSERT_TRUE(m_host.RunProcedure(u"nothing"_s, {}, result));
    EXPECT_FALSE(result.isValid());
    result = u"kept"_s;
    EXPECT_FALSE(m_host.RunProcedure(u"missing"_s, {}, result));
    EXPECT_FALSE(m_host.RunProcedure(u"unlisted"_s, {}, result));
    EXPECT_EQ(result.toString(), u"kept"_s);
    EXPECT_FALSE(m_host.RunProcedure(u"bad"_s, {}, result));
    EXPECT_EQ(m_host.GetErrorText(), u"Error: 坏,   throw new Error('坏');; in line 4"_s);
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
    // Within one text the jobs have not run yet when it ends.
    EXPECT_EQ(Eval(u"var late = 0; Promise.resolve().then(function () { late = 1; }); r + ',' + q + ',' + late"_s),
              u"1,2,0"_s);
    EXPECT_EQ(Eval(u"late"_s), u"1"_s);
    EXPECT_TRUE(m_host.ExecuteStatement(u"Promise.reject(new Error('x'));\r\n"
                                        "Promise.resolve().then(function () { throw 1; });"_s));
    EXPECT_TRUE(m_host.ExecuteStatement(u"import('nothing');"_s));
    EXPECT_EQ(m_host.GetErrorText(), u"Error: , ; in line 0"_s);
}

TEST_F(ScriptHostTest, LoadScriptFileReadsCodePageTextUpToAZeroByteAndFailsSilently)
{
    const QString text = u"var s = '钢筋';\r\nfunction 长度() { return s.length; }"_s;
    ASSERT_TRUE(QDir().mkpath(NativePath::Map(u"C:\\lib"_s)));
    ASSERT_TRUE(WriteBytes(NativePath::Map(u"C:\\lib\\a.js"_s),
                           CodePage::FromUnicode(text, QByteArrayLiteral("GBK")) + QByteArray("\0 not ( code", 12)));
    ASSERT_TRUE(m_host.LoadScriptFile(u"C:\\lib\\a.js"_s));
    EXPECT_EQ(Eval(u"s"_s) + m_host.GetProcedureName(0) + m_host.GetProcedureName(1), u"钢筋长度"_s);
    // UTF-8 bytes are read as code-page characters, never as UTF-8.
    ASSERT_TRUE(WriteBytes(HomeFile(u"u.js"_s), u"var s = '钢';"_s.toUtf8()));
    ASSERT_TRUE(m_host.LoadScriptFile(HomeFile(u"u.js"_s)));
    EXPECT_EQ(Eval(u"s"_s), CodePage::ToUnicode(QByteArrayLiteral("\xe9\x92\xa2"), "GBK"));
    for (const QString& path : {HomeFile(u"missing.js"_s), Home(), QString()})
        EXPECT_FALSE(m_host.LoadScriptFile(path)) << path.toStdString();
    EXPECT_TRUE(Ui().calls.isEmpty());
    ASSERT_TRUE(WriteBytes(HomeFile(u"bad.js"_s), QByteArray("function ok() {}\r\nvar = ;")));
    EXPECT_FALSE(m_host.LoadScriptFile(HomeFile(u"bad.js"_s)));
    EXPECT_EQ(m_host.GetErrorText(), u"Error: missing variable name, var = ;; in line 2"_s);
}

TEST_F(ScriptHostTest, ComposesDescriptionSourceLineAndLineNumber)
{
    const char* cases[][2] = {
        {"var a = 1;\r\nvar b = c;", "Error: c is not defined, var b = c;; in line 2"},
        {"var a = 1;\nvar b = 2;\rthrow 3;", "Error: uncaught exception: 3, throw 3;; in line 3"}, // LF, lone CR
        {"\r\n\r\n\r\nthrow 3;", "Error: uncaught exception: 3, throw 3;; in line 4"},             // CR LF is one
        {"throw null", "Error: uncaught exception: null, throw null; in line 1"},
        {"var o = 1;\r\nthrow {};", "Error: uncaught exception: Object, throw {};; in line 2"},
        {"throw Symbol('s')", "Error: uncaught exception: Symbol(s), throw Symbol('s'); in line 1"},
        {"\r\nfunction f() {\r\n  return g();\r\n}\r\nf();", "Error: g is not defined,   return g();; in line 3"},
        {"var a = 1;\r\neval('1 +\\n zz');", "Error: zz is not defined, eval('1 +\\n zz');; in line 2"},
        {"var e = new Error('x');\r\ne.lineNumber = -5;\r\nthrow e;", "Error: x, ; in line 0"},
        {"var hits = 0;\r\nthrow { toString() { hits++; return 'x'; } };", // not run while composing
         "Error: uncaught exception: Object, throw { toString() { hits++; return 'x'; } };; in line 2"},
    };
    for (const auto& c : cases)
    {
        CScriptHost host;
        EXPECT_FALSE(host.ExecuteStatement(U8(c[0])));
        EXPECT_EQ(host.GetErrorText(), U8(c[1]));
        EXPECT_EQ(host.Evaluate(u"typeof hits == 'undefined' || hits === 0"_s).toString(), u"true"_s);
    }
}

TEST_F(ScriptHostTest, CutOnlyBeyond256Characters)
{
    // The full text of throw Error('m...m') + pad has 2m + 36 + pad characters.
    const struct { int m, pad, fullLength; } cases[] = {
        {109, 1, 255}, {110, 0, 256}, {110, 1, 257}, {111, 0, 258}, {200, 0, 436}};
    for (const auto& c : cases)
    {
        CScriptHost host;
        const QString message(c.m, QLatin1Char('m'));
        const QString statement = u"throw Error('%1')%2;"_s.arg(message, QString(c.pad, QLatin1Char(' ')));
        const QString full = u"Error: %1, %2; in line 1"_s.arg(message, statement);
        ASSERT_EQ(full.size(), c.fullLength);
        EXPECT_FALSE(host.ExecuteStatement(statement));
        EXPECT_EQ(host.GetErrorText(), full.left(CScriptHost::kMaxErrorText)) << c.fullLength;
    }
}

TEST_F(ScriptHostTest, FunctionLineCountsInItsOwnTextAndTheErrorStaysThroughSuccessesUntilRead)
{
    ASSERT_TRUE(m_host.AddScript(u"var k = 1;\r\nfunction f() {\r\n  return missing;\r\n}"_s));
    EXPECT_FALSE(m_host.ExecuteStatement(u"var r = f();"_s));
    EXPECT_TRUE(m_host.ExecuteStatement(u"var a = 2;"_s));
    EXPECT_EQ(m_host.GetErrorText(), u"Error: missing is not defined,   return missing;; in line 3"_s);
    EXPECT_EQ(m_host.GetErrorText(), u"Error: , ; in line 0"_s);
}

// Long texts run again reuse their compiled form; errors and values must still come from the text that ran.
QString LongText(int lines, const char* last)
{
    QString text;
    for (int i = 1; i < lines; ++i)
        text += u"var v%1 = %1; // a line long enough to make the text worth keeping compiled\r\n"_s.arg(i);
    return text + U8(last);
}

TEST_F(ScriptHostTest, LongTextRunAgainReportsItsOwnErrorsAndValues)
{
    ASSERT_GT(LongText(60, "").size(), 4096);
    for (int run = 0; run < 2; ++run)
    {
        SCOPED_TRACE(run);
        m_host.ResetScript();
        EXPECT_FALSE(m_host.ExecuteStatement(LongText(60, "throw new Error('late ' + v59);")));
        EXPECT_EQ(m_host.GetErrorText(), u"Error: late 59, throw new Error('late ' + v59);; in line 60"_s);
        m_host.ResetScript();
        EXPECT_EQ(Eval(LongText(60, "v7 * 2")) + Eval(LongText(60, "v8 * 2")), u"1416"_s);
        m_host.ResetScript(); // the same text as a statement block still runs in full
        EXPECT_TRUE(m_host.ExecuteStatement(LongText(60, "v8 * 2")));
        EXPECT_EQ(Eval(u"v59"_s), u"59"_s);
        m_host.ResetScript();
        ASSERT_TRUE(m_host.AddScript(LongText(80, "function bad() {\r\n  return nothing.here;\r\n}")));
        EXPECT_FALSE(m_host.ExecuteStatement(u"var x = 1;\r\nbad();"_s));
        EXPECT_EQ(m_host.GetErrorText(), u"Error: nothing is not defined,   return nothing.here;; in line 81"_s);
    }
}
} // namespace
