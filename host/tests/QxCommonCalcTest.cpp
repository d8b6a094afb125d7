#include "QxCommonCalc.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

TEST(QxCommonCalcTest, ArithmeticTable)
{
    const struct { const char* expression; double value; } cases[] = {
        {"1+2*3", 7}, {"(1+2)*3", 9}, {"2^10", 1024}, {"-3+1", -2}, {"10/4", 2.5}, {"sqrt(16)+abs(-2)", 6},
        {"sin(0)+cos(0)", 1}, {" 1200 * 0.617 ", 740.4}, {"1e3/8", 125}, {"max(3, 9)", 9}, {"_pi*2", 2 * std::numbers::pi},
    };
    for (const auto& c : cases) {
        QString error = QStringLiteral("stale");
        EXPECT_NEAR(qxcommon::Calc(QString::fromUtf8(c.expression), &error), c.value, 1e-9) << c.expression;
        EXPECT_TRUE(error.isEmpty()) << c.expression;
    }
    EXPECT_DOUBLE_EQ(qxcommon::Calc(QStringLiteral("PI")), std::numbers::pi);
}

TEST(QxCommonCalcTest, BadTextGivesNaNAndAMessageThatALaterSuccessClears)
{
    const char* bad[] = {"", "   ", "1+", "(1+2", "1+2)", "x*2", "sin(", "1,2", "Math.sin(1)", "1 2", "pi", "长度*2", "1+\xC2\xB2"};
    for (const char* text : bad) {
        QString error;
        const double value = qxcommon::Calc(QString::fromUtf8(text), &error);
        EXPECT_TRUE(std::isnan(value)) << text << " gave " << value;
        EXPECT_FALSE(error.isEmpty()) << text;
        EXPECT_TRUE(std::isinf(qxcommon::Calc(QStringLiteral("1/0"), &error))); // division by zero is no error
        EXPECT_TRUE(error.isEmpty()) << text;
    }
    EXPECT_TRUE(std::isnan(qxcommon::Calc(QString(QChar(0)) + QStringLiteral("1"))));
    EXPECT_TRUE(std::isnan(qxcommon::Calc(QStringLiteral("1+")))); // no error text wanted
}

TEST(QxCommonCalcTest, DeepAndLongTextsDoNotCrash)
{
    const QString deep = QString(2000, u'(') + QStringLiteral("1") + QString(2000, u')');
    QString error;
    const double value = qxcommon::Calc(deep, &error);
    EXPECT_TRUE(value == 1 || (std::isnan(value) && !error.isEmpty()));
    const QString sum = QStringLiteral("0") + QStringLiteral("+1").repeated(9999);
    EXPECT_EQ(qxcommon::Calc(sum), 9999); // 19,999 characters
    EXPECT_TRUE(std::isnan(qxcommon::Calc(sum + QStringLiteral("+1"), &error)));
    EXPECT_FALSE(error.isEmpty());
}
