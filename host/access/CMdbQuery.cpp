#include "CMdbQuery.h"

#include "CMdbDatabase.h"

#include <algorithm>

namespace {

// Tokens: punctuation as itself, a text literal as "'" + its value, names and
// numbers as written (brackets removed). Returns false on an unterminated
// literal or bracket.
bool Tokenize(const QString& sql, QStringList& tokens)
{
    int i = 0;
    const int n = sql.size();
    while (i < n) {
        const QChar c = sql.at(i);
        if (c.isSpace()) {
            ++i;
        } else if (c == QLatin1Char('\'')) {
            QString value;
            ++i;
            for (;;) {
                if (i >= n)
                    return false;
                if (sql.at(i) == QLatin1Char('\'')) {
                    if (i + 1 < n && sql.at(i + 1) == QLatin1Char('\'')) {
                        value += QLatin1Char('\'');
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                value += sql.at(i++);
            }
            tokens << QLatin1Char('\'') + value;
        } else if (c == QLatin1Char('[')) {
            const int close = sql.indexOf(QLatin1Char(']'), i + 1);
            if (close < 0)
                return false;
            tokens << sql.mid(i + 1, close - i - 1);
            i = close + 1;
        } else if (QStringLiteral("*,=?;").contains(c)) {
            tokens << QString(c);
            ++i;
        } else {
            const int start = i;
            while (i < n && !sql.at(i).isSpace() && !QStringLiteral("*,=?;'[").contains(sql.at(i)))
                ++i;
            tokens << sql.mid(start, i - start);
        }
    }
    if (!tokens.isEmpty() && tokens.last() == QLatin1String(";"))
        tokens.removeLast();
    return true;
}

bool IsKeyword(const QStringList& tokens, int pos, const char* word)
{
    return pos < tokens.size() && tokens.at(pos).compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool IsName(const QString& token)
{
    return !token.isEmpty() && !token.startsWith(QLatin1Char('\'')) && token != QLatin1String("*")
           && token != QLatin1String(",") && token != QLatin1String("=") && token != QLatin1String("?")
           && token != QLatin1String(";");
}

int ColumnIndex(const QStringList& columns, const QString& name)
{
    for (int i = 0; i < columns.size(); ++i) {
        if (columns.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

bool SameValue(const QVariant& cell, const QVariant& value)
{
    if (cell.isNull() || value.isNull())
        return false;
    const bool cellNumber = cell.typeId() == QMetaType::LongLong || cell.typeId() == QMetaType::Double;
    const bool valueNumber = value.typeId() != QMetaType::QString;
    if (cellNumber && valueNumber)
        return cell.toDouble() == value.toDouble();
    return cell.toString() == value.toString();
}

} // namespace

bool CMdbQuery::Fail(const QString& error)
{
    m_error = error;
    return false;
}

bool CMdbQuery::Parse(const QString& sql)
{
    *this = CMdbQuery();
    QStringList tokens;
    if (!Tokenize(sql, tokens))
        return Fail(QStringLiteral("unterminated text or name in: ") + sql);
    int pos = 0;
    if (!IsKeyword(tokens, pos++, "select"))
        return Fail(QStringLiteral("an Access file is read-only; only SELECT is answered"));
    if (!ParseSelectList(tokens, pos))
        return false;
    if (!IsKeyword(tokens, pos++, "from") || pos >= tokens.size() || !IsName(tokens.at(pos)))
        return Fail(QStringLiteral("expected FROM and a table name"));
    m_table = tokens.at(pos++);
    if (IsKeyword(tokens, pos, "where") && !ParseWhere(tokens, ++pos))
        return false;
    if (IsKeyword(tokens, pos, "order") && !ParseOrder(tokens, ++pos))
        return false;
    if (pos != tokens.size())
        return Fail(QStringLiteral("unsupported text after the query: ") + tokens.at(pos));
    return true;
}

bool CMdbQuery::ParseSelectList(const QStringList& tokens, int& pos)
{
    if (pos < tokens.size() && tokens.at(pos) == QLatin1String("*")) {
        ++pos;
        return true;
    }
    for (;;) {
        if (pos >= tokens.size() || !IsName(tokens.at(pos)) || IsKeyword(tokens, pos, "from"))
            return Fail(QStringLiteral("expected a column name"));
        m_columns << tokens.at(pos++);
        if (pos < tokens.size() && tokens.at(pos) == QLatin1String(","))
            ++pos;
        else
            return true;
    }
}

bool CMdbQuery::ParseWhere(const QStringList& tokens, int& pos)
{
    for (;;) {
        if (pos + 2 >= tokens.size() || !IsName(tokens.at(pos)) || tokens.at(pos + 1) != QLatin1String("="))
            return Fail(QStringLiteral("only \"column = value\" conditions joined by AND are supported"));
        Condition condition;
        condition.column = tokens.at(pos);
        const QString& value = tokens.at(pos + 2);
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        if (value == QLatin1String("?"))
            condition.param = m_paramCount++;
        else if (value.startsWith(QLatin1Char('\'')))
            condition.value = value.mid(1);
        else if (isNumber)
            condition.value = number;
        else
            return Fail(QStringLiteral("unsupported value in condition: ") + value);
        m_conditions << condition;
        pos += 3;
        if (!IsKeyword(tokens, pos, "and"))
            return true;
        ++pos;
    }
}

bool CMdbQuery::ParseOrder(const QStringList& tokens, int& pos)
{
    if (!IsKeyword(tokens, pos++, "by") || pos >= tokens.size() || !IsName(tokens.at(pos)))
        return Fail(QStringLiteral("expected ORDER BY and a column"));
    m_orderColumn = tokens.at(pos++);
    if (IsKeyword(tokens, pos, "asc")) {
        ++pos;
    } else if (IsKeyword(tokens, pos, "desc")) {
        m_descending = true;
        ++pos;
    }
    return true;
}

bool CMdbQuery::Matches(const QVariantList& row, const QList<int>& columns, const QVariantList& params) const
{
    for (int i = 0; i < m_conditions.size(); ++i) {
        const Condition& condition = m_conditions.at(i);
        const QVariant value = condition.param >= 0 ? params.at(condition.param) : condition.value;
        if (!SameValue(row.at(columns.at(i)), value))
            return false;
    }
    return true;
}

void CMdbQuery::SortRows(QList<QVariantList>& rows, int column) const
{
    std::stable_sort(rows.begin(), rows.end(), [&](const QVariantList& a, const QVariantList& b) {
        const QVariant& x = m_descending ? b.at(column) : a.at(column);
        const QVariant& y = m_descending ? a.at(column) : b.at(column);
        if (x.isNull() || y.isNull())
            return x.isNull() && !y.isNull();
        return QVariant::compare(x, y) == QPartialOrdering::Less;
    });
}

bool CMdbQuery::Run(CMdbDatabase& database, const QVariantList& params, QList<QVariantList>& rows)
{
    if (m_table.isEmpty())
        return Fail(QStringLiteral("no query parsed"));
    if (params.size() != m_paramCount)
        return Fail(QStringLiteral("wrong number of bound values"));
    QStringList names;
    QList<QVariantList> table;
    if (!database.ReadTable(m_table, names, table))
        return Fail(database.GetError());
    QList<int> conditionColumns;
    for (const Condition& condition : m_conditions) {
        conditionColumns << ColumnIndex(names, condition.column);
        if (conditionColumns.last() < 0)
            return Fail(QStringLiteral("no such column: ") + condition.column);
    }
    QList<int> selected;
    for (const QString& column : m_columns) {
        selected << ColumnIndex(names, column);
        if (selected.last() < 0)
            return Fail(QStringLiteral("no such column: ") + column);
    }
    const int order = m_orderColumn.isEmpty() ? -1 : ColumnIndex(names, m_orderColumn);
    if (!m_orderColumn.isEmpty() && order < 0)
        return Fail(QStringLiteral("no such column: ") + m_orderColumn);
    QList<QVariantList> matching;
    for (const QVariantList& row : table) {
        if (Matches(row, conditionColumns, params))
            matching << row;
    }
    if (order >= 0)
        SortRows(matching, order);
    rows.clear();
    for (const QVariantList& row : matching) {
        if (selected.isEmpty()) {
            rows << row;
            continue;
        }
        QVariantList picked;
        for (int column : selected)
            picked << row.at(column);
        rows << picked;
    }
    return true;
}
