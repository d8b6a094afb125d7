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
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct ChildSpec
{
    std::vector<std::string> argv;
    std::string log;
    bool dropPrivileges = false;
    uid_t uid = 0;
    gid_t gid = 0;
    bool dieWithParent = false;
};

// fork + exec, only async-signal-safe calls in the child: output to the log, a C locale.
pid_t Spawn(const ChildSpec& spec)
{
    std::vector<char*> argv;
    for (const std::string& arg : spec.argv)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    static char lcAll[] = "LC_ALL=C";
    static char path[] = "PATH=/usr/bin:/bin";
    char* envp[] = {lcAll, path, nullptr};
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid != 0)
        return pid;
    const int log = open(spec.log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    for (const int target : {STDOUT_FILENO, STDERR_FILENO})
        if (log >= 0)
            dup2(log, target);
    if (const int devnull = open("/dev/null", O_RDONLY); devnull >= 0)
        dup2(devnull, STDIN_FILENO);
    if (spec.dropPrivileges && (setgroups(0, nullptr) != 0 || setgid(spec.gid) != 0 || setuid(spec.uid) != 0))
        _exit(126);
    // A crashed test must not leave its server behind (set after the uid change, which clears it).
    if (spec.dieWithParent && (prctl(PR_SET_PDEATHSIG, SIGINT) != 0 || getppid() != parent))
        _exit(125);
    execve(argv[0], argv.data(), envp);
    _exit(127);
}

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

} // namespace

PgTestServer& PgTestServer::Instance()
{
    static PgTestServer server;
    return server;
}

PgTestServer::~PgTestServer() { Stop(); }

QString PgTestServer::BinDir() { return QStringLiteral("/usr/lib/postgresql/15/bin"); }

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
    for (const char* tool : {"initdb", "postgres"}) {
        if (!QFileInfo(BinDir() + QLatin1Char('/') + QLatin1String(tool)).isExecutable()) {
            error = QStringLiteral("PostgreSQL 15 server binary missing: %1/%2 (install postgresql-15)")
                        .arg(BinDir(), QLatin1String(tool));
            return false;
        }
    }
    char pattern[] = "/tmp/velmora-pg-XXXXXX";
    if (!mkdtemp(pattern)) {
        error = QStringLiteral("cannot make a temporary folder for the server");
        return false;
    }
    m_folder = QString::fromLocal8Bit(pattern);
    m_dropPrivileges = geteuid() == 0;
    if (m_dropPrivileges) {
        const passwd* nobody = getpwnam("nobody");
        if (!nobody || chown(pattern, nobody->pw_uid, nobody->pw_gid) != 0) {
            error = QStringLiteral("running as root and cannot hand the server folder to \"nobody\"");
            return false;
        }
        m_uid = nobody->pw_uid;
        m_gid = nobody->pw_gid;
    }
    return true;
}

bool PgTestServer::RunInitdb(QString& error)
{
    const std::string folder = m_folder.toStdString();
    ChildSpec spec{{BinDir().toStdString() + "/initdb", "-D", folder + "/data", "-A", "trust", "-U", "postgres",
                    "--no-sync", "--no-locale", "-E", "UTF8"},
                   folder + "/server.log", m_dropPrivileges, m_uid, m_gid, false};
    const pid_t pid = Spawn(spec);
    int status = 0;
    if (pid >= 0 && WaitExit(pid, status, 120000) && WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return true;
    error = QStringLiteral("initdb failed:\n") + LogTail();
    return false;
}

bool PgTestServer::Launch(QString& error)
{
    const std::string folder = m_folder.toStdString();
    ChildSpec spec{{BinDir().toStdString() + "/postgres", "-D", folder + "/data", "-k", folder, "-c",
                    "listen_addresses=", "-F", "-c", "max_connections=50"},
                   folder + "/server.log", m_dropPrivileges, m_uid, m_gid, true};
    m_pid = Spawn(spec);
    if (m_pid < 0)
        error = QStringLiteral("cannot start the PostgreSQL server");
    return m_pid >= 0;
}

bool PgTestServer::WaitReady(QString& error)
{
    for (int attempt = 0; attempt < 300; ++attempt) {
        int status = 0;
        if (waitpid(m_pid, &status, WNOHANG) == m_pid) {
            m_pid = -1;
            error = QStringLiteral("the PostgreSQL server exited:\n") + LogTail();
            return false;
        }
        CComDB probe;
        if (QFileInfo::exists(m_folder + QStringLiteral("/.s.PGSQL.5432"))
            && probe.Connect(Url(QStringLiteral("postgres")), QString(), QString()))
            return true;
        QThread::msleep(100);
    }
    error = QStringLiteral("the PostgreSQL server did not become ready:\n") + LogTail();
    return false;
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
    if (m_pid > 0) {
        kill(m_pid, SIGINT);
        int status = 0;
        if (!WaitExit(m_pid, status, 20000)) {
            kill(m_pid, SIGKILL);
            WaitExit(m_pid, status, 5000);
        }
        m_pid = -1;
    }
}
