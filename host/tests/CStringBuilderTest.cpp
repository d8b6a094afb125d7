#include "CLarge_StringBuilder.h"
#include "CStringBuilder.h"

#include <gtest/gtest.h>

TEST(CStringBuilderTest, AppendsInOrderWithAnyGrowth)
{
    for (int growBy : {4096, 1, 0, -5}) {
        CStringBuilder builder;
        EXPECT_EQ(builder.GetLength(), 0);
        builder.Append(QStringLiteral("\r\n*** Trace ***\r\n"), growBy);
        builder.Append(u"name=", growBy);
        builder.Append(QString(), growBy);
        builder.Append(static_cast<const char16_t*>(nullptr), growBy);
        builder.Append(QStringLiteral("长度,"), growBy);
        QString out = QStringLiteral("stale");
        builder.GetString(out);
        EXPECT_EQ(out, QStringLiteral("\r\n*** Trace ***\r\nname=长度,")) << growBy;
        EXPECT_EQ(builder.GetLength(), out.size());
    }
}

TEST(CStringBuilderTest, ManySmallAppendsAndClear)
{
    CStringBuilder builder;
    QString expected;
    for (int i = 0; i < 5000; ++i) {
        const QString piece = QString::number(i) + QLatin1Char(',');
        builder.Append(piece);
        expected += piece;
    }
    EXPECT_EQ(builder.ToString(), expected);
    builder.Clear();
    EXPECT_EQ(builder.GetLength(), 0);
    EXPECT_TRUE(builder.ToString().isEmpty());
}

TEST(CLargeStringBuilderTest, JoinsAcrossChunkBoundaries)
{
    // Small chunks so that pieces land exactly on, just before and past a boundary.
    for (qsizetype chunk : {16, 17, 64, 65536}) {
        CLarge_StringBuilder builder(chunk);
        QString expected;
        const QString pieces[] = {QString(15, u'a'), QStringLiteral("b"), QString(40, u'c'), QStringLiteral("脚本"),
                                  QString(), QString(16, u'd'), QStringLiteral("\r\n")};
        for (int round = 0; round < 20; ++round) {
            for (const QString& piece : pieces) {
                builder.Append(piece);
                expected += piece;
            }
        }
        builder.Append(u"//***");
        expected += QStringLiteral("//***");
        EXPECT_EQ(builder.GetLength(), expected.size());
        QString out = QStringLiteral("stale");
        builder.GetString(out);
        EXPECT_EQ(out, expected) << chunk;
        EXPECT_EQ(builder.ToString(), expected);
    }
}

TEST(CLargeStringBuilderTest, EmptyNullAndClear)
{
    CLarge_StringBuilder builder;
    QString out = QStringLiteral("stale");
    builder.GetString(out);
    EXPECT_TRUE(out.isEmpty());
    builder.Append(static_cast<const char16_t*>(nullptr));
    builder.Append(u"");
    EXPECT_EQ(builder.GetLength(), 0);
    builder.Append(QStringLiteral("x"));
    builder.Clear();
    builder.Append(QStringLiteral("y"));
    EXPECT_EQ(builder.ToString(), QStringLiteral("y"));
}

TEST(CLargeStringBuilderTest, LongTextOfManyLines)
{
    CLarge_StringBuilder builder;
    qsizetype total = 0;
    for (int i = 0; i < 3000; ++i) {
        const QString line = QStringLiteral("function f%1(a) { return a * %1; }\r\n").arg(i);
        builder.Append(line);
        total += line.size();
    }
    const QString text = builder.ToString();
    EXPECT_EQ(text.size(), total);
    EXPECT_TRUE(text.startsWith(QStringLiteral("function f0(a)")));
    EXPECT_TRUE(text.endsWith(QStringLiteral("function f2999(a) { return a * 2999; }\r\n")));
    EXPECT_EQ(text.count(QStringLiteral("\r\n")), 3000);
}
