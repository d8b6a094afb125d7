#include "CParallelTestRunner.h"

#include <QElapsedTimer>
#include <atomic>
#include <chrono>
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

    // Waits at most `wait` for the report; false when it is not there yet.
    bool TryTake(int index, std::chrono::milliseconds wait, Finished& out)
    {
        std::unique_lock guard(m_lock);
        if (!m_ready.wait_for(guard, wait, [&] { return m_slots[size_t(index)].has_value(); }))
            return false;
        out = std::move(*m_slots[size_t(index)]);
        m_slots[size_t(index)].reset();
        return true;
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

int CParallelTestRunner::Run(const QList<Script>& scripts, const ReportSink& sink)
{
    if (scripts.isEmpty())
        return 0;
    if (WorkersFor(int(scripts.size())) == 1 && !m_keepCallerFree)
        return RunInline(scripts, sink);
    return RunThreaded(scripts, sink);
}

int CParallelTestRunner::RunInline(const QList<Script>& scripts, const ReportSink& sink)
{
    CTestJavaScriptService service;
    for (int i = 0; i < scripts.size(); ++i) {
        if (i > 0 && Cancelled())
            return i;
        const Finished finished = RunOne(service, scripts.at(i), m_coverage);
        Hand(m_coverage, i, finished, sink);
    }
    return int(scripts.size());
}

int CParallelTestRunner::RunThreaded(const QList<Script>& scripts, const ReportSink& sink)
{
    const int count = int(scripts.size());
    ReportBoard board(count);
    // Scripts are claimed in order, so the claimed ones are always a prefix
    // of the list; a cancel moves the end to that prefix.
    std::mutex claimLock;
    int next = 0;
    int end = count;
    auto claim = [&] {
        std::lock_guard guard(claimLock);
        return next < end ? next++ : -1;
    };
    auto work = [&] {
        // The service, and with it the engine context, lives and dies on this thread.
        CTestJavaScriptService service;
        for (int i = claim(); i >= 0; i = claim())
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
    if (workers.empty())
        return RunInline(scripts, sink);
    bool stopped = false;
    auto stopIfCancelled = [&] {
        if (stopped || !Cancelled())
            return;
        std::lock_guard guard(claimLock);
        end = next;
        stopped = true;
    };
    auto runEnd = [&] {
        std::lock_guard guard(claimLock);
        return end;
    };
    int i = 0;
    for (; i < runEnd(); ++i) {
        Finished finished;
        bool taken = false;
        while (!(taken = board.TryTake(i, std::chrono::milliseconds(25), finished)) && i < runEnd())
            stopIfCancelled();
        if (!taken)
            break; // cancelled before this script was claimed
        Hand(m_coverage, i, finished, sink);
        stopIfCancelled();
    }
    for (std::thread& worker : workers)
        worker.join();
    return i;
}
