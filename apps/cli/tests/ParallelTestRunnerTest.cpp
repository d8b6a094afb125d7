#include "CParallelTestRunner.h"
#include "CSampleDataSeeder.h"
#include "CTestCaseStore.h"
#include "TestEnvironment.h"

namespace {

struct Collected
{
    QList<int> order;
    QList<CScriptTestReport> reports;
};

QStringList EntryTexts(const CScriptTestReport& report)
{
    QStringList texts;
    for (const CScriptTestReport::Entry& entry : report.entries) {
        if (!entry.isTable) {
            texts << entry.line.mid(entry.line.indexOf(QStringLiteral("...")));
            continue;
        }
        for (const CTestCaseOutcome::Row& row : entry.table)
            texts << row.name + QLatin1Char('|') + row.storedValue + QLatin1Char('|') + row.newValue;
    }
    return texts;
}

} // namespace

class ParallelTestRunnerTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        CSampleDataSeeder seeder;
        ASSERT_TRUE(seeder.SeedIfNeeded());
        ASSERT_TRUE(CTestJavaScriptService::ReadAllScripts(m_scripts));
        ASSERT_GE(m_scripts.size(), 8);
    }

    Collected RunWith(int jobs, const QList<CParallelTestRunner::Script>& scripts)
    {
        Collected collected;
        CParallelTestRunner(jobs).Run(scripts, [&](int index, const CScriptTestReport& report, double seconds) {
            EXPECT_GE(seconds, 0.0);
            collected.order << index;
            collected.reports << report;
        });
        return collected;
    }

    QList<CParallelTestRunner::Script> m_scripts;
};

TEST_F(ParallelTestRunnerTest, ReportsComeBackInScriptOrderWhateverTheJobs)
{
    // A script without cases and one with an engine error among the others.
    m_scripts.insert(2, {QStringLiteral("梁\\未测.js"), QStringLiteral("var q = 1;")});
    ASSERT_TRUE(CTestCaseStore::SaveGlobals(QStringLiteral("梁\\坏.js"), QString(), QString()));
    ASSERT_TRUE(CTestCaseStore::SaveTestCase(QStringLiteral("梁\\坏.js"), QStringLiteral("a.tx"), QString(), nullptr));
    m_scripts.append({QStringLiteral("梁\\坏.js"), QStringLiteral("var = ;")});

    const Collected one = RunWith(1, m_scripts);
    QList<int> expectedOrder;
    for (int i = 0; i < m_scripts.size(); ++i)
        expectedOrder << i;
    ASSERT_EQ(one.order, expectedOrder);
    for (int jobs : {2, 3, 8, 64}) {
        const Collected many = RunWith(jobs, m_scripts);
        ASSERT_EQ(many.order, expectedOrder) << jobs;
        for (int i = 0; i < m_scripts.size(); ++i) {
            EXPECT_EQ(many.reports[i].script, m_scripts[i].name);
            EXPECT_EQ(many.reports[i].passed, one.reports[i].passed) << jobs << " " << i;
            EXPECT_EQ(EntryTexts(many.reports[i]), EntryTexts(one.reports[i])) << jobs << " " << i;
        }
    }
    EXPECT_FALSE(one.reports[2].passed);
    EXPECT_FALSE(one.reports.last().passed);
    EXPECT_TRUE(one.reports[0].passed);
    EXPECT_TRUE(RunWith(4, {}).order.isEmpty());
}

TEST_F(ParallelTestRunnerTest, WorkersNeverOutnumberScripts)
{
    const struct
    {
        int jobs;
        int scripts;
        int workers;
    } cases[] = {{1, 10, 1}, {4, 10, 4}, {4, 2, 2}, {4, 0, 1}, {0, 5, 1}, {-3, 5, 1}, {256, 300, 256}};
    for (const auto& c : cases)
        EXPECT_EQ(CParallelTestRunner(c.jobs).WorkersFor(c.scripts), c.workers) << c.jobs << "/" << c.scripts;
}
