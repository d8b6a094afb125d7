// Engine benchmarks: (a) reset + a six-line macro + three outputs, (b) reset
// + a 3,000-line library + a short script + two outputs (the same text each
// run, and a text that changes each run), (c) a ten-million iteration loop,
// and the resident size around 100,000 runs of (a).
//
//   velmora-bench-engine [benchmark flags]
//   velmora-bench-engine --write-texts=<folder>   (the texts for the Node peer)
#include "CMacroImplement.h"
#include "EngineBenchTexts.h"

#include <QCoreApplication>
#include <QFile>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>

namespace
{
long ResidentKb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
    {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return 0;
}

void RunMacro(CMacroImplement& macro, const CArray<CMacroParam>& inputs, CArray<CMacroParam>& outputs,
              benchmark::State& state)
{
    if (!macro.ExecuteScript(EngineBenchTexts::MacroScript(), inputs, outputs))
        state.SkipWithError(macro.GetError().toUtf8().constData());
}

void BM_ResetMacroThreeOutputs(benchmark::State& state)
{
    CMacroImplement macro;
    const CArray<CMacroParam> inputs = EngineBenchTexts::MacroInputs();
    CArray<CMacroParam> outputs = EngineBenchTexts::MacroOutputs();
    for (auto _ : state)
        RunMacro(macro, inputs, outputs, state);
    benchmark::DoNotOptimize(outputs[2].GetValue());
}
BENCHMARK(BM_ResetMacroThreeOutputs)->Unit(benchmark::kMicrosecond);

// (b) with changeInput, an input that changes every run: the text differs
// each time, so nothing compiled before can be reused and the library is
// parsed afresh.
void RunLibrary(benchmark::State& state, bool changeInput)
{
    CMacroImplement macro;
    macro.AddGlobalScript(EngineBenchTexts::Library());
    CArray<CMacroParam> inputs = EngineBenchTexts::LibraryInputs();
    CArray<CMacroParam> outputs = EngineBenchTexts::LibraryOutputs();
    int run = 0;
    for (auto _ : state)
    {
        if (changeInput)
            inputs[0].SetValue(QString::number(1200 + run++));
        if (!macro.ExecuteScript(EngineBenchTexts::LibraryScript(), inputs, outputs))
            state.SkipWithError(macro.GetError().toUtf8().constData());
    }
    benchmark::DoNotOptimize(outputs[1].GetValue());
}

void BM_ResetLibraryScriptTwoOutputs(benchmark::State& state)
{
    RunLibrary(state, false);
}
BENCHMARK(BM_ResetLibraryScriptTwoOutputs)->Unit(benchmark::kMicrosecond);

void BM_ResetLibraryScriptTwoOutputsParsedAfresh(benchmark::State& state)
{
    RunLibrary(state, true);
}
BENCHMARK(BM_ResetLibraryScriptTwoOutputsParsedAfresh)->Unit(benchmark::kMicrosecond);

void BM_ArithmeticLoop10M(benchmark::State& state)
{
    CMacroImplement macro;
    CArray<CMacroParam> outputs = EngineBenchTexts::LoopOutputs();
    for (auto _ : state)
    {
        if (!macro.ExecuteScript(EngineBenchTexts::LoopScript(), outputs))
            state.SkipWithError(macro.GetError().toUtf8().constData());
    }
    benchmark::DoNotOptimize(outputs[0].GetValue());
}
BENCHMARK(BM_ArithmeticLoop10M)->Unit(benchmark::kMillisecond);

// Resident size after a warm-up of 1,000 runs of (a) and after 100,000 more.
void BM_ResidentAfter100kMacroRuns(benchmark::State& state)
{
    CMacroImplement macro;
    const CArray<CMacroParam> inputs = EngineBenchTexts::MacroInputs();
    CArray<CMacroParam> outputs = EngineBenchTexts::MacroOutputs();
    for (auto _ : state)
    {
        for (int i = 0; i < 1000; ++i)
            RunMacro(macro, inputs, outputs, state);
        const long before = ResidentKb();
        for (int i = 0; i < 100000; ++i)
            RunMacro(macro, inputs, outputs, state);
        state.counters["rss_before_kb"] = static_cast<double>(before);
        state.counters["rss_after_kb"] = static_cast<double>(ResidentKb());
    }
}
BENCHMARK(BM_ResidentAfter100kMacroRuns)->Iterations(1)->Unit(benchmark::kSecond);
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const char* kWriteTexts = "--write-texts=";
    for (int i = 1; i < argc; ++i)
    {
        if (std::strncmp(argv[i], kWriteTexts, std::strlen(kWriteTexts)) == 0)
        {
            const bool ok = EngineBenchTexts::WriteTo(QString::fromLocal8Bit(argv[i] + std::strlen(kWriteTexts)));
            if (!ok)
                std::fprintf(stderr, "cannot write the benchmark texts\n");
            return ok ? 0 : 1;
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
