#include "CodePage.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(CodePageTest, GbkRoundTripsWhatCannotBeConvertedBecomesQuestionMarksAndUnknownCodePageIsLatin1)
{
    const QString mixed = u"钢筋重量 d=25; // 箍筋"_s;
    const QByteArray mixedGbk("\xB8\xD6\xBD\xEE\xD6\xD8\xC1\xBF d=25; // \xB9\xBF\xBD\xEE"); // two bytes per character
    // A surrogate pair gives one "?"; Thai has no GBK form.
    const struct { QString text; QByteArray gbk; } toGbk[] = {{mixed, mixedGbk}, {u"x\U0001F600y"_s, "x?y"},
        {u"\u0E01z"_s, "?z"}, {u"\u0E01\u0E02"_s, "??"}, {QString(), QByteArray()}};
    for (const auto& c : toGbk)
        EXPECT_EQ(CodePage::FromUnicode(c.text, "GBK"), c.gbk) << c.text.toStdString();
    // 0xFF is never a GBK lead byte; a lone lead byte at the end is cut short.
    const struct { QByteArray gbk; QString text; } fromGbk[] = {
        {mixedGbk, mixed}, {"a\xFF" "b", u"a?b"_s}, {"ab\xD6", u"ab?"_s}, {{}, {}}};
    for (const auto& c : fromGbk)
        EXPECT_EQ(CodePage::ToUnicode(c.gbk, "GBK"), c.text) << c.gbk.toHex().toStdString();
    EXPECT_EQ(CodePage::ToUnicode(QByteArray("abc\xE9"), "NO-SUCH-CODEPAGE"), u"abc\u00E9"_s);
    // Not every code page keeps ASCII as it is.
    EXPECT_EQ(CodePage::ToUnicode(QByteArray("a\\b"), "SHIFT_JIS"), u"a\u00A5b"_s);
}
