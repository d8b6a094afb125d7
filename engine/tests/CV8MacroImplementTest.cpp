#include "CJsParserOpr.h"
#include "CParms.h"
#include "CV8MacroImplement.h"
#include "EngineTestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
// 1 and the value of a name in the shared scope, or 0 and "untouched".
std::pair<int, QString> Shared(const char* name)
{
    QString value = u"untouched"_s;
    const int ok = CJsParserOpr::Instance()->GetParameter(U8(name), value);
    return {ok, value};
}

class V8MacroImplementTest : public EngineTest
{
protected:
    CV8MacroImplement m_macro;
};

TEST_F(V8MacroImplementTest, RunsTheAssembledTextAndReadsTheOutputs)
{
    const CArray<CMacroParam> inputs = Inputs({{"L", "1200"}, {"G", "abc", 0}});
    m_macro.AddGlobalScript(u"function twice(x) { return x * 2; }"_s);
    CArray<CMacroParam> outputs = Outputs({"A", "G", "NeverSet"});
    ASSERT_EQ(m_macro.ExecuteScript(u"var A = twice(L);"_s, inputs, outputs), 1);
    EXPECT_EQ(Values(outputs), (QStringList{u"2400"_s, u"abc"_s, u"参数不存在"_s}));
    EXPECT_TRUE(m_macro.GetLastScript().isEmpty()); // the record-based run keeps no text
    // A failure counts lines after var L = 1; / (empty) / (empty) / twice(...).
    ASSERT_EQ(m_macro.ExecuteScript(u"var A = nope;"_s, inputs, outputs), 0);
    EXPECT_EQ(m_macro.GetError(), u"Error: nope is not defined, var A = nope;; in line 6"_s);
    EXPECT_EQ(Values(outputs), (QStringList{u"2400"_s, u"abc"_s, u"参数不存在"_s}));
    // Later runs share the scope: what ran before stays visible.
    CArray<CMacroParam> none;
    ASSERT_EQ(m_macro.ExecuteScript(u"var Other = 2;"_s, none, outputs), 1);
    EXPECT_EQ(Values(outputs), (QStringList{u"2400"_s, u"abc"_s, u"参数不存在"_s}));
}

TEST_F(V8MacroImplementTest, EvalParamLooksUpTheTrimmedNameThenRunsItAsGiven)
{
    QString result, error;
    ASSERT_EQ(CJsParserOpr::Instance()->Run(u"var A = 2; var B = 3;"_s, result, error), 1);
    const char* cases[][2] = {{" A ", "2"}, {" A+B", "5"}, {"Missing", "参数不存在"}, {"A +", "参数不存在"}, {"", "undefined"}};
    for (const auto& c : cases)
    {
        QString value = u"untouched"_s;
        EXPECT_EQ(m_macro.EvalParam(U8(c[0]), value), 1);
        EXPECT_EQ(value, U8(c[1])) << c[0];
    }
}

TEST_F(V8MacroImplementTest, ExecuteParmsRunsTheFullTextAndWritesNoOutput)
{
    CParms inputs, outputs;
    inputs.AddParm(u"L"_s, u"10"_s, 1);
    inputs.AddParm(u"G"_s, u"g"_s, 0);
    outputs.AddParm(u"A"_s, u"a0"_s, 1);
    outputs.AddParm(u"B"_s, u"b0"_s, 1);
    m_macro.AddGlobalScript(u"var k = 1;"_s);
    ASSERT_EQ(m_macro.ExecuteParms(u"var A = L * 2;\r\nvar B = G + k;"_s, inputs, outputs), 1);
    EXPECT_EQ(m_macro.GetLastScript(), u"\r\n//***************************************\r\nvar L = 10;\r\n"
                                       "var G = \"g\";\r\n\r\n\r\nvar k = 1;\r\nvar A = L * 2;\r\nvar B = G + k;\r\n"
                                       "A+\"}\"+\"{\"+B"_s);
    EXPECT_EQ(outputs.FindParm(u"A"_s)->GetParmValue(), u"a0"_s);
    EXPECT_EQ(Shared("A"), std::make_pair(1, u"20"_s)); // the run did happen in the shared scope
}

