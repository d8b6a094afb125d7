#include "ExpressionRewriter.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
QString U(const char* text) { return QString::fromUtf8(text); }
} // namespace

TEST(AddMathPrefixTest, FormulaTable)
{
    const char* cases[][2] = {
        {"sin(x)+cos(y)", "Math.sin(x)+Math.cos(y)"}, {"Math.sin(x)", "Math.sin(x)"}, {"PI*r", "Math.PI*r"},
        {"asin(x)", "asin(x)"}, {"sinh(x)", "sinh(x)"}, // a letter touches the word
        {"sin1sin", "Math.sin1Math.sin"},                // digits are no letters
        {"ctan(x)", "Math.ctan(x)"},                     // the tan inside stays
        {"pi*r", "pi*r"}, {"SIN(x)", "SIN(x)"},          // case-sensitive
        {"sqrt(PI)", "Math.sqrt(Math.PI)"}, {"sin(sin(x))", "Math.sin(Math.sin(x))"}, {"", ""},
        {"_sin(x)+sin_(x)", "_sin(x)+sin_(x)"}, {"a.sin+sin.b", "a.sin+sin.b"}, // "_" and "." are part of a word
        {"中sin", "中Math.sin"},                                                // only ASCII letters count
        // a lone "Math." is dropped first
        {"Math.", ""}, {"2*Math.+1", "2*+1"}, {"Math. sin(x)", " Math.sin(x)"}, {"Math.2", "2"},
        {"Math.Math.", "Math.Math."}, // each touches a word part
        {"Math.+Math.", "+Math."},    // the start moved past the second one
    };
    for (const auto& c : cases)
        EXPECT_EQ(AddMathPrefix(U(c[0])), U(c[1])) << c[0];
}

TEST(ReplaceWordTest, BoundaryAndSteppingTable)
{
    const struct { const char *text, *word, *replacement, *out; } cases[] = {
        {"x.a a.x a", "a", "b", "x.a a.x b"}, {"a1 1a", "a", "z", "z1 1z"},
        {"aaa", "a", "b", "aaa"}, {"a a", "a", "a", "a a"}, {"a+1+1+", "+1+", "X", "a+1X"}, // a rejected one overlaps the next
        {"abc abc", "abc", "", " abc"},         // start moves from the old start, past the second
        {"abc+abc+abc", "abc", "Z", "Z+abc+Z"}, // the shrunk text puts the middle one behind the start
        {"text", "", "x", "text"},              // empty word: nothing to find
    };
    for (const auto& c : cases) {
        QString text = U(c.text);
        ReplaceWord(text, U(c.word), U(c.replacement));
        EXPECT_EQ(text, U(c.out)) << c.text << " / " << c.word << " / " << c.replacement;
    }
    QString feeding = U("+a"); // a replacement holding the word stops after at most length + 1 rounds
    ReplaceWord(feeding, U("a"), U("a+a"));
    EXPECT_TRUE(feeding.startsWith(U("+a+a")) && feeding.size() <= 2 + 3 * 3) << feeding.toStdString();
}

TEST(CalcExpressionTest, GivesTheCalculatorsValue)
{
    EXPECT_DOUBLE_EQ(CalcExpression(QStringLiteral("1+2*3")), 7);
    EXPECT_DOUBLE_EQ(CalcExpression(QStringLiteral("sqrt(2)^2")), 2);
    EXPECT_TRUE(std::isnan(CalcExpression(QStringLiteral("Math.sin(1)"))));
    EXPECT_TRUE(std::isnan(CalcExpression(QString())));
}
