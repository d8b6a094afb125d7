#include "CParms.h"

#include <gtest/gtest.h>
#include <utility>

using namespace Qt::StringLiterals;

TEST(CParmTest, DeclarationQuotesOnlyTypeZeroAndEscapesNothing)
{
    const struct { const char* name; const char* value; int type; const char* expected; } cases[] = {
        {"a", "1", 1, "var a = 1;"}, {"a", "1", 0, "var a = \"1\";"}, {"a", "", 3, "var a = ;"},
        {"s", "x\"y", 0, "var s = \"x\"y\";"}, {"n", "-2", -1, "var n = -2;"}, {"中", "文", 0, "var 中 = \"文\";"}};
    for (const auto& c : cases)
        EXPECT_EQ(CParm(QString::fromUtf8(c.name), QString::fromUtf8(c.value), c.type).GetJsDeclaration(),
                  QString::fromUtf8(c.expected));
}

TEST(CParmsTest, KeepsOrderStablePointersAndAnEmptyCollectionClearsTheCallersArray)
{
    CParms parms;
    CArray<CParm*> array;
    array.Add(nullptr);
    EXPECT_EQ(parms.GetParmsArray(array), 0);
    EXPECT_TRUE(array.IsEmpty());
    CParm* first = parms.AddParm(u"A"_s, u"1"_s, 1);
    for (int i = 0; i < 100; ++i)
        parms.AddParm(u"p%1"_s.arg(i), QString::number(i), 1);
    parms.AddParm(CParm(u"Z"_s, u"z"_s, 0, u"末"_s));
    CArray<const CParm*> constArray;
    ASSERT_EQ(std::as_const(parms).GetParmsArray(constArray), 102);
    EXPECT_EQ(constArray[0], first); // the same object, still valid after growth
    EXPECT_EQ(constArray[100]->GetParmName(), u"p99"_s);
    EXPECT_EQ(constArray[101]->GetDes(), u"末"_s);
}

TEST(CParmsTest, FindIsExactMacroJoinsDeclarationsAndCopyIsDeep)
{
    CParms parms;
    EXPECT_TRUE(parms.GetParmMacro().isEmpty());
    EXPECT_EQ(parms.FindParm(u"W"_s), nullptr);
    for (const auto& [name, value, type] : {std::tuple{"L", "1200", 1}, {"W", "first", 0}, {"W", "second", 1}, {"w", "lower", 1}})
        parms.AddParm(QString::fromLatin1(name), QString::fromLatin1(value), type);
    EXPECT_EQ(parms.GetParmMacro(), u"var L = 1200;\r\nvar W = \"first\";\r\nvar W = second;\r\nvar w = lower;\r\n"_s);
    EXPECT_EQ(parms.FindParm(u"W"_s)->GetParmValue(), u"first"_s); // the first of repeated names
    EXPECT_EQ(parms.FindParm(u"w"_s)->GetParmValue(), u"lower"_s);
    EXPECT_EQ(parms.FindParm(u" W"_s), nullptr);
    CParms copy(parms);
    copy.FindParm(u"L"_s)->SetParmValue(u"2"_s);
    EXPECT_EQ(parms.FindParm(u"L"_s)->GetParmValue(), u"1200"_s);
    parms.RemoveAll();
    EXPECT_EQ(parms.GetCount(), 0);
    EXPECT_EQ(copy.GetCount(), 4);
}
