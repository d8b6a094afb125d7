#include "CSqlStatementCheck.h"

int CSqlStatementCheck::SkipQuoted(const QString& sql, int i, QChar quote)
{
    // E'...' strings of PostgreSQL take backslash escapes.
    const bool escapes = quote == QLatin1Char('\'') && i > 0 && sql.at(i - 1).toUpper() == QLatin1Char('E')
                         && (i == 1 || !sql.at(i - 2).isLetterOrNumber());
    for (int j = i + 1; j < sql.size(); ++j) {
        if (escapes && sql.at(j) == QLatin1Char('\\')) {
            ++j;
            continue;
        }
        if (sql.at(j) != quote)
            continue;
        if (j + 1 < sql.size() && sql.at(j + 1) == quote) {
            ++j; // doubled quote inside the text
            continue;
        }
        return j + 1;
    }
    return -1;
}

int CSqlStatementCheck::SkipDollarQuote(const QString& sql, int i)
{
    int end = i + 1;
    while (end < sql.size() && (sql.at(end).isLetterOrNumber() || sql.at(end) == QLatin1Char('_')))
        ++end;
    if (end >= sql.size() || sql.at(end) != QLatin1Char('$'))
        return i + 1; // a plain "$", e.g. a positional parameter
    const QString tag = sql.mid(i, end - i + 1);
    const int close = sql.indexOf(tag, end + 1);
    return close < 0 ? -1 : close + int(tag.size());
}

int CSqlStatementCheck::SkipComment(const QString& sql, int i)
{
    if (sql.mid(i, 2) == QLatin1String("--")) {
        const int newline = sql.indexOf(QLatin1Char('\n'), i);
        return newline < 0 ? int(sql.size()) : newline + 1;
    }
    const int close = sql.indexOf(QLatin1String("*/"), i + 2);
    return close < 0 ? -1 : close + 2;
}

bool CSqlStatementCheck::OnlyBlanksAndComments(const QString& sql, int i)
{
    while (i >= 0 && i < sql.size()) {
        const QChar c = sql.at(i);
        if (c.isSpace() || c == QLatin1Char(';'))
            ++i;
        else if (sql.mid(i, 2) == QLatin1String("--") || sql.mid(i, 2) == QLatin1String("/*"))
            i = SkipComment(sql, i);
        else
            return false;
    }
    return true;
}

bool CSqlStatementCheck::IsSingleStatement(const QString& sql)
{
    int i = 0;
    while (i >= 0 && i < sql.size()) {
        const QChar c = sql.at(i);
        if (c == QLatin1Char('\'') || c == QLatin1Char('"'))
            i = SkipQuoted(sql, i, c);
        else if (c == QLatin1Char('$'))
            i = SkipDollarQuote(sql, i);
        else if (sql.mid(i, 2) == QLatin1String("--") || sql.mid(i, 2) == QLatin1String("/*"))
            i = SkipComment(sql, i);
        else if (c == QLatin1Char(';'))
            return OnlyBlanksAndComments(sql, i + 1);
        else
            ++i;
    }
    // An unterminated quote or comment is refused rather than guessed at.
    return i >= 0;
}
