#include "CScriptHost.h"
#include "EngineTestSupport.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace
{
struct ErrorCase
{
    const char* name;
    const char* script;
    const char* expected;
};

class ScriptHostErrorTest : public TempHomeTest, public ::testing::WithParamInterface<ErrorCase>
{
};

TEST_P(ScriptHostErrorTest, ComposesDescriptionSourceLineAndLineNumber)
{
    CScriptHost host;
    EXPECT_FALSE(host.ExecuteStatement(QString::fromUtf8(GetParam().script)));
    EXPECT_EQ(host.GetErrorText(), QString::fromUtf8(GetParam().expected));
}

const ErrorCase kErrorCases[] = {
    {"ReferenceOnSecondLine", "var a = 1;\r\nvar b = c;", "Error: c is not defined, var b = c;; in line 2"},
    {"LfAndLoneCrBreakLines", "var a = 1;\nvar b = 2;\rthrow 3;", "Error: uncaught exception: 3, throw 3;; in line 3"},
    {"CrLfIsOneBreak", "\r\n\r\n\r\nthrow 3;", "Error: uncaught exception: 3, throw 3;; in line 4"},
    {"ThrowNull", "throw null", "Error: uncaught exception: null, throw null; in line 1"},
    {"ThrowObject", "var o = 1;\r\nthrow {};", "Error: uncaught exception: Object, throw {};; in line 2"},
    {"ThrowString", "throw 'abc'", "Error: uncaught exception: abc, throw 'abc'; in line 1"},
    {"SyntaxError", "var ok = 1;\r\nvar x = ;", "Error: expected expression, got ';', var x = ;; in line 2"},
    {"ErrorInsideFunction", "\r\nfunction f() {\r\n  return g();\r\n}\r\nf();",
     "Error: g is not defined,   return g();; in line 3"},
    {"ChineseMessage", "var s = '钢筋';\r\nthrow new Error('长度' + s);",
     "Error: 长度钢筋, throw new Error('长度' + s);; in line 2"},
    {"EvalReportsCallingLine", "var a = 1;\r\neval('1 +\\n zz');", "Error: zz is not defined, eval('1 +\\n zz');; in line 2"},
    {"TypeError", "null.f();", "Error: null has no properties, null.f();; in line 1"},
    {"NegativeLineSetByTheScript", "var e = new Error('x');\r\ne.lineNumber = -5;\r\nthrow e;", "Error: x, ; in line 0"},
    {"ThrowSymbol", "throw Symbol('s')", "Error: uncaught exception: Symbol(s), throw Symbol('s'); in line 1"},
    {"Recursion", "function f(n) { return f(n + 1) + 1; }\r\nf(0);",
     "Error: too much recursion, function f(n) { return f(n + 1) + 1; }; in line 1"},
};

INSTANTIATE_TEST_SUITE_P(Cases, ScriptHostErrorTest, ::testing::ValuesIn(kErrorCases),
                         [](const auto& info) { return std::string(info.param.name); });

class ScriptHostErrorTextTest : public TempHomeTest
{
};

TEST_F(ScriptHostErrorTextTest, LongTextIsCutToExactly256Characters)
{
    CScriptHost host;
    EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("throw new Error('x'.repeat(300));")));
    const QString text = host.GetErrorText();
    EXPECT_EQ(text.size(), CScriptHost::kMaxErrorText);
    EXPECT_EQ(text, (QStringLiteral("Error: ") + QString(300, QLatin1Char('x'))).left(256));
}

TEST_F(ScriptHostErrorTextTest, CutOnlyBeyond256Characters)
{
    // The full text of throw Error('m...m') + pad has 2m + 36 + pad characters.
    const struct
    {
        int m;
        int pad;
        int fullLength;
    } cases[] = {{109, 1, 255}, {110, 0, 256}, {110, 1, 257}, {111, 0, 258}};
    for (const auto& c : cases)
    {
        CScriptHost host;
        const QString message(c.m, QLatin1Char('m'));
        const QString statement = QStringLiteral("throw Error('%1')%2;").arg(message, QString(c.pad, QLatin1Char(' ')));
        const QString full = QStringLiteral("Error: ") + message + QStringLiteral(", ") + statement
                           + QStringLiteral("; in line 1");
        ASSERT_EQ(full.size(), c.fullLength);
        EXPECT_FALSE(host.ExecuteStatement(statement));
        EXPECT_EQ(host.GetErrorText(), full.left(256)) << c.fullLength;
    }
}

