#pragma once
#include "CArray.h"

#include <QString>
#include <QStringList>

class CJSCoverServer;
class CTestCaseStore;

// Writes a small web page that runs one script once per test case, for the
// JSCover coverage server to instrument, and opens the server's report page.
// Files go to "C:\testJSCover\": "mainJs.js" (global texts and one setter
// function per case), "RunJs.js" (the script wrapped in QXRunJS) and
// "index.html" (calls setter and script in turn on load).
class CJSCoverTestService
{
public:
    static inline const QString kReportPage = QStringLiteral("http://localhost:8080/jscoverage.html?index.html");

    // Creates the output folder (one level; an existing one is fine).
    CJSCoverTestService();
    virtual ~CJSCoverTestService();

    // False only when the script's global texts cannot be read; then nothing
    // is written. Otherwise all three files are written and the report opened.
    bool BuildCoverageHarness(CTestCaseStore& store, const QString& script, const CArray<QString>& cases);
    // Opens kReportPage, starting the JSCover server first when none answers;
    // when no server can serve it, its message is shown and nothing opened.
    void OpenCoverageReport();

    // The server the report page needs (default: the process's shared one on
    // port 8080; null: open the page without checking for a server).
    void SetServer(CJSCoverServer* server) { m_server = server; }

    const QString& OutputFolder() const { return m_outputFolder; }
    // Setter calls collected so far; only ever appended to, so a second build
    // lists the first build's setters again.
    const QStringList& Setters() const { return m_setters; }

private:
    bool WriteMainJs(CTestCaseStore& store, const QString& script, const CArray<QString>& cases);
    void WriteRunJs(const QString& script);
    void WriteIndexHtml();

    QStringList m_setters;
    QString m_outputFolder;
    QString m_entryCall;
    CJSCoverServer* m_server;
};
