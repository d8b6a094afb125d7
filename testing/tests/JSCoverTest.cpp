#include "CJSCoverServer.h"
#include "CJSCoverTestService.h"
#include "CLoopbackProbe.h"
#include "RunnerTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <arpa/inet.h>
#include <csignal>
#include <unistd.h>

// The coverage harness served by the real JSCover server, started on demand,
// and run by a real headless Chromium: the stored report must count exactly
// the script lines the two cases reach.
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
// coverage through JSCover's own (synchronous) report function.
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
    static const QRegularExpression reference("&#(\\d+);");
    QRegularExpressionMatch match;
    while ((match = reference.match(text)).hasMatch())
        text.replace(match.capturedStart(), match.capturedLength(), QChar(match.captured(1).toInt()));
    return text.replace("&lt;", "<").replace("&gt;", ">").replace("&amp;", "&");
}

// A loopback socket bound to a free port; listening, it accepts and never answers.
struct LoopbackSocket
{
    explicit LoopbackSocket(bool listen)
    {
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* a = reinterpret_cast<sockaddr*>(&addr);
        socklen_t size = sizeof addr;
        if (::bind(fd, a, size) == 0 && (!listen || ::listen(fd, 8) == 0) && ::getsockname(fd, a, &size) == 0)
            port = ntohs(addr.sin_port);
    }
    ~LoopbackSocket() { ::close(fd); }
    int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    int port = 0;
};

int FreePort()
{
    return LoopbackSocket(false).port;
}

// Headless Chromium's DOM of `url`, in a process group of its own so that
// whatever it spawned ends with it.
QByteArray BrowserDom(const QString& url)
{
    QTemporaryDir profile;
    QProcess browser;
    browser.setProcessChannelMode(QProcess::MergedChannels);
    browser.setChildProcessModifier([] { ::setpgid(0, 0); });
    browser.start(QStandardPaths::findExecutable("chromium"),
                  {"--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
                   "--disable-component-update", "--disable-sync", "--disable-dev-shm-usage",
                   "--user-data-dir=" + profile.path(), "--dump-dom", url});
    const bool started = browser.waitForStarted(15000);
    const pid_t group = static_cast<pid_t>(browser.processId());
    const bool done = started && browser.waitForFinished(120000);
    if (group > 0)
        ::kill(-group, SIGKILL);
    browser.waitForFinished(5000);
    return done ? browser.readAll() : "chromium did not finish: " + browser.readAll();
}

class JSCoverTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        ASSERT_FALSE(CJSCoverServer::FindJar().isEmpty()) << "JSCover-all.jar not found: run scripts/install-deps.sh";
        ASSERT_FALSE(QStandardPaths::findExecutable("java").isEmpty()) << "java not found: run scripts/install-deps.sh";
        ASSERT_FALSE(QStandardPaths::findExecutable("chromium").isEmpty()) << "chromium not found: run scripts/install-deps.sh";
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(kKey, kScript));
        ASSERT_TRUE(CTestCaseStore::SaveGlobals(kKey, "function Twice(x) { return 2 * x; }\r\n", "var d = 0;"));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase(kKey, "a.tx", "d = Twice(6);", nullptr));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase(kKey, "b.tx", "d = 5;", nullptr));
    }

    // Builds the two-case harness and opens its report through `server`.
    void Open(CJSCoverServer& server)
    {
        CTestJavaScriptService tests;
        CJSCoverTestService harness;
        harness.SetServer(&server);
        CArray<QString> cases;
        ASSERT_TRUE(tests.ListTestCases(kKey, cases));
        ASSERT_TRUE(harness.BuildCoverageHarness(tests, kKey, cases));
        m_root = NativePath::Map(harness.OutputFolder());
    }

    const QString kKey = "箍筋.js";
    QString m_root;
};

TEST_F(JSCoverTest, StartedWhenAbsentCountsTheReachedLinesReusedAndStoppedWithItsOwner)
{
    const int port = FreePort();
    ASSERT_GT(port, 0);
    {
        CJSCoverServer server(port);
        Open(server);
        ASSERT_EQ(server.GetStatus(), CJSCoverServer::Status::Started) << Ui().MessageTexts().join("\n").toStdString();
        EXPECT_TRUE(server.IsOwnServerRunning());
        // The waiting was shown, and the page opened once the server answered.
        EXPECT_FALSE(Ui().CallsOf("ProgressUpdate").isEmpty());
        EXPECT_EQ(UiCalls().filter(QRegularExpression("^ShellOpen\\|")),
                  QStringList{QStringLiteral("ShellOpen|http://localhost:%1/jscoverage.html?index.html||0").arg(port)});

        ASSERT_TRUE(WriteBytes(m_root + "velmora-store.html", kStorePage));
        const QByteArray dom = BrowserDom(QString("http://127.0.0.1:%1/velmora-store.html").arg(port));
        ASSERT_TRUE(dom.contains("<title>stored</title>")) << dom.toStdString();
        QFile json(CJSCoverServer::ReportFolder(m_root) + "/velmora/jscoverage.json");
        ASSERT_TRUE(json.open(QIODevice::ReadOnly)) << "no report stored";
        const QJsonObject report = QJsonDocument::fromJson(json.readAll()).object();
        const std::string dump = QJsonDocument(report).toJson().toStdString();
        const QJsonObject runJs = report.value("/RunJs.js").toObject();
        const QJsonArray run = runJs.value("coverage").toArray();
        ASSERT_GE(run.size(), 11) << dump;
        // Both cases reach 3, 4 and 9; case a line 5, case b line 7; line 10 never.
        for (const auto& [line, count] : {std::pair{3, 2}, {4, 2}, {5, 1}, {7, 1}, {9, 2}, {10, 0}})
            EXPECT_EQ(run.at(line).toInt(-1), count) << "line " << line;
        // The Chinese comment came through the code page file and the server intact.
        const QJsonArray source = runJs.value("source").toArray();
        ASSERT_GE(source.size(), 4);
        EXPECT_EQ(HtmlUnescape(source.at(1).toString()) + "|" + HtmlUnescape(source.at(3).toString()), "// 箍筋根数|if (d > 10) {");

        // A second user of the port finds it serving and starts nothing.
        CJSCoverServer other(port);
        Ui().Clear();
        Open(other);
        EXPECT_EQ(other.GetStatus(), CJSCoverServer::Status::Reused);
        EXPECT_FALSE(other.IsOwnServerRunning());
        EXPECT_EQ(Ui().CallsOf("ShellOpen").size(), 1);
        EXPECT_TRUE(Ui().CallsOf("ProgressUpdate").isEmpty());
    }
    EXPECT_FALSE(CLoopbackProbe::Answers(port));
}

TEST_F(JSCoverTest, PortTakenOrNoJarIsSaidAndNothingOpened)
{
    LoopbackSocket other(true);
    ASSERT_GT(other.port, 0);
    CJSCoverServer taken(other.port);
    Open(taken);
    EXPECT_EQ(taken.GetStatus(), CJSCoverServer::Status::PortTaken);
    EXPECT_FALSE(taken.IsOwnServerRunning());

    CJSCoverServer noJar(FreePort());
    noJar.SetJar(Home() + "/none/JSCover-all.jar");
    Open(noJar);
    EXPECT_EQ(noJar.GetStatus(), CJSCoverServer::Status::NoJar);
    EXPECT_EQ(Ui().MessageTexts(), QStringList({CJSCoverServer::kPortTaken.arg(other.port), CJSCoverServer::kNoJar}));
    EXPECT_TRUE(Ui().CallsOf("ShellOpen").isEmpty());
}

} // namespace
