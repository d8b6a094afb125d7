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

    explicit CParallelTestRunner(int jobs) : m_jobs(jobs < 1 ? 1 : jobs) {}

    // One job runs on the calling thread itself. Returns when every script
    // has been handed to the sink.
    void Run(const QList<Script>& scripts, const ReportSink& sink);

    // With a sink, every case run counts its lines, and each script's counts
    // are added to the sink on the calling thread, in script order.
    void SetCoverage(CNativeCoverage* coverage) { m_coverage = coverage; }

    // The worker count a run over `scripts` scripts uses.
    int WorkersFor(int scripts) const;

private:
    void RunInline(const QList<Script>& scripts, const ReportSink& sink);
    void RunThreaded(const QList<Script>& scripts, const ReportSink& sink);

    int m_jobs;
    CNativeCoverage* m_coverage = nullptr;
};
