#include "CComDB.h"

#include "CMdbDatabase.h"
#include "CMdbQuery.h"
#include "CPostgresNative.h"
#include "CSqlStatementCheck.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <atomic>

namespace {

QString NextConnectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("velmora-db-%1").arg(++counter);
}

QString SqlError(const QSqlError& error)
{
    const QString text = error.text().trimmed();
    return text.isEmpty() ? QStringLiteral("database error") : text;
}

} // namespace

CComDB::CComDB()
    : m_connectionName(NextConnectionName())
{
}

CComDB::~CComDB()
{
    DisConnect();
}

bool CComDB::Fail(const QString& error)
{
    m_error = error;
    return false;
}

bool CComDB::Init()
{
    m_error.clear();
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE")))
        return Fail(QStringLiteral("the Qt SQLite driver is not available"));
    return true;
}

bool CComDB::Connect(const QString& connection, const QString& user, const QString& password)
{
    DisConnect();
    m_connection = connection;
    m_error.clear();
    const CConnectionString target = CConnectionString::Parse(connection);
    m_backend = target.GetBackend();
    m_thread = std::this_thread::get_id();
    bool ok = false;
    switch (m_backend) {
    case CConnectionString::Backend::Invalid:
        return Fail(target.GetError());
    case CConnectionString::Backend::SQLite:
        ok = ConnectSqlite(target);
        break;
    case CConnectionString::Backend::PostgreSQL:
        ok = ConnectServer(target, user, password);
        break;
    case CConnectionString::Backend::Access:
        m_mdb = std::make_unique<CMdbDatabase>();
        ok = m_mdb->Open(target.GetFilePath()) || Fail(m_mdb->GetError());
        if (!ok)
            m_mdb.reset();
        break;
    }
    m_connected = ok;
    return ok;
}

bool CComDB::ConnectSqlite(const CConnectionString& target)
{
    const QString path = target.GetFilePath();
    if (!QFileInfo(path).isFile())
        return Fail(QStringLiteral("database file not found: ") + path);
    if (!OpenSql(QStringLiteral("QSQLITE"), [&](QSqlDatabase& db) { db.setDatabaseName(path); }))
        return false;
    // Opening succeeds on any file; the first read tells whether it is a database.
    m_connected = true;
    QString tables;
    if (!Retrieve(QStringLiteral("select count(*) from sqlite_master"), tables) || !ApplyBusyTimeout()) {
        const QString error = m_error;
        DisConnect();
        return Fail(error);
    }
    return true;
}

bool CComDB::ConnectServer(const CConnectionString& target, const QString& user, const QString& password)
{
    const bool opened = OpenSql(QStringLiteral("QPSQL"), [&](QSqlDatabase& db) {
        db.setHostName(target.GetHost());
        db.setPort(target.GetPort());
        db.setDatabaseName(target.GetDatabaseName());
        db.setUserName(user.isEmpty() ? target.GetUser() : user);
        db.setPassword(password.isEmpty() ? target.GetPassword() : password);
        db.setConnectOptions(QStringLiteral("connect_timeout=%1").arg(kConnectTimeoutSeconds));
    });
    if (!opened)
        return false;
    m_connected = true;
    CPostgresNative::RouteNoticesToLog(QSqlDatabase::database(m_connectionName, false));
    if (!ApplyBusyTimeout()) {
        const QString error = m_error;
        DisConnect();
        return Fail(error);
    }
    return true;
}

bool CComDB::OpenSql(const QString& driver, const std::function<void(QSqlDatabase&)>& configure)
{
    if (!QSqlDatabase::isDriverAvailable(driver))
        return Fail(QStringLiteral("the Qt driver %1 is not available").arg(driver));
    bool opened = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(driver, m_connectionName);
        configure(db);
        opened = db.open();
        if (!opened)
            m_error = SqlError(db.lastError());
    }
    if (!opened)
        QSqlDatabase::removeDatabase(m_connectionName);
    return opened;
}

void CComDB::DisConnect()
{
    if (!m_connected)
        return;
    if (std::this_thread::get_id() != m_thread) {
        // Only the opening thread may close a Qt connection.
        Fail(QStringLiteral("a database connection may only be closed by the thread that opened it"));
        return;
    }
    m_connected = false;
    if (m_mdb) {
        m_mdb.reset();
        return;
    }
    QSqlDatabase::database(m_connectionName, false).close();
    QSqlDatabase::removeDatabase(m_connectionName);
}

bool CComDB::IsConnected() const
{
    return m_connected;
}

bool CComDB::Ready()
{
    if (!m_connected)
        return Fail(QStringLiteral("not connected"));
    if (std::this_thread::get_id() != m_thread)
        return Fail(QStringLiteral("a database connection may only be used by the thread that opened it"));
    return true;
}

bool CComDB::SetBusyTimeoutMs(int ms)
{
    m_busyTimeoutMs = ms < 0 ? 0 : ms;
    return !m_connected || ApplyBusyTimeout();
}

bool CComDB::ApplyBusyTimeout()
{
    const QString ms = QString::number(m_busyTimeoutMs);
    if (m_backend == CConnectionString::Backend::SQLite)
        return ExecuteNonQuery(QStringLiteral("PRAGMA busy_timeout = ") + ms);
    if (m_backend == CConnectionString::Backend::PostgreSQL)
        return ExecuteNonQuery(QStringLiteral("SET lock_timeout = ") + ms);
    return true;
}

