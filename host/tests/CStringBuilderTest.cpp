#include "CLarge_StringBuilder.h"
#include "CStringBuilder.h"

#include <gtest/gtest.h>

TEST(CStringBuilderTest, AppendsInOrderWithAnyGrowthAndClears)
{
    for (int growBy : {4096, 1, 0, -5}) {
        CStringBuilder builder;
        builder.Append(QStringLiteral("\r\n*** Trace ***\r\n"), growBy);
        builder.Append(u"name=", growBy);
        builder.Append(QString(), growBy);
        builder.Append(static_cast<const char16_t*>(nullptr), growBy);
        for (int i = 0; i < 2000; ++i)
            builder.Append(QStringLiteral("长度,"), growBy);
        QString out = QStringLiteral("stale");
        builder.GetString(out);
        EXPECT_EQ(out, QStringLiteral("\r\n*** Trace ***\r\nname=") + QStringLiteral("长度,").repeated(2000)) << growBy;
        EXPECT_EQ(builder.GetLength(), out.size());
        builder.Clear();
        EXPECT_EQ(builder.GetLength(), 0);
        EXPECT_TRUE(builder.ToString().isEmpty());
    }
}

TEST(CLargeStringBuilderTest, EmptyNullAndClearThenJoinsAcrossChunkBoundaries)
{
    // Small chunks so that pieces land exactly on, just before and past a boundary.
    const QString pieces[] = {QString(15, u'a'), QStringLiteral("b"), QString(40, u'c'), QStringLiteral("脚本"),
                              QString(), QString(16, u'd'), QStringLiteral("\r\n")};
    for (qsizetype chunk : {16, 17, 64, 65536}) {
        CLarge_StringBuilder builder(chunk);
        QString out = QStringLiteral("stale"), expected;
        builder.GetString(out);
        EXPECT_TRUE(out.isEmpty());
        builder.Append(static_cast<const char16_t*>(nullptr));
        builder.Append(u"");
        EXPECT_EQ(builder.GetLength(), 0);
        builder.Append(QStringLiteral("x"));
        builder.Clear();
        for (int round = 0; round < 20; ++round)
            for (const QString& piece : pieces) {
                builder.Append(piece);
                expected += piece;
            }
        builder.Append(u"//***");
        expected += QStringLiteral("//***");
        EXPECT_EQ(builder.GetLength(), expected.size());
        out = QStringLiteral("stale");
        builder.GetString(out);
        EXPECT_EQ(out, expected) << chunk;
        EXPECT_EQ(builder.ToString(), expected);
    }
}
