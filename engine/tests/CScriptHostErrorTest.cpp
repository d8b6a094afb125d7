#include "CScriptHost.h"
#include "EngineTestSupport.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace
{
class ScriptHostErrorTest : public TempHomeTest
{
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
        EXPECT_EQ(host.Evaluate(QStringLiteral("typeof hits == 'undefined' || hits === 0")).toString(), QStringLiteral("true"));
    }
}

TEST_F(ScriptHostErrorTest, CutOnlyBeyond256Characters)
{
    // The full text of throw Error('m...m') + pad has 2m + 36 + pad characters.
    const struct
    {
        int m, pad, fullLength;
    } cases[] = {{109, 1, 255}, {110, 0, 256}, {110, 1, 257}, {111, 0, 258}, {200, 0, 436}};
    for (const auto& c : cases)
    {
        CScriptHost host;
        const QString message(c.m, QLatin1Char('m'));
        const QString statement = QStringLiteral("throw Error('%1')%2;").arg(message, QString(c.pad, QLatin1Char(' ')));
        const QString full = QStringLiteral("Error: %1, %2; in line 1").arg(message, statement);
        ASSERT_EQ(full.size(), c.fullLength);
        EXPECT_FALSE(host.ExecuteStatement(statement));
        EXPECT_EQ(host.GetErrorText(), full.left(CScriptHost::kMaxErrorText)) << c.fullLength;
    }
}

TEST_F(ScriptHostErrorTest, ErrorStaysThroughSuccessesAndReadingClearsIt)
{
    CScriptHost host;
    EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("throw 1")));
    EXPECT_TRUE(host.ExecuteStatement(QStringLiteral("var a = 2;")));
    EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: uncaught exception: 1, throw 1; in line 1"));
    EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: , ; in line 0"));
}

TEST_F(ScriptHostErrorTest, LineOfAFunctionCountsInTheTextThatDefinedIt)
{
    CScriptHost host;
    ASSERT_TRUE(host.AddScript(QStringLiteral("var k = 1;\r\nfunction f() {\r\n  return missing;\r\n}")));
    EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("var r = f();")));
    EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: missing is not defined,   return missing;; in line 3"));
}

// Long texts run again reuse their compiled form; errors and values must
// still come from the text that ran.
QString LongText(int lines, const QString& last)
{
    QString text;
    for (int i = 1; i < lines; ++i)
        text += QStringLiteral("var v%1 = %1; // a line long enough to make the text worth keeping compiled\r\n").arg(i);
    return text + last;
}

TEST_F(ScriptHostErrorTest, LongTextRunAgainReportsItsOwnErrorsAndValues)
{
    const QString failing = LongText(60, QStringLiteral("throw new Error('late ' + v59);"));
    const QString library = LongText(80, QStringLiteral("function bad() {\r\n  return nothing.here;\r\n}"));
    ASSERT_GT(failing.size(), 4096);
    CScriptHost host;
    for (int run = 0; run < 2; ++run)
    {
        SCOPED_TRACE(run);
        host.ResetScript();
        EXPECT_FALSE(host.ExecuteStatement(failing));
        EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: late 59, throw new Error('late ' + v59);; in line 60"));
        for (const char* last : {"v7 * 2", "v8 * 2"})
        {
            host.ResetScript();
            EXPECT_EQ(host.Evaluate(LongText(60, U8(last))).toString(), last[1] == '7' ? QStringLiteral("14") : QStringLiteral("16"));
            host.ResetScript(); // the same text as a statement block still runs in full
            EXPECT_TRUE(host.ExecuteStatement(LongText(60, U8(last))));
            EXPECT_EQ(host.Evaluate(QStringLiteral("v59")).toString(), QStringLiteral("59"));
        }
        host.ResetScript();
        ASSERT_TRUE(host.AddScript(library));
        EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("var x = 1;\r\nbad();")));
        EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: nothing is not defined,   return nothing.here;; in line 81"));
    }
}
} // namespace
