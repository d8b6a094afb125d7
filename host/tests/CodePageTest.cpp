#include "CodePage.h"

#include <gtest/gtest.h>

TEST(CodePageTest, GbkRoundTripOfChineseAndAscii)
{
    const QString text = QStringLiteral("钢筋重量 d=25; // 箍筋");
    const QByteArray bytes = CodePage::FromUnicode(text, "GBK");
    EXPECT_EQ(bytes.size(), 6 * 2 + 10); // two bytes per Chinese character
    EXPECT_EQ(CodePage::ToUnicode(bytes, "GBK"), text);
}

TEST(CodePageTest, GbkBytesOfAKnownCharacter)
{
    // 中 is D6 D0 in GBK.
    EXPECT_EQ(CodePage::FromUnicode(QStringLiteral("中"), "GBK"), QByteArray("\xD6\xD0"));
    EXPECT_EQ(CodePage::ToUnicode(QByteArray("\xD6\xD0"), "GBK"), QStringLiteral("中"));
}

TEST(CodePageTest, UnrepresentableCharacterBecomesQuestionMarkAndRestSurvives)
{
    struct Case
    {
        QString text;
        QByteArray expected;
    };
    const Case cases[] = {
        {QStringLiteral("x\U0001F600y"), "x?y"}, // a surrogate pair gives one "?"
        {QStringLiteral("\u0E01z"), "?z"},       // Thai
        {QStringLiteral("\u0E01\u0E02"), "??"},  // nothing convertible at all
    };
    for (const Case& c : cases)
        EXPECT_EQ(CodePage::FromUnicode(c.text, "GBK"), c.expected) << c.text.toStdString();
}

TEST(CodePageTest, InvalidInputBytesBecomeQuestionMarks)
{
    // 0xFF is never a valid GBK lead byte; a lone lead byte at the end is cut short.
    EXPECT_EQ(CodePage::ToUnicode(QByteArray("a\xFF" "b"), "GBK"), QStringLiteral("a?b"));
    EXPECT_EQ(CodePage::ToUnicode(QByteArray("ab\xD6"), "GBK"), QStringLiteral("ab?"));
}

TEST(CodePageTest, Utf8FileReadAsGbkIsNotUtf8)
{
    const QByteArray utf8 = QStringLiteral("长度").toUtf8();
    const QString asGbk = CodePage::ToUnicode(utf8, "GBK");
    EXPECT_NE(asGbk, QStringLiteral("长度"));
    EXPECT_FALSE(asGbk.isEmpty());
}

TEST(CodePageTest, EmptyAndUnknownCodePage)
{
    EXPECT_TRUE(CodePage::ToUnicode(QByteArray(), "GBK").isEmpty());
    EXPECT_TRUE(CodePage::FromUnicode(QString(), "GBK").isEmpty());
    // An unknown code page falls back to Latin-1 rather than losing the text.
    EXPECT_EQ(CodePage::ToUnicode(QByteArray("abc"), "NO-SUCH-CODEPAGE"), QStringLiteral("abc"));
}
