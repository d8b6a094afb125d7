#pragma once
#include "CNativeCoverage.h"
#include "CScriptTestReport.h"

#include <QString>

// Line coverage of one script's test cases without any server: runs all of
// its cases (or one) with the engine's counters, writes "lcov.info" with the
// sources and genhtml's report into the output folder ("C:\testNativeCoverage\"),
// and opens the report's index.html. Messages go through the UI service.
class CNativeCoverageService
{
public:
    static inline const QString kNoScript = QStringLiteral("没有找到脚本:");
    static inline const QString kNoSuchCase = QStringLiteral("没有找到测试用例:");

    CNativeCoverageService();
    virtual ~CNativeCoverageService();

    // False (after a message) when nothing was run or nothing could be
    // written. Cases that fail still count their lines; their outcomes are
    // in Report(). Without genhtml the message names lcov.info, the folder is
    // opened instead and the result is true.
    bool RunScriptCoverage(const QString& script, const QString& caseName = QString());

    const QString& OutputFolder() const { return m_outputFolder; }
    void SetOutputFolder(const QString& folder) { m_outputFolder = folder; }
    const CScriptTestReport& Report() const { return m_report; }
    const CNativeCoverage& Coverage() const { return m_coverage; }
    // The page opened: the folder's html/index.html.
    QString ReportPage() const;

private:
    bool Fail(const QString& message);

    QString m_outputFolder;
    CScriptTestReport m_report;
    CNativeCoverage m_coverage;
};
