#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

class CMdbDatabase;

// The few SELECTs that reach an Access file, answered in memory over a whole
// table read through libmdb:
//   select * | col [, col ...] from table
//     [where col = value [and col = value ...]] [order by col [asc | desc]]
// A value is a quoted text ('' for a quote), a number or "?" (bound in order).
// Names may be in [brackets]; keywords and names ignore case. Anything else
// is refused, never guessed at.
class CMdbQuery
{
public:
    bool Parse(const QString& sql);
    bool Run(CMdbDatabase& database, const QVariantList& params, QList<QVariantList>& rows);
    const QString& GetError() const { return m_error; }
    const QString& GetTable() const { return m_table; }

private:
    struct Condition
    {
        QString column;
        QVariant value;
        int param = -1; // index into the bound values, or -1 for a literal
    };

    bool ParseSelectList(const QStringList& tokens, int& pos);
    bool ParseWhere(const QStringList& tokens, int& pos);
    bool ParseOrder(const QStringList& tokens, int& pos);
    bool Fail(const QString& error);
    bool Matches(const QVariantList& row, const QList<int>& columns, const QVariantList& params) const;
    void SortRows(QList<QVariantList>& rows, int column) const;

    QString m_error;
    QString m_table;
    QStringList m_columns; // empty: every column
    QList<Condition> m_conditions;
    QString m_orderColumn;
    bool m_descending = false;
    int m_paramCount = 0;
};
