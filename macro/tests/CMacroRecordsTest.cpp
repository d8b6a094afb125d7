#include "CMacro.h"
#include "MacroParamFields.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

CMacroParam Param(const char* name, const char* value, std::uint32_t type)
{
    return MakeParam(QString::fromUtf8(name), QString::fromUtf8(value), QStringLiteral("说明"), int(type));
}

} // namespace

TEST(CMacroParamTest, ToJsDeclarationTable)
{
    const struct { const char *name, *value; std::uint32_t type; const char* expected; } cases[] = {
        {"L", "1200", 1, "var L = 1200;"}, {"L", "1200", 0, "var L = \"1200\";"},
        {"n", "", 1, "var n = ;"},                          // empty literal: nothing between = and ;
        {"q", "a\"b", 0, "var q = \"a\"b\";"},              // unbalanced quote kept as is
        {"p", "C:\\x", 0, "var p = \"C:\\x\";"},            // backslash not escaped
        {"m", "-1", 0xFFFFFFFFu, "var m = -1;"},            // any non-zero type is a literal
        {"x", "1\r\n2", 1, "var x = 1\r\n2;"},              // no line break added, none removed
    };
    for (const auto& c : cases)
        EXPECT_EQ(Param(c.name, c.value, c.type).ToJsDeclaration(), QString::fromUtf8(c.expected)) << c.name << c.value;
}

// Copies take every field and list but never the script file: a copy starts without one and an
// assignment keeps the target's own.
TEST(CMacroTest, CopiesLeaveTheScriptFileBehind)
{
    CMacro source(4, QStringLiteral("src"), QStringLiteral("d"), QStringLiteral("W = L * 2;"));
    source.SetId(17);
    source.SetScriptFile(QStringLiteral("D:\\js\\src.js"));
    source.InputParams().Add(Param("L", "1200", 1));
    source.InputParams().Add(Param("t", "a", 0));
    source.OutputParams().Add(Param("W", "", 1));
    CMacro assigned(9, QStringLiteral("old"), QStringLiteral("od"), QStringLiteral("old();"));
    assigned.SetScriptFile(QStringLiteral("D:\\mine.js"));
    for (int i = 0; i < 5; ++i)
        assigned.InputParams().Add(Param("stale", "", 0));
    assigned = source;
    CMacro copy(source);
    for (const CMacro* m : {&copy, &assigned})
        EXPECT_EQ((QStringList{QString::number(m->GetId()), QString::number(m->GetType()), m->GetName(), m->GetDescription(),
                               m->GetContent(), m->InputParams()[1].GetValue(), QString::number(m->InputParams()[0].GetDataType()),
                               QString::number(m->InputParams().GetSize() * 10 + m->OutputParams().GetSize())}),
                  (QStringList{"17", "4", "src", "d", "W = L * 2;", "a", "1", "21"}));
    EXPECT_EQ(copy.GetScriptFile() + "|" + assigned.GetScriptFile(), QStringLiteral("|D:\\mine.js"));
    // The copy's lists are its own; assigning to itself keeps everything.
    copy.InputParams()[0].SetValue(QStringLiteral("99"));
    CMacro& alias = source;
    source = alias;
    EXPECT_EQ(source.InputParams()[0].GetValue() + "|" + source.GetScriptFile(), QStringLiteral("1200|D:\\js\\src.js"));
}
