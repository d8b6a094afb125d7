#include "EngineTestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
class JsParserOprTest : public EngineTest
{
protected:
    static int Run(const char* script) { return CJsParserOpr::Instance()->Run(U8(script), m_result, m_error); }
    // 1 and the value, or 0 and "untouched".
    static std::pair<int, QString> Get(const char* name)
    {
        QString value = u"untouched"_s;
        const int ok = CJsParserOpr::Instance()->GetParameter(U8(name), value);
        return {ok, value};
    }

    static inline QString m_result, m_error;
};

TEST_F(JsParserOprTest, OneSharedScopeKeepsWhatRanBeforeAFailureUntilReleased)
{
    CJsParserOpr* first = CJsParserOpr::Instance();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(CJsParserOpr::Instance(), first);
    ASSERT_EQ(Run("var shared = 1;"), 1);
    ASSERT_EQ(Run("var before = shared + 3;\r\nboom();"), 0);
    EXPECT_EQ(Get("before"), std::make_pair(1, u"4"_s));
    CJsParserOpr::Release();
    CJsParserOpr::Release(); // twice is harmless
    EXPECT_EQ(Get("before").first, 0);
}

TEST_F(JsParserOprTest, RunGivesTheValueOrTheErrorText)
{
    const struct { const char *script; int ok; const char *result, *error; } cases[] = {
        {"var a = '钢';\r\na + '筋'", 1, "钢筋", "e"}, {"var b = 1;", 1, "undefined", "e"}, {"null", 1, "null", "e"},
        {"var c = 1;\r\nc.d.e", 0, "r", "Error: c.d is undefined, c.d.e; in line 2"},
        {"var = ;", 0, "r", "Error: missing variable name, var = ;; in line 1"},
    };
    for (const auto& c : cases)
    {
        m_result = u"r"_s;
        m_error = u"e"_s;
        EXPECT_EQ(Run(c.script), c.ok) << c.script;
        EXPECT_EQ(m_result, U8(c.result)) << c.script;
        EXPECT_EQ(m_error, U8(c.error)) << c.script;
    }
}

TEST_F(JsParserOprTest, LongLivedScopeKeepsSourceLinesOfRecentTextsOnly)
{
    const char* recent = "function recent() {\r\n\r\n  return gone;\r\n}";
    ASSERT_EQ(Run("function early() {\r\n  return missing;\r\n}"), 1);
    ASSERT_EQ(Run(recent), 1);
    EXPECT_EQ(Run("early()"), 0);
    EXPECT_EQ(m_error, u"Error: missing is not defined,   return missing;; in line 2"_s);
    for (int i = 0; i < 1100; ++i)
        ASSERT_EQ(Run(i == 1000 ? recent : "1"), 1);
    // The text that defined early() is long gone; its line number is not.
    EXPECT_EQ(Run("early()"), 0);
    EXPECT_EQ(m_error, u"Error: missing is not defined, ; in line 2"_s);
    EXPECT_EQ(Run("recent()"), 0);
    EXPECT_EQ(m_error, u"Error: gone is not defined,   return gone;; in line 3"_s);
}

TEST_F(JsParserOprTest, GetParameterReadsDeclaredNamesOnly)
{
    ASSERT_EQ(Run("var A = 2; var B = 3; let L = 'l'; var U; var 长 = 4;"), 1);
    const struct { const char* name; int ok; const char* value; } cases[] = {
        {"L", 1, "l"}, {"长", 1, "4"}, {"U", 1, "undefined"}, {"Missing", 0, "untouched"},
        {" A", 0, "untouched"}, {"A + B", 0, "untouched"}, {"", 0, "untouched"}, {"A;B", 0, "untouched"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Get(c.name), std::make_pair(c.ok, U8(c.value))) << c.name;
}
} // namespace