bool CComDB::Exec(QSqlQuery& query, const QString& sql, const QVariantList& params)
{
    query.setForwardOnly(true);
    // Plain text runs directly (PostgreSQL cannot PREPARE statements such as
    // SET or LOCK); values are always bound through a prepared statement.
    if (params.isEmpty())
        return query.exec(sql);
    if (!query.prepare(sql))
        return false;
    for (const QVariant& value : params)
        query.addBindValue(value);
    return query.exec();
}

// A server that restarted leaves the connection broken: it is opened again
// once, and the statement repeated when none of it can have run.
bool CComDB::Reopen(bool& repeat, const QSqlError& error, const QString& sql)
{
    QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
    if (m_reopening || m_backend != CConnectionString::Backend::PostgreSQL || !CPostgresNative::IsBroken(db, error))
        return false;
    repeat = CPostgresNative::NeverRan(error) || sql.trimmed().startsWith(QLatin1String("select"), Qt::CaseInsensitive);
    m_reopening = true;
    db.close();
    bool ok = db.open();
    if (ok) {
        CPostgresNative::RouteNoticesToLog(db);
        ok = ApplyBusyTimeout();
    }
    m_reopening = false;
    return ok;
}

bool CComDB::RunSql(const QString& sql, const QVariantList& params, const Reader& reader, int* rowsAffected)
{
    if (!CSqlStatementCheck::IsSingleStatement(sql))
        return Fail(QStringLiteral("one statement per call: ") + sql.left(200));
    QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
    bool ok = Exec(query, sql, params);
    bool repeat = false;
    if (!ok && Reopen(repeat, query.lastError(), sql) && repeat) {
        query = QSqlQuery(QSqlDatabase::database(m_connectionName, false));
        ok = Exec(query, sql, params);
    }
    if (!ok)
        return Fail(SqlError(query.lastError()));
    if (rowsAffected)
        *rowsAffected = query.numRowsAffected();
    if (reader)
        reader(query);
    m_error.clear();
    return true;
}

bool CComDB::RefuseAccessWrite()
{
    return Fail(QStringLiteral("the MS Access file is opened read-only; nothing was written"));
}

bool CComDB::RunAccess(const QString& sql, const QVariantList& params, QList<QVariantList>& rows)
{
    CMdbQuery query;
    if (!query.Parse(sql) || !query.Run(*m_mdb, params, rows))
        return Fail(query.GetError());
    m_error.clear();
    return true;
}

bool CComDB::ExecuteNonQuery(const QString& sql)
{
    return ExecuteBound(sql, {});
}

bool CComDB::ExecuteBound(const QString& sql, const QVariantList& params, int* rowsAffected)
{
    if (!Ready())
        return false;
    if (m_mdb)
        return RefuseAccessWrite();
    return RunSql(sql, params, nullptr, rowsAffected);
}

bool CComDB::Retrieve(const QString& sql, QString& value)
{
    QList<QVariantList> rows;
    if (!Query(sql, {}, rows))
        return false;
    value = rows.isEmpty() || rows.first().isEmpty() ? QString() : rows.first().first().toString();
    return true;
}

bool CComDB::Query(const QString& sql, const QVariantList& params, QList<QVariantList>& rows)
{
    if (!Ready())
        return false;
    rows.clear();
    if (m_mdb)
        return RunAccess(sql, params, rows);
    return RunSql(sql, params, [&rows](QSqlQuery& query) {
        const int columns = query.record().count();
        while (query.next()) {
            QVariantList row;
            row.reserve(columns);
            for (int i = 0; i < columns; ++i)
                row << (query.isNull(i) ? QVariant() : query.value(i));
            rows << row;
        }
    });
}

bool CComDB::UpdateBlob(const QString& sql, const unsigned char* bytes, int count)
{
    if (!Ready())
        return false;
    if (m_mdb)
        return RefuseAccessWrite();
    static const QRegularExpression head(QStringLiteral("^\\s*update\\s+([A-Za-z_][A-Za-z0-9_]*)\\s+set\\s+content\\s*="),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tail(QStringLiteral("\\swhere\\s+id\\s*=\\s*(-?\\d+)\\s*$"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch table = head.match(sql);
    const QRegularExpressionMatch id = tail.match(sql);
    if (!table.hasMatch() || !id.hasMatch())
        return Fail(QStringLiteral("UpdateBlob needs \"update <table> set CONTENT = ... where ID=<n>\""));
    if (count < 0 || (count > 0 && !bytes))
        return Fail(QStringLiteral("UpdateBlob got no bytes"));
    const QString text = QString::fromLatin1(reinterpret_cast<const char*>(bytes), count);
    // The driver would silently cut the text at the first zero byte.
    if (m_backend == CConnectionString::Backend::PostgreSQL && text.contains(QChar(0)))
        return Fail(QStringLiteral("a PostgreSQL text cannot hold a zero byte; the script was not stored"));
    int affected = 0;
    const QString update = QStringLiteral("update %1 set CONTENT = ? where ID = ?").arg(table.captured(1));
    if (!RunSql(update, {text, id.captured(1).toLongLong()}, nullptr, &affected))
        return false;
    return affected > 0 || Fail(QStringLiteral("no row with ID ") + id.captured(1));
}
