#pragma once
#include "CConnectionString.h"
#include "CDataServiceAbsolute.h"

#include <functional>
#include <memory>
#include <thread>

class CMdbDatabase;
class QSqlDatabase;
class QSqlError;
class QSqlQuery;

// The data service on Qt Sql. The connection string picks the backend (see
// CConnectionString): a SQLite file, a PostgreSQL server, or an MS Access
// file, which is opened read-only through libmdb and answers only simple
// SELECTs (CMdbQuery); every write to it fails and leaves the file untouched.
//
// Each object has its own Qt connection name. A Qt connection may only be
// used from the thread that opened it, so the object fails every call from
// any other thread; destroy it in that thread too.
//
// Every call runs exactly one statement: text holding a second statement is
// refused by the driver. A locked database is waited on for the busy timeout
// (SQLite busy handler, PostgreSQL lock_timeout), then the call fails. A
// PostgreSQL connection the server dropped (a restart) is opened again once,
// and the statement repeated when none of it ran. Server notices go to the
// analysis log, not to stderr.
class CComDB : public CDataServiceAbsolute
{
public:
    CComDB();
    ~CComDB() override;
    CComDB(const CComDB&) = delete;
    CComDB& operator=(const CComDB&) = delete;

    bool Init() override;
    bool Connect(const QString& connection, const QString& user, const QString& password) override;
    void DisConnect() override;
    bool IsConnected() const override;
    QString GetConnectionString() const override { return m_connection; }
    QString GetError() const override { return m_error; }

    bool ExecuteNonQuery(const QString& sql) override;
    bool Retrieve(const QString& sql, QString& value) override;
    // All `count` bytes are stored as text, one character per byte (Latin-1),
    // in the CONTENT of the row named by the statement's trailing
    // "where ID=<n>"; no such row is a failure. PostgreSQL text holds no zero
    // character, so there a zero byte fails the call.
    bool UpdateBlob(const QString& sql, const unsigned char* bytes, int count) override;
    bool ExecuteBound(const QString& sql, const QVariantList& params, int* rowsAffected = nullptr) override;
    bool Query(const QString& sql, const QVariantList& params, QList<QVariantList>& rows) override;

    CConnectionString::Backend GetBackend() const { return m_backend; }
    const QString& GetConnectionName() const { return m_connectionName; }
    // Applies at once to an open connection and to later connects.
    bool SetBusyTimeoutMs(int ms);
    int GetBusyTimeoutMs() const { return m_busyTimeoutMs; }

    static constexpr int kDefaultBusyTimeoutMs = 5000;
    static constexpr int kConnectTimeoutSeconds = 5;

private:
    using Reader = std::function<void(QSqlQuery&)>;

    bool Fail(const QString& error);
    bool Ready();
    bool ConnectSqlite(const CConnectionString& target);
    bool ConnectServer(const CConnectionString& target, const QString& user, const QString& password);
    bool OpenSql(const QString& driver, const std::function<void(QSqlDatabase&)>& configure);
    bool ApplyBusyTimeout();
    bool RunSql(const QString& sql, const QVariantList& params, const Reader& reader, int* rowsAffected = nullptr);
    static bool Exec(QSqlQuery& query, const QString& sql, const QVariantList& params);
    bool Reopen(bool& repeat, const QSqlError& error, const QString& sql);
    bool RunAccess(const QString& sql, const QVariantList& params, QList<QVariantList>& rows);
    bool RefuseAccessWrite();

    QString m_connectionName;
    QString m_connection;
    QString m_error;
    CConnectionString::Backend m_backend = CConnectionString::Backend::Invalid;
    bool m_connected = false;
    std::thread::id m_thread;
    int m_busyTimeoutMs = kDefaultBusyTimeoutMs;
    bool m_reopening = false;
    std::unique_ptr<CMdbDatabase> m_mdb;
};
