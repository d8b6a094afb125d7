#pragma once
#include "CDataServiceAbsolute.h"

#include <QStringList>
#include <memory>

// Wraps a real data service, records every statement it is given and can be
// told to fail the n-th call (counting from 1) without passing it on.
class RecordingDataService : public CDataServiceAbsolute
{
public:
    explicit RecordingDataService(std::unique_ptr<CDataServiceAbsolute> inner) : m_inner(std::move(inner)) {}

    // Each entry is "<operation>: <sql>", e.g. "ExecuteNonQuery: delete ...".
    const QStringList& Calls() const { return m_calls; }
    void FailCall(int number) { m_failCall = number; }
    int BlobBytes() const { return m_blobCount; }
    const QByteArray& LastBlob() const { return m_lastBlob; }

    bool Init() override { return m_inner->Init(); }
    bool Connect(const QString& connection, const QString& user, const QString& password) override
    {
        return m_inner->Connect(connection, user, password);
    }
    void DisConnect() override { m_inner->DisConnect(); }
    bool IsConnected() const override { return m_inner->IsConnected(); }
    QString GetConnectionString() const override { return m_inner->GetConnectionString(); }
    QString GetError() const override { return m_failed ? QStringLiteral("failure injected by the test") : m_inner->GetError(); }
    bool ExecuteNonQuery(const QString& sql) override { return Record("ExecuteNonQuery", sql) && m_inner->ExecuteNonQuery(sql); }
    bool Retrieve(const QString& sql, QString& value) override { return Record("Retrieve", sql) && m_inner->Retrieve(sql, value); }
    bool UpdateBlob(const QString& sql, const unsigned char* bytes, int count) override;
    bool ExecuteBound(const QString& sql, const QVariantList& params, int* rowsAffected = nullptr) override
    {
        return Record("ExecuteBound", sql) && m_inner->ExecuteBound(sql, params, rowsAffected);
    }
    bool Query(const QString& sql, const QVariantList& params, QList<QVariantList>& rows) override
    {
        return Record("Query", sql) && m_inner->Query(sql, params, rows);
    }

private:
    bool Record(const char* operation, const QString& sql);

    std::unique_ptr<CDataServiceAbsolute> m_inner;
    QStringList m_calls;
    int m_failCall = 0;
    int m_blobCount = -1;
    QByteArray m_lastBlob;
    bool m_failed = false;
};
