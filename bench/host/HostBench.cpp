// "计算" over a project of 1,000 members (the sample members repeated) with
// the sample scripts, and the same script runs, one by one, through the test
// runner's case path (CTestJavaScriptService::RunTestCase) as velmora-test
// runs them. Both report microseconds per member and per script run.
#include "CProjectCalcService.h"
#include "CSampleDataSeeder.h"
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CTestJavaScriptService.h"
#include "CAccessSysData_MacrosTable.h"
#include "HostContext.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

constexpr int kMembers = 1000;

bool PrepareProject()
{
    CSampleDataSeeder seeder;
    CSampleProject project;
    if (!seeder.SeedIfNeeded() || !project.Load())
        return false;
    QList<CSampleProject::Member> more;
    const QList<CSampleProject::Member> samples = CSampleProject::SampleMembers();
    for (int i = int(project.Members().size()); i < kMembers; ++i) {
        CSampleProject::Member member = samples.at(i % samples.size());
        member.name += QStringLiteral("-%1").arg(i);
        more.append(member);
    }
    return project.AddMembers(more) && project.Members().size() == kMembers;
}

void Report(benchmark::State& state, int runs)
{
    state.counters["us_per_member"] =
        benchmark::Counter(double(kMembers) * state.iterations(), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["us_per_run"] =
        benchmark::Counter(double(runs) * state.iterations(), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["script_runs"] = runs;
}

void BM_HostCompute(benchmark::State& state)
{
    int runs = 0;
    for (auto _ : state) {
        CProjectCalcService service;
        if (!service.Run() || service.FailureCount() != 0) {
            state.SkipWithError("the computation failed");
            return;
        }
        runs = int(service.Results().size());
    }
    Report(state, runs);
}

struct PeerRun
{
    QString globalFun, globalParm, script;
    QList<QPair<QString, QString>> inputs;
    QStringList outputs;
};

// The computation's script runs in member order, with the test runner's texts.
QList<QList<PeerRun>> PeerRuns(CSampleProject& project)
{
    QList<QList<PeerRun>> members;
    if (!project.Load())
        return members;
    for (const CSampleProject::Member& member : project.Members()) {
        QList<PeerRun> runs;
        for (const CSampleProject::ScriptUse& use : project.UsesOf(member.kind)) {
            PeerRun run{{}, {}, {}, use.inputs, use.outputs};
            CTestCaseStore::LoadGlobals(use.key, run.globalFun, run.globalParm);
            CAccessSysData_MacrosTable::GetMacroContent(use.key, run.script);
            runs.append(run);
        }
        members.append(runs);
    }
    return members;
}

void BM_TestRunnerPath(benchmark::State& state)
{
    CSampleProject project;
    const QList<QList<PeerRun>> members = PeerRuns(project);
    CTestJavaScriptService service;
    int runs = 0;
    for (auto _ : state) {
        runs = 0;
        for (int m = 0; m < members.size(); ++m) {
            QMap<QString, QString> values = project.Members().at(m).values;
            for (const PeerRun& run : members.at(m)) {
                QString declarations, missing, error;
                CTestCaseInfoTable table;
                for (const QString& output : run.outputs)
                    table.SetAsString(CTestCaseInfoTable::ParmName, table.InsertRow(0), output);
                if (!CProjectCalcService::Declare(run.inputs, values, declarations, missing)
                    || !service.RunTestCase(run.globalFun, run.globalParm, declarations, run.script, table, error)) {
                    state.SkipWithError("a script run failed");
                    return;
                }
                for (int row = 1; row <= table.GetRowCount(); ++row)
                    values.insert(table.GetAsString(CTestCaseInfoTable::ParmName, row),
                                  table.GetAsString(CTestCaseInfoTable::ParmValue, row));
                ++runs;
            }
        }
    }
    Report(state, runs);
}

BENCHMARK(BM_HostCompute)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_TestRunnerPath)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir home;
    HostContext::Instance().LoadFromEnvironment();
    HostContext::Instance().SetHome(home.path());
    if (!home.isValid() || !HostContext::Instance().EnsureFolders() || !PrepareProject()) {
        std::fprintf(stderr, "cannot prepare the %d-member project in %s\n", kMembers, qPrintable(home.path()));
        return 2;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
