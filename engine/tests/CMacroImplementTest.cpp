#include "CMacroImplement.h"
#include "CMacroParamFile.h"
#include "EngineTestSupport.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>

namespace
{
class MacroImplementTest : public TempHomeTest
{
protected:
    CMacroImplement m_macro;
};

TEST_F(MacroImplementTest, RunsTheExampleAsItsFiveLineText)
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("L"), QStringLiteral("1200"), 1));
    inputs.Add(Param(QStringLiteral("G"), QStringLiteral("abc"), 0));
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("A")});
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = L * 2;"), inputs, outputs), 1);
    EXPECT_EQ(m_macro.GetLastScript(), QStringLiteral("var L = 1200;\r\nvar G = \"abc\";\r\n\r\n\r\nvar A = L * 2;"));
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("2400"));
}

TEST(MacroAssemblyTest, LastScriptIsTheAssembledText)
{
    const struct
    {
        int inputCount;      // inputs I0..In-1 with values 0..n-1
        QStringList globals; // AddGlobalScript texts, in order
        bool clearGlobals;
        bool withInputs;     // which ExecuteScript form
        const char* expected;
    } cases[] = {
        {0, {}, false, true, "\r\n\r\nvar R = 1;"},
        {3, {}, false, true, "var I0 = 0;\r\nvar I1 = 1;\r\nvar I2 = 2;\r\n\r\n\r\nvar R = 1;"},
        {1, {"function g() {}"}, false, true, "var I0 = 0;\r\n\r\n\r\nfunction g() {}\r\nvar R = 1;"},
        {0, {"var a = 1;", "var b = 2;"}, false, true, "\r\n\r\nvar a = 1;\r\nvar b = 2;\r\nvar R = 1;"},
        {1, {"var a = 1;"}, true, true, "var I0 = 0;\r\n\r\n\r\nvar R = 1;"},
        {2, {}, false, false, "\r\nvar R = 1;"},
        {0, {"var a = 1;"}, false, false, "\r\nvar a = 1;\r\nvar R = 1;"},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.expected);
        CMacroImplement macro;
        CArray<CMacroParam> inputs, outputs;
        for (int i = 0; i < c.inputCount; ++i)
            inputs.Add(Param(QStringLiteral("I%1").arg(i), QString::number(i)));
        for (const QString& text : c.globals)
            macro.AddGlobalScript(text);
        if (c.clearGlobals)
            macro.ClearGlobalScript();
        const QString script = QStringLiteral("var R = 1;");
        EXPECT_EQ(c.withInputs ? macro.ExecuteScript(script, inputs, outputs) : macro.ExecuteScript(script, outputs), 1);
        EXPECT_EQ(macro.GetLastScript(), U8(c.expected));
    }
}

TEST_F(MacroImplementTest, EvalParamRunsTheTrimmedNameOrSaysItIsMissing)
{
    CArray<CMacroParam> none;
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = 2; var B = 3; var S = '钢筋'; var U; var obj = {};"), none), 1);
    const char* cases[][2] = {
        {"A", "2"}, {"\tA\r\n", "2"}, {"A + B", "5"}, {"S", "钢筋"}, {"U", "参数不存在!"},
        {"missing", "参数不存在!"}, {"   ", "参数不存在!"}, {"A +", "参数不存在!"}, {"obj.y", "参数不存在!"},
    };
    for (const auto& c : cases)
    {
        QString value = QStringLiteral("untouched");
        EXPECT_EQ(m_macro.EvalParam(U8(c[0]), value), 1);
        EXPECT_EQ(value, U8(c[1])) << c[0];
    }
}

TEST_F(MacroImplementTest, OutputsAreReadInOrderAndMissingOnesAreNoFailure)
{
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("A"), QStringLiteral(" B "), QStringLiteral("Never")});
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = 1.5 * 2;\r\nvar B = 'b';"), outputs), 1);
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("3"));
    EXPECT_EQ(outputs[1].GetValue(), QStringLiteral("b"));
    EXPECT_EQ(outputs[1].GetName(), QStringLiteral(" B "));
    EXPECT_EQ(outputs[2].GetValue(), QStringLiteral("参数不存在!"));
}

TEST_F(MacroImplementTest, FailedRunLeavesOutputsAndKeepsTheErrorThroughLaterSuccess)
{
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("A"), QStringLiteral("B")});
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = 1;\r\nvar B = nope;"), outputs), 0);
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("old"));
    EXPECT_EQ(outputs[1].GetValue(), QStringLiteral("old"));
    const QString error = QStringLiteral("Error: nope is not defined, var B = nope;; in line 3");
    EXPECT_EQ(m_macro.GetError(), error);
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = 1;"), outputs), 1);
    EXPECT_EQ(m_macro.GetError(), error);
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("1"));
}

