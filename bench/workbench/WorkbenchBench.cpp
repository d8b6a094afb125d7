// velmora-bench-workbench [benchmark flags]; runs offscreen in a temporary home.
#include "CCeateDialog.h"
#include "CConsoleUIService.h"
#include "CUIServices.h"
#include "CEditCtr.h"
#include "CEditListCtrl.h"
#include "CJsParserOpr.h"
#include "CV8MacroImplement.h"
#include "CVelmoraDlg.h"
#include "HostContext.h"

#include <QApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

constexpr int kLines = 10000;
constexpr int kOutputs = 20;

QString LargeScript()
{
    QString text;
    for (int i = 0; i < kLines; ++i)
        text += QStringLiteral("var v%1 = %1 * 2 + (%1 % 7); // 第%1行\n").arg(i);
    return text;
}

void SetParams(CVelmoraDlg* window)
{
    window->ParamList()->DeleteAllItems();
    for (int i = 0; i < kOutputs; ++i)
        window->ParamList()->InsertRow({QStringLiteral("v%1").arg(i * 499), QString(), QStringLiteral("输出")});
}

void BM_DomodleToShown(benchmark::State& state)
{
    CCeateDialog::Instance()->Domodle(); // first start seeds the home
    for (auto _ : state) {
        CCeateDialog::Instance()->Domodle();
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(CVelmoraDlg::Existing()->isVisible());
    }
    CVelmoraDlg::DestroyInstance();
}
BENCHMARK(BM_DomodleToShown)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

// The workbench's round trip: editor text set, gathered, run, pane refilled.
void BM_LargeScriptInWorkbench(benchmark::State& state)
{
    const QString script = LargeScript();
    CVelmoraDlg* window = CVelmoraDlg::Instance();
    for (auto _ : state) {
        SetParams(window);
        window->Editor()->setText(script);
        if (!window->RunScript())
            state.SkipWithError("run failed");
        QCoreApplication::processEvents();
    }
    CVelmoraDlg::DestroyInstance();
}
BENCHMARK(BM_LargeScriptInWorkbench)->Unit(benchmark::kMillisecond);

// The same text and outputs on the runner alone.
void BM_LargeScriptEngineOnly(benchmark::State& state)
{
    const QString script = LargeScript();
    CV8MacroImplement runner;
    for (auto _ : state) {
        CArray<CMacroParam> inputs;
        CArray<CMacroParam> outputs;
        for (int i = 0; i < kOutputs; ++i)
            outputs.Add(CMacroParam(QStringLiteral("v%1").arg(i * 499), QString(), QStringLiteral("输出")));
        if (!runner.ExecuteScript(script, inputs, outputs))
            state.SkipWithError("run failed");
        CJsParserOpr::Release();
    }
}
BENCHMARK(BM_LargeScriptEngineOnly)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir home;
    qputenv("VELMORA_HOME", home.path().toUtf8());
    HostContext::Instance().LoadFromEnvironment();
    QApplication app(argc, argv);
    // Messages go to stderr instead of waiting for a click.
    CUIServices::Install(std::make_shared<CConsoleUIService>());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
