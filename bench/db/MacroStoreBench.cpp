// Insert, load and list 1,000 macros with 10 parameters each, on a SQLite
// system database and on a private PostgreSQL server.
#include "CDBFactory.h"
#include "CDataServiceAbsolute.h"
#include "CMacroDataManager.h"
#include "HostContext.h"
#include "PgTestServer.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

constexpr int kMacros = 1000;
constexpr int kParams = 10;

CMacro BenchMacro(int n)
{
    CMacro macro(1, QStringLiteral("钢筋长度%1").arg(n), QStringLiteral("bench"),
                 QStringLiteral("var L = 2 * (b + h) - 8 * c + 2 * 11.9 * d;\r\nif (L < 0) { L = 0; }\r\n"));
    for (int p = 0; p < kParams; ++p) {
        CMacroParam param(QStringLiteral("p%1").arg(p), QString::number(p * 10), QStringLiteral("参数"));
        param.SetDataType(1);
        if (p < kParams / 2)
            macro.InputParams().Add(param);
        else
            macro.OutputParams().Add(param);
    }
    return macro;
}

// A fresh, empty system database of the backend, made current for this thread.
bool FreshSystemDatabase(bool server, QTemporaryDir& home)
{
    CDBFactory::ReleaseThread();
    HostContext& context = HostContext::Instance();
    context.SetHome(home.path());
    context.SetSystemDatabase(home.filePath(QStringLiteral("bench-%1.db").arg(rand())));
    if (server) {
        QString error;
        const QString url = PgTestServer::Instance().NewDatabaseUrl(error);
        if (url.isEmpty()) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return false;
        }
        context.SetSystemDatabase(url);
    }
    return CDBFactory::GetSingle(0)->IsConnected();
}

void InsertAll(CMacroDataManager& store, benchmark::State& state)
{
    for (int n = 0; n < kMacros; ++n) {
        if (store.InsertMacro(BenchMacro(n)) < 0)
            state.SkipWithError("insert failed");
    }
}

// A fresh database of the benchmark's backend holding all the macros.
void FilledSystemDatabase(CMacroDataManager& store, benchmark::State& state, QTemporaryDir& home)
{
    if (!FreshSystemDatabase(state.range(0) != 0, home))
        state.SkipWithError("no database");
    InsertAll(store, state);
}

void BM_Insert(benchmark::State& state)
{
    QTemporaryDir home;
    CMacroDataManager store;
    for (auto _ : state) {
        state.PauseTiming();
        if (!FreshSystemDatabase(state.range(0) != 0, home))
            state.SkipWithError("no database");
        state.ResumeTiming();
        InsertAll(store, state);
    }
    state.SetItemsProcessed(state.iterations() * kMacros);
}

void BM_LoadEach(benchmark::State& state)
{
    QTemporaryDir home;
    CMacroDataManager store;
    FilledSystemDatabase(store, state, home);
    for (auto _ : state) {
        for (int id = 1; id <= kMacros; ++id) {
            CMacro macro;
            if (!store.LoadMacro(id, macro) || macro.InputParams().GetSize() != kParams / 2)
                state.SkipWithError("load failed");
        }
    }
    state.SetItemsProcessed(state.iterations() * kMacros);
}

void BM_ListAll(benchmark::State& state)
{
    QTemporaryDir home;
    CMacroDataManager store;
    FilledSystemDatabase(store, state, home);
    for (auto _ : state) {
        CArray<CMacro> all;
        if (!store.LoadAllMacros(all) || all.GetSize() != kMacros)
            state.SkipWithError("list failed");
    }
    state.SetItemsProcessed(state.iterations() * kMacros);
}

// Argument 0: SQLite file, 1: PostgreSQL server.
BENCHMARK(BM_Insert)->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadEach)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListAll)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    CDBFactory::ReleaseThread();
    return 0;
}
