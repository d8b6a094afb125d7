#include "NDbDataSet.h"

#include "CDataServiceAbsolute.h"

#include <QStringList>
#include <limits>

NDbDataSet::NDbDataSet() = default;

NDbDataSet::NDbDataSet(CDataServiceAbsolute* db)
    : m_db(db)
{
}

NDbDataSet::~NDbDataSet() = default;

bool NDbDataSet::SetFieldPK(int column, bool on)
{
    if (column < 0 || column >= GetFieldCount())
        return false;
    if (on)
        m_primaryKey.insert(column);
    else
        m_primaryKey.remove(column);
    return true;
}

bool NDbDataSet::IsFieldPK(int column) const
{
    return m_primaryKey.contains(column);
}

void NDbDataSet::SetWhere(const QString& condition, int mode)
{
    if (mode == 1 || m_where.isEmpty())
        m_where = condition;
    else
        m_where += QLatin1Char(' ') + condition;
}

bool NDbDataSet::ParseSQL()
{
    const int count = GetFieldCount();
    if (count == 0 || GetTableName().isEmpty()) {
        m_sql.clear();
        return false;
    }
    QStringList names;
    for (int column = 0; column < count; ++column)
        names << GetFieldName(column);
    m_sql = QStringLiteral("select ") + names.join(QStringLiteral(", ")) + QStringLiteral(" from ") + GetTableName();
    if (!m_where.trimmed().isEmpty())
        m_sql += QLatin1Char(' ') + m_where.trimmed();
    return true;
}

void NDbDataSet::FillRow(int row, const QVariantList& values)
{
    const int count = qMin(GetFieldCount(), int(values.size()));
    for (int column = 0; column < count; ++column) {
        const QVariant& value = values.at(column);
        if (value.isNull())
            continue;
        switch (GetFieldDataType(column)) {
        case FT_Integer: {
            bool ok = false;
            const qlonglong number = value.toLongLong(&ok);
            if (ok && number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max())
                SetAsInteger(column, row, int(number));
            else
                SetAsString(column, row, value.toString());
            break;
        }
        case FT_Double:
            SetAsDouble(column, row, value.toDouble());
            break;
        default:
            SetAsString(column, row, value.toString());
            break;
        }
    }
}

int NDbDataSet::RetrieveByXml()
{
    if (!m_db) {
        m_error = QStringLiteral("no data service bound");
        return -1;
    }
    if (!ParseSQL()) {
        m_error = QStringLiteral("no table name or no field declared");
        return -1;
    }
    QList<QVariantList> rows;
    if (!m_db->Query(m_sql, {}, rows)) {
        m_error = m_db->GetError();
        return -1;
    }
    m_error.clear();
    Reset();
    for (const QVariantList& values : rows)
        FillRow(InsertRow(0), values);
    return GetRowCount();
}
