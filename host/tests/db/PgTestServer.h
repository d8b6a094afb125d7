#pragma once
#include <QString>
#include <string>
#include <sys/types.h>
#include <vector>

// A private PostgreSQL 15 server for tests and benchmarks: initdb into a fresh temporary folder, the server
// listening only on a Unix socket there, stopped (by its pid) and the folder removed when the process ends.
// initdb refuses to run as root, so under root both run as "nobody".
class PgTestServer
{
public:
    static PgTestServer& Instance();
    ~PgTestServer();
    PgTestServer(const PgTestServer&) = delete;
    PgTestServer& operator=(const PgTestServer&) = delete;

    // Starts the server once; later calls report the first outcome. A missing server binary is an error,
    // never a reason to skip.
    bool Start(QString& error);
    // A new, empty database on the server and its "postgresql://" URL; empty with `error` set on failure.
    QString NewDatabaseUrl(QString& error);
    QString Url(const QString& database) const;
    // Stops the running server (a fast shutdown: sessions are ended) and
    // starts it again on the same data; open connections are left broken.
    bool Restart(QString& error);

private:
    PgTestServer() = default;
    pid_t Spawn(const std::vector<std::string>& args, bool dieWithParent) const;
    void Stop();
    void StopServer();
    bool MakeFolder(QString& error);
    bool RunInitdb(QString& error);
    bool Launch(QString& error);
    bool WaitReady(QString& error);
    QString LogTail() const;

    bool m_tried = false;
    bool m_running = false;
    QString m_startError;
    QString m_folder;
    pid_t m_pid = -1;
    uid_t m_uid = 0;
    gid_t m_gid = 0;
    bool m_dropPrivileges = false;
    int m_databases = 0;
};
