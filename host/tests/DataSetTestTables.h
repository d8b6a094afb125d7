#pragma once
#include "NDataModelDataSet.h"

#include <gtest/gtest.h>
#include <utility>

// The shape of a test case table: four fields declared lazily, a table name.
class CaseTable : public NDataModelDataSet
{
public:
    int created = 0;
    int CreateFields() override
    {
        ++created;
        for (const auto& [name, type] : {std::pair{"ParmMode", FT_Integer}, {"ParmName", FT_LongString},
                                         {"ParmValue", FT_LongString}, {"ParmMsg", FT_LongString}})
            AddField(QString::fromLatin1(name), type);
        SetTableName(QStringLiteral("TestCase"));
        return GetFieldCount();
    }
};

// Table name, every field (name, type, width) and every cell, nulls told apart
// from empty text: two tables with the same dump hold the same data.
inline QString Dump(const NDataModelDataSet& t)
{
    QString out = t.GetTableName() + QLatin1Char('|');
    for (int c = 0; c < t.GetFieldCount(); ++c)
        out += QStringLiteral("%1:%2:%3,").arg(t.GetFieldName(c)).arg(int(t.GetFieldDataType(c))).arg(t.GetFieldWidth(c));
    for (int r = 1; r <= t.GetRowCount(); ++r) {
        out += QLatin1Char('\n');
        for (int c = 0; c < t.GetFieldCount(); ++c)
            out += (t.IsNull(c, r) ? QStringLiteral("<null>") : QLatin1Char('[') + t.GetAsString(c, r) + QLatin1Char(']'))
                + QLatin1Char(';');
    }
    return out;
}

// One field's values from row 1 on, nulls as "null", joined by spaces.
inline QString Column(const NDataModelDataSet& t, const QString& field)
{
    QStringList values;
    for (int r = 1; r <= t.GetRowCount(); ++r)
        values << (t.IsNull(t.GetFieldIndex(field), r) ? QStringLiteral("null") : t.GetAsString(field, r));
    return values.join(QLatin1Char(' '));
}
