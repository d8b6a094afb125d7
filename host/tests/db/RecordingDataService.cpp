#include "RecordingDataService.h"

bool RecordingDataService::Record(const char* operation, const QString& sql)
{
    m_calls << QLatin1String(operation) + QStringLiteral(": ") + sql;
    m_failed = m_calls.size() == m_failCall;
    return !m_failed;
}

bool RecordingDataService::UpdateBlob(const QString& sql, const unsigned char* bytes, int count)
{
    m_blobCount = count;
    m_lastBlob = QByteArray(reinterpret_cast<const char*>(bytes), count + 1);
    return Record("UpdateBlob", sql) && m_inner->UpdateBlob(sql, bytes, count);
}