TEST_F(ScriptHostErrorTextTest, ReadingClearsTheError)
{
    CScriptHost host;
    EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("throw 1")));
    EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: uncaught exception: 1, throw 1; in line 1"));
    EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: , ; in line 0"));
}

TEST_F(ScriptHostErrorTextTest, ErrorStaysUntilReadAcrossSuccessfulRuns)
{
    CScriptHost host;
    EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("throw 1")));
    EXPECT_TRUE(host.ExecuteStatement(QStringLiteral("var a = 2;")));
    EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: uncaught exception: 1, throw 1; in line 1"));
}

TEST_F(ScriptHostErrorTextTest, LineOfAFunctionCountsInTheTextThatDefinedIt)
{
    CScriptHost host;
    ASSERT_TRUE(host.AddScript(QStringLiteral("var k = 1;\r\nfunction f() {\r\n  return missing;\r\n}")));
    EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("var r = f();")));
    EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: missing is not defined,   return missing;; in line 3"));
}

TEST_F(ScriptHostErrorTextTest, FailedEvaluateGivesEmptyValueAndLeavesItsError)
{
    CScriptHost host;
    EXPECT_FALSE(host.Evaluate(QStringLiteral("undeclared")).isValid());
    EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: undeclared is not defined, undeclared; in line 1"));
}

TEST_F(ScriptHostErrorTextTest, ThrowingToStringDoesNotRunWhileComposing)
{
    CScriptHost host;
    EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("var hits = 0;\r\nthrow { toString() { hits++; return 'x'; } };")));
    EXPECT_EQ(host.GetErrorText(),
              QStringLiteral("Error: uncaught exception: Object, throw { toString() { hits++; return 'x'; } };; in line 2"));
    EXPECT_EQ(host.Evaluate(QStringLiteral("hits")).toString(), QStringLiteral("0"));
}
} // namespace

namespace
{
// Long texts run again reuse their compiled form; errors and values must
// still come from the text that ran.
QString LongText(int lines, const QString& last)
{
    QString text;
    for (int i = 1; i < lines; ++i)
        text += QStringLiteral("var v%1 = %1; // a line long enough to make the text worth keeping compiled\r\n").arg(i);
    return text + last;
}

TEST_F(ScriptHostErrorTextTest, LongTextRunAgainReportsTheSameErrorAndValues)
{
    const QString failing = LongText(60, QStringLiteral("throw new Error('late ' + v59);"));
    ASSERT_GT(failing.size(), 4096);
    CScriptHost host;
    for (int run = 0; run < 3; ++run)
    {
        host.ResetScript();
        EXPECT_FALSE(host.ExecuteStatement(failing)) << run;
        EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: late 59, throw new Error('late ' + v59);; in line 60")) << run;
    }
    for (const char* last : {"v7 * 2", "v8 * 2"})
    {
        for (int run = 0; run < 2; ++run)
        {
            host.ResetScript();
            const QString text = LongText(60, QString::fromUtf8(last));
            EXPECT_EQ(host.Evaluate(text).toString(), last[1] == '7' ? QStringLiteral("14") : QStringLiteral("16"));
            // The same text as a statement block still runs in full.
            host.ResetScript();
            EXPECT_TRUE(host.ExecuteStatement(text));
            EXPECT_EQ(host.Evaluate(QStringLiteral("v59")).toString(), QStringLiteral("59"));
        }
    }
}

TEST_F(ScriptHostErrorTextTest, FunctionOfALongTextReportsItsOwnLine)
{
    const QString library = LongText(80, QStringLiteral("function bad() {\r\n  return nothing.here;\r\n}"));
    CScriptHost host;
    for (int run = 0; run < 2; ++run)
    {
        host.ResetScript();
        ASSERT_TRUE(host.AddScript(library));
        EXPECT_FALSE(host.ExecuteStatement(QStringLiteral("var x = 1;\r\nbad();")));
        EXPECT_EQ(host.GetErrorText(), QStringLiteral("Error: nothing is not defined,   return nothing.here;; in line 81"));
    }
}
} // namespace
