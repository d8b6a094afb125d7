#include "CMacroParamFile.h"
#include "CSettingsFileOpener.h"
#include "TestEnvironment.h"

namespace {

using SettingsFileOpenerTest = TempHomeTest;

TEST_F(SettingsFileOpenerTest, AFailedOpenTellsWhyAndKeepsTheOpenFile)
{
    CArray<CMacroParam> outputs;
    outputs.Add(CMacroParam("W", "1", "重量"));
    CMacroParamFile saved;
    saved.SetFilePath("C:\\a.xml");
    ASSERT_TRUE(saved.Save({}, outputs, "C:\\a.js", "var W = 1;"));
    ASSERT_TRUE(WriteBytes(HomeFile("drives/c/broken.xml"), "<Script><ScriptFile"));
    ASSERT_TRUE(WriteBytes(HomeFile("drives/c/lost.xml"), "<Script><ScriptFile Name=\"C:\\gone.js\"/></Script>"));

    CMacroParamFile open;
    ASSERT_TRUE(CSettingsFileOpener::Open("C:\\a.xml", open));
    EXPECT_TRUE(Ui().calls.isEmpty());
    const struct { const char* path; QStringList messages; } failures[] = {
        {"C:\\broken.xml", {"无法读取设置文件C:\\broken.xml"}},
        {"C:\\lost.xml", {"不存在文件C:\\gone.js", "CMacroParamFile::Read出错:文件C:\\gone.js读取失败"}},
    };
    for (const auto& failure : failures) {
        Ui().Clear();
        EXPECT_FALSE(CSettingsFileOpener::Open(QString::fromUtf8(failure.path), open));
        EXPECT_EQ(Ui().MessageTexts(), failure.messages);
        EXPECT_EQ(open.GetFilePath(), "C:\\a.xml");
        EXPECT_EQ(open.GetScriptFile(), "C:\\a.js");
        CArray<CMacroParam> kept;
        open.GetOutputParams(kept);
        ASSERT_EQ(kept.GetSize(), 1);
        EXPECT_EQ(kept[0].GetDescription(), "重量");
    }
}

} // namespace
