#include "CParms.h"

#include <gtest/gtest.h>
#include <utility>

TEST(CParmTest, DeclarationQuotesOnlyTypeZeroAndEscapesNothing)
{
    const struct { const char* name; const char* value; int type; const char* expected; } cases[] = {
        {"a", "1", 1, "var a = 1;"}, {"a", "1", 0, "var a = \"1\";"}, {"a", "", 3, "var a = ;"},
        {"s", "x\"y", 0, "var s = \"x\"y\";"}, {"n", "-2", -1, "var n = -2;"}, {"中", "文", 0, "var 中 = \"文\";"},
    };
    for (const auto& c : cases) {
        const CParm parm(QString::fromUtf8(c.name), QString::fromUtf8(c.value), c.type);
        EXPECT_EQ(parm.GetJsDeclaration(), QString::fromUtf8(c.expected)) << c.expected;
    }
    CParm changed(QStringLiteral("L"), QStringLiteral("1200"), 1);
    changed.SetParmName(QStringLiteral("M"));
    changed.SetParmValue(QStringLiteral("5"));
    changed.SetType(0);
    EXPECT_EQ(changed.GetJsDeclaration(), QStringLiteral("var M = \"5\";"));
}

TEST(CParmsTest, EmptyCollectionClearsTheCallersArray)
{
    CParms parms;
    EXPECT_TRUE(parms.GetParmMacro().isEmpty());
    CArray<CParm*> array;
    array.Add(nullptr);
    EXPECT_EQ(parms.GetParmsArray(array), 0);
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(parms.FindParm(QStringLiteral("x")), nullptr);
}

TEST(CParmsTest, KeepsOrderAndGivesStablePointers)
{
    CParms parms;
    CParm* first = parms.AddParm(QStringLiteral("A"), QStringLiteral("1"), 1);
    for (int i = 0; i < 100; ++i)
        parms.AddParm(QStringLiteral("p%1").arg(i), QString::number(i), 1);
    parms.AddParm(CParm(QStringLiteral("Z"), QStringLiteral("z"), 0, QStringLiteral("末")));
    EXPECT_EQ(first->GetParmName(), QStringLiteral("A")); // still valid after growth
    CArray<CParm*> array;
    ASSERT_EQ(parms.GetParmsArray(array), 102);
    EXPECT_EQ(array[0], first);
    EXPECT_EQ(array[100]->GetParmName(), QStringLiteral("p99"));
    EXPECT_EQ(array[101]->GetDes(), QStringLiteral("末"));
    array[1]->SetParmValue(QStringLiteral("changed"));
    EXPECT_EQ(parms.FindParm(QStringLiteral("p0"))->GetParmValue(), QStringLiteral("changed"));
    CArray<const CParm*> constArray;
    EXPECT_EQ(std::as_const(parms).GetParmsArray(constArray), 102);
    EXPECT_EQ(constArray[101]->GetParmName(), QStringLiteral("Z"));
}

TEST(CParmsTest, FindIsExactMacroJoinsDeclarationsAndCopyIsDeep)
{
    CParms parms;
    const struct { const char* name; const char* value; int type; } added[] = {
        {"L", "1200", 1}, {"W", "first", 0}, {"W", "second", 1}, {"w", "lower", 1}};
    for (const auto& a : added)
        parms.AddParm(QString::fromLatin1(a.name), QString::fromLatin1(a.value), a.type);
    EXPECT_EQ(parms.GetParmMacro(), QStringLiteral("var L = 1200;\r\nvar W = \"first\";\r\nvar W = second;\r\nvar w = lower;\r\n"));
    EXPECT_EQ(parms.FindParm(QStringLiteral("W"))->GetParmValue(), QStringLiteral("first")); // the first of repeated names
    EXPECT_EQ(parms.FindParm(QStringLiteral("w"))->GetParmValue(), QStringLiteral("lower"));
    EXPECT_EQ(parms.FindParm(QStringLiteral(" W")), nullptr);
    EXPECT_EQ(std::as_const(parms).FindParm(QStringLiteral("W")), parms.FindParm(QStringLiteral("W")));
    CParms copy(parms);
    copy.FindParm(QStringLiteral("L"))->SetParmValue(QStringLiteral("2"));
    EXPECT_EQ(parms.FindParm(QStringLiteral("L"))->GetParmValue(), QStringLiteral("1200"));
    parms.RemoveAll();
    EXPECT_EQ(parms.GetCount(), 0);
    EXPECT_EQ(copy.GetCount(), 4);
}
