#include "CNativeCoverageService.h"

#include "CAccessSysData_MacrosTable.h"
#include "CProgressDlg_Control.h"
#include "CTestJavaScriptService.h"
#include "CUIServices.h"
#include "NativePath.h"
#include "UIFunction.h"

#include <QDir>

CNativeCoverageService::CNativeCoverageService() : m_outputFolder(QStringLiteral("C:\\testNativeCoverage\\")) {}

CNativeCoverageService::~CNativeCoverageService() = default;

QString CNativeCoverageService::ReportPage() const
{
    return NativePath::Map(m_outputFolder + QStringLiteral("html\\index.html"));
}

bool CNativeCoverageService::Fail(const QString& message)
{
    UIFunction::QXMessageBox(message, QString(), UIFunction::MB_OK);
    return false;
}

bool CNativeCoverageService::RunScriptCoverage(const QString& script, const QString& caseName)
{
    m_report = CScriptTestReport();
    m_coverage = CNativeCoverage();
    QString text;
    if (!CAccessSysData_MacrosTable::GetMacroContent(script, text))
        return Fail(kNoScript + script);
    CTestJavaScriptService tests;
    if (!tests.HasTestCases(script))
        return Fail(CTestJavaScriptService::kNoTestCases);
    if (!caseName.isEmpty() && !tests.TestCaseExists(script, caseName))
        return Fail(kNoSuchCase + caseName);

    CProgressDlg_Control progress;
    progress.SetProgressInfo(CProgressDlg_Control::CProgressInfo(QStringLiteral("开始测试脚本:") + script));
    tests.SetCoverage(&m_coverage);
    tests.RunScriptTests(script, text, &m_report, caseName);

    // A fresh folder each time: no page or source of an earlier run survives.
    const QString dir = NativePath::Map(m_outputFolder);
    QDir(dir + QStringLiteral("/source")).removeRecursively();
    QString error;
    const bool written = m_coverage.WriteLcov(dir, error);
    const bool rendered = written && CNativeCoverage::WriteHtml(dir, error);
    progress.Close();
    if (!written)
        return Fail(error);
    if (!rendered) {
        // Without genhtml the LCOV file is still there for other viewers.
        UIFunction::QXMessageBox(error, QString(), UIFunction::MB_OK);
        CUIServices::Current().ShellOpen(dir);
        return !CNativeCoverage::HasGenhtml();
    }
    CUIServices::Current().ShellOpen(ReportPage());
    return true;
}
