#include "CTestCli.h"

#include "CCliHostSetup.h"
#include "CConsoleUIService.h"
#include "CJsEngine.h"
#include "CParallelTestRunner.h"
#include "CProgressDlg_Control.h"
#include "CSampleDataSeeder.h"
#include "CUIServices.h"
#include "HostContext.h"
#include "NativePath.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QThread>
#include <cstdio>

namespace {

constexpr int kFailuresListed = 50;

void Out(std::FILE* stream, const QString& text)
{
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

} // namespace

CTestCli::CTestCli() = default;
CTestCli::~CTestCli() = default;

int CTestCli::Run(const QStringList& args)
{
    const int prepared = Prepare(args);
    if (prepared >= 0)
        return prepared;
    QElapsedTimer timer;
    timer.start();
    RunScripts();
    const int code = Finish();
    if (code == kSetupError)
        return code;
    PrintSummary(double(timer.elapsed()) / 1000.0);
    return code;
}

// Returns an exit status when the run ends before any script runs, else -1.
int CTestCli::Prepare(const QStringList& args)
{
    switch (m_options.Parse(args, QProcessEnvironment::systemEnvironment())) {
    case CCliOptions::Action::Help:
        Out(stdout, CCliOptions::HelpText());
        return kAllPassed;
    case CCliOptions::Action::Version:
        Out(stdout, CCliOptions::VersionText());
        return kAllPassed;
    case CCliOptions::Action::Error:
        return SetupError(m_options.Error() + QStringLiteral(" (see --help)"));
    case CCliOptions::Action::Run:
        break;
    }
    // Counters only in coverage runs, and on before any engine starts.
    if (!m_options.CoverageDir().isEmpty()) {
        if (!QDir().mkpath(m_options.CoverageDir()))
            return SetupError(QStringLiteral("cannot make the coverage folder %1").arg(m_options.CoverageDir()));
        CJsEngine::EnableCoverage();
    }
    const QString junit = m_options.JUnitFile();
    if (!junit.isEmpty() && !QFileInfo(QFileInfo(junit).absolutePath()).isDir())
        return SetupError(QStringLiteral("the folder of the JUnit file %1 does not exist").arg(junit));
    m_ui = std::make_shared<CConsoleUIService>(stderr);
    m_ui->SetProgressVisible(!m_options.Quiet());
    CUIServices::Install(m_ui);
    CCliHostSetup setup;
    if (!setup.Apply(m_options))
        return SetupError(setup.Error());
    CSampleDataSeeder seeder;
    if (!setup.SystemDbNamed() && !seeder.SeedIfNeeded())
        return SetupError(seeder.Error());
    if (seeder.Seeded() && !m_options.Quiet())
        Out(stderr, QStringLiteral("seeded %1 sample scripts into %2\n").arg(seeder.ScriptCount()).arg(HostContext::Instance().Home()));
    if (!SelectScripts())
        return SetupError(m_setupError);
    if (m_options.List())
        return ListScripts();
    if (!m_options.Shard().IsWhole())
        m_junit.SetShard(m_options.Shard().Text());
    m_jobs = m_options.Jobs() > 0 ? m_options.Jobs() : std::max(1, QThread::idealThreadCount());
    m_service = std::make_unique<CTestJavaScriptService>();
    return -1;
}

bool CTestCli::SelectScripts()
{
    if (!CTestJavaScriptService::ReadAllScripts(m_scripts)) {
        m_setupError = QStringLiteral("cannot read the scripts of the system database %1")
                           .arg(HostContext::Instance().SystemDatabase());
        return false;
    }
    QList<CTestJavaScriptService::Script> chosen;
    bool named = m_options.Script().isEmpty();
    for (const CTestJavaScriptService::Script& script : m_scripts) {
        if (!m_options.Script().isEmpty() && script.name != m_options.Script())
            continue;
        named = true;
        // A named script of another shard is no error: that shard runs it.
        if (m_options.Shard().Contains(script.name))
            chosen.append(script);
    }
    if (!named) {
        m_setupError = QStringLiteral("no script named \"%1\" in the system database %2")
                           .arg(m_options.Script(), HostContext::Instance().SystemDatabase());
        return false;
    }
    m_allScripts = int(m_scripts.size());
    m_scripts = chosen;
    return true;
}

int CTestCli::ListScripts() const
{
    QString names;
    for (const CTestJavaScriptService::Script& script : m_scripts)
        names += script.name + QLatin1Char('\n');
    Out(stdout, names);
    return kAllPassed;
}

void CTestCli::RunScripts()
{
    CProgressDlg_Control progress;
    progress.Show();
    auto announce = [&](int index) {
        if (index < m_scripts.size())
            progress.SetProgressInfo(CProgressDlg_Control::CProgressInfo(
                QStringLiteral("开始测试脚本:") + m_scripts.at(index).name, index, int(m_scripts.size())));
    };
    announce(0);
    CParallelTestRunner runner(m_jobs);
    if (!m_options.CoverageDir().isEmpty())
        runner.SetCoverage(&m_coverage);
    runner.Run(m_scripts, [&](int index, const CScriptTestReport& written, double seconds) {
        // The result file keeps the store's rule: an unreadable table passes.
        m_service->AppendReport(written);
        const CScriptTestReport report = Judged(written);
        if (!m_options.JUnitFile().isEmpty())
            m_junit.Add(report, seconds);
        Collect(report);
        announce(index + 1);
    });
    progress.SetProgressInfo(CProgressDlg_Control::CProgressInfo(QString(), int(m_scripts.size()), int(m_scripts.size())));
    progress.Close();
}

// Under --strict a case whose table cannot be read fails.
CScriptTestReport CTestCli::Judged(const CScriptTestReport& written) const
{
    CScriptTestReport report = written;
    if (!m_options.Strict())
        return report;
    for (CTestCaseOutcome& outcome : report.outcomes) {
        if (outcome.passed && outcome.tableUnreadable) {
            outcome.passed = false;
            outcome.message = CJUnitReport::kTableUnreadable;
            report.passed = false;
        }
    }
    return report;
}

void CTestCli::Collect(const CScriptTestReport& report)
{
    for (const CTestCaseOutcome& outcome : report.outcomes) {
        if (outcome.passed) {
            ++m_passed;
            if (outcome.tableUnreadable) {
                ++m_warnings;
                m_ui->MessageBox(CJUnitReport::TableWarning(outcome), QString(), 0);
            }
            continue;
        }
        ++m_failed;
        if (m_failures.size() < kFailuresListed) {
            const QString where = outcome.caseName.isEmpty() ? outcome.script : outcome.script + QStringLiteral(" / ") + outcome.caseName;
            QString line = QStringLiteral("FAILED %1: %2").arg(where, outcome.message.simplified());
            if (!outcome.where.isEmpty())
                line += QStringLiteral(" (%1)").arg(outcome.where);
            m_failures.append(line);
        }
    }
}

int CTestCli::Finish()
{
    m_service->FinishRun(m_failed > 0);
    if (m_service->ResultFileWriteFailed())
        return SetupError(QStringLiteral("cannot write the result file %1").arg(NativePath::Map(m_service->GetResultFileName())));
    if (!m_options.JUnitFile().isEmpty()) {
        QString error;
        if (!m_junit.Write(m_options.JUnitFile(), error))
            return SetupError(error);
    }
    if (!m_options.CoverageDir().isEmpty() && !WriteCoverage(m_coverageSummary))
        return SetupError(m_coverageSummary);
    return m_failed > 0 ? kSomeFailed : kAllPassed;
}

// The LCOV file always, the HTML report when genhtml is there; the summary
// lines to print, or the reason it failed.
bool CTestCli::WriteCoverage(QString& summary)
{
    QElapsedTimer timer;
    timer.start();
    const QString dir = QFileInfo(m_options.CoverageDir()).absoluteFilePath();
    if (!m_coverage.WriteLcov(dir, summary))
        return false;
    int lines = 0, reached = 0;
    for (const CNativeCoverage::File& file : m_coverage.Files())
        for (const auto& [line, count] : file.hits) {
            ++lines;
            reached += count > 0 ? 1 : 0;
        }
    summary = QStringLiteral("coverage: %1 of %2 lines reached, %3\n").arg(reached).arg(lines).arg(dir + QStringLiteral("/lcov.info"));
    if (!CNativeCoverage::HasGenhtml()) {
        Out(stderr, QStringLiteral("velmora-test: genhtml (Debian package lcov) not found, no HTML report\n"));
        return true;
    }
    QString error;
    if (!CNativeCoverage::WriteHtml(dir, error)) {
        summary = error;
        return false;
    }
    summary += QStringLiteral("coverage report: %1/html/index.html (written in %2 s)\n")
                   .arg(dir).arg(double(timer.elapsed()) / 1000.0, 0, 'f', 2);
    return true;
}

void CTestCli::PrintSummary(double seconds) const
{
    QString text;
    for (const QString& line : m_failures)
        text += line + QLatin1Char('\n');
    if (m_failed > m_failures.size())
        text += QStringLiteral("... and %1 more failures\n").arg(m_failed - m_failures.size());
    const int cases = m_passed + m_failed;
    const CTestShard shard = m_options.Shard();
    const QString scripts = shard.IsWhole()
        ? QStringLiteral("%1 scripts").arg(m_scripts.size())
        : QStringLiteral("shard %1: %2 of %3 scripts").arg(shard.Text()).arg(m_scripts.size()).arg(m_allScripts);
    text += QStringLiteral("velmora-test: %1, %2 cases, %3 jobs, %4 s\n")
                .arg(scripts).arg(cases).arg(CParallelTestRunner(m_jobs).WorkersFor(int(m_scripts.size())))
                .arg(seconds, 0, 'f', 2);
    text += QStringLiteral("%1 passed, %2 failed\n").arg(m_passed).arg(m_failed);
    if (m_warnings > 0)
        text += QStringLiteral("%1 warnings\n").arg(m_warnings);
    const QString resultFile = NativePath::Map(m_service->GetResultFileName());
    text += QFileInfo::exists(resultFile) ? QStringLiteral("result file: %1\n").arg(resultFile)
                                          : QStringLiteral("result file: none (no script to test)\n");
    if (!m_options.JUnitFile().isEmpty())
        text += QStringLiteral("junit file: %1\n").arg(QFileInfo(m_options.JUnitFile()).absoluteFilePath());
    text += m_coverageSummary;
    Out(stdout, text);
}

int CTestCli::SetupError(const QString& reason) const
{
    Out(stderr, QStringLiteral("velmora-test: %1\n").arg(reason));
    return kSetupError;
}
