#include "CStringBuilder.h"

#include <algorithm>

void CStringBuilder::Reserve(qsizetype extra, int growBy)
{
    const qsizetype needed = m_text.size() + extra;
    if (needed > m_text.capacity())
        m_text.reserve(std::max(needed, m_text.capacity() + std::max(growBy, 1)));
}

void CStringBuilder::Append(const QString& text, int growBy)
{
    Reserve(text.size(), growBy);
    m_text.append(text);
}

void CStringBuilder::Append(const char16_t* text, int growBy)
{
    if (text)
        Append(QString::fromUtf16(text), growBy);
}
