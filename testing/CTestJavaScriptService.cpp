#include "CTestJavaScriptService.h"

#include "CAccessSysData_MacrosTable.h"
#include "CJoinedTextLines.h"
#include "CMacroParam.h"
#include "CParallelTestRunner.h"
#include "CNativeCoverage.h"
#include "COutPutTextTable.h"
#include "CProgressDlg_Control.h"
#include "CSysMacrosTable.h"
#include "CTestCaseInfoTable.h"
#include "CUIServices.h"
#include "NativePath.h"
#include "QxMfcFun.h"
#include "UIFunction.h"

#include <QCoreApplication>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <iterator>

using QxMfc::Fun;

namespace {

// Counts services of this process so that two made within one millisecond
// (worker threads) still get files of their own.
std::atomic<int> g_serviceCount{0};

QString Unbroken(QString value)
{
    value.remove(QLatin1Char('\n'));
    value.remove(QLatin1Char('\r'));
    return value;
}

} // namespace

CTestJavaScriptService::CTestJavaScriptService()
{
    m_resultFile = MakeResultFileName();
}

CTestJavaScriptService::~CTestJavaScriptService() = default;

QString CTestJavaScriptService::MakeResultFileName()
{
    // The first field stands where the host put the system data path's text;
    // it is read as nothing but a run-dependent number. Process id and
    // service count make that number differ between runs and services.
    const int runNumber = static_cast<int>(QCoreApplication::applicationPid() % 10000000) * 100
                          + g_serviceCount.fetch_add(1) % 100;
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return QString::asprintf("C:\\测试脚本结果%04d-%02d-%02d-%02d-%02d-%02d-%02d-%02d.txt", runNumber, date.year(),
                             date.month(), date.day(), time.hour(), time.minute(), time.second(), time.msec());
}

QString CTestJavaScriptService::FormatLogLine(const QString& script, const QString& caseName,
                                              const QString& message, const QDateTime& when)
{
    const QString body = QStringLiteral("脚本(") + script + QStringLiteral(")检测测试(") + caseName
                         + QStringLiteral(")发现错误:") + message;
    int stamp[6] = {0, 0, 0, -1, -1, -1};
    if (when.isValid()) {
        const QDate date = when.date();
        const QTime time = when.time();
        const int parts[6] = {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()};
        std::copy(std::begin(parts), std::end(parts), std::begin(stamp));
    }
    return QString::asprintf("%d.%d.%d %d:%d:%d...", stamp[0], stamp[1], stamp[2], stamp[3], stamp[4], stamp[5])
           + body + QStringLiteral(" \r\n");
}

void CTestJavaScriptService::LogTestMessage(const QString& script, const QString& caseName, const QString& message)
{
    CScriptTestReport::Entry entry;
    entry.line = FormatLogLine(script, caseName, message, QDateTime::currentDateTime());
    Emit(entry);
}

void CTestJavaScriptService::Emit(const CScriptTestReport::Entry& entry)
{
    if (m_gathering)
        m_gathering->entries.append(entry);
    else
        WriteEntry(entry);
}

QString CTestJavaScriptService::EntryText(const CScriptTestReport::Entry& entry)
{
    if (!entry.isTable)
        return entry.line;
    COutPutTextTable text;
    text.AddTextNode(CTestCaseInfoTable::ParmName);
    text.AddTextNode(CTestCaseInfoTable::ParmValue);
    text.AddTextNode(CTestCaseInfoTable::NewParmValue);
    for (const CTestCaseOutcome::Row& row : entry.table) {
        text.AddNodeValue(Unbroken(row.name));
        text.AddNodeValue(Unbroken(row.storedValue));
        text.AddNodeValue(Unbroken(row.newValue));
    }
    return text.ToText();
}

bool CTestJavaScriptService::Append(const QString& text)
{
    const bool written = Fun::AppendCString2File(m_resultFile, text);
    m_writeFailed = m_writeFailed || !written;
    return written;
}

bool CTestJavaScriptService::WriteEntry(const CScriptTestReport::Entry& entry)
{
    return Append(EntryText(entry));
}

bool CTestJavaScriptService::AppendReport(const CScriptTestReport& report)
{
    // One append per script: the file gets the same bytes as entry by entry,
    // without opening it twice for every case.
    QString text;
    for (const CScriptTestReport::Entry& entry : report.entries)
        text += EntryText(entry);
    return report.entries.isEmpty() || Append(text);
}

void CTestJavaScriptService::OpenResultFile()
{
    CUIServices::Current().ShellOpen(NativePath::Map(m_resultFile));
}

