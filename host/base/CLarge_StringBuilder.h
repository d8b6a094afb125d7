#pragma once
#include <QString>
#include <vector>

// Builds a long text (a script of many thousand lines) without ever moving
// what was appended: pieces go into fixed chunks, and the text is joined once
// in GetString.
class CLarge_StringBuilder
{
public:
    explicit CLarge_StringBuilder(qsizetype chunkSize = 64 * 1024);
    virtual ~CLarge_StringBuilder() = default;

    void Append(const QString& text);
    // A zero-terminated wide text; null appends nothing.
    void Append(const char16_t* text);

    qsizetype GetLength() const { return m_length; }
    // Replaces `text` with everything appended so far.
    void GetString(QString& text) const;
    QString ToString() const;
    void Clear();

private:
    qsizetype m_chunkSize;
    qsizetype m_length = 0;
    std::vector<QString> m_chunks;
};
