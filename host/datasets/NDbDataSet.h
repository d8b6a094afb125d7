#pragma once
#include "NDataModelDataSet.h"

#include <QSet>
#include <QString>

class CDataServiceAbsolute;

// A data set filled from a database table: declare the fields (AddField, or
// CreateFields in a derived table), the table name and a condition; ParseSQL
// forms "select <fields> from <table> <condition>" and RetrieveByXml runs it
// on the bound data service and replaces the rows with the result.
class NDbDataSet : public NDataModelDataSet
{
public:
    NDbDataSet();
    explicit NDbDataSet(CDataServiceAbsolute* db);
    ~NDbDataSet() override;

    // Not owned; must outlive the retrievals.
    void SetComDB(CDataServiceAbsolute* db) { m_db = db; }
    CDataServiceAbsolute* GetComDB() const { return m_db; }

    // Marks a column as (part of) the primary key; false for a column that
    // does not exist.
    bool SetFieldPK(int column, bool on);
    bool IsFieldPK(int column) const;

    // The text after the table name, e.g. "where ID =3". Mode 1 replaces the
    // condition; any other mode appends the text after a space.
    void SetWhere(const QString& condition, int mode = 1);
    const QString& GetWhere() const { return m_where; }

    // Forms the SELECT from the fields, table name and condition; false when
    // there is no table name or no field.
    bool ParseSQL();
    const QString& GetSQL() const { return m_sql; }

    // Forms the SELECT again (ParseSQL), runs it on the bound service and
    // replaces the rows with the result, in the order the database returns
    // them. Returns the row count, or -1 when there is no service or the
    // query fails (the rows are then left as they were).
    int RetrieveByXml();
    // The data service's error text of the last failed retrieval.
    const QString& GetError() const { return m_error; }

private:
    void FillRow(int row, const QVariantList& values);

    CDataServiceAbsolute* m_db = nullptr;
    QSet<int> m_primaryKey;
    QString m_where;
    QString m_sql;
    QString m_error;
};
