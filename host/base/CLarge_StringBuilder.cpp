#include "CLarge_StringBuilder.h"

#include <algorithm>

CLarge_StringBuilder::CLarge_StringBuilder(qsizetype chunkSize) : m_chunkSize(std::max<qsizetype>(chunkSize, 16))
{
}

void CLarge_StringBuilder::Append(const QString& text)
{
    if (text.isEmpty())
        return;
    // A chunk is never allowed to grow past its reserved size, so its
    // characters stay where they were written.
    if (m_chunks.empty() || m_chunks.back().size() + text.size() > m_chunks.back().capacity()) {
        m_chunks.emplace_back();
        m_chunks.back().reserve(std::max(m_chunkSize, text.size()));
    }
    m_chunks.back().append(text);
    m_length += text.size();
}

void CLarge_StringBuilder::Append(const char16_t* text)
{
    if (text)
        Append(QString::fromUtf16(text));
}

void CLarge_StringBuilder::GetString(QString& text) const
{
    text.clear();
    text.reserve(m_length);
    for (const QString& chunk : m_chunks)
        text.append(chunk);
}

QString CLarge_StringBuilder::ToString() const
{
    QString text;
    GetString(text);
    return text;
}

void CLarge_StringBuilder::Clear()
{
    m_chunks.clear();
    m_length = 0;
}
