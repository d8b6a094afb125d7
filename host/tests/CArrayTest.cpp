#include "CArray.h"

#include <QString>
#include <gtest/gtest.h>

TEST(CArrayTest, StoresCopiesInOrderCopyReplacesElementWiseAndOutOfRangeThrows)
{
    CArray<QString> source, target;
    QString item = QStringLiteral("a");
    EXPECT_EQ(source.Add(item), 0);
    item = QStringLiteral("b"); // the stored element is a copy
    EXPECT_EQ(source.Add(item), 1);
    for (const char* old : {"old1", "old2", "old3"})
        target.Add(QString::fromLatin1(old));
    target.Copy(source);
    source[0] = QStringLiteral("changed");
    target.Copy(target);
    ASSERT_EQ(target.GetSize(), 2);
    EXPECT_EQ(target[0], QStringLiteral("a"));
    EXPECT_EQ(target[1], QStringLiteral("b"));
    EXPECT_THROW(target.GetAt(2), std::out_of_range);
    EXPECT_THROW(target.GetAt(-1), std::out_of_range);
    target.SetSize(0);
    EXPECT_TRUE(target.IsEmpty());
}
