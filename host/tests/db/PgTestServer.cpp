#include "PgTestServer.h"

#include "CComDB.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString kBinDir = QStringLiteral("/usr/lib/postgresql/15/bin");

bool WaitExit(pid_t pid, int& status, int timeoutMs)
{
    for (int waited = 0; waited <= timeoutMs; waited += 20) {
        const pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid || (done < 0 && errno == ECHILD))
            return true;
        usleep(20000);
    }
    return false;
}

bool Fail(QString& error, const QString& text)
{
    error = text;
    return false;
}

} // namespace

PgTestServer& PgTestServer::Instance()
{
    static PgTestServer server;
    return server;
}

PgTestServer::~PgTestServer() { Stop(); }

// fork + exec, only async-signal-safe calls in the child: output to the log, a C locale.
pid_t PgTestServer::Spawn(const std::vector<std::string>& args, bool dieWithParent) const
{
    std::vector<char*> argv;
    for (const std::string& arg : args)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    static char lcAll[] = "LC_ALL=C", path[] = "PATH=/usr/bin:/bin";
    char* envp[] = {lcAll, path, nullptr};
    const std::string logPath = m_folder.toStdString() + "/server.log";
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid != 0)
        return pid;
    if (const int log = open(logPath.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644); log >= 0)
        dup2(log, STDOUT_FILENO), dup2(log, STDERR_FILENO);
    if (const int devnull = open("/dev/null", O_RDONLY); devnull >= 0)
        dup2(devnull, STDIN_FILENO);
    if (m_dropPrivileges && (setgroups(0, nullptr) != 0 || setgid(m_gid) != 0 || setuid(m_uid) != 0))
        _exit(126);
    // A crashed test must not leave its server behind (set after the uid change, which clears it).
    if (dieWithParent && (prctl(PR_SET_PDEATHSIG, SIGINT) != 0 || getppid() != parent))
        _exit(125);
    execve(argv[0], argv.data(), envp);
    _exit(127);
}

QString PgTestServer::Url(const QString& database) const
{
    return QStringLiteral("postgresql://postgres@/%1?host=%2").arg(database, m_folder);
}

QString PgTestServer::LogTail() const
{
    QFile log(m_folder + QStringLiteral("/server.log"));
    return log.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(log.readAll().right(2000)) : QString();
}

bool PgTestServer::Start(QString& error)
{
    if (!m_tried) {
        m_tried = true;
        m_running =
            MakeFolder(m_startError) && RunInitdb(m_startError) && Launch(m_startError) && WaitReady(m_startError);
        if (!m_running)
            Stop();
    }
    error = m_startError;
    return m_running;
}

bool PgTestServer::MakeFolder(QString& error)
{
    for (const char* tool : {"initdb", "postgres"})
        if (!QFileInfo(kBinDir + QLatin1Char('/') + QLatin1String(tool)).isExecutable())
            return Fail(error, QStringLiteral("PostgreSQL 15 server binary missing: %1/%2 (install postgresql-15)")
                                   .arg(kBinDir, QLatin1String(tool)));
    char pattern[] = "/tmp/velmora-pg-XXXXXX";
    if (!mkdtemp(pattern))
        return Fail(error, QStringLiteral("cannot make a temporary folder for the server"));
    m_folder = QString::fromLocal8Bit(pattern);
    m_dropPrivileges = geteuid() == 0;
    if (m_dropPrivileges) {
        const passwd* nobody = getpwnam("nobody");
        if (!nobody || chown(pattern, nobody->pw_uid, nobody->pw_gid) != 0)
            return Fail(error, QStringLiteral("running as root and cannot hand the server folder to \"nobody\""));
        m_uid = nobody->pw_uid;
        m_gid = nobody->pw_gid;
    }
    return true;
}

bool PgTestServer::RunInitdb(QString& error)
{
    const pid_t pid = Spawn({kBinDir.toStdString() + "/initdb", "-D", m_folder.toStdString() + "/data", "-A", "trust",
                             "-U", "postgres", "--no-sync", "--no-locale", "-E", "UTF8"},
                            false);
    int status = 0;
    return (pid >= 0 && WaitExit(pid, status, 120000) && WIFEXITED(status) && WEXITSTATUS(status) == 0)
           || Fail(error, QStringLiteral("initdb failed:\n") + LogTail());
}

bool PgTestServer::Launch(QString& error)
{
    const std::string folder = m_folder.toStdString();
    m_pid = Spawn({kBinDir.toStdString() + "/postgres", "-D", folder + "/data", "-k", folder, "-c", "listen_addresses=",
                   "-F", "-c", "max_connections=50"},
                  true);
    return m_pid >= 0 || Fail(error, QStringLiteral("cannot start the PostgreSQL server"));
}

bool PgTestServer::WaitReady(QString& error)
{
    for (int attempt = 0; attempt < 300; ++attempt) {
        int status = 0;
        if (waitpid(m_pid, &status, WNOHANG) == m_pid) {
            m_pid = -1;
            return Fail(error, QStringLiteral("the PostgreSQL server exited:\n") + LogTail());
        }
        CComDB probe;
        if (QFileInfo::exists(m_folder + QStringLiteral("/.s.PGSQL.5432"))
            && probe.Connect(Url(QStringLiteral("postgres")), QString(), QString()))
            return true;
        QThread::msleep(100);
    }
    return Fail(error, QStringLiteral("the PostgreSQL server did not become ready:\n") + LogTail());
}

QString PgTestServer::NewDatabaseUrl(QString& error)
{
    if (!Start(error))
        return QString();
    const QString name = QStringLiteral("velmora_t%1").arg(++m_databases);
    CComDB admin;
    if (!admin.Connect(Url(QStringLiteral("postgres")), QString(), QString())
        || !admin.ExecuteNonQuery(QStringLiteral("create database ") + name)) {
        error = QStringLiteral("cannot create a test database: ") + admin.GetError();
        return QString();
    }
    return Url(name);
}

bool PgTestServer::Restart(QString& error)
{
    if (!Start(error))
        return false;
    StopServer();
    m_running = Launch(error) && WaitReady(error);
    return m_running;
}

void PgTestServer::Stop()
{
    StopServer();
    m_running = false;
    std::error_code ignored;
    if (!m_folder.isEmpty())
        std::filesystem::remove_all(m_folder.toStdString(), ignored);
    m_folder.clear();
}

void PgTestServer::StopServer()
{
    if (m_pid <= 0)
        return;
    kill(m_pid, SIGINT);
    if (int status = 0; !WaitExit(m_pid, status, 20000)) {
        kill(m_pid, SIGKILL);
        WaitExit(m_pid, status, 5000);
    }
    m_pid = -1;
}
