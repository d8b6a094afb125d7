#pragma once
#include <QString>

// The last engine error of a global scope: what went wrong, the 1-based line
// of the text it happened in (0 when the engine could not tell) and that
// line's source text.
class CJsErrorInfo
{
public:
    CJsErrorInfo() = default;
    CJsErrorInfo(const QString& description, int line, const QString& sourceLine)
        : m_description(description), m_sourceLine(sourceLine), m_line(line), m_present(true)
    {
    }

    bool IsPresent() const { return m_present; }
    const QString& Description() const { return m_description; }
    const QString& SourceLine() const { return m_sourceLine; }
    int Line() const { return m_line; }

private:
    QString m_description;
    QString m_sourceLine;
    int m_line = 0;
    bool m_present = false;
};
