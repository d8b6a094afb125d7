#include "CParallelTestRunner.h"

#include <QElapsedTimer>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace {

struct Finished
{
    CScriptTestReport report;
    CNativeCoverage coverage;
    double seconds = 0;
};

// Reports finished by the workers, waiting for their turn.
class ReportBoard
{
public:
    explicit ReportBoard(int count) : m_slots(size_t(count)) {}

    void Put(int index, Finished finished)
    {
        {
            std::lock_guard guard(m_lock);
            m_slots[size_t(index)] = std::move(finished);
        }
        m_ready.notify_all();
    }

    Finished Take(int index)
    {
        std::unique_lock guard(m_lock);
        m_ready.wait(guard, [&] { return m_slots[size_t(index)].has_value(); });
        Finished finished = std::move(*m_slots[size_t(index)]);
        m_slots[size_t(index)].reset();
        return finished;
    }

private:
    std::mutex m_lock;
    std::condition_variable m_ready;
    std::vector<std::optional<Finished>> m_slots;
};

Finished RunOne(CTestJavaScriptService& service, const CParallelTestRunner::Script& script, bool coverage)
{
    Finished finished;
    QElapsedTimer timer;
    timer.start();
    if (coverage)
        service.SetCoverage(&finished.coverage);
    service.RunScriptTests(script.name, script.text, &finished.report);
    if (coverage)
        service.SetCoverage(nullptr);
    finished.seconds = double(timer.nsecsElapsed()) / 1e9;
    return finished;
}

// Hands one script's report to the sink, its line counts to the total first.
void Hand(CNativeCoverage* total, int index, const Finished& finished, const CParallelTestRunner::ReportSink& sink)
{
    if (total)
        total->Merge(finished.coverage);
    sink(index, finished.report, finished.seconds);
}

} // namespace

int CParallelTestRunner::WorkersFor(int scripts) const
{
    return std::max(1, std::min(m_jobs, scripts));
}

void CParallelTestRunner::Run(const QList<Script>& scripts, const ReportSink& sink)
{
    if (scripts.isEmpty())
        return;
    if (WorkersFor(int(scripts.size())) == 1)
        RunInline(scripts, sink);
    else
        RunThreaded(scripts, sink);
}

void CParallelTestRunner::RunInline(const QList<Script>& scripts, const ReportSink& sink)
{
    CTestJavaScriptService service;
    for (int i = 0; i < scripts.size(); ++i) {
        const Finished finished = RunOne(service, scripts.at(i), m_coverage);
        Hand(m_coverage, i, finished, sink);
    }
}

void CParallelTestRunner::RunThreaded(const QList<Script>& scripts, const ReportSink& sink)
{
    const int count = int(scripts.size());
    ReportBoard board(count);
    std::atomic<int> next{0};
    auto work = [&] {
        // The service, and with it the engine context, lives and dies on this thread.
        CTestJavaScriptService service;
        for (int i = next.fetch_add(1); i < count; i = next.fetch_add(1))
            board.Put(i, RunOne(service, scripts.at(i), m_coverage));
    };
    std::vector<std::thread> workers;
    const int workerCount = WorkersFor(count);
    for (int w = 0; w < workerCount; ++w) {
        try {
            workers.emplace_back(work);
        } catch (const std::system_error&) {
            break; // out of threads: the ones running share the scripts
        }
    }
    if (workers.empty()) {
        RunInline(scripts, sink);
        return;
    }
    for (int i = 0; i < count; ++i) {
        const Finished finished = board.Take(i);
        Hand(m_coverage, i, finished, sink);
    }
    for (std::thread& worker : workers)
        worker.join();
}
