#pragma once
#include <QList>
#include <QString>
#include <QVariant>

// The host's data service: one connection to one database, one statement per
// call. Operations report success with true; the driver's text of the last
// failure stays readable through GetError.
//
// A service belongs to the thread that connected it and fails every call made
// from another thread.
class CDataServiceAbsolute
{
public:
    virtual ~CDataServiceAbsolute();

    // Readies the service for Connect; false when no database driver is usable.
    virtual bool Init() = 0;
    // Drops any earlier connection first. Empty user and password keep what
    // the connection string says.
    virtual bool Connect(const QString& connection, const QString& user, const QString& password) = 0;
    virtual void DisConnect() = 0;
    virtual bool IsConnected() const = 0;
    // The connection string of the current (or last attempted) connection.
    virtual QString GetConnectionString() const = 0;
    virtual QString GetError() const = 0;

    virtual bool ExecuteNonQuery(const QString& sql) = 0;
    // The first value of the first row as text; empty for NULL or no row.
    virtual bool Retrieve(const QString& sql, QString& value) = 0;
    // `sql` is "update <table> set CONTENT = ... where ID=<n>": the first
    // `count` bytes become the CONTENT of that row, bound as a parameter.
    virtual bool UpdateBlob(const QString& sql, const unsigned char* bytes, int count) = 0;

    // Bound forms for callers that must not splice values into SQL. Values
    // bind to "?" placeholders in order.
    virtual bool ExecuteBound(const QString& sql, const QVariantList& params, int* rowsAffected = nullptr) = 0;
    // Every row of the result; a NULL cell is a null QVariant.
    virtual bool Query(const QString& sql, const QVariantList& params, QList<QVariantList>& rows) = 0;
};