void CTestJavaScriptService::FinishRun(bool failed)
{
    if (!failed)
        return;
    UIFunction::QXMessageBox(kRunFailed, QString(), UIFunction::MB_OK);
    OpenResultFile();
}

bool CTestJavaScriptService::RunTestCase(const QString& globalFun, const QString& globalParm,
                                         const QString& caseText, const QString& scriptText,
                                         NDataModelDataSet& table, QString& error)
{
    // Run as the four texts joined with "\r\n"; the library and the other
    // texts that repeat from case to case are compiled once.
    const QStringList program{globalFun, globalParm, caseText, scriptText};
    CArray<CMacroParam> params;
    for (int row = 1; row <= table.GetRowCount(); ++row)
        params.Add(CMacroParam(table.GetAsString(CTestCaseInfoTable::ParmName, row),
                               table.GetAsString(CTestCaseInfoTable::ParmValue, row), QString()));
    const bool ran = m_macro.ExecuteScript(program, params);
    if (m_coverage)
        m_coverage->AddRun(m_coverageScript, globalFun, globalParm, caseText, scriptText, m_macro.LastLineHits());
    if (!ran) {
        error = m_macro.GetError();
        return false;
    }
    for (const CMacroParam& param : params) {
        for (int row = 1; row <= table.GetRowCount(); ++row) {
            if (table.GetAsString(CTestCaseInfoTable::ParmName, row) == param.GetName()) {
                table.SetAsString(CTestCaseInfoTable::ParmValue, row, param.GetValue());
                break;
            }
        }
    }
    return true;
}

bool CTestJavaScriptService::CompareResults(const QString& script, const QString& caseName,
                                            const NDataModelDataSet& after, const NDataModelDataSet& stored)
{
    QList<CTestCaseOutcome::Row> rows;
    return CompareAndLog(script, caseName, after, stored, rows);
}

bool CTestJavaScriptService::CompareAndLog(const QString& script, const QString& caseName,
                                           const NDataModelDataSet& after, const NDataModelDataSet& stored,
                                           QList<CTestCaseOutcome::Row>& rows)
{
    // The comparison table: per row of the run, the stored and the new value.
    rows.clear();
    bool mismatch = false;
    for (int row = 1; row <= after.GetRowCount(); ++row) {
        const QString name = after.GetAsString(CTestCaseInfoTable::ParmName, row);
        const QString newValue = after.GetAsString(CTestCaseInfoTable::ParmValue, row);
        QString oldValue = kNoSuchParameter;
        bool found = false;
        for (int old = 1; old <= stored.GetRowCount() && !found; ++old) {
            if (stored.GetAsString(CTestCaseInfoTable::ParmName, old) == name) {
                oldValue = stored.GetAsString(CTestCaseInfoTable::ParmValue, old);
                found = true;
            }
        }
        // Exact text: "3" and "3.0" differ, and so do values that differ in blanks.
        mismatch = mismatch || !found || oldValue != newValue;
        rows.append({name, oldValue, newValue});
    }
    if (!mismatch) {
        LogTestMessage(script, caseName, kResultsAgree);
        return true;
    }
    LogTestMessage(script, caseName, kResultsDisagree);
    CScriptTestReport::Entry table;
    table.isTable = true;
    table.table = rows;
    Emit(table);
    return false;
}

bool CTestJavaScriptService::ReadAllScripts(QList<Script>& scripts)
{
    scripts.clear();
    const std::unique_ptr<NDataModelDataSet> data = CAccessSysData_MacrosTable::GetDataSet();
    if (!data)
        return false;
    for (int row = 1; row <= data->GetRowCount(); ++row)
        scripts.append({data->GetAsString(CSysMacrosTable::CFieldInfo::key_ch, row),
                        data->GetAsString(CSysMacrosTable::CFieldInfo::content, row)});
    return true;
}

void CTestJavaScriptService::Record(CScriptTestReport& report, const QString& caseName, bool passed,
                                    const QString& message, const QList<CTestCaseOutcome::Row>& rows,
                                    CTestCaseOutcome outcome)
{
    outcome.script = report.script;
    outcome.caseName = caseName;
    outcome.passed = passed;
    outcome.message = message;
    outcome.rows = rows;
    report.passed = report.passed && passed;
    report.outcomes.append(outcome);
    if (m_observer)
        m_observer(outcome);
}

void CTestJavaScriptService::SetCoverage(CNativeCoverage* coverage)
{
    m_coverage = coverage;
    m_macro.SetCollectCoverage(coverage != nullptr);
}

