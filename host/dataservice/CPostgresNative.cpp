#include "CPostgresNative.h"

#include "QxMfcFun.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QVariant>

#include <dlfcn.h>

namespace {

using NoticeProcessor = void (*)(void*, const char*);
using SetNoticeProcessor = NoticeProcessor (*)(void*, NoticeProcessor, void*);
using Status = int (*)(const void*);
constexpr int kConnectionBad = 1; // libpq's CONNECTION_BAD

void* Connection(const QSqlDatabase& db)
{
    const QVariant handle = db.driver() ? db.driver()->handle() : QVariant();
    if (!handle.isValid()
        || (qstrcmp(handle.typeName(), "PGconn*") != 0 && qstrcmp(handle.typeName(), "pg_conn*") != 0))
        return nullptr;
    return *static_cast<void* const*>(handle.constData());
}

// The driver plugin loads libpq privately; it is found among the loaded
// libraries, never loaded here.
template <typename Function>
Function Resolve(const char* name)
{
    void* libpq = dlopen("libpq.so.5", RTLD_NOW | RTLD_NOLOAD);
    return libpq ? reinterpret_cast<Function>(dlsym(libpq, name)) : nullptr;
}

void LogNotice(void*, const char* message)
{
    QxMfc::Fun::AppendCString2File(QxMfc::Fun::GetSysDataPath() + QStringLiteral("\\CalAnalyse.log"),
                                   QStringLiteral("PostgreSQL: ") + QString::fromUtf8(message).trimmed()
                                       + QStringLiteral("\r\n"));
}

} // namespace

void CPostgresNative::RouteNoticesToLog(const QSqlDatabase& db)
{
    static const SetNoticeProcessor set = Resolve<SetNoticeProcessor>("PQsetNoticeProcessor");
    if (void* conn = Connection(db); conn && set)
        set(conn, &LogNotice, nullptr);
}

bool CPostgresNative::IsBroken(const QSqlDatabase& db, const QSqlError& error)
{
    if (NeverRan(error) || error.databaseText().contains(QLatin1String("server closed the connection unexpectedly")))
        return true;
    static const Status status = Resolve<Status>("PQstatus");
    // The driver may have closed the connection itself on a fatal error.
    if (!db.isOpen())
        return true;
    const void* conn = Connection(db);
    return conn && status && status(conn) == kConnectionBad;
}

bool CPostgresNative::NeverRan(const QSqlError& error)
{
    // 57P01-57P03: the server was shutting down, crashed or not yet up.
    const QString code = error.nativeErrorCode();
    if (code == QLatin1String("57P01") || code == QLatin1String("57P02") || code == QLatin1String("57P03"))
        return true;
    const QString text = error.databaseText();
    return text.contains(QLatin1String("could not send data to server"))
           || text.contains(QLatin1String("no connection to the server"))
           || text.contains(QLatin1String("terminating connection due to administrator command"));
}
