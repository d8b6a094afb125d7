#include "RunnerTestSupport.h"

#include <thread>

namespace {

const QString kScript = "var area = Round2(w * h);\r\nvar note = 'w=' + w;";
const QString kFun = "function Round2(x) { return Math.round(x * 100) / 100; }";
const QString kNoFolder = "C:\\没有这个目录\\结果.txt";

} // namespace

class ScriptRunTest : public RunnerTest
{
protected:
    // "beam.js": one passing case, one 3 vs 3.0 mismatch, one unreadable case and one whose script throws.
    static void SeedBeam()
    {
        SeedGlobals("beam.js", kFun, "var w = 1;\r\nvar h = 1;");
        SeedCase("beam.js", "1pass.tx", "w = 2; h = 1.5;", {{"area", "3"}, {"note", "w=2"}});
        SeedCase("beam.js", "2mismatch.tx", "w = 3; h = 1;", {{"area", "3.0"}, {"note", "w=3"}});
        ASSERT_TRUE(QxMfc::Fun::SaveFileContent(CTestCaseStore::ScriptFolder("beam.js") + "3broken.tx",
                                                "a@@@@@@######@@@@@b@@@@@@######@@@@@c"));
        SeedCase("beam.js", "4throws.tx", "throw new Error('坏');", {{"area", "0"}});
    }

    static void AddScript(const QString& key, const QString& text)
    {
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(key, text));
    }

    // The progress window closes, then the one failure box, then the result file opens: the last things done.
    void ExpectFailureBox(const CTestJavaScriptService& service)
    {
        EXPECT_EQ(Ui().MessageTexts(), QStringList({"测试出现失败！"}));
        const QStringList calls = UiCalls();
        EXPECT_EQ(calls.mid(calls.size() - 3),
                  (QStringList{"ProgressEnd|||0", "MessageBox|测试出现失败！||" + QString::number(UIFunction::MB_OK),
                               "ShellOpen|" + NativePath::Map(service.GetResultFileName()) + "||0"}));
    }
};

TEST_F(ScriptRunTest, EveryCaseIsLoggedInOrderAndFailuresDoNotStopTheRun)
{
    SeedBeam();
    CTestJavaScriptService service;
    QList<CTestCaseOutcome> seen;
    service.SetCaseObserver([&](const CTestCaseOutcome& o) { seen.append(o); });
    EXPECT_FALSE(service.RunScriptTests("beam.js", kScript));

    ASSERT_EQ(seen.size(), 4);
    // Per case: script, passed, rows, the first row's stored and new value, message.
    QStringList outcomes;
    for (const CTestCaseOutcome& o : seen)
        outcomes << QString("%1|%2|%3|%4>%5|%6").arg(o.script).arg(int(o.passed)).arg(int(o.rows.size()))
                        .arg(o.rows.value(0).storedValue, o.rows.value(0).newValue, o.message);
    EXPECT_EQ(outcomes.mid(0, 3), QStringList({"beam.js|1|2|3>3|测试通过!", "beam.js|0|2|3.0>3|计算结果不一致!",
                                                "beam.js|0|0|>|无法获取测试用例信息!"}));
    EXPECT_TRUE(outcomes[3].startsWith("beam.js|0|"));
    EXPECT_TRUE(seen[3].message.startsWith("Error: ") && seen[3].message.contains("坏")) << seen[3].message.toStdString();
    EXPECT_EQ(Masked(service), Line("beam.js", "1pass.tx", "计算结果一致!") + Line("beam.js", "1pass.tx", "测试通过!")
                                   + Line("beam.js", "2mismatch.tx", "计算结果不一致!")
                                   + PrintedTable({{"area", "3.0", "3"}, {"note", "w=3", "w=3"}})
                                   + Line("beam.js", "3broken.tx", "无法获取测试用例信息!")
                                   + Line("beam.js", "4throws.tx", seen[3].message));
}

TEST_F(ScriptRunTest, MissingCasesOrGlobalsFailWithOneLineAndGlobalsAlonePass)
{
    CTestJavaScriptService service;
    EXPECT_FALSE(service.RunScriptTests("none.js", "var a = 1;"));
    // Case files without GlobalFun.txt do not count.
    for (const char* script : {"casesonly.js", "noparm.js", "empty.js"})
        SeedGlobals(script);
    SeedCase("casesonly.js", "c.tx", "", {});
    ASSERT_TRUE(QFile::remove(NativePath::Map(CTestCaseStore::ScriptFolder("casesonly.js") + "GlobalFun.txt")));
    EXPECT_FALSE(service.RunScriptTests("casesonly.js", "var a = 1;"));
    ASSERT_TRUE(QFile::remove(NativePath::Map(CTestCaseStore::ScriptFolder("noparm.js") + "GlobalParm.txt")));
    EXPECT_FALSE(service.RunScriptTests("noparm.js", "var a = 1;"));
    EXPECT_TRUE(service.RunScriptTests("empty.js", "var a = 1;"));
    EXPECT_EQ(Masked(service), Line("none.js", "", "没有测试用例!") + Line("casesonly.js", "", "没有测试用例!")
                                   + Line("noparm.js", "", "无法获取全局信息!"));
}

