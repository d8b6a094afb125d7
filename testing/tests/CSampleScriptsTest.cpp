#include "CSampleScripts.h"
#include "RunnerTestSupport.h"

namespace {

const QByteArray kGoodBody = R"({"key_ch": "梁\\a.js", "key_en": "A", "description": "d", "category": "梁",
  "globalParm": "var x = 1 ////x", "script": "var y = x;",
  "cases": [{"name": "c1", "script": "x = 2;", "expect": [["y", "2", "why"], ["z", "3", ""]]}]})";

} // namespace

TEST(CSampleScriptsTest, ReadsEveryFieldInFileOrderWithCrLfFunctions)
{
    const QByteArray json = "{\"Zeta\": " + kGoodBody + ", \"Alpha\": " + QByteArray(kGoodBody).replace("a.js", "b.js") + "}";
    CSampleScripts samples;
    ASSERT_TRUE(samples.Load(json, "line1\nline2\r\nline3\n"));
    EXPECT_EQ(samples.GlobalFun(), "line1\r\nline2\r\nline3\r\n");
    ASSERT_EQ(samples.Scripts().size(), 2);
    EXPECT_EQ(samples.Scripts()[1].keyCh, "梁\\b.js");
    const CSampleScripts::Script& s = samples.Scripts().first();
    EXPECT_EQ(QStringList({s.keyCh, s.keyEn, s.description, s.category, s.globalParm, s.script}),
              QStringList({"梁\\a.js", "A", "d", "梁", "var x = 1 ////x", "var y = x;"}));
    ASSERT_EQ(s.cases.size(), 1);
    EXPECT_EQ(s.cases[0].name + "|" + s.cases[0].script, "c1|x = 2;");
    EXPECT_EQ(ExpectedTexts(s.cases[0].expected), QStringList({"y|2|why", "z|3|"}));
}

TEST(CSampleScriptsTest, V2KeysAreTheGeneralAndGraphicFolders)
{
    const struct { QString key; bool v2; } cases[] = {
        {"通用脚本\\a.js", true}, {"图形法脚本\\b.js", true}, {"梁\\c.js", false},
        {"通用脚本.js", false},   {"通用脚本/a.js", false},   {QString(), false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CSampleScripts::IsV2Key(c.key), c.v2) << c.key.toStdString();
}
