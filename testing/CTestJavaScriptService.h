#pragma once
#include "CMacroImplement.h"
#include "CScriptTestReport.h"
#include "CTestCaseOutcome.h"
#include "CTestCaseStore.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>

class CNativeCoverage;
class NDataModelDataSet;

// Runs the stored test cases of scripts, compares what each run computes with
// the stored values as text, and writes every outcome as a line of a result
// file of its own (named when the service is made, in the root of drive C).
//
// RunAllTests is the whole test-all run. Headless callers can run the same
// steps in pieces: ReadAllScripts, then RunScriptTests per script (gathering
// into a CScriptTestReport, possibly on worker threads, each with its own
// service), then AppendReport in script order and FinishRun. A service is not
// shared between threads; the case observer runs on the thread that runs the
// case.
class CTestJavaScriptService : public CTestCaseStore
{
public:
    struct Script
    {
        QString name;
        QString text;
    };
    using CaseObserver = std::function<void(const CTestCaseOutcome&)>;

    static inline const QString kNoTestCases = QStringLiteral("没有测试用例!");
    static inline const QString kNoGlobals = QStringLiteral("无法获取全局信息!");
    static inline const QString kCaseUnreadable = QStringLiteral("无法获取测试用例信息!");
    static inline const QString kResultsAgree = QStringLiteral("计算结果一致!");
    static inline const QString kResultsDisagree = QStringLiteral("计算结果不一致!");
    static inline const QString kTestPassed = QStringLiteral("测试通过!");
    static inline const QString kNoSuchParameter = QStringLiteral("原测试中没有此参数");
    static inline const QString kRunFailed = QStringLiteral("测试出现失败！");

    CTestJavaScriptService();
    ~CTestJavaScriptService() override;
    CTestJavaScriptService(const CTestJavaScriptService&) = delete;
    CTestJavaScriptService& operator=(const CTestJavaScriptService&) = delete;

    // Every script's cases, in the system data's order, on one worker per
    // core (SetJobs), with the progress window; a cancel there stops after
    // the scripts already running. On any failure a message box and the
    // result file are shown. Always 1.
    int RunAllTests();
    // Workers of RunAllTests; 0 (the default) means one per core.
    void SetJobs(int jobs) { m_jobs = jobs; }

    // One case: global functions, global parameters, case text and script
    // joined with "\r\n" and run; each row's ParmValue becomes the value its
    // variable has afterwards. False with the engine's error text on failure.
    bool RunTestCase(const QString& globalFun, const QString& globalParm, const QString& caseText,
                     const QString& scriptText, NDataModelDataSet& table, QString& error);

    // Every case runs as its whole joined text, never piece by piece (for
    // coverage, which counts the lines of that text).
    void SetJoinedRuns(bool joined) { m_macro.SetJoinedRuns(joined); }

    // True when every row of `after` has its stored value, exactly as text.
    // Logs the outcome; a mismatch also prints the comparison table.
    bool CompareResults(const QString& script, const QString& caseName, const NDataModelDataSet& after,
                        const NDataModelDataSet& stored);

    // Appends one time-stamped line to the result file (or to the report
    // being gathered).
    void LogTestMessage(const QString& script, const QString& caseName, const QString& message);

    // Shows the result file with the desktop's associated application.
    void OpenResultFile();

    // "C:\测试脚本结果N-YYYY-MM-DD-hh-mm-ss-ms.txt". Called once, by the
    // constructor; the file itself appears with the first log line.
    QString MakeResultFileName();

    // --- pieces of a run, for headless and parallel callers ---

    const QString& GetResultFileName() const { return m_resultFile; }
    void SetResultFileName(const QString& path) { m_resultFile = path; }
    void SetCaseObserver(CaseObserver observer) { m_observer = std::move(observer); }
    // True once a line or table could not be written to the result file.
    bool ResultFileWriteFailed() const { return m_writeFailed; }

    // Name and text of every script of the system data, in its order.
    // False when the system data cannot be opened.
    static bool ReadAllScripts(QList<Script>& scripts);

    // All cases of one script (or only `onlyCase`). With `report`, the result
    // file is not touched: its lines and tables are gathered there; without,
    // they are appended as they happen. True when every case passed.
    bool RunScriptTests(const QString& name, const QString& scriptText, CScriptTestReport* report = nullptr,
                        const QString& onlyCase = QString());

    // With a sink, every case run of RunScriptTests adds the lines it reached
    // there (null: plain runs, without the engine's counters).
    void SetCoverage(CNativeCoverage* coverage);

    // Appends a gathered report to the result file, in order. False when
    // something could not be written.
    bool AppendReport(const CScriptTestReport& report);

    // The end of a run: on failure the message box, then the result file.
    void FinishRun(bool failed);

    // "y.m.d h:m:s...脚本(script)检测测试(case)发现错误:message \r\n"; an
    // invalid time gives 0.0.0 -1:-1:-1.
    static QString FormatLogLine(const QString& script, const QString& caseName, const QString& message,
                                 const QDateTime& when);

private:
    void RunOneCase(const QString& name, const QString& caseName, const QString& globalFun,
                    const QString& globalParm, const QString& scriptText, CScriptTestReport& report);
    bool CompareAndLog(const QString& script, const QString& caseName, const NDataModelDataSet& after,
                       const NDataModelDataSet& stored, QList<CTestCaseOutcome::Row>& rows);
    // `outcome` brings what else is known of the case (table unreadable, error line).
    void Record(CScriptTestReport& report, const QString& caseName, bool passed, const QString& message,
                const QList<CTestCaseOutcome::Row>& rows = {}, CTestCaseOutcome outcome = {});
    void Emit(const CScriptTestReport::Entry& entry);
    bool WriteEntry(const CScriptTestReport::Entry& entry);
    static QString EntryText(const CScriptTestReport::Entry& entry);
    bool Append(const QString& text);

    QString m_resultFile;
    CMacroImplement m_macro;
    CaseObserver m_observer;
    CNativeCoverage* m_coverage = nullptr;
    QString m_coverageScript;
    // Set while a report is being gathered: entries go there, not to the file.
    CScriptTestReport* m_gathering = nullptr;
    bool m_writeFailed = false;
    int m_jobs = 0;
};
