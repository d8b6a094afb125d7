#include "RecordingDataService.h"

RecordingDataService::RecordingDataService(std::unique_ptr<CDataServiceAbsolute> inner) : m_inner(std::move(inner)) {}

bool RecordingDataService::Record(const char* operation, const QString& sql)
{
    m_calls << QLatin1String(operation) + QStringLiteral(": ") + sql;
    m_failed = m_calls.size() == m_failCall;
    return !m_failed;
}

bool RecordingDataService::Init() { return m_inner->Init(); }
bool RecordingDataService::Connect(const QString& connection, const QString& user, const QString& password)
{
    return m_inner->Connect(connection, user, password);
}
void RecordingDataService::DisConnect() { m_inner->DisConnect(); }
bool RecordingDataService::IsConnected() const { return m_inner->IsConnected(); }
QString RecordingDataService::GetConnectionString() const { return m_inner->GetConnectionString(); }
QString RecordingDataService::GetError() const
{
    return m_failed ? QStringLiteral("failure injected by the test") : m_inner->GetError();
}
bool RecordingDataService::ExecuteNonQuery(const QString& sql)
{
    return Record("ExecuteNonQuery", sql) && m_inner->ExecuteNonQuery(sql);
}
bool RecordingDataService::Retrieve(const QString& sql, QString& value)
{
    return Record("Retrieve", sql) && m_inner->Retrieve(sql, value);
}
bool RecordingDataService::UpdateBlob(const QString& sql, const unsigned char* bytes, int count)
{
    m_blobCount = count;
    m_lastBlob = QByteArray(reinterpret_cast<const char*>(bytes), count + 1);
    return Record("UpdateBlob", sql) && m_inner->UpdateBlob(sql, bytes, count);
}
bool RecordingDataService::ExecuteBound(const QString& sql, const QVariantList& params, int* rowsAffected)
{
    return Record("ExecuteBound", sql) && m_inner->ExecuteBound(sql, params, rowsAffected);
}
bool RecordingDataService::Query(const QString& sql, const QVariantList& params, QList<QVariantList>& rows)
{
    return Record("Query", sql) && m_inner->Query(sql, params, rows);
}
