#include "CMacro.h"
#include "CMacroParam.h"

#include <gtest/gtest.h>

namespace {

CMacroParam Param(const QString& name, const QString& value, const QString& description, std::uint32_t type)
{
    CMacroParam param(name, value, description);
    param.SetDataType(type);
    return param;
}

} // namespace

TEST(CMacroParamTest, DefaultsAndThreeFieldConstructor)
{
    const CMacroParam empty;
    EXPECT_TRUE(empty.GetName().isEmpty());
    EXPECT_TRUE(empty.GetValue().isEmpty());
    EXPECT_TRUE(empty.GetDescription().isEmpty());
    EXPECT_EQ(empty.GetDataType(), 0);

    const CMacroParam param(QStringLiteral("L"), QStringLiteral("1200"), QStringLiteral("长度"));
    EXPECT_EQ(param.GetName(), QStringLiteral("L"));
    EXPECT_EQ(param.GetValue(), QStringLiteral("1200"));
    EXPECT_EQ(param.GetDescription(), QStringLiteral("长度"));
    EXPECT_EQ(param.GetDataType(), 0);
}

TEST(CMacroParamTest, DataTypeSetterStoresTheBitsAsIs)
{
    CMacroParam param;
    param.SetDataType(0xFFFFFFFFu);
    EXPECT_EQ(param.GetDataType(), -1);
    param.SetDataType(7);
    EXPECT_EQ(param.GetDataType(), 7);
}

TEST(CMacroParamTest, CopyTakesAllFourFields)
{
    const CMacroParam source = Param(QStringLiteral("W"), QStringLiteral("3"), QStringLiteral("宽"), 2);
    CMacroParam copy(source);
    CMacroParam assigned;
    assigned = source;
    for (const CMacroParam* p : {&copy, &assigned}) {
        EXPECT_EQ(p->GetName(), QStringLiteral("W"));
        EXPECT_EQ(p->GetValue(), QStringLiteral("3"));
        EXPECT_EQ(p->GetDescription(), QStringLiteral("宽"));
        EXPECT_EQ(p->GetDataType(), 2);
    }
}

struct DeclarationCase
{
    const char* name;
    const char* value;
    std::uint32_t type;
    const char* expected;
};

TEST(CMacroParamTest, ToJsDeclarationTable)
{
    const DeclarationCase cases[] = {
        {"L", "1200", 1, "var L = 1200;"},
        {"L", "1200", 0, "var L = \"1200\";"},
        {"s", "", 0, "var s = \"\";"},
        {"n", "", 1, "var n = ;"},                          // empty literal: nothing between = and ;
        {"q", "a\"b", 0, "var q = \"a\"b\";"},              // unbalanced quote kept as is
        {"p", "C:\\x", 0, "var p = \"C:\\x\";"},            // backslash not escaped
        {"e", "a+b*2", 5, "var e = a+b*2;"},
        {"m", "-1", 0xFFFFFFFFu, "var m = -1;"},            // any non-zero type is a literal
        {"名", "长度", 0, "var 名 = \"长度\";"},
        {"x", "1\r\n2", 1, "var x = 1\r\n2;"},              // no line break added, none removed
    };
    for (const DeclarationCase& c : cases) {
        const CMacroParam param = Param(QString::fromUtf8(c.name), QString::fromUtf8(c.value), QString(), c.type);
        EXPECT_EQ(param.ToJsDeclaration(), QString::fromUtf8(c.expected)) << c.name << " / " << c.value;
    }
}

TEST(CMacroTest, DefaultsAndFourFieldConstructor)
{
    const CMacro macro;
    EXPECT_EQ(macro.GetId(), -1);
    EXPECT_EQ(macro.GetType(), 0);
    EXPECT_TRUE(macro.GetName().isEmpty());
    EXPECT_TRUE(macro.GetDescription().isEmpty());
    EXPECT_TRUE(macro.GetContent().isEmpty());
    EXPECT_TRUE(macro.GetScriptFile().isEmpty());
    EXPECT_EQ(macro.InputParams().GetSize(), 0);
    EXPECT_EQ(macro.OutputParams().GetSize(), 0);

    const CMacro built(3, QStringLiteral("锚固"), QStringLiteral("desc"), QStringLiteral("var a=1;"));
    EXPECT_EQ(built.GetType(), 3);
    EXPECT_EQ(built.GetName(), QStringLiteral("锚固"));
    EXPECT_EQ(built.GetDescription(), QStringLiteral("desc"));
    EXPECT_EQ(built.GetContent(), QStringLiteral("var a=1;"));
    EXPECT_EQ(built.GetId(), -1);
    EXPECT_TRUE(built.GetScriptFile().isEmpty());
}

class CMacroCopyTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        source = CMacro(4, QStringLiteral("src"), QStringLiteral("d"), QStringLiteral("W = L * 2;"));
        source.SetId(17);
        source.SetScriptFile(QStringLiteral("D:\\js\\src.js"));
        source.InputParams().Add(Param(QStringLiteral("L"), QStringLiteral("1200"), QStringLiteral("长度"), 1));
        source.InputParams().Add(Param(QStringLiteral("t"), QStringLiteral("a"), QString(), 0));
        source.OutputParams().Add(Param(QStringLiteral("W"), QString(), QString(), 1));
    }

    static void ExpectSameExceptScriptFile(const CMacro& a, const CMacro& b)
    {
        EXPECT_EQ(a.GetId(), b.GetId());
        EXPECT_EQ(a.GetType(), b.GetType());
        EXPECT_EQ(a.GetName(), b.GetName());
        EXPECT_EQ(a.GetDescription(), b.GetDescription());
        EXPECT_EQ(a.GetContent(), b.GetContent());
        ASSERT_EQ(a.InputParams().GetSize(), b.InputParams().GetSize());
        for (int i = 0; i < a.InputParams().GetSize(); ++i) {
            EXPECT_EQ(a.InputParams()[i].GetName(), b.InputParams()[i].GetName());
            EXPECT_EQ(a.InputParams()[i].GetValue(), b.InputParams()[i].GetValue());
            EXPECT_EQ(a.InputParams()[i].GetDescription(), b.InputParams()[i].GetDescription());
            EXPECT_EQ(a.InputParams()[i].GetDataType(), b.InputParams()[i].GetDataType());
        }
        ASSERT_EQ(a.OutputParams().GetSize(), b.OutputParams().GetSize());
        for (int i = 0; i < a.OutputParams().GetSize(); ++i)
            EXPECT_EQ(a.OutputParams()[i].GetName(), b.OutputParams()[i].GetName());
    }

    CMacro source;
};

TEST_F(CMacroCopyTest, CopyConstructionLeavesScriptFileEmpty)
{
    const CMacro copy(source);
    ExpectSameExceptScriptFile(copy, source);
    EXPECT_TRUE(copy.GetScriptFile().isEmpty());
}

TEST_F(CMacroCopyTest, AssignmentReplacesListsAndKeepsTargetScriptFile)
{
    CMacro target(9, QStringLiteral("old"), QStringLiteral("od"), QStringLiteral("old();"));
    target.SetScriptFile(QStringLiteral("D:\\mine.js"));
    for (int i = 0; i < 5; ++i)
        target.InputParams().Add(Param(QStringLiteral("stale%1").arg(i), QString(), QString(), 0));
    target.OutputParams().Add(Param(QStringLiteral("gone"), QString(), QString(), 0));
    target.OutputParams().Add(Param(QStringLiteral("gone2"), QString(), QString(), 0));

    target = source;
    ExpectSameExceptScriptFile(target, source);
    EXPECT_EQ(target.GetScriptFile(), QStringLiteral("D:\\mine.js"));
    EXPECT_EQ(source.GetScriptFile(), QStringLiteral("D:\\js\\src.js"));
}

TEST_F(CMacroCopyTest, CopiesAreIndependent)
{
    CMacro copy(source);
    copy.InputParams()[0].SetValue(QStringLiteral("99"));
    copy.OutputParams().SetSize(0);
    EXPECT_EQ(source.InputParams()[0].GetValue(), QStringLiteral("1200"));
    EXPECT_EQ(source.OutputParams().GetSize(), 1);
}

TEST_F(CMacroCopyTest, SelfAssignmentKeepsEverything)
{
    CMacro& alias = source;
    source = alias;
    EXPECT_EQ(source.InputParams().GetSize(), 2);
    EXPECT_EQ(source.GetScriptFile(), QStringLiteral("D:\\js\\src.js"));
    EXPECT_EQ(source.GetId(), 17);
}