bool CTestJavaScriptService::RunScriptTests(const QString& name, const QString& scriptText,
                                            CScriptTestReport* report, const QString& onlyCase)
{
    CScriptTestReport local;
    CScriptTestReport& target = report ? *report : local;
    target.script = name;
    const bool passedBefore = target.passed;
    target.passed = true;
    m_coverageScript = name;
    CScriptTestReport* const outer = m_gathering;
    m_gathering = report;

    QString globalFun;
    QString globalParm;
    if (!HasTestCases(name)) {
        // A script without cases fails the run: every script is meant to be tested.
        LogTestMessage(name, QString(), kNoTestCases);
        Record(target, QString(), false, kNoTestCases);
    } else if (!LoadGlobals(name, globalFun, globalParm)) {
        LogTestMessage(name, QString(), kNoGlobals);
        Record(target, QString(), false, kNoGlobals);
    } else {
        CArray<QString> cases;
        ListTestCases(name, cases);
        for (const QString& caseName : cases)
            if (onlyCase.isEmpty() || caseName == onlyCase)
                RunOneCase(name, caseName, globalFun, globalParm, scriptText, target);
    }

    m_gathering = outer;
    const bool passed = target.passed;
    target.passed = passed && passedBefore;
    return passed;
}

void CTestJavaScriptService::RunOneCase(const QString& name, const QString& caseName, const QString& globalFun,
                                        const QString& globalParm, const QString& scriptText,
                                        CScriptTestReport& report)
{
    CTestCaseInfoTable stored;
    QString caseText;
    CTestCaseOutcome extra;
    if (!LoadTestCase(name, caseName, caseText, &stored, &extra.tableUnreadable)) {
        LogTestMessage(name, caseName, kCaseUnreadable);
        Record(report, caseName, false, kCaseUnreadable);
        return;
    }
    // The stored table keeps the expected values; the copy receives the run's.
    const std::unique_ptr<NDataModelDataSet> run = stored.Clone();
    QString error;
    if (!RunTestCase(globalFun, globalParm, caseText, scriptText, *run, error)) {
        LogTestMessage(name, caseName, error);
        CJoinedTextLines lines;
        // Whatever the engine put in front of the case's text comes first.
        const QString crlf = QStringLiteral("\r\n");
        const QString joined = globalFun + crlf + globalParm + crlf + caseText + crlf + scriptText;
        const QString whole = m_macro.GetLastScript();
        if (whole.size() > joined.size() && whole.endsWith(crlf + joined))
            lines.Add(QStringLiteral("global script"), whole.left(whole.size() - joined.size() - crlf.size()));
        lines.Add(kGlobalFunFile, globalFun);
        lines.Add(kGlobalParmFile, globalParm);
        lines.Add(QStringLiteral("case"), caseText);
        lines.Add(QStringLiteral("script"), scriptText);
        extra.where = lines.Locate(CJoinedTextLines::ErrorLine(error));
        Record(report, caseName, false, error, {}, extra);
        return;
    }
    QList<CTestCaseOutcome::Row> rows;
    if (!CompareAndLog(name, caseName, *run, stored, rows)) {
        Record(report, caseName, false, kResultsDisagree, rows, extra);
        return;
    }
    LogTestMessage(name, caseName, kTestPassed);
    Record(report, caseName, true, kTestPassed, rows, extra);
}

int CTestJavaScriptService::RunAllTests()
{
    QList<Script> scripts;
    ReadAllScripts(scripts);
    CProgressDlg_Control progress;
    progress.Show();
    auto announce = [&](int index) {
        if (index < scripts.size())
            progress.SetProgressInfo(CProgressDlg_Control::CProgressInfo(
                QStringLiteral("开始测试脚本:") + scripts.at(index).name, index, int(scripts.size())));
    };
    announce(0);
    // Scripts run on worker threads while this thread keeps the progress
    // window alive; reports come back in script order, so the result file
    // reads as a one-worker run would write it.
    bool failed = false;
    CParallelTestRunner runner(m_jobs > 0 ? m_jobs : std::max(1, QThread::idealThreadCount()));
    runner.SetKeepCallerFree(true);
    runner.SetCancelCheck([] { return CUIServices::Current().ProgressCancelled(); });
    runner.Run(scripts, [&](int index, const CScriptTestReport& report, double) {
        AppendReport(report);
        failed = failed || !report.passed;
        if (m_observer)
            for (const CTestCaseOutcome& outcome : report.outcomes)
                m_observer(outcome);
        announce(index + 1);
    });
    scripts.clear();
    progress.Close();
    FinishRun(failed);
    return 1;
}
