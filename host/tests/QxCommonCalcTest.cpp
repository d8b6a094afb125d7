#include "QxCommonCalc.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace Qt::StringLiterals;

TEST(QxCommonCalcTest, ArithmeticTable)
{
    const struct { const char* expression; double value; } cases[] = {
        {"1+2*3", 7}, {"(1+2)*3", 9}, {"2^10", 1024}, {"-3+1", -2}, {"10/4", 2.5}, {"sqrt(16)+abs(-2)", 6},
        {"sin(0)+cos(0)", 1}, {" 1200 * 0.617 ", 740.4}, {"1e3/8", 125}, {"max(3, 9)", 9}, {"_pi*2", 2 * std::numbers::pi},
        {"PI", std::numbers::pi}};
    for (const auto& c : cases) {
        QString error = u"stale"_s;
        EXPECT_NEAR(qxcommon::Calc(QString::fromUtf8(c.expression), &error), c.value, 1e-9) << c.expression;
        EXPECT_TRUE(error.isEmpty()) << c.expression;
    }
}

TEST(QxCommonCalcTest, BadOrOverlongTextGivesNaNAndAMessageThatALaterSuccessClears)
{
    const char* bad[] = {"", "   ", "1+", "(1+2", "1+2)", "x*2", "sin(", "1,2", "Math.sin(1)", "1 2", "pi", "长度*2", "1+\xC2\xB2"};
    for (const char* text : bad) {
        QString error;
        EXPECT_TRUE(std::isnan(qxcommon::Calc(QString::fromUtf8(text), &error))) << text;
        EXPECT_FALSE(error.isEmpty()) << text;
        EXPECT_TRUE(std::isinf(qxcommon::Calc(u"1/0"_s, &error))); // division by zero is no error
        EXPECT_TRUE(error.isEmpty()) << text;
    }
    EXPECT_TRUE(std::isnan(qxcommon::Calc(QString(QChar(0)) + u"1"_s)));
    EXPECT_TRUE(std::isnan(qxcommon::Calc(u"1+"_s))); // no error text wanted
    QString error;
    const double deep = qxcommon::Calc(QString(2000, u'(') + u"1"_s + QString(2000, u')'), &error);
    EXPECT_TRUE(deep == 1 || (std::isnan(deep) && !error.isEmpty()));
    const QString sum = u"0"_s + u"+1"_s.repeated(9999);
    EXPECT_EQ(qxcommon::Calc(sum), 9999); // 19,999 characters
    EXPECT_TRUE(std::isnan(qxcommon::Calc(sum + u"+1"_s, &error)));
    EXPECT_FALSE(error.isEmpty());
}
