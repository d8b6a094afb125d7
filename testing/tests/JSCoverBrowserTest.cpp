#include "CAccessSysData_MacrosTable.h"
#include "CJSCoverTestService.h"
#include "CTestJavaScriptService.h"
#include "ExternalProcess.h"
#include "HostContext.h"
#include "NativePath.h"
#include "QxMfcFun.h"
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

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

// The generated harness, served by the real JSCover server and run by a real
// headless Chromium: the stored report must count exactly the script lines
// that the two cases reach.
namespace {

// The script under test; RunJs.js puts "function QXRunJS(){" in front, so
// script line n is file line n + 1.
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
<iframe id="harness" src="index.html"></iframe>
<script>
document.getElementById('harness').onload = function () {
  try {
    document.getElementById('harness').contentWindow.jscoverage_report('velmora');
    document.title = 'stored';
  } catch (e) {
    document.title = 'failed: ' + e;
  }
};
</script></body></html>
)";

QString FindJar()
{
    QDirIterator it(QStringLiteral(VELMORA_TOOLS_DIR "/node_modules/jscover"), {QStringLiteral("JSCover-all.jar")},
                    QDir::Files, QDirIterator::Subdirectories);
    return it.hasNext() ? it.next() : QString();
}

sockaddr_in Loopback(int port)
{
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = htons(static_cast<uint16_t>(port));
    return addr;
}

// A loopback port nobody listens on right now.
int FreePort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr = Loopback(0);
    socklen_t size = sizeof addr;
    const bool ok = fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr*>(&addr), size) == 0
                    && ::getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &size) == 0;
    if (fd >= 0)
        ::close(fd);
    return ok ? ntohs(addr.sin_port) : 0;
}

bool Accepts(int port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in addr = Loopback(port);
    const bool ok = fd >= 0 && ::connect(fd, reinterpret_cast<const sockaddr*>(&addr), sizeof addr) == 0;
    if (fd >= 0)
        ::close(fd);
    return ok;
}

// JSCover keeps source lines HTML-escaped, non-ASCII as "&#n;".
QString HtmlUnescape(QString text)
{
    static const QRegularExpression reference(QStringLiteral("&#(\\d+);"));
    QRegularExpressionMatch match;
    while ((match = reference.match(text)).hasMatch())
        text.replace(match.capturedStart(), match.capturedLength(), QChar(match.captured(1).toInt()));
    return text.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"));
}

bool WaitForServer(ExternalProcess& server, int port, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs) {
        if (Accepts(port))
            return true;
        if (!server.IsRunning())
            return false;
        QThread::msleep(100);
    }
    return false;
}

} // namespace

class JSCoverBrowserTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        m_java = QStandardPaths::findExecutable(QStringLiteral("java"));
        m_chromium = QStandardPaths::findExecutable(QStringLiteral("chromium"));
        m_jar = FindJar();
        ASSERT_FALSE(m_java.isEmpty()) << "java not found: install openjdk-17-jre-headless (scripts/install-deps.sh)";
        ASSERT_FALSE(m_chromium.isEmpty()) << "chromium not found: install chromium (scripts/install-deps.sh)";
        ASSERT_FALSE(m_jar.isEmpty()) << "JSCover-all.jar not found under " VELMORA_TOOLS_DIR
                                         "/node_modules/jscover: run npm install in tools/ (scripts/install-deps.sh)";
        ASSERT_TRUE(m_reports.isValid());
        ASSERT_TRUE(m_profile.isValid());
    }

    void BuildHarness()
    {
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(QStringLiteral("箍筋.js"), kScript));
        ASSERT_TRUE(CTestCaseStore::SaveGlobals(QStringLiteral("箍筋.js"), "function Twice(x) { return 2 * x; }\r\n",
                                                "var d = 0;"));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase(QStringLiteral("箍筋.js"), "a.tx", "d = Twice(6);", nullptr));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase(QStringLiteral("箍筋.js"), "b.tx", "d = 5;", nullptr));
        CTestJavaScriptService tests;
        CJSCoverTestService harness;
        CArray<QString> cases;
        ASSERT_TRUE(tests.ListTestCases(QStringLiteral("箍筋.js"), cases));
        ASSERT_EQ(cases.GetSize(), 2);
        ASSERT_TRUE(harness.BuildCoverageHarness(tests, QStringLiteral("箍筋.js"), cases));
        m_root = NativePath::Map(harness.OutputFolder());
        ASSERT_TRUE(WriteBytes(m_root + QStringLiteral("velmora-store.html"), kStorePage));
    }

    QString m_java, m_chromium, m_jar, m_root;
    QTemporaryDir m_reports;
    QTemporaryDir m_profile;
};

TEST_F(JSCoverBrowserTest, ReportCountsTheLinesTheCasesReach)
{
    BuildHarness();
    const int port = FreePort();
    ASSERT_GT(port, 0);

    ExternalProcess server;
    // The server reads the files in the code page they were written in.
    const QString encoding = QString::fromLatin1(HostContext::Instance().CodePage());
    ASSERT_TRUE(server.Start(m_java, {"-Dfile.encoding=" + encoding, "-jar", m_jar, "-ws", "--document-root=" + m_root,
                                      "--port=" + QString::number(port), "--report-dir=" + m_reports.path()}))
        << server.Error().toStdString();
    ASSERT_TRUE(WaitForServer(server, port, 60000)) << server.Output().toStdString();

    ExternalProcess browser;
    ASSERT_TRUE(browser.Start(m_chromium, {"--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
                                           "--disable-background-networking", "--disable-component-update",
                                           "--disable-sync", "--disable-quic", "--disable-dev-shm-usage",
                                           "--user-data-dir=" + m_profile.path(),
                                           "--dump-dom",
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
    const QJsonArray run = report.value("/RunJs.js").toObject().value("coverage").toArray();
    ASSERT_GE(run.size(), 11) << QJsonDocument(report).toJson().toStdString();
    EXPECT_EQ(run.at(3).toInt(-1), 2); // var r = 0;     both cases
    EXPECT_EQ(run.at(4).toInt(-1), 2); // if (d > 10)    both cases
    EXPECT_EQ(run.at(5).toInt(-1), 1); // r = d * 2;     case a only
    EXPECT_EQ(run.at(7).toInt(-1), 1); // r = d;         case b only
    EXPECT_EQ(run.at(9).toInt(-1), 2); // if (d < 0)     both cases
    EXPECT_EQ(run.at(10).toInt(-1), 0); // r = -1;       never reached
    // The Chinese comment came through the GBK file and the server intact.
    const QJsonArray source = report.value("/RunJs.js").toObject().value("source").toArray();
    ASSERT_GE(source.size(), 2);
    EXPECT_EQ(HtmlUnescape(source.at(1).toString()), QStringLiteral("// 箍筋根数"));
    EXPECT_EQ(HtmlUnescape(source.at(3).toString()), QStringLiteral("if (d > 10) {"));
    // Each case's setter ran once.
    const QJsonArray main = report.value("/mainJs.js").toObject().value("coverage").toArray();
    int counted = 0;
    for (const QJsonValue& v : main)
        counted += v.isDouble() && v.toInt() > 0 ? 1 : 0;
    EXPECT_GE(counted, 3) << QJsonDocument(report).toJson().toStdString();
}
