#include "CJsParserOpr.h"
#include "CParms.h"
#include "CTimingLog.h"
#include "CV8MacroImplement.h"
#include "EngineTestSupport.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace
{
CMacroParam Param(const QString& name, const QString& value, int type = 1)
{
    CMacroParam param(name, value, QString());
    param.SetDataType(static_cast<std::uint32_t>(type));
    return param;
}

CArray<CMacroParam> Outputs(const QStringList& names, const QString& value = QStringLiteral("old"))
{
    CArray<CMacroParam> outputs;
    for (const QString& name : names)
        outputs.Add(Param(name, value));
    return outputs;
}

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
    // The record-based run keeps no text.
    EXPECT_TRUE(m_macro.GetLastScript().isEmpty());
    EXPECT_EQ(TimedLabels(), QStringList{QStringLiteral("CMacroImplement::ExecuteScript")});
}

TEST_F(V8MacroImplementTest, LineNumbersCountTheDeclarationsAndGlobalScript)
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("L"), QStringLiteral("1")));
    m_macro.AddGlobalScript(QStringLiteral("var g = 1;"));
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("A")});
    // var L = 1; / (empty) / (empty) / var g = 1; / script line
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = nope;"), inputs, outputs), 0);
    EXPECT_EQ(m_macro.GetError(), QStringLiteral("Error: nope is not defined, var A = nope;; in line 5"));
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("old"));
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

struct EvalCase
{
    const char* name;
    const char* expected;
};

class V8EvalParamTest : public V8MacroImplementTest, public ::testing::WithParamInterface<EvalCase>
{
};

TEST_P(V8EvalParamTest, TrimmedLookupThenTheNameAsGivenThenMissing)
{
    QString result, error;
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("var A = 2; var B = 3; var obj = { x: 'ox' };"), result, error), 1);
    QString value = QStringLiteral("untouched");
    EXPECT_EQ(m_macro.EvalParam(QString::fromUtf8(GetParam().name), value), 1);
    EXPECT_EQ(value, QString::fromUtf8(GetParam().expected));
}

const EvalCase kEvalCases[] = {
    {"A", "2"},
    {" A ", "2"},       // found by the lookup after trimming
    {"A + B", "5"},     // no variable of that name: run as a script
    {" A+B", "5"},      // run with its blank
    {"obj.x", "ox"},
    {"Missing", "参数不存在"},
    {" Missing", "参数不存在"},
    {"A +", "参数不存在"},
    {"", "undefined"},  // an empty script runs and gives undefined
};

INSTANTIATE_TEST_SUITE_P(Cases, V8EvalParamTest, ::testing::ValuesIn(kEvalCases));

TEST_F(V8MacroImplementTest, OutputExpressionJoinsNamesWithBraces)
{
    const struct
    {
        QStringList names;
        const char* expected;
    } cases[] = {
        {{}, ""},
        {{"A"}, "A"},
        {{"A", "B"}, "A+\"}\"+\"{\"+B"},
        {{"A", "B", "C"}, "A+\"}\"+\"{\"+B+\"}\"+\"{\"+C"},
        {{" A ", "b.c"}, " A +\"}\"+\"{\"+b.c"},
    };
    for (const auto& c : cases)
    {
        CParms outputs;
        for (const QString& name : c.names)
            outputs.AddParm(name, QString());
        EXPECT_EQ(CV8MacroImplement::OutputExpression(outputs), QString::fromUtf8(c.expected));
    }
}

TEST_F(V8MacroImplementTest, ExecuteParmsRunsTheFullTextAndWritesNoOutput)
{
    CParms inputs;
    inputs.AddParm(QStringLiteral("L"), QStringLiteral("10"), 1);
    inputs.AddParm(QStringLiteral("G"), QStringLiteral("g"), 0);
    CParms outputs;
    outputs.AddParm(QStringLiteral("A"), QStringLiteral("a0"), 1);
    outputs.AddParm(QStringLiteral("B"), QStringLiteral("b0"), 1);
    m_macro.AddGlobalScript(QStringLiteral("var k = 1;"));
    ASSERT_EQ(m_macro.ExecuteParms(QStringLiteral("var A = L * 2;\r\nvar B = G + k;"), inputs, outputs), 1);
    EXPECT_EQ(m_macro.GetLastScript(), QStringLiteral("\r\n//***************************************\r\n"
                                                      "var L = 10;\r\nvar G = \"g\";\r\n"
                                                      "\r\n\r\nvar k = 1;\r\n"
                                                      "var A = L * 2;\r\nvar B = G + k;\r\n"
                                                      "A+\"}\"+\"{\"+B"));
    EXPECT_EQ(outputs.FindParm(QStringLiteral("A"))->GetParmValue(), QStringLiteral("a0"));
    EXPECT_EQ(outputs.FindParm(QStringLiteral("B"))->GetParmValue(), QStringLiteral("b0"));
    // The run did happen in the shared scope.
    QString value;
    ASSERT_EQ(CJsParserOpr::Instance()->GetParameter(QStringLiteral("A"), value), 1);
    EXPECT_EQ(value, QStringLiteral("20"));
    EXPECT_EQ(TimedLabels(), (QStringList{QStringLiteral("CMacroImplement::脚本组合"),
                                          QStringLiteral("CMacroImplement::ExecuteScript"),
                                          QStringLiteral("CMacroImplement::EvalParam"),
                                          QStringLiteral("CMacroImplement1::ExecuteScript")}));
}

TEST_F(V8MacroImplementTest, ExecuteParmsWithoutOutputsEndsInALineBreak)
{
    CParms inputs;
    CParms outputs;
    ASSERT_EQ(m_macro.ExecuteParms(QStringLiteral("var A = 1;"), inputs, outputs), 1);
    EXPECT_EQ(m_macro.GetLastScript(), QStringLiteral("\r\n//***************************************\r\n\r\n\r\nvar A = 1;\r\n"));
}

TEST_F(V8MacroImplementTest, ExecuteParmsFailureKeepsTheServiceError)
{
    CParms inputs;
    CParms outputs;
    outputs.AddParm(QStringLiteral("A"), QStringLiteral("a0"));
    ASSERT_EQ(m_macro.ExecuteParms(QStringLiteral("throw 'x';"), inputs, outputs), 0);
    EXPECT_EQ(m_macro.GetError(), QStringLiteral("Error: uncaught exception: x, throw 'x';; in line 5"));
    EXPECT_EQ(outputs.FindParm(QStringLiteral("A"))->GetParmValue(), QStringLiteral("a0"));
}
} // namespace
