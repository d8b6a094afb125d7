#include "CLarge_StringBuilder.h"
#include "CStringBuilder.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(CStringBuilderTest, AppendsInOrderWithAnyGrowthSkipsNullAndClears)
{
    for (int growBy : {4096, 1, 0, -5}) {
        CStringBuilder builder;
        builder.Append(u"name="_s, growBy);
        builder.Append(static_cast<const char16_t*>(nullptr), growBy);
        for (int i = 0; i < 2000; ++i)
            builder.Append(u"长度,", growBy);
        QString out = u"stale"_s;
        builder.GetString(out);
        EXPECT_EQ(out, u"name="_s + u"长度,"_s.repeated(2000)) << growBy;
        EXPECT_EQ(builder.GetLength(), out.size());
        builder.Clear();
        EXPECT_TRUE(builder.ToString().isEmpty());
    }
}

TEST(CLargeStringBuilderTest, JoinsAcrossChunkBoundaries)
{
    // Small chunks so that pieces land exactly on, just before and past a boundary.
    const QString pieces[] = {QString(15, u'a'), u"b"_s, QString(40, u'c'), u"脚本"_s, QString(), QString(16, u'd')};
    for (qsizetype chunk : {16, 17, 65536}) {
        CLarge_StringBuilder builder(chunk);
        QString out = u"stale"_s, expected;
        builder.GetString(out);
        EXPECT_TRUE(out.isEmpty());
        builder.Append(static_cast<const char16_t*>(nullptr));
        builder.Append(u"x"_s);
        builder.Clear();
        for (int round = 0; round < 20; ++round)
            for (const QString& piece : pieces) {
                builder.Append(piece);
                expected += piece;
            }
        EXPECT_EQ(builder.GetLength(), expected.size());
        builder.GetString(out);
        EXPECT_EQ(out, expected) << chunk;
    }
}
