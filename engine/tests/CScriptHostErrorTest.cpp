#include "CScriptHost.h"
#include "EngineTestSupport.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
class ScriptHostErrorTest : public TempHomeTest
{
protected:
    CScriptHost m_host;
};

TEST_F(ScriptHostErrorTest, ComposesDescriptionSourceLineAndLineNumber)
{
    const char* cases[][2] = {
        {"var a = 1;\r\nvar b = c;", "Error: c is not defined, var b = c;; in line 2"},
        {"var a = 1;\nvar b = 2;\rthrow 3;", "Error: uncaught exception: 3, throw 3;; in line 3"}, // LF, lone CR
        {"\r\n\r\n\r\nthrow 3;", "Error: uncaught exception: 3, throw 3;; in line 4"},             // CR LF is one
        {"throw null", "Error: uncaught exception: null, throw null; in line 1"},
        {"var o = 1;\r\nthrow {};", "Error: uncaught exception: Object, throw {};; in line 2"},
        {"throw 'abc'", "Error: uncaught exception: abc, throw 'abc'; in line 1"},
        {"throw Symbol('s')", "Error: uncaught exception: Symbol(s), throw Symbol('s'); in line 1"},
        {"var ok = 1;\r\nvar x = ;", "Error: expected expression, got ';', var x = ;; in line 2"},
        {"\r\nfunction f() {\r\n  return g();\r\n}\r\nf();", "Error: g is not defined,   return g();; in line 3"},
        {"var s = '钢筋';\r\nthrow new Error('长度' + s);", "Error: 长度钢筋, throw new Error('长度' + s);; in line 2"},
        {"var a = 1;\r\neval('1 +\\n zz');", "Error: zz is not defined, eval('1 +\\n zz');; in line 2"},
        {"var e = new Error('x');\r\ne.lineNumber = -5;\r\nthrow e;", "Error: x, ; in line 0"},
        {"function f(n) { return f(n + 1) + 1; }\r\nf(0);",
         "Error: too much recursion, function f(n) { return f(n + 1) + 1; }; in line 1"},
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

TEST_F(ScriptHostErrorTest, CutOnlyBeyond256Characters)
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

TEST_F(ScriptHostErrorTest, FunctionLineCountsInItsOwnTextAndTheErrorStaysThroughSuccessesUntilRead)
{
    ASSERT_TRUE(m_host.AddScript(u"var k = 1;\r\nfunction f() {\r\n  return missing;\r\n}"_s));
    EXPECT_FALSE(m_host.ExecuteStatement(u"var r = f();"_s));
    EXPECT_TRUE(m_host.ExecuteStatement(u"var a = 2;"_s));
    EXPECT_EQ(m_host.GetErrorText(), u"Error: missing is not defined,   return missing;; in line 3"_s);
    EXPECT_EQ(m_host.GetErrorText(), u"Error: , ; in line 0"_s);
}

// Long texts run again reuse their compiled form; errors and values must still come from the text that ran.
QString LongText(int lines, const QString& last)
{
    QString text;
    for (int i = 1; i < lines; ++i)
        text += u"var v%1 = %1; // a line long enough to make the text worth keeping compiled\r\n"_s.arg(i);
    return text + last;
}

TEST_F(ScriptHostErrorTest, LongTextRunAgainReportsItsOwnErrorsAndValues)
{
    const QString failing = LongText(60, u"throw new Error('late ' + v59);"_s);
    const QString library = LongText(80, u"function bad() {\r\n  return nothing.here;\r\n}"_s);
    ASSERT_GT(failing.size(), 4096);
    CScriptHost& host = m_host;
    for (int run = 0; run < 2; ++run)
    {
        SCOPED_TRACE(run);
        host.ResetScript();
        EXPECT_FALSE(host.ExecuteStatement(failing));
        EXPECT_EQ(host.GetErrorText(), u"Error: late 59, throw new Error('late ' + v59);; in line 60"_s);
        for (const char* last : {"v7 * 2", "v8 * 2"})
        {
            host.ResetScript();
            EXPECT_EQ(host.Evaluate(LongText(60, U8(last))).toString(), last[1] == '7' ? u"14"_s : u"16"_s);
            host.ResetScript(); // the same text as a statement block still runs in full
            EXPECT_TRUE(host.ExecuteStatement(LongText(60, U8(last))));
            EXPECT_EQ(host.Evaluate(u"v59"_s).toString(), u"59"_s);
        }
        host.ResetScript();
        ASSERT_TRUE(host.AddScript(library));
        EXPECT_FALSE(host.ExecuteStatement(u"var x = 1;\r\nbad();"_s));
        EXPECT_EQ(host.GetErrorText(), u"Error: nothing is not defined,   return nothing.here;; in line 81"_s);
    }
}
} // namespace
