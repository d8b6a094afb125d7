#include "CParallelTestRunner.h"
#include "RunnerTestSupport.h"

#include <numeric>

namespace {

struct Collected
{
    QList<int> order;
    QList<CScriptTestReport> reports;
};

// The script, whether it passed, then every line from its "..." and every table row.
QStringList Dump(const CScriptTestReport& report)
{
    QStringList texts{report.script, report.passed ? "passed" : "failed"};
    for (const CScriptTestReport::Entry& entry : report.entries) {
        if (!entry.isTable)
            texts << entry.line.mid(entry.line.indexOf("..."));
        else
            for (const CTestCaseOutcome::Row& row : entry.table)
                texts << row.name + '|' + row.storedValue + '|' + row.newValue;
    }
    return texts;
}

Collected RunWith(int jobs, const QList<CParallelTestRunner::Script>& scripts)
{
    Collected collected;
    CParallelTestRunner(jobs).Run(scripts, [&](int index, const CScriptTestReport& report, double) {
        collected.order << index;
        collected.reports << report;
    });
    return collected;
}

} // namespace

using ParallelTestRunnerTest = RunnerTest;

TEST_F(ParallelTestRunnerTest, ReportsComeBackInScriptOrderWhateverTheJobs)
{
    ASSERT_TRUE(CSampleDataSeeder().SeedIfNeeded());
    QList<CParallelTestRunner::Script> scripts;
    ASSERT_TRUE(CTestJavaScriptService::ReadAllScripts(scripts));
    ASSERT_GE(scripts.size(), 8);
    // A script without cases and one with an engine error among the others.
    scripts.insert(2, {"梁\\未测.js", "var q = 1;"});
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("梁\\坏.js", QString(), QString()));
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("梁\\坏.js", "a.tx", QString(), nullptr));
    scripts.append(CParallelTestRunner::Script{"梁\\坏.js", "var = ;"});

    const Collected one = RunWith(1, scripts);
    QList<int> expectedOrder(scripts.size());
    std::iota(expectedOrder.begin(), expectedOrder.end(), 0);
    ASSERT_EQ(one.order, expectedOrder);
    for (int i = 0; i < scripts.size(); ++i)
        EXPECT_EQ(one.reports[i].script, scripts[i].name);
    for (int jobs : {2, 3, 8, 64}) {
        const Collected many = RunWith(jobs, scripts);
        ASSERT_EQ(many.order, expectedOrder) << jobs;
        for (int i = 0; i < scripts.size(); ++i)
            EXPECT_EQ(Dump(many.reports[i]), Dump(one.reports[i])) << jobs << " jobs, script " << i;
    }
    EXPECT_EQ((QList<bool>{one.reports[0].passed, one.reports[2].passed, one.reports.last().passed}),
              (QList<bool>{true, false, false}));
    EXPECT_TRUE(RunWith(4, {}).order.isEmpty());
}

TEST(ParallelTestRunnerWorkersTest, WorkersNeverOutnumberScripts)
{
    const struct { int jobs, scripts, workers; } cases[] = {{1, 10, 1}, {4, 10, 4}, {4, 2, 2}, {4, 0, 1}, {0, 5, 1}, {-3, 5, 1}, {256, 300, 256}};
    for (const auto& c : cases)
        EXPECT_EQ(CParallelTestRunner(c.jobs).WorkersFor(c.scripts), c.workers) << c.jobs << "/" << c.scripts;
}

TEST_F(ParallelTestRunnerTest, ACancelledRunAllWritesTheScriptsThatRan)
{
    // Slow scripts, so that the cancel comes while the first ones run.
    const QString slow = "var t = Date.now(); while (Date.now() - t < 300) {} var r = 1;";
    QStringList names;
    for (int i = 0; i < 6; ++i) {
        names << QString("s%1.js").arg(i);
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(names.last(), slow));
        SeedGlobals(names.last());
        SeedCase(names.last(), "c.tx", "", {{"r", "1"}});
    }
    Ui().SetProgressCancelled(true);
    CTestJavaScriptService service;
    service.SetJobs(2);
    EXPECT_EQ(service.RunAllTests(), 1);
    // Whole scripts, in order, from the first: never one that was not run.
    const QString result = Masked(service);
    int ran = 0;
    QString expected;
    while (ran < names.size() && result.contains("(" + names[ran] + ")"))
        expected += Line(names[ran], "c.tx", "计算结果一致!") + Line(names[ran], "c.tx", "测试通过!"), ++ran;
    EXPECT_LT(ran, names.size());
    EXPECT_EQ(result, expected);
    EXPECT_TRUE(Ui().CallsOf("MessageBox").isEmpty());
    EXPECT_EQ(Ui().CallsOf("ProgressEnd").size(), 1);
}
