#pragma once
#include "CCliOptions.h"
#include "CJUnitReport.h"
#include "CNativeCoverage.h"
#include "CTestJavaScriptService.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

class CConsoleUIService;

// velmora-test from the command line to the exit status: sets up the host
// context, seeds a fresh home with the sample scripts, runs the chosen
// scripts' cases on worker threads, appends their lines to one result file in
// script order, and prints the summary.
class CTestCli
{
public:
    enum ExitCode { kAllPassed = 0, kSomeFailed = 1, kSetupError = 2 };

    CTestCli();
    ~CTestCli();

    int Run(const QStringList& args);

private:
    int Prepare(const QStringList& args);
    bool SelectScripts();
    int ListScripts() const;
    void RunScripts();
    CScriptTestReport Judged(const CScriptTestReport& written) const;
    void Collect(const CScriptTestReport& report);
    int Finish();
    bool WriteCoverage(QString& summary);
    void PrintSummary(double seconds) const;
    int SetupError(const QString& reason) const;

    CCliOptions m_options;
    std::shared_ptr<CConsoleUIService> m_ui;
    std::unique_ptr<CTestJavaScriptService> m_service;
    QList<CTestJavaScriptService::Script> m_scripts;
    CJUnitReport m_junit;
    CNativeCoverage m_coverage;
    QStringList m_failures;
    int m_passed = 0;
    int m_failed = 0;
    int m_warnings = 0; // cases passed against an empty table
    int m_jobs = 1;
    int m_allScripts = 0; // before the shard and --script chose
    QString m_setupError;
    QString m_coverageSummary;
};
