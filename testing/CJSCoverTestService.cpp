#include "CJSCoverTestService.h"

#include "CAccessSysData_MacrosTable.h"
#include "CJSCoverServer.h"
#include "CTestCaseStore.h"
#include "CUIServices.h"
#include "NativePath.h"
#include "QxMfcFun.h"

#include <QDir>

using QxMfc::Fun;

CJSCoverTestService::CJSCoverTestService()
    : m_outputFolder(QStringLiteral("C:\\testJSCover\\"))
    , m_entryCall(QStringLiteral("QXRunJS()"))
    , m_server(&CJSCoverServer::Shared())
{
    QDir().mkdir(NativePath::Map(m_outputFolder));
}

CJSCoverTestService::~CJSCoverTestService() = default;

bool CJSCoverTestService::BuildCoverageHarness(CTestCaseStore& store, const QString& script,
                                               const CArray<QString>& cases)
{
    if (!WriteMainJs(store, script, cases))
        return false;
    WriteRunJs(script);
    WriteIndexHtml();
    OpenCoverageReport();
    return true;
}

bool CJSCoverTestService::WriteMainJs(CTestCaseStore& store, const QString& script, const CArray<QString>& cases)
{
    QString globalFun;
    QString globalParm;
    if (!store.LoadGlobals(script, globalFun, globalParm))
        return false;
    const QString file = m_outputFolder + QStringLiteral("mainJs.js");
    Fun::SaveFileContent(file, globalFun);
    Fun::AppendCString2File(file, globalParm);
    for (int i = 0; i < cases.GetSize(); ++i) {
        const QString setter = QString::asprintf("setParm_%d()", i);
        // An unreadable case still gets its setter, with an empty body.
        QString caseText;
        store.LoadTestCase(script, cases[i], caseText, nullptr);
        Fun::AppendCString2File(file, QStringLiteral("\r\nfunction ") + setter + QStringLiteral("{\r\n"));
        Fun::AppendCString2File(file, caseText);
        Fun::AppendCString2File(file, QStringLiteral("\r\n}\r\n"));
        m_setters.append(setter);
    }
    return true;
}

void CJSCoverTestService::WriteRunJs(const QString& script)
{
    const QString file = m_outputFolder + QStringLiteral("RunJs.js");
    Fun::SaveFileContent(file, QStringLiteral("function ") + m_entryCall + QStringLiteral("{\r\n"));
    QString content;
    if (CAccessSysData_MacrosTable::GetMacroContent(script, content))
        Fun::AppendCString2File(file, content);
    Fun::AppendCString2File(file, QStringLiteral("\r\n}\r\n"));
}

void CJSCoverTestService::WriteIndexHtml()
{
    const QString file = m_outputFolder + QStringLiteral("index.html");
    QString onload;
    for (const QString& setter : m_setters)
        onload += setter + QLatin1Char(';') + m_entryCall + QLatin1Char(';');
    Fun::SaveFileContent(
        file, QStringLiteral("<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\"><html><head>"));
    Fun::AppendCString2File(file, QStringLiteral("<script type=\"text/javascript\" src=\"mainJs.js\"></script>"));
    Fun::AppendCString2File(file, QStringLiteral("<script type=\"text/javascript\" src=\"RunJs.js\"></script>"));
    Fun::AppendCString2File(file, QStringLiteral("</head>\r\n"));
    Fun::AppendCString2File(file, QStringLiteral("<body onload=\"") + onload + QStringLiteral("\">\r\n"));
    Fun::AppendCString2File(file, QStringLiteral("</body>\r\n</html>\r\n"));
}

void CJSCoverTestService::OpenCoverageReport()
{
    if (!m_server) {
        CUIServices::Current().ShellOpen(kReportPage);
        return;
    }
    if (m_server->EnsureRunning(NativePath::Map(m_outputFolder)))
        CUIServices::Current().ShellOpen(m_server->PageUrl());
}
