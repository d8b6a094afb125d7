#include "CJSCoverServer.h"

#include "CLoopbackProbe.h"
#include "CProgressDlg_Control.h"
#include "HostContext.h"
#include "UIFunction.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

QString FindJarUnder(const QString& tools)
{
    QDirIterator it(tools + QStringLiteral("/node_modules/jscover"), {QStringLiteral("JSCover-all.jar")}, QDir::Files,
                    QDirIterator::Subdirectories);
    return it.hasNext() ? it.next() : QString();
}

} // namespace

CJSCoverServer::CJSCoverServer(int port) : m_port(port) {}

CJSCoverServer::~CJSCoverServer()
{
    Stop();
}

CJSCoverServer& CJSCoverServer::Shared()
{
    static CJSCoverServer server;
    return server;
}

QString CJSCoverServer::PageUrl() const
{
    return QStringLiteral("http://localhost:%1/jscoverage.html?index.html").arg(m_port);
}

QString CJSCoverServer::FindJar()
{
    // Installed beside the program, or the source tree's tools folder.
    const QString beside = QCoreApplication::instance()
                               ? FindJarUnder(QCoreApplication::applicationDirPath() + QStringLiteral("/../tools"))
                               : QString();
    return beside.isEmpty() ? FindJarUnder(QStringLiteral(VELMORA_TOOLS_DIR)) : beside;
}

QString CJSCoverServer::ReportFolder(const QString& documentRoot)
{
    return QDir::cleanPath(QDir(documentRoot).absolutePath()) + QStringLiteral("Report");
}

bool CJSCoverServer::IsOwnServerRunning() const
{
    return m_process && m_process->state() != QProcess::NotRunning;
}

bool CJSCoverServer::IsJSCover() const
{
    return CLoopbackProbe::Get(m_port, "/jscoverage.html").contains("<title>JSCover</title>");
}

bool CJSCoverServer::Fail(Status status, const QString& message)
{
    m_status = status;
    UIFunction::QXMessageBox(message, QString(), UIFunction::MB_OK);
    return false;
}

bool CJSCoverServer::EnsureRunning(const QString& documentRoot)
{
    if (CLoopbackProbe::Answers(m_port)) {
        if (!IsJSCover())
            return Fail(Status::PortTaken, kPortTaken.arg(m_port));
        m_status = IsOwnServerRunning() ? Status::Started : Status::Reused;
        return true;
    }
    Stop();
    const QString java = m_java.isEmpty() ? QStandardPaths::findExecutable(QStringLiteral("java")) : m_java;
    if (java.isEmpty() || !QFileInfo(java).isExecutable())
        return Fail(Status::NoJava, kNoJava);
    const QString jar = m_jar.isEmpty() ? FindJar() : m_jar;
    if (jar.isEmpty() || !QFile::exists(jar))
        return Fail(Status::NoJar, kNoJar);
    m_java = java;
    m_jar = jar;
    if (!Start(documentRoot))
        return Fail(Status::NoAnswer, kNoAnswer + m_process->errorString());
    QString log;
    if (!WaitForAnswer(log)) {
        Stop();
        return Fail(Status::NoAnswer, kNoAnswer + log);
    }
    m_status = Status::Started;
    return true;
}

bool CJSCoverServer::Start(const QString& documentRoot)
{
    const QString reports = ReportFolder(documentRoot);
    QDir().mkpath(reports);
    m_logFile = reports + QStringLiteral("/jscover-server.log");
    m_process = std::make_unique<QProcess>();
    // Nobody reads the server's output: a file keeps it from blocking on a full pipe.
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    m_process->setStandardOutputFile(m_logFile);
    m_process->setStandardInputFile(QProcess::nullDevice());
    const pid_t parent = ::getpid();
    m_process->setChildProcessModifier([parent] {
        // A group of its own, so Stop ends whatever it spawned; gone with us.
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != parent)
            ::_exit(1);
    });
    const QString encoding = QString::fromLatin1(HostContext::Instance().CodePage());
    m_process->start(m_java, {QStringLiteral("-Dfile.encoding=") + encoding, QStringLiteral("-jar"), m_jar,
                              QStringLiteral("-ws"), QStringLiteral("--document-root=") + documentRoot,
                              QStringLiteral("--port=") + QString::number(m_port),
                              QStringLiteral("--report-dir=") + reports});
    return m_process->waitForStarted(15000);
}

bool CJSCoverServer::WaitForAnswer(QString& log)
{
    CProgressDlg_Control progress;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kStartTimeoutMs && IsOwnServerRunning()) {
        progress.SetProgressInfo(CProgressDlg_Control::CProgressInfo(
            kStarting, static_cast<int>(timer.elapsed() / 1000), kStartTimeoutMs / 1000));
        if (IsJSCover())
            return true;
        QThread::msleep(100);
    }
    QFile file(m_logFile);
    log = file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll().right(2000)).trimmed()
                                         : QStringLiteral("超时");
    if (log.isEmpty())
        log = IsOwnServerRunning() ? QStringLiteral("超时") : QStringLiteral("服务器已退出");
    return false;
}

void CJSCoverServer::Stop()
{
    if (!m_process)
        return;
    const qint64 pid = m_process->processId();
    if (pid > 0 && IsOwnServerRunning()) {
        ::kill(-static_cast<pid_t>(pid), SIGTERM);
        if (!m_process->waitForFinished(5000)) {
            ::kill(-static_cast<pid_t>(pid), SIGKILL);
            m_process->waitForFinished(5000);
        }
    }
    m_process.reset();
}
