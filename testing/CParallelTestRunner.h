#pragma once
#include "CNativeCoverage.h"
#include "CScriptTestReport.h"
#include "CTestJavaScriptService.h"

#include <QList>
#include <functional>

// Runs the test cases of many scripts on worker threads, each with a test
// service (and so a script engine) of its own, and hands the scripts' reports
// back on the calling thread strictly in script order, one at a time, as soon
// as each one and all before it are done. Reports already handed back are
// dropped, so memory follows the workers' lead over the sink, not the run.
class CParallelTestRunner
{
public:
    using Script = CTestJavaScriptService::Script;
    // index: the script's position in the list; seconds: its run time.
    using ReportSink = std::function<void(int index, const CScriptTestReport& report, double seconds)>;

    // Asked on the calling thread between reports and while it waits for
    // one; once it answers true no further script is started, and the
    // scripts already running are finished and handed back.
    using CancelCheck = std::function<bool()>;

    explicit CParallelTestRunner(int jobs) : m_jobs(jobs < 1 ? 1 : jobs) {}

    void SetCancelCheck(CancelCheck check) { m_cancelCheck = std::move(check); }
    // With true even a single job runs on a thread of its own, so that a
    // window on the calling thread keeps painting (through the cancel check).
    void SetKeepCallerFree(bool free) { m_keepCallerFree = free; }

    // Without SetKeepCallerFree one job runs on the calling thread itself.
    // Returns when every script started has been handed to the sink; returns
    // the number handed back (all of them unless cancelled).
    int Run(const QList<Script>& scripts, const ReportSink& sink);

    // With a sink, every case run counts its lines, and each script's counts
    // are added to the sink on the calling thread, in script order.
    void SetCoverage(CNativeCoverage* coverage) { m_coverage = coverage; }

    // The worker count a run over `scripts` scripts uses.
    int WorkersFor(int scripts) const;

private:
    int RunInline(const QList<Script>& scripts, const ReportSink& sink);
    int RunThreaded(const QList<Script>& scripts, const ReportSink& sink);
    bool Cancelled() const { return m_cancelCheck && m_cancelCheck(); }

    int m_jobs;
    bool m_keepCallerFree = false;
    CancelCheck m_cancelCheck;
    CNativeCoverage* m_coverage = nullptr;
};