TEST_F(V8MacroImplementTest, ExecuteParmsWithoutOutputsAndItsFailure)
{
    CParms inputs, outputs;
    ASSERT_EQ(m_macro.ExecuteParms(u"var A = 1;"_s, inputs, outputs), 1);
    EXPECT_EQ(m_macro.GetLastScript(), u"\r\n//***************************************\r\n\r\n\r\nvar A = 1;\r\n"_s);
    outputs.AddParm(u"A"_s, u"a0"_s);
    ASSERT_EQ(m_macro.ExecuteParms(u"throw 'x';"_s, inputs, outputs), 0);
    EXPECT_EQ(m_macro.GetError(), u"Error: uncaught exception: x, throw 'x';; in line 5"_s);
    EXPECT_EQ(outputs.FindParm(u"A"_s)->GetParmValue(), u"a0"_s);
}

class JsParserOprTest : public EngineTest
{
protected:
    static int Run(const char* script) { return CJsParserOpr::Instance()->Run(U8(script), m_result, m_error); }

    static inline QString m_result, m_error;
};

TEST_F(JsParserOprTest, OneSharedScopeKeepsWhatRanBeforeAFailureUntilReleased)
{
    CJsParserOpr* first = CJsParserOpr::Instance();
    ASSERT_TRUE(first && CJsParserOpr::Instance() == first);
    ASSERT_EQ(Run("var shared = 1;"), 1);
    ASSERT_EQ(Run("var before = shared + 3;\r\nboom();"), 0);
    EXPECT_EQ(Shared("before"), std::make_pair(1, u"4"_s));
    CJsParserOpr::Release();
    CJsParserOpr::Release(); // twice is harmless
    EXPECT_EQ(Shared("before").first, 0);
}

TEST_F(JsParserOprTest, RunGivesTheValueOrTheErrorText)
{
    const struct { const char *script; int ok; const char *result, *error; } cases[] = {
        {"var a = '钢';\r\na + '筋'", 1, "钢筋", "e"}, {"var b = 1;", 1, "undefined", "e"}, {"null", 1, "null", "e"},
        {"var c = 1;\r\nc.d.e", 0, "r", "Error: c.d is undefined, c.d.e; in line 2"},
        {"var = ;", 0, "r", "Error: missing variable name, var = ;; in line 1"},
    };
    for (const auto& c : cases)
    {
        m_result = u"r"_s;
        m_error = u"e"_s;
        // A braced list runs the script before it reads what the run left.
        EXPECT_EQ(QStringList({QString::number(Run(c.script)), m_result, m_error}),
                  QStringList({QString::number(c.ok), U8(c.result), U8(c.error)})) << c.script;
    }
}

TEST_F(JsParserOprTest, LongLivedScopeKeepsSourceLinesOfRecentTextsOnly)
{
    const char* recent = "function recent() {\r\n\r\n  return gone;\r\n}";
    ASSERT_EQ(Run("function early() {\r\n  return missing;\r\n}"), 1);
    ASSERT_EQ(Run(recent), 1);
    EXPECT_EQ(Run("early()"), 0);
    EXPECT_EQ(m_error, u"Error: missing is not defined,   return missing;; in line 2"_s);
    for (int i = 0; i < 1100; ++i)
        ASSERT_EQ(Run(i == 1000 ? recent : "1"), 1);
    // The text that defined early() is long gone; its line number is not.
    EXPECT_EQ(Run("early()"), 0);
    EXPECT_EQ(m_error, u"Error: missing is not defined, ; in line 2"_s);
    EXPECT_EQ(Run("recent()"), 0);
    EXPECT_EQ(m_error, u"Error: gone is not defined,   return gone;; in line 3"_s);
}

TEST_F(JsParserOprTest, GetParameterReadsDeclaredNamesOnly)
{
    ASSERT_EQ(Run("var A = 2; var B = 3; let L = 'l'; var U; var 长 = 4;"), 1);
    const struct { const char* name; int ok; const char* value; } cases[] = {
        {"L", 1, "l"}, {"长", 1, "4"}, {"U", 1, "undefined"}, {"Missing", 0, "untouched"},
        {" A", 0, "untouched"}, {"A + B", 0, "untouched"}, {"", 0, "untouched"}, {"A;B", 0, "untouched"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Shared(c.name), std::make_pair(c.ok, U8(c.value))) << c.name;
}
} // namespace
