#include "CMacroImplement.h"
#include "CMacroParamFile.h"
#include "EngineTestSupport.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const QString kMissing = u"参数不存在!"_s;

class MacroImplementTest : public TempHomeTest
{
protected:
    // Saves a settings file with the inputs and outputs, then writes the script file's bytes itself:
    // the settings file's own script write keeps only half the bytes.
    void SaveMacro(const QString& xml, const QString& js, const CArray<CMacroParam>& inputs, const QStringList& outputs,
                   const QByteArray& script)
    {
        CMacroParamFile file;
        file.SetFilePath(xml);
        ASSERT_TRUE(file.Save(inputs, Outputs(outputs), js, QString()));
        ASSERT_TRUE(WriteBytes(NativePath::Map(js), script));
    }

    CMacroImplement m_macro;
};

TEST(MacroAssemblyTest, LastScriptIsTheAssembledText)
{
    // inputs I0..In-1 with values 0..n-1; AddGlobalScript texts in order; whether the inputs form runs
    const struct { int inputCount; QStringList globals; bool withInputs; const char* expected; } cases[] = {
        {3, {}, true, "var I0 = 0;\r\nvar I1 = 1;\r\nvar I2 = 2;\r\n\r\n\r\nvar R = 1;"},
        {0, {"var a = 1;", "var b = 2;"}, true, "\r\n\r\nvar a = 1;\r\nvar b = 2;\r\nvar R = 1;"},
        {2, {}, false, "\r\nvar R = 1;"},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.expected);
        CMacroImplement macro;
        CArray<CMacroParam> inputs, outputs;
        for (int i = 0; i < c.inputCount; ++i)
            inputs.Add(Param(u"I%1"_s.arg(i), QString::number(i)));
        for (const QString& text : c.globals)
            macro.AddGlobalScript(text);
        const QString script = u"var R = 1;"_s;
        EXPECT_EQ(c.withInputs ? macro.ExecuteScript(script, inputs, outputs) : macro.ExecuteScript(script, outputs), 1);
        EXPECT_EQ(macro.GetLastScript(), U8(c.expected));
    }
}

TEST_F(MacroImplementTest, EvalParamRunsTheTrimmedNameOrSaysItIsMissing)
{
    CArray<CMacroParam> none;
    ASSERT_EQ(m_macro.ExecuteScript(u"var A = 2; var B = 3; var S = '钢筋'; var U; var obj = {};"_s, none), 1);
    const char* cases[][2] = {
        {"\tA\r\n", "2"}, {"A + B", "5"}, {"S", "钢筋"}, {"U", "参数不存在!"}, {"missing", "参数不存在!"},
        {"   ", "参数不存在!"}, {"A +", "参数不存在!"}, {"obj.y", "参数不存在!"},
    };
    for (const auto& c : cases)
    {
        QString value = u"untouched"_s;
        EXPECT_EQ(m_macro.EvalParam(U8(c[0]), value), 1);
        EXPECT_EQ(value, U8(c[1])) << c[0];
    }
}

TEST_F(MacroImplementTest, OutputsAreReadInOrderFromAFreshScopeAndMissingOnesAreNoFailure)
{
    CArray<CMacroParam> outputs = Outputs({"A", " B ", "Never"});
    ASSERT_EQ(m_macro.ExecuteScript(u"var A = 1.5 * 2;\r\nvar B = 'b'; function helper() {}"_s, outputs), 1);
    ASSERT_EQ(Values(outputs) << outputs[1].GetName(), (QStringList{u"3"_s, u"b"_s, kMissing, u" B "_s}));
    CArray<CMacroParam> second = Outputs({"A", "typeof helper"});
    ASSERT_EQ(m_macro.ExecuteScript(u"var Other = 1;"_s, second), 1);
    EXPECT_EQ(Values(second), (QStringList{kMissing, u"undefined"_s}));
}

TEST_F(MacroImplementTest, GlobalScriptServesEveryRunAndAFailureKeepsOutputsAndItsError)
{
    m_macro.AddGlobalScript(u"function 加倍(x) { return x * 2; }"_s);
    const CArray<CMacroParam> inputs = Inputs({{"L", "21"}});
    CArray<CMacroParam> outputs = Outputs({"A", "B"});
    ASSERT_EQ(m_macro.ExecuteScript(u"var A = 加倍(L);\r\nvar B = nope;"_s, inputs, outputs), 0);
    EXPECT_EQ(Values(outputs), (QStringList{u"old"_s, u"old"_s}));
    const QString error = u"Error: nope is not defined, var B = nope;; in line 6"_s;
    EXPECT_EQ(m_macro.GetError(), error);
    ASSERT_EQ(m_macro.ExecuteScript(u"var A = 加倍(L);"_s, inputs, outputs), 1);
    EXPECT_EQ(m_macro.GetError(), error); // a success does not clear it
    EXPECT_EQ(Values(outputs), (QStringList{u"42"_s, kMissing}));
    m_macro.ClearGlobalScript();
    EXPECT_EQ(m_macro.ExecuteScript(u"var A = 加倍(L);"_s, inputs, outputs), 0);
    EXPECT_EQ(m_macro.GetError(), u"Error: 加倍 is not defined, var A = 加倍(L);; in line 4"_s);
}

TEST_F(MacroImplementTest, ExecuteMacroFileRunsTheSettingsFileAndLeavesOutputsOnFailure)
{
    CArray<CMacroParam> outputs = Outputs({"stale"});
    EXPECT_EQ(m_macro.ExecuteMacroFile(HomeFile(u"missing.xml"_s), outputs), 0);
    SaveMacro(HomeFile(u"bad.xml"_s), HomeFile(u"bad.js"_s), {}, {"A"}, "throw 1;");
    EXPECT_EQ(m_macro.ExecuteMacroFile(HomeFile(u"bad.xml"_s), outputs), 0);
    EXPECT_EQ(Values(outputs), QStringList{u"old"_s});
    EXPECT_EQ(m_macro.GetError(), u"Error: uncaught exception: 1, throw 1;; in line 3"_s);
    ASSERT_TRUE(QDir().mkpath(NativePath::Map(u"C:\\macros"_s)));
    SaveMacro(u"C:\\macros\\m.xml"_s, u"C:\\macros\\m.js"_s, Inputs({{"L", "1200"}, {"G", "abc", 0}}), {"A", "B"},
              "var A = L * 2;\r\nvar B = G;");
    ASSERT_EQ(m_macro.ExecuteMacroFile(u"C:\\macros\\m.xml"_s, outputs), 1) << m_macro.GetError().toStdString();
    ASSERT_EQ(Values(outputs) << outputs[0].GetName(), (QStringList{u"2400"_s, u"abc"_s, u"A"_s}));
    EXPECT_EQ(m_macro.GetLastScript(), u"var L = 1200;\r\nvar G = \"abc\";\r\n\r\n\r\nvar A = L * 2;\r\nvar B = G;"_s);
}
} // namespace
