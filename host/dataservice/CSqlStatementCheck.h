#pragma once
#include <QString>

// Tells whether an SQL text holds at most one statement: no ";" followed by
// anything but blanks and comments, outside quotes ('...', "..."), PostgreSQL
// dollar quotes ($tag$...$tag$) and comments. Unterminated quotes and
// comments count as more than one. The Qt PostgreSQL driver sends text with
// PQexec, which would run every statement in it.
class CSqlStatementCheck
{
public:
    static bool IsSingleStatement(const QString& sql);

private:
    // Index just past the construct starting at `i`, or -1 when unterminated.
    static int SkipQuoted(const QString& sql, int i, QChar quote);
    static int SkipDollarQuote(const QString& sql, int i);
    static int SkipComment(const QString& sql, int i);
    static bool OnlyBlanksAndComments(const QString& sql, int i);
};
