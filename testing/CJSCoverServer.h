#pragma once
#include <QString>

#include <memory>

class QProcess;

// The JSCover server behind the coverage harness's report page, started on
// demand: when nothing answers on the loopback port, JSCover is started from
// the npm package (Java 17, document root the harness folder, reports in a
// folder beside it, files read in the host's code page) and waited for with
// the progress window. A JSCover already answering there is used as it is;
// anything else on the port is reported. A server this object started is
// stopped when the object goes (the process's shared one at exit) and, should
// the process die, by the system (it is tied to the starting thread).
class CJSCoverServer
{
public:
    enum class Status { NotChecked, Started, Reused, PortTaken, NoJava, NoJar, NoAnswer };

    static constexpr int kDefaultPort = 8080;
    static constexpr int kStartTimeoutMs = 60000;
    static inline const QString kStarting = QStringLiteral("正在启动JSCover覆盖率服务器...");
    static inline const QString kPortTaken =
        QStringLiteral("本机端口%1已被其他程序占用，无法启动JSCover覆盖率服务器。请关闭该程序后重试。");
    static inline const QString kNoJava =
        QStringLiteral("没有找到Java(openjdk-17-jre-headless)，无法启动JSCover覆盖率服务器。");
    static inline const QString kNoJar =
        QStringLiteral("没有找到JSCover-all.jar(npm软件包jscover)，无法启动JSCover覆盖率服务器。");
    static inline const QString kNoAnswer = QStringLiteral("JSCover覆盖率服务器没有应答:");

    explicit CJSCoverServer(int port = kDefaultPort);
    virtual ~CJSCoverServer();
    CJSCoverServer(const CJSCoverServer&) = delete;
    CJSCoverServer& operator=(const CJSCoverServer&) = delete;

    // The process's server on port 8080, stopped at exit.
    static CJSCoverServer& Shared();

    // True when a JSCover server answers on the port afterwards; otherwise a
    // message box says why and Status() tells which case it was.
    bool EnsureRunning(const QString& documentRoot);
    // "http://localhost:<port>/jscoverage.html?index.html".
    QString PageUrl() const;
    Status GetStatus() const { return m_status; }
    int Port() const { return m_port; }
    bool IsOwnServerRunning() const;
    void Stop();

    // Defaults: java from PATH, the jar from the tools folder's npm package.
    void SetJava(const QString& path) { m_java = path; }
    void SetJar(const QString& path) { m_jar = path; }
    static QString FindJar();
    // The reports' folder for a document root: a sibling named "<root>Report".
    static QString ReportFolder(const QString& documentRoot);

private:
    bool IsJSCover() const;
    bool Start(const QString& documentRoot);
    bool WaitForAnswer(QString& log);
    bool Fail(Status status, const QString& message);

    int m_port;
    Status m_status = Status::NotChecked;
    QString m_java;
    QString m_jar;
    QString m_logFile;
    std::unique_ptr<QProcess> m_process;
};