TEST_F(ScriptRunTest, ReportsGatheredOnWorkerThreadsWriteTheSequentialFile)
{
    SeedBeam();
    SeedGlobals("ok.js", kFun, "var w = 1;\r\nvar h = 1;");
    SeedCase("ok.js", "c.tx", "w = 4; h = 0.25;", {{"area", "1"}});
    const QStringList order = {"ok.js", "beam.js", "none.js", "ok.js"};
    QList<CScriptTestReport> reports(order.size());
    std::vector<std::thread> workers;
    for (int w = 0; w < 2; ++w) {
        workers.emplace_back([&, w] {
            CTestJavaScriptService service;
            for (int i = w; i < order.size(); i += 2)
                service.RunScriptTests(order[i], kScript, &reports[i]);
            EXPECT_FALSE(QFile::exists(NativePath::Map(service.GetResultFileName())));
        });
    }
    for (std::thread& t : workers)
        t.join();

    CTestJavaScriptService merged, sequential;
    for (int i = 0; i < order.size(); ++i) {
        EXPECT_TRUE(merged.AppendReport(reports[i]));
        sequential.RunScriptTests(order[i], kScript);
    }
    EXPECT_EQ((QList<bool>{reports[0].passed, reports[1].passed, reports[2].passed}), (QList<bool>{true, false, false}));
    EXPECT_EQ(Masked(merged), Masked(sequential));
}

TEST_F(ScriptRunTest, AnUnwritableResultFileIsReportedAndTheRunGoesOn)
{
    SeedBeam();
    CTestJavaScriptService service;
    service.SetResultFileName(kNoFolder);
    int outcomes = 0;
    service.SetCaseObserver([&](const CTestCaseOutcome&) { ++outcomes; });
    EXPECT_FALSE(service.RunScriptTests("beam.js", kScript));
    EXPECT_EQ(outcomes, 4);
    EXPECT_TRUE(service.ResultFileWriteFailed());
    EXPECT_FALSE(QDir(HostContext::Instance().DriveRoot('C') + "/没有这个目录").exists());

    CTestJavaScriptService fine;
    CScriptTestReport report;
    fine.RunScriptTests("beam.js", kScript, &report);
    EXPECT_FALSE(fine.ResultFileWriteFailed());
    fine.SetResultFileName(kNoFolder);
    EXPECT_FALSE(fine.AppendReport(report));
    EXPECT_TRUE(fine.ResultFileWriteFailed());
}

TEST_F(ScriptRunTest, RunAllPassingInKeyOrderShowsNothing)
{
    for (const auto& [key, script, input, output] : {std::tuple{"b.js", "var s = 'b' + x;", "x = 1;", Expect{"s", "b1"}},
                                                     std::tuple{"a.js", "var r = x * 2;", "x = 21;", Expect{"r", "42"}}}) {
        AddScript(key, script);
        SeedGlobals(key, "", "var x = 0;");
        SeedCase(key, "c1.tx", input, {output});
    }
    CTestJavaScriptService service;
    EXPECT_EQ(service.RunAllTests(), 1);
    EXPECT_EQ(UiCalls().filter(QRegularExpression("^(MessageBox|ShellOpen|ProgressUpdate)\\|")),
              QStringList({"ProgressUpdate|开始测试脚本:a.js||0", "ProgressUpdate|开始测试脚本:b.js||0"}));
    EXPECT_EQ(Masked(service), Line("a.js", "c1.tx", "计算结果一致!") + Line("a.js", "c1.tx", "测试通过!")
                                   + Line("b.js", "c1.tx", "计算结果一致!") + Line("b.js", "c1.tx", "测试通过!"));
}

TEST_F(ScriptRunTest, RunAllFailuresEndWithTheBoxAfterTheProgressAndAnEmptyRunShowsNothing)
{
    CTestJavaScriptService empty;
    EXPECT_EQ(empty.RunAllTests(), 1);
    empty.FinishRun(false);
    EXPECT_TRUE(Ui().CallsOf("MessageBox").isEmpty());
    EXPECT_TRUE(Ui().CallsOf("ProgressUpdate").isEmpty());

    AddScript("x.js", "var a = 1;");
    AddScript("y.js", "var a = 2;");
    CTestJavaScriptService service;
    EXPECT_EQ(service.RunAllTests(), 1);
    EXPECT_EQ(Masked(service), Line("x.js", "", "没有测试用例!") + Line("y.js", "", "没有测试用例!"));
    ExpectFailureBox(service);

    // An unwritable result file still ends the run properly.
    Ui().Clear();
    ASSERT_TRUE(QDir(HostContext::Instance().DriveRoot('C')).removeRecursively());
    CTestJavaScriptService unwritable;
    EXPECT_EQ(unwritable.RunAllTests(), 1);
    EXPECT_TRUE(unwritable.ResultFileWriteFailed());
    ExpectFailureBox(unwritable);
}
