#include "CAccessSysData_MacrosTable.h"
#include "CJSCoverTestService.h"
#include "CTestJavaScriptService.h"
#include "ExternalProcess.h"
#include "LoopbackPort.h"
#include "HostContext.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>


// The generated harness, served by the real JSCover server and run by a real
// headless Chromium: the stored report must count exactly the script lines
// that the two cases reach.
namespace {

// RunJs.js puts "function QXRunJS(){" in front, so script line n is file line n + 1.
const QString kScript = QStringLiteral("// 箍筋根数\r\n"   // 2
                                       "var r = 0;\r\n"   // 3
                                       "if (d > 10) {\r\n" // 4
                                       "  r = d * 2;\r\n"  // 5: case a
                                       "} else {\r\n"      // 6
                                       "  r = d;\r\n"      // 7: case b
                                       "}\r\n"             // 8
                                       "if (d < 0) {\r\n"  // 9
                                       "  r = -1;\r\n"     // 10: never
                                       "}");               // 11

// Loads the untouched index.html in a frame and, once it has run, stores the
// coverage through JSCover's own report function (a synchronous POST), so the
// report exists before the browser reports the page loaded.
const char* const kStorePage = R"(<html><head><title>pending</title></head><body>
<iframe id="harness" src="index.html"></iframe><script>
document.getElementById('harness').onload = function () {
  try { document.getElementById('harness').contentWindow.jscoverage_report('velmora'); document.title = 'stored'; }
  catch (e) { document.title = 'failed: ' + e; }
};
</script></body></html>
)";

// JSCover keeps source lines HTML-escaped, non-ASCII as "&#n;".
QString HtmlUnescape(QString text)
{
    static const QRegularExpression reference(QStringLiteral("&#(\\d+);"));
    QRegularExpressionMatch match;
    while ((match = reference.match(text)).hasMatch())
        text.replace(match.capturedStart(), match.capturedLength(), QChar(match.captured(1).toInt()));
    return text.replace("&lt;", "<").replace("&gt;", ">").replace("&amp;", "&");
}

bool WaitForServer(ExternalProcess& server, int port)
{
    QElapsedTimer timer;
    timer.start();
    for (; timer.elapsed() < 60000 && server.IsRunning(); QThread::msleep(100))
        if (Loopback(port, true))
            return true;
    return false;
}

} // namespace

class JSCoverBrowserTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        m_java = QStandardPaths::findExecutable("java");
        m_chromium = QStandardPaths::findExecutable("chromium");
        QDirIterator jar(VELMORA_TOOLS_DIR "/node_modules/jscover", {"JSCover-all.jar"}, QDir::Files, QDirIterator::Subdirectories);
        m_jar = jar.hasNext() ? jar.next() : QString();
        ASSERT_FALSE(m_java.isEmpty()) << "java not found: install openjdk-17-jre-headless (scripts/install-deps.sh)";
        ASSERT_FALSE(m_chromium.isEmpty()) << "chromium not found: install chromium (scripts/install-deps.sh)";
        ASSERT_FALSE(m_jar.isEmpty()) << "JSCover-all.jar not found under " VELMORA_TOOLS_DIR
                                         "/node_modules/jscover: run npm install in tools/ (scripts/install-deps.sh)";
        ASSERT_TRUE(m_reports.isValid() && m_profile.isValid());
    }

    void BuildHarness()
    {
        const QString key = QStringLiteral("箍筋.js");
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(key, kScript));
        ASSERT_TRUE(CTestCaseStore::SaveGlobals(key, "function Twice(x) { return 2 * x; }\r\n", "var d = 0;"));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase(key, "a.tx", "d = Twice(6);", nullptr));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase(key, "b.tx", "d = 5;", nullptr));
        CTestJavaScriptService tests;
        CJSCoverTestService harness;
        harness.SetServer(nullptr); // this test runs its own server
        CArray<QString> cases;
        ASSERT_TRUE(tests.ListTestCases(key, cases));
        ASSERT_EQ(cases.GetSize(), 2);
        ASSERT_TRUE(harness.BuildCoverageHarness(tests, key, cases));
        m_root = NativePath::Map(harness.OutputFolder());
        ASSERT_TRUE(WriteBytes(m_root + "velmora-store.html", kStorePage));
    }

    QString m_java, m_chromium, m_jar, m_root;
    QTemporaryDir m_reports, m_profile;
};

TEST_F(JSCoverBrowserTest, ReportCountsTheLinesTheCasesReach)
{
    BuildHarness();
    const int port = Loopback(0, false);
    ASSERT_GT(port, 0);

    ExternalProcess server;
    // The server reads the files in the code page they were written in.
    const QString encoding = QString::fromLatin1(HostContext::Instance().CodePage());
    ASSERT_TRUE(server.Start(m_java, {"-Dfile.encoding=" + encoding, "-jar", m_jar, "-ws", "--document-root=" + m_root,
                                      "--port=" + QString::number(port), "--report-dir=" + m_reports.path()}))
        << server.Error().toStdString();
    ASSERT_TRUE(WaitForServer(server, port)) << server.Output().toStdString();

    ExternalProcess browser;
    ASSERT_TRUE(browser.Start(m_chromium, {"--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
                                           "--disable-background-networking", "--disable-component-update",
                                           "--disable-sync", "--disable-quic", "--disable-dev-shm-usage",
                                           "--user-data-dir=" + m_profile.path(), "--dump-dom",
                                           QString("http://127.0.0.1:%1/velmora-store.html").arg(port)}))
        << browser.Error().toStdString();
    ASSERT_TRUE(browser.WaitForExit(120000)) << "browser did not finish: " << browser.Output().toStdString();
    const QByteArray dom = browser.Output();
    browser.Stop();
    server.Stop();
    ASSERT_TRUE(dom.contains("<title>stored</title>")) << dom.toStdString();

    QFile json(m_reports.filePath("velmora/jscoverage.json"));
    ASSERT_TRUE(json.open(QIODevice::ReadOnly)) << "no report stored";
    const QJsonObject report = QJsonDocument::fromJson(json.readAll()).object();
    const std::string dump = QJsonDocument(report).toJson().toStdString();
    const QJsonObject runJs = report.value("/RunJs.js").toObject();
    const QJsonArray run = runJs.value("coverage").toArray();
    ASSERT_GE(run.size(), 11) << dump;
    // Both cases reach 3, 4 and 9; case a line 5, case b line 7; line 10 never.
    for (const auto& [line, count] : {std::pair{3, 2}, {4, 2}, {5, 1}, {7, 1}, {9, 2}, {10, 0}})
        EXPECT_EQ(run.at(line).toInt(-1), count) << "line " << line;
    // The Chinese comment came through the GBK file and the server intact.
    const QJsonArray source = runJs.value("source").toArray();
    ASSERT_GE(source.size(), 4);
    EXPECT_EQ(HtmlUnescape(source.at(1).toString()), QStringLiteral("// 箍筋根数"));
    EXPECT_EQ(HtmlUnescape(source.at(3).toString()), "if (d > 10) {");
    int settersRun = 0;
    for (const QJsonValue& v : report.value("/mainJs.js").toObject().value("coverage").toArray())
        settersRun += v.isDouble() && v.toInt() > 0 ? 1 : 0;
    EXPECT_GE(settersRun, 3) << dump;
}
