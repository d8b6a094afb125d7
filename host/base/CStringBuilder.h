#pragma once
#include <QString>

// Builds a text by appending; the buffer grows by at least the given size
// whenever it runs out, so a long run of small appends copies rarely.
class CStringBuilder
{
public:
    CStringBuilder() = default;
    virtual ~CStringBuilder() = default;

    void Append(const QString& text, int growBy = 4096);
    // A zero-terminated wide text; null appends nothing.
    void Append(const char16_t* text, int growBy = 4096);

    qsizetype GetLength() const { return m_text.size(); }
    void GetString(QString& text) const { text = m_text; }
    QString ToString() const { return m_text; }
    void Clear() { m_text.clear(); }

private:
    void Reserve(qsizetype extra, int growBy);

    QString m_text;
};
