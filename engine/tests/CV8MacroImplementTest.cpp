#include "CJsParserOpr.h"
#include "CParms.h"
#include "CTimingLog.h"
#include "CV8MacroImplement.h"
#include "EngineTestSupport.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace
{
class V8MacroImplementTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        CJsParserOpr::Release();
        CTimingLog::Instance().Clear();
    }
    void TearDown() override
    {
        CJsParserOpr::Release();
        TempHomeTest::TearDown();
    }
    static QStringList TimedLabels()
    {
        QStringList labels;
        for (const CTimingLog::Entry& entry : CTimingLog::Instance().Entries())
        {
            EXPECT_EQ(entry.group, QStringLiteral("CMacroImplement"));
            labels << entry.label;
        }
        return labels;
    }

    CV8MacroImplement m_macro;
};

TEST_F(V8MacroImplementTest, RunsTheAssembledTextAndReadsTheOutputs)
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("L"), QStringLiteral("1200")));
    inputs.Add(Param(QStringLiteral("G"), QStringLiteral("abc"), 0));
    m_macro.AddGlobalScript(QStringLiteral("function twice(x) { return x * 2; }"));
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("A"), QStringLiteral("G"), QStringLiteral("NeverSet")});
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = twice(L);"), inputs, outputs), 1);
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("2400"));
    EXPECT_EQ(outputs[1].GetValue(), QStringLiteral("abc"));
    EXPECT_EQ(outputs[2].GetValue(), QStringLiteral("参数不存在"));
    EXPECT_TRUE(m_macro.GetLastScript().isEmpty()); // the record-based run keeps no text
    EXPECT_EQ(TimedLabels(), QStringList{QStringLiteral("CMacroImplement::ExecuteScript")});
    // A failure counts lines after var L = 1; / (empty) / (empty) / twice(...).
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = nope;"), inputs, outputs), 0);
    EXPECT_EQ(m_macro.GetError(), QStringLiteral("Error: nope is not defined, var A = nope;; in line 6"));
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("2400"));
}

TEST_F(V8MacroImplementTest, EarlierRunsStayVisible)
{
    CArray<CMacroParam> none;
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("Carry")});
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var Other = 1;"), none, outputs), 1);
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("参数不存在"));
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var Carry = 'first';"), none, outputs), 1);
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var Other = 2;"), none, outputs), 1);
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("first"));
}

TEST_F(V8MacroImplementTest, EvalParamLooksUpTheTrimmedNameThenRunsItAsGiven)
{
    QString result, error;
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("var A = 2; var B = 3;"), result, error), 1);
    const char* cases[][2] = {
        {" A ", "2"}, {" A+B", "5"}, {"Missing", "参数不存在"}, {"A +", "参数不存在"}, {"", "undefined"},
    };
    for (const auto& c : cases)
    {
        QString value = QStringLiteral("untouched");
        EXPECT_EQ(m_macro.EvalParam(U8(c[0]), value), 1);
        EXPECT_EQ(value, U8(c[1])) << c[0];
    }
}

TEST(V8OutputExpressionTest, JoinsNamesWithBraces)
{
    const struct
    {
        QStringList names;
        const char* expected;
    } cases[] = {
        {{}, ""},
        {{"A"}, "A"},
        {{"A", "B", "C"}, "A+\"}\"+\"{\"+B+\"}\"+\"{\"+C"},
        {{" A ", "b.c"}, " A +\"}\"+\"{\"+b.c"},
    };
    for (const auto& c : cases)
    {
        CParms outputs;
        for (const QString& name : c.names)
            outputs.AddParm(name, QString());
        EXPECT_EQ(CV8MacroImplement::OutputExpression(outputs), U8(c.expected));
    }
}

TEST_F(V8MacroImplementTest, ExecuteParmsRunsTheFullTextAndWritesNoOutput)
{
    CParms inputs, outputs;
    inputs.AddParm(QStringLiteral("L"), QStringLiteral("10"), 1);
    inputs.AddParm(QStringLiteral("G"), QStringLiteral("g"), 0);
    outputs.AddParm(QStringLiteral("A"), QStringLiteral("a0"), 1);
    outputs.AddParm(QStringLiteral("B"), QStringLiteral("b0"), 1);
    m_macro.AddGlobalScript(QStringLiteral("var k = 1;"));
    ASSERT_EQ(m_macro.ExecuteParms(QStringLiteral("var A = L * 2;\r\nvar B = G + k;"), inputs, outputs), 1);
    EXPECT_EQ(m_macro.GetLastScript(), QStringLiteral("\r\n//***************************************\r\n"
                                                      "var L = 10;\r\nvar G = \"g\";\r\n\r\n\r\nvar k = 1;\r\n"
                                                      "var A = L * 2;\r\nvar B = G + k;\r\nA+\"}\"+\"{\"+B"));
    EXPECT_EQ(outputs.FindParm(QStringLiteral("A"))->GetParmValue(), QStringLiteral("a0"));
    QString value; // the run did happen in the shared scope
    ASSERT_EQ(CJsParserOpr::Instance()->GetParameter(QStringLiteral("A"), value), 1);
    EXPECT_EQ(value, QStringLiteral("20"));
    EXPECT_EQ(TimedLabels(), (QStringList{QStringLiteral("CMacroImplement::脚本组合"),
                                          QStringLiteral("CMacroImplement::ExecuteScript"),
                                          QStringLiteral("CMacroImplement::EvalParam"),
                                          QStringLiteral("CMacroImplement1::ExecuteScript")}));
}

TEST_F(V8MacroImplementTest, ExecuteParmsWithoutOutputsAndItsFailure)
{
    CParms inputs, outputs;
    ASSERT_EQ(m_macro.ExecuteParms(QStringLiteral("var A = 1;"), inputs, outputs), 1);
    EXPECT_EQ(m_macro.GetLastScript(), QStringLiteral("\r\n//***************************************\r\n\r\n\r\nvar A = 1;\r\n"));
    outputs.AddParm(QStringLiteral("A"), QStringLiteral("a0"));
    ASSERT_EQ(m_macro.ExecuteParms(QStringLiteral("throw 'x';"), inputs, outputs), 0);
    EXPECT_EQ(m_macro.GetError(), QStringLiteral("Error: uncaught exception: x, throw 'x';; in line 5"));
    EXPECT_EQ(outputs.FindParm(QStringLiteral("A"))->GetParmValue(), QStringLiteral("a0"));
}
} // namespace
