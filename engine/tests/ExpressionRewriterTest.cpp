#include "ExpressionRewriter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

struct Rewrite { const char *in, *out; };

QString U(const char* text) { return QString::fromUtf8(text); }
bool Letter(QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || c == u'.'; }

// The whole-word replace written out one position at a time, as described,
// with a step limit; false when the limit was reached.
bool LiteralReplaceWord(QString& text, const QString& word, const QString& replacement)
{
    qsizetype p = 0;
    for (int steps = 0; p < text.size(); ++steps) {
        if (steps > 100000)
            return false;
        const qsizetype f = text.indexOf(word, p);
        if (f < 0) {
            ++p;
            continue;
        }
        const QString left = text.left(f);
        const QString right = text.mid(f + word.size());
        if ((left.isEmpty() || !Letter(left.back())) && (right.isEmpty() || !Letter(right.front()))) {
            text = left + replacement + right;
            p += word.size();
        } else {
            ++p;
        }
    }
    return true;
}

} // namespace

TEST(AddMathPrefixTest, FormulaTable)
{
    const Rewrite cases[] = {
        {"sin(x)+cos(y)", "Math.sin(x)+Math.cos(y)"}, {"Math.sin(x)", "Math.sin(x)"}, {"PI*r", "Math.PI*r"},
        {"asin(x)", "asin(x)"}, {"sinh(x)", "sinh(x)"}, // a letter touches the word
        {"sin2", "Math.sin2"}, {"sin1sin", "Math.sin1Math.sin"}, // digits are no letters
        {"ctan(x)", "Math.ctan(x)"},                             // the tan inside stays
        {"pi*r", "pi*r"}, {"SIN(x)+Sin(x)", "SIN(x)+Sin(x)"},    // case-sensitive
        {"sqrt(PI)", "Math.sqrt(Math.PI)"}, {"sin(sin(x))", "Math.sin(Math.sin(x))"}, {"", ""},
        {"_sin(x)+sin_(x)", "_sin(x)+sin_(x)"}, {"a.sin+sin.b", "a.sin+sin.b"}, // "_" and "." are part of a word
        {"中sin", "中Math.sin"},                                                // only ASCII letters count
    };
    for (const Rewrite& c : cases) {
        const QString input = U(c.in);
        EXPECT_EQ(AddMathPrefix(input), U(c.out)) << c.in;
        EXPECT_EQ(input, U(c.in)); // the argument is left alone
    }
}

TEST(AddMathPrefixTest, LoneMathPrefixIsDropped)
{
    const Rewrite cases[] = {
        {"Math.", ""}, {"Math.(1)", "(1)"}, {"2*Math.+1", "2*+1"}, {"Math. sin(x)", " Math.sin(x)"}, {"Math.2", "2"},
        {"Math.Math.", "Math.Math."},  // each touches a word part
        {"Math.+Math.", "+Math."},     // the start moved past the second one
    };
    for (const Rewrite& c : cases)
        EXPECT_EQ(AddMathPrefix(U(c.in)), U(c.out)) << c.in;
}

TEST(ReplaceWordTest, BoundaryAndSteppingTable)
{
    const struct { const char *text, *word, *replacement, *out; } cases[] = {
        {"x.a a.x a", "a", "b", "x.a a.x b"}, {"a1 1a", "a", "z", "z1 1z"},
        {"aaa", "a", "b", "aaa"}, {"a a", "a", "a", "a a"},
        {"abc abc", "abc", "", " abc"},         // start moves from the old start, past the second
        {"abc+abc+abc", "abc", "Z", "Z+abc+Z"}, // the shrunk text puts the middle one behind the start
        {"text", "", "x", "text"},              // empty word: nothing to find
    };
    for (const auto& c : cases) {
        QString text = U(c.text);
        ReplaceWord(text, U(c.word), U(c.replacement));
        EXPECT_EQ(text, U(c.out)) << c.text << " / " << c.word << " / " << c.replacement;
    }
}

TEST(ReplaceWordTest, AgreesWithTheOnePositionAtATimeStepping)
{
    std::mt19937 random(12345);
    const QString alphabet = QStringLiteral("ab._+1 (");
    const QString words[] = {u"a"_s, u"ab"_s, u"a."_s, u"+"_s, u"b a"_s};
    const QString replacements[] = {QString(), u"x"_s, u"Math.a"_s, u"(1)"_s, u"a"_s};
    int compared = 0;
    for (int round = 0; round < 3000; ++round) {
        QString text;
        const int length = int(random() % 24);
        for (int i = 0; i < length; ++i)
            text += alphabet.at(qsizetype(random() % alphabet.size()));
        const QString& word = words[random() % std::size(words)];
        const QString& replacement = replacements[random() % std::size(replacements)];
        QString expected = text;
        if (!LiteralReplaceWord(expected, word, replacement))
            continue;
        QString actual = text;
        ReplaceWord(actual, word, replacement);
        ASSERT_EQ(actual, expected) << qPrintable(text + " / " + word + " / " + replacement);
        ++compared;
    }
    EXPECT_GT(compared, 2900);
}

TEST(ReplaceWordTest, SelfFeedingReplacementStops)
{
    QString text = QStringLiteral("+a");
    ReplaceWord(text, QStringLiteral("a"), QStringLiteral("a+a"));
    EXPECT_TRUE(text.startsWith(QStringLiteral("+a+a")));
    EXPECT_LE(text.size(), 2 + 3 * 3); // at most length + 1 replacements
}

TEST(ReplaceWordTest, LongTextFinishes)
{
    const QString out = AddMathPrefix(QStringLiteral("sin(x)+asin(y)+").repeated(5000));
    EXPECT_EQ(out.count(QStringLiteral("Math.sin(")), 5000);
    EXPECT_EQ(out.count(QStringLiteral("asin(")), 5000);
}

TEST(CalcExpressionTest, GivesTheCalculatorsValue)
{
    EXPECT_DOUBLE_EQ(CalcExpression(QStringLiteral("1+2*3")), 7);
    EXPECT_DOUBLE_EQ(CalcExpression(QStringLiteral("sqrt(2)^2")), 2);
    EXPECT_TRUE(std::isnan(CalcExpression(QStringLiteral("Math.sin(1)"))));
    EXPECT_TRUE(std::isnan(CalcExpression(QString())));
}
