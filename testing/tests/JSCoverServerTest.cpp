#include "CAccessSysData_MacrosTable.h"
#include "CJSCoverServer.h"
#include "CJSCoverTestService.h"
#include "CLoopbackProbe.h"
#include "CTestJavaScriptService.h"
#include "ExternalProcess.h"
#include "LoopbackPort.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QStandardPaths>
#include <QTemporaryDir>

#include <atomic>
#include <poll.h>
#include <thread>

// The report page's server started on demand: the real JSCover jar on a free
// loopback port, the page it serves loaded by a real headless Chromium.
namespace {

// Something else on the port: a web server that is not JSCover.
class OtherServer
{
public:
    OtherServer()
    {
        m_fd = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof addr;
        auto* a = reinterpret_cast<sockaddr*>(&addr);
        if (::bind(m_fd, a, size) == 0 && ::listen(m_fd, 8) == 0 && ::getsockname(m_fd, a, &size) == 0)
            m_port = ntohs(addr.sin_port);
        m_thread = std::thread([this] { Serve(); });
    }
    ~OtherServer()
    {
        m_stop = true;
        m_thread.join();
        ::close(m_fd);
    }
    int Port() const { return m_port; }

private:
    void Serve()
    {
        while (!m_stop) {
            pollfd wait{m_fd, POLLIN, 0};
            if (::poll(&wait, 1, 50) != 1)
                continue;
            const int client = ::accept(m_fd, nullptr, nullptr);
            char buffer[1024];
            (void)::recv(client, buffer, sizeof buffer, 0);
            const char reply[] = "HTTP/1.0 200 OK\r\n\r\n<html><title>Other</title></html>";
            (void)::send(client, reply, sizeof reply - 1, MSG_NOSIGNAL);
            ::close(client);
        }
    }

    int m_fd = -1;
    int m_port = 0;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

class JSCoverServerTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        ASSERT_FALSE(CJSCoverServer::FindJar().isEmpty()) << "JSCover-all.jar not found: run scripts/install-deps.sh";
        ASSERT_FALSE(QStandardPaths::findExecutable("java").isEmpty()) << "java not found: run scripts/install-deps.sh";
        m_root = NativePath::Map(CJSCoverTestService().OutputFolder());
    }

    // Builds a one-case harness and opens its report through `server`.
    void Open(CJSCoverServer& server)
    {
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("梁.js", "var n = d * 2;"));
        ASSERT_TRUE(CTestCaseStore::SaveGlobals("梁.js", "", "var d = 0;"));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase("梁.js", "a.tx", "d = 3;", nullptr));
        CTestJavaScriptService tests;
        CJSCoverTestService harness;
        harness.SetServer(&server);
        CArray<QString> cases;
        cases.Add("a.tx");
        ASSERT_TRUE(harness.BuildCoverageHarness(tests, "梁.js", cases));
    }

    QString m_root;
};

TEST_F(JSCoverServerTest, StartedWhenAbsentReusedWhenPresentStoppedWithItsOwner)
{
    const int port = Loopback(0, false);
    ASSERT_GT(port, 0);
    const QString page = QStringLiteral("http://localhost:%1/jscoverage.html?index.html").arg(port);
    {
        CJSCoverServer server(port);
        Open(server);
        ASSERT_EQ(server.GetStatus(), CJSCoverServer::Status::Started) << Ui().MessageTexts().join("\n").toStdString();
        EXPECT_TRUE(server.IsOwnServerRunning());
        // The waiting was shown, and the page opened once the server answered.
        EXPECT_FALSE(Ui().CallsOf("ProgressUpdate").isEmpty());
        ASSERT_EQ(Ui().CallsOf("ShellOpen").size(), 1);
        EXPECT_EQ(Ui().CallsOf("ShellOpen").at(0).text, page);

        // The opened page in a real browser is JSCover's report page.
        QTemporaryDir profile;
        ExternalProcess browser;
        ASSERT_TRUE(browser.Start(QStandardPaths::findExecutable("chromium"),
                                  {"--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
                                   "--disable-background-networking", "--disable-component-update", "--disable-sync",
                                   "--user-data-dir=" + profile.path(), "--dump-dom", page}))
            << "chromium: " << browser.Error().toStdString();
        ASSERT_TRUE(browser.WaitForExit(120000));
        const QByteArray dom = browser.Output();
        EXPECT_TRUE(dom.contains("<title>JSCover</title>")) << dom.toStdString();
        // Served from the harness folder, instrumented.
        const QByteArray runJs = CLoopbackProbe::Get(port, "/RunJs.js");
        EXPECT_TRUE(runJs.contains("_$jscoverage['/RunJs.js']") && runJs.contains("QXRunJS")) << runJs.toStdString();

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

TEST_F(JSCoverServerTest, PortTakenOrNoJarIsSaidAndNothingOpened)
{
    OtherServer other;
    ASSERT_GT(other.Port(), 0);
    CJSCoverServer taken(other.Port());
    Open(taken);
    EXPECT_EQ(taken.GetStatus(), CJSCoverServer::Status::PortTaken);
    EXPECT_FALSE(taken.IsOwnServerRunning());

    CJSCoverServer noJar(Loopback(0, false));
    noJar.SetJar(Home() + "/none/JSCover-all.jar");
    Open(noJar);
    EXPECT_EQ(noJar.GetStatus(), CJSCoverServer::Status::NoJar);
    EXPECT_EQ(Ui().MessageTexts(), QStringList({CJSCoverServer::kPortTaken.arg(other.Port()), CJSCoverServer::kNoJar}));
    EXPECT_TRUE(Ui().CallsOf("ShellOpen").isEmpty());
}

} // namespace
