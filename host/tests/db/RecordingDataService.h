#pragma once
#include "CDataServiceAbsolute.h"

#include <QStringList>
#include <memory>

// Wraps a real data service, records every statement it is given and can be
// told to fail the n-th call (counting from 1) without passing it on.
class RecordingDataService : public CDataServiceAbsolute
{
public:
    explicit RecordingDataService(std::unique_ptr<CDataServiceAbsolute> inner);

    // Each entry is "<operation>: <sql>", e.g. "ExecuteNonQuery: delete ...".
    const QStringList& Calls() const { return m_calls; }
    void FailCall(int number) { m_failCall = number; }
    int BlobBytes() const { return m_blobCount; }
    const QByteArray& LastBlob() const { return m_lastBlob; }

    bool Init() override;
    bool Connect(const QString& connection, const QString& user, const QString& password) override;
    void DisConnect() override;
    bool IsConnected() const override;
    QString GetConnectionString() const override;
    QString GetError() const override;
    bool ExecuteNonQuery(const QString& sql) override;
    bool Retrieve(const QString& sql, QString& value) override;
    bool UpdateBlob(const QString& sql, const unsigned char* bytes, int count) override;
    bool ExecuteBound(const QString& sql, const QVariantList& params, int* rowsAffected = nullptr) override;
    bool Query(const QString& sql, const QVariantList& params, QList<QVariantList>& rows) override;

private:
    bool Record(const char* operation, const QString& sql);

    std::unique_ptr<CDataServiceAbsolute> m_inner;
    QStringList m_calls;
    int m_failCall = 0;
    int m_blobCount = -1;
    QByteArray m_lastBlob;
    bool m_failed = false;
};
