#pragma once
#include <QString>

class QSqlDatabase;
class QSqlError;

// What Qt's PostgreSQL driver leaves to libpq: where server notices go and
// whether the connection is still alive. libpq is reached through the
// driver's own handle and the symbols the driver plugin has already loaded,
// so nothing links against it.
class CPostgresNative
{
public:
    // Notices ("relation ... already exists, skipping") go to the analysis
    // log of the system data folder instead of libpq's default, stderr.
    static void RouteNoticesToLog(const QSqlDatabase& db);
    // Whether the connection is broken (the server went away): the failed
    // statement's error says so, the driver closed it, or libpq reports it.
    static bool IsBroken(const QSqlDatabase& db, const QSqlError& error);
    // Whether a failed statement never reached a server that could run it:
    // the send failed, or the server had already ended the session (a
    // shutdown or restart) before reading it.
    static bool NeverRan(const QSqlError& error);
};
