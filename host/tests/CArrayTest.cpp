#include "CArray.h"

#include <QString>
#include <gtest/gtest.h>

TEST(CArrayTest, AppendsCopiesInOrderAndEmptiesBySize)
{
    CArray<QString> list;
    QString item = QStringLiteral("a");
    EXPECT_EQ(list.Add(item), 0);
    item = QStringLiteral("b"); // the stored element is a copy
    EXPECT_EQ(list.Add(item), 1);
    ASSERT_EQ(list.GetSize(), 2);
    EXPECT_EQ(list[0], QStringLiteral("a"));
    EXPECT_EQ(list[1], QStringLiteral("b"));
    list.SetSize(0);
    EXPECT_TRUE(list.IsEmpty());
}

TEST(CArrayTest, CopyReplacesOldElementsElementWise)
{
    CArray<QString> source;
    source.Add(QStringLiteral("x"));
    CArray<QString> target;
    target.Add(QStringLiteral("old1"));
    target.Add(QStringLiteral("old2"));
    target.Copy(source);
    ASSERT_EQ(target.GetSize(), 1);
    EXPECT_EQ(target[0], QStringLiteral("x"));
    source[0] = QStringLiteral("changed");
    EXPECT_EQ(target[0], QStringLiteral("x"));
    target.Copy(target);
    EXPECT_EQ(target.GetSize(), 1);
}

TEST(CArrayTest, OutOfRangeAccessThrowsInsteadOfCorrupting)
{
    CArray<int> list;
    list.Add(1);
    EXPECT_THROW(list.GetAt(1), std::out_of_range);
    EXPECT_THROW(list.GetAt(-1), std::out_of_range);
}
