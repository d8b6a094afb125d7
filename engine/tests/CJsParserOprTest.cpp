#include "CJsParserOpr.h"
#include "EngineTestSupport.h"
#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace
{
class JsParserOprTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        CJsParserOpr::Release();
    }
    void TearDown() override
    {
        CJsParserOpr::Release();
        TempHomeTest::TearDown();
    }
};

TEST_F(JsParserOprTest, InstanceIsOneObjectUntilRelease)
{
    CJsParserOpr* first = CJsParserOpr::Instance();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(CJsParserOpr::Instance(), first);
    CJsParserOpr::Release();
    CJsParserOpr::Release(); // twice is harmless
    EXPECT_NE(CJsParserOpr::Instance(), nullptr);
}

struct RunCase
{
    const char* script;
    int ok;
    const char* result;
    const char* error;
};

class JsParserOprRunTest : public JsParserOprTest, public ::testing::WithParamInterface<RunCase>
{
};

TEST_P(JsParserOprRunTest, RunGivesTheValueOrTheErrorText)
{
    QString result = QStringLiteral("r");
    QString error = QStringLiteral("e");
    EXPECT_EQ(CJsParserOpr::Instance()->Run(QString::fromUtf8(GetParam().script), result, error), GetParam().ok);
    EXPECT_EQ(result, QString::fromUtf8(GetParam().result));
    EXPECT_EQ(error, QString::fromUtf8(GetParam().error));
}

const RunCase kRunCases[] = {
    {"1 + 2", 1, "3", "e"},
    {"var a = '钢';\r\na + '筋'", 1, "钢筋", "e"},
    {"var b = 1;", 1, "undefined", "e"},
    {"null", 1, "null", "e"},
    {"var c = 1;\r\nc.d.e", 0, "r", "Error: c.d is undefined, c.d.e; in line 2"},
    {"throw 3", 0, "r", "Error: uncaught exception: 3, throw 3; in line 1"},
    {"var = ;", 0, "r", "Error: missing variable name, var = ;; in line 1"},
};

INSTANTIATE_TEST_SUITE_P(Cases, JsParserOprRunTest, ::testing::ValuesIn(kRunCases));

TEST_F(JsParserOprTest, ScopeIsSharedAcrossRunsAndCallers)
{
    QString result, error;
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("var shared = 1; function inc() { return ++shared; }"),
                                            result, error),
              1);
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("inc()"), result, error), 1);
    EXPECT_EQ(result, QStringLiteral("2"));
    QString value;
    ASSERT_EQ(CJsParserOpr::Instance()->GetParameter(QStringLiteral("shared"), value), 1);
    EXPECT_EQ(value, QStringLiteral("2"));
}

TEST_F(JsParserOprTest, FailedRunKeepsWhatRanBefore)
{
    QString result, error;
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("var before = 5;\r\nboom();"), result, error), 0);
    QString value;
    ASSERT_EQ(CJsParserOpr::Instance()->GetParameter(QStringLiteral("before"), value), 1);
    EXPECT_EQ(value, QStringLiteral("5"));
}

TEST_F(JsParserOprTest, ReleaseDropsTheScope)
{
    QString result, error, value;
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("var gone = 1;"), result, error), 1);
    CJsParserOpr::Release();
    EXPECT_EQ(CJsParserOpr::Instance()->GetParameter(QStringLiteral("gone"), value), 0);
}

TEST_F(JsParserOprTest, LongLivedScopeKeepsSourceLinesOfRecentTextsOnly)
{
    QString result, error;
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("function early() {\r\n  return missing;\r\n}"), result, error), 1);
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("function recent() {\r\n\r\n  return gone;\r\n}"), result, error), 1);
    EXPECT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("early()"), result, error), 0);
    EXPECT_EQ(error, QStringLiteral("Error: missing is not defined,   return missing;; in line 2"));
    for (int i = 0; i < 1100; ++i)
        ASSERT_EQ(CJsParserOpr::Instance()->Run(i == 1000 ? QStringLiteral("function recent() {\r\n\r\n  return gone;\r\n}")
                                                          : QStringLiteral("1"),
                                                result, error),
                  1);
    // The text that defined early() is long gone; its line number is not.
    EXPECT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("early()"), result, error), 0);
    EXPECT_EQ(error, QStringLiteral("Error: missing is not defined, ; in line 2"));
    EXPECT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("recent()"), result, error), 0);
    EXPECT_EQ(error, QStringLiteral("Error: gone is not defined,   return gone;; in line 3"));
}

struct ParameterCase
{
    const char* name;
    int ok;
    const char* value;
};

class JsParserOprParameterTest : public JsParserOprTest, public ::testing::WithParamInterface<ParameterCase>
{
};

TEST_P(JsParserOprParameterTest, GetParameterReadsDeclaredNamesOnly)
{
    QString result, error;
    ASSERT_EQ(CJsParserOpr::Instance()->Run(QStringLiteral("var A = 2; var B = 3; let L = 'l'; var U; var 长 = 4;"),
                                            result, error),
              1);
    QString value = QStringLiteral("untouched");
    EXPECT_EQ(CJsParserOpr::Instance()->GetParameter(QString::fromUtf8(GetParam().name), value), GetParam().ok);
    EXPECT_EQ(value, QString::fromUtf8(GetParam().value));
}

const ParameterCase kParameterCases[] = {
    {"A", 1, "2"},
    {"L", 1, "l"},
    {"长", 1, "4"},
    {"U", 1, "undefined"},
    {"Missing", 0, "untouched"},
    {" A", 0, "untouched"},
    {"A + B", 0, "untouched"},
    {"", 0, "untouched"},
    {"A;B", 0, "untouched"},
};

INSTANTIATE_TEST_SUITE_P(Cases, JsParserOprParameterTest, ::testing::ValuesIn(kParameterCases));
} // namespace
