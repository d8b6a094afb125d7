#include "CAccessSysData_MacrosTable.h"
#include "HostContext.h"
#include "RunnerTestSupport.h"

#include <QDir>

class RunAllTest : public RunnerTest
{
protected:
    static void AddScript(const QString& key, const QString& text)
    {
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(key, text));
    }

    QStringList ProgressTexts()
    {
        QStringList texts;
        for (const auto& call : Ui().CallsOf("ProgressUpdate"))
            texts.append(call.text);
        return texts;
    }
};

TEST_F(RunAllTest, EverythingPassingShowsNothing)
{
    AddScript("a.js", "var r = x * 2;");
    AddScript("b.js", "var s = 'b' + x;");
    SeedGlobals("a.js", "", "var x = 0;");
    SeedGlobals("b.js", "", "var x = 0;");
    SeedCase("a.js", "c1.tx", "x = 21;", {{"r", "42"}});
    SeedCase("b.js", "c1.tx", "x = 1;", {{"s", "b1"}});
    CTestJavaScriptService service;
    EXPECT_EQ(service.RunAllTests(), 1);
    EXPECT_TRUE(Ui().CallsOf("MessageBox").isEmpty());
    EXPECT_TRUE(Ui().CallsOf("ShellOpen").isEmpty());
    EXPECT_EQ(ProgressTexts(), QStringList({"开始测试脚本:a.js", "开始测试脚本:b.js"}));
    EXPECT_EQ(Masked(service), Line("a.js", "c1.tx", "计算结果一致!") + Line("a.js", "c1.tx", "测试通过!")
                                   + Line("b.js", "c1.tx", "计算结果一致!") + Line("b.js", "c1.tx", "测试通过!"));
}

TEST_F(RunAllTest, ScriptsWithoutCasesFailTheRunWithOneLineEach)
{
    AddScript("x.js", "var a = 1;");
    AddScript("y.js", "var a = 2;");
    AddScript("z.js", "var a = 3;");
    CTestJavaScriptService service;
    EXPECT_EQ(service.RunAllTests(), 1);
    EXPECT_EQ(Masked(service), Line("x.js", "", "没有测试用例!") + Line("y.js", "", "没有测试用例!")
                                   + Line("z.js", "", "没有测试用例!"));
    EXPECT_EQ(Ui().MessageTexts(), QStringList({"测试出现失败！"}));
    const auto box = Ui().CallsOf("MessageBox")[0];
    EXPECT_EQ(box.caption, QString());
    EXPECT_EQ(box.style & UIFunction::MB_TYPEMASK, UIFunction::MB_OK);
    const auto opens = Ui().CallsOf("ShellOpen");
    ASSERT_EQ(opens.size(), 1);
    EXPECT_EQ(opens[0].text, NativePath::Map(service.GetResultFileName()));
    // The message box comes after the progress window is gone.
    EXPECT_EQ(Ui().calls.last().kind, QStringLiteral("ShellOpen"));
    EXPECT_EQ(Ui().calls[Ui().calls.size() - 3].kind, QStringLiteral("ProgressEnd"));
}

TEST_F(RunAllTest, AMixedRunLogsEveryOutcomeAndGoesOnAfterAHang)
{
    HostContext::Instance().SetScriptTimeBudgetMs(300);
    AddScript("hang.js", "while (true) {}");
    AddScript("ok.js", "var r = x + 1;");
    SeedGlobals("hang.js");
    SeedCase("hang.js", "c.tx", "", {{"r", "1"}});
    SeedGlobals("ok.js", "", "var x = 0;");
    SeedCase("ok.js", "c.tx", "x = 2;", {{"r", "3.0"}});
    SeedCase("ok.js", "d.tx", "x = 1;", {{"r", "2"}});
    CTestJavaScriptService service;
    QList<CTestCaseOutcome> seen;
    service.SetCaseObserver([&](const CTestCaseOutcome& o) { seen.append(o); });
    EXPECT_EQ(service.RunAllTests(), 1);
    ASSERT_EQ(seen.size(), 3);
    EXPECT_EQ(seen[0].script, QStringLiteral("hang.js"));
    EXPECT_FALSE(seen[0].message.isEmpty());
    const QString text = Masked(service);
    EXPECT_TRUE(text.startsWith(Line("hang.js", "c.tx", seen[0].message))) << text.toStdString();
    EXPECT_TRUE(text.contains(Line("ok.js", "c.tx", "计算结果不一致!")));
    EXPECT_TRUE(text.endsWith(Line("ok.js", "d.tx", "计算结果一致!") + Line("ok.js", "d.tx", "测试通过!")));
    EXPECT_EQ(Ui().MessageTexts(), QStringList({"测试出现失败！"}));
}

TEST_F(RunAllTest, AResultFileThatCannotBeWrittenStillEndsTheRunProperly)
{
    AddScript("x.js", "var a = 1;");
    ASSERT_TRUE(QDir(HostContext::Instance().DriveRoot('C')).removeRecursively());
    CTestJavaScriptService service;
    EXPECT_EQ(service.RunAllTests(), 1);
    EXPECT_TRUE(service.ResultFileWriteFailed());
    EXPECT_EQ(Ui().MessageTexts(), QStringList({"测试出现失败！"}));
    EXPECT_EQ(Ui().CallsOf("ShellOpen").size(), 1);
}

TEST_F(RunAllTest, NoScriptsRunsNothingAndShowsNothing)
{
    CTestJavaScriptService service;
    EXPECT_EQ(service.RunAllTests(), 1);
    EXPECT_TRUE(Ui().CallsOf("MessageBox").isEmpty());
    EXPECT_TRUE(ProgressTexts().isEmpty());
    QList<CTestJavaScriptService::Script> scripts;
    EXPECT_TRUE(CTestJavaScriptService::ReadAllScripts(scripts));
    EXPECT_TRUE(scripts.isEmpty());
}

TEST_F(RunAllTest, ReadAllScriptsGivesNamesAndTextsInKeyOrder)
{
    AddScript("b.js", "var b;");
    AddScript("a.js", "var a;\r\n// 注释");
    QList<CTestJavaScriptService::Script> scripts;
    ASSERT_TRUE(CTestJavaScriptService::ReadAllScripts(scripts));
    ASSERT_EQ(scripts.size(), 2);
    EXPECT_EQ(scripts[0].name, QStringLiteral("a.js"));
    EXPECT_EQ(scripts[0].text, QStringLiteral("var a;\r\n// 注释"));
    EXPECT_EQ(scripts[1].name, QStringLiteral("b.js"));
}
