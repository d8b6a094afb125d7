#include "CodePage.h"

#include <gtest/gtest.h>

TEST(CodePageTest, GbkRoundTripsAndKnownBytes)
{
    const QString mixed = QStringLiteral("钢筋重量 d=25; // 箍筋");
    const QByteArray bytes = CodePage::FromUnicode(mixed, "GBK");
    EXPECT_EQ(bytes.size(), 6 * 2 + 10); // two bytes per Chinese character
    EXPECT_EQ(CodePage::ToUnicode(bytes, "GBK"), mixed);
    EXPECT_EQ(CodePage::FromUnicode(QStringLiteral("中"), "GBK"), QByteArray("\xD6\xD0"));
    EXPECT_EQ(CodePage::ToUnicode(QByteArray("\xD6\xD0"), "GBK"), QStringLiteral("中"));
    // An unknown code page falls back to Latin-1.
    EXPECT_EQ(CodePage::ToUnicode(QByteArray("abc\xE9"), "NO-SUCH-CODEPAGE"), QStringLiteral("abc\u00E9"));
}

TEST(CodePageTest, WhatCannotBeConvertedBecomesQuestionMarksAndTheRestSurvives)
{
    const struct { QString text; QByteArray expected; } toGbk[] = {
        {QStringLiteral("x\U0001F600y"), "x?y"}, // a surrogate pair gives one "?"
        {QStringLiteral("\u0E01z"), "?z"},       // Thai
        {QStringLiteral("\u0E01\u0E02"), "??"},  // nothing convertible at all
        {QString(), QByteArray()},
    };
    for (const auto& c : toGbk)
        EXPECT_EQ(CodePage::FromUnicode(c.text, "GBK"), c.expected) << c.text.toStdString();
    const struct { QByteArray bytes; QString expected; } fromGbk[] = {
        {"a\xFF" "b", QStringLiteral("a?b")}, // 0xFF is never a valid GBK lead byte
        {"ab\xD6", QStringLiteral("ab?")},     // a lone lead byte at the end is cut short
        {QByteArray(), QString()},
    };
    for (const auto& c : fromGbk)
        EXPECT_EQ(CodePage::ToUnicode(c.bytes, "GBK"), c.expected) << c.bytes.toHex().toStdString();
}