TEST_F(MacroImplementTest, EachRunStartsAfreshAndStaysUntilTheNext)
{
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("First")});
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var First = 1; function helper() { return 2; }"), outputs), 1);
    QString value;
    m_macro.EvalParam(QStringLiteral("helper()"), value);
    EXPECT_EQ(value, QStringLiteral("2"));
    CArray<CMacroParam> second = Outputs({QStringLiteral("First"), QStringLiteral("typeof helper")});
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var Other = 1;"), second), 1);
    EXPECT_EQ(second[0].GetValue(), QStringLiteral("参数不存在!"));
    EXPECT_EQ(second[1].GetValue(), QStringLiteral("undefined"));
}

TEST_F(MacroImplementTest, GlobalScriptServesEveryRunUntilCleared)
{
    m_macro.AddGlobalScript(QStringLiteral("function 加倍(x) { return x * 2; }"));
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("L"), QStringLiteral("21")));
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("A")});
    for (int run = 0; run < 2; ++run)
    {
        ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = 加倍(L);"), inputs, outputs), 1);
        EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("42"));
    }
    m_macro.ClearGlobalScript();
    EXPECT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = 加倍(L);"), inputs, outputs), 0);
    EXPECT_EQ(m_macro.GetError(), QStringLiteral("Error: 加倍 is not defined, var A = 加倍(L);; in line 4"));
}

TEST_F(MacroImplementTest, QuoteInATextInputIsASyntaxError)
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("T"), QStringLiteral("a\"b"), 0));
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("T")});
    ASSERT_EQ(m_macro.ExecuteScript(QStringLiteral("var A = T;"), inputs, outputs), 0);
    const QString error = m_macro.GetError();
    EXPECT_TRUE(error.startsWith(QStringLiteral("Error: "))) << error.toStdString();
    EXPECT_TRUE(error.endsWith(QStringLiteral("var T = \"a\"b\";; in line 1"))) << error.toStdString();
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("old"));
}

TEST_F(MacroImplementTest, ExecuteMacroFileRunsTheSettingsFile)
{
    CArray<CMacroParam> inputs;
    inputs.Add(Param(QStringLiteral("L"), QStringLiteral("1200")));
    inputs.Add(Param(QStringLiteral("G"), QStringLiteral("abc"), 0));
    CMacroParamFile file;
    file.SetFilePath(QStringLiteral("C:\\macros\\m.xml"));
    ASSERT_TRUE(QDir().mkpath(NativePath::Map(QStringLiteral("C:\\macros"))));
    ASSERT_TRUE(file.Save(inputs, Outputs({"A", "B"}), QStringLiteral("C:\\macros\\m.js"), QString()));
    // The settings file's own script write keeps only half the bytes.
    ASSERT_TRUE(WriteBytes(NativePath::Map(QStringLiteral("C:\\macros\\m.js")), "var A = L * 2;\r\nvar B = G;"));

    CArray<CMacroParam> outputs = Outputs({QStringLiteral("stale")});
    ASSERT_EQ(m_macro.ExecuteMacroFile(QStringLiteral("C:\\macros\\m.xml"), outputs), 1) << m_macro.GetError().toStdString();
    ASSERT_EQ(outputs.GetSize(), 2);
    EXPECT_EQ(outputs[0].GetName(), QStringLiteral("A"));
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("2400"));
    EXPECT_EQ(outputs[1].GetValue(), QStringLiteral("abc"));
    EXPECT_EQ(m_macro.GetLastScript(), QStringLiteral("var L = 1200;\r\nvar G = \"abc\";\r\n\r\n\r\nvar A = L * 2;\r\nvar B = G;"));
}

TEST_F(MacroImplementTest, ExecuteMacroFileLeavesOutputsOnFailure)
{
    CArray<CMacroParam> outputs = Outputs({QStringLiteral("A")});
    EXPECT_EQ(m_macro.ExecuteMacroFile(HomeFile(QStringLiteral("missing.xml")), outputs), 0);
    CMacroParamFile file;
    file.SetFilePath(HomeFile(QStringLiteral("bad.xml")));
    ASSERT_TRUE(file.Save({}, Outputs({QStringLiteral("A")}), HomeFile(QStringLiteral("bad.js")), QString()));
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("bad.js")), "throw 1;"));
    EXPECT_EQ(m_macro.ExecuteMacroFile(HomeFile(QStringLiteral("bad.xml")), outputs), 0);
    ASSERT_EQ(outputs.GetSize(), 1);
    EXPECT_EQ(outputs[0].GetValue(), QStringLiteral("old"));
    EXPECT_EQ(m_macro.GetError(), QStringLiteral("Error: uncaught exception: 1, throw 1;; in line 3"));
}
} // namespace
