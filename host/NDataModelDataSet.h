#pragma once
#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

// Field type codes of the data-set library.
enum FieldType
{
    FT_String = 1,
    FT_Integer = 3,
    FT_Double = 6,
    FT_LongString = 15,
};

// An in-memory table: named, typed fields (columns from 0) and rows numbered
// from 1. Derived tables declare their fields by overriding CreateFields,
// which runs once, lazily, before the first use of the fields; AddField after
// that appends further fields.
class NDataModelDataSet
{
public:
    NDataModelDataSet();
    virtual ~NDataModelDataSet();
    NDataModelDataSet(const NDataModelDataSet&) = delete;
    NDataModelDataSet& operator=(const NDataModelDataSet&) = delete;

    // Declares the fields; returns the field count. The base declares none.
    virtual int CreateFields();

    // Returns the new field's column, or the existing column of that name.
    int AddField(const QString& name, FieldType type, int width = 0);
    int GetFieldCount() const;
    QString GetFieldName(int column) const;
    int GetFieldIndex(const QString& name) const; // -1 when there is none
    FieldType GetFieldDataType(int column) const;
    int GetFieldWidth(int column) const;

    void SetTableName(const QString& name);
    QString GetTableName() const;

    int GetRowCount() const;
    // Inserts an empty row before `row`; 0 (or a row past the end) appends.
    // Returns the new row's number.
    int InsertRow(int row);
    bool DeleteRow(int row);
    // Drops every row; the fields stay.
    void Reset();
    // A plain data set with the same table name, fields and rows.
    std::unique_ptr<NDataModelDataSet> Clone() const;

    // Cells. Out-of-range rows or columns and unknown field names read as
    // empty / 0 and make setters return false. A cell never set reads as empty.
    QString GetAsString(int column, int row) const;
    QString GetAsString(const QString& field, int row) const;
    int GetAsInteger(int column, int row) const;
    int GetAsInteger(const QString& field, int row) const;
    double GetAsDouble(int column, int row) const;
    double GetAsDouble(const QString& field, int row) const;
    bool IsNull(int column, int row) const;
    bool SetAsString(int column, int row, const QString& value);
    bool SetAsString(const QString& field, int row, const QString& value);
    bool SetAsInteger(int column, int row, int value);
    bool SetAsInteger(const QString& field, int row, int value);
    bool SetAsDouble(int column, int row, double value);
    bool SetAsDouble(const QString& field, int row, double value);

    // Stable sort of the rows on one field (by its type: text or number).
    bool Sort(const QString& field, bool ascending = true);

    // The whole table as XML text, and back. Load appends the rows of the
    // buffer to this table's fields (matched by name); a damaged buffer
    // returns false and leaves the table as it was.
    bool SaveDataSetXMLBuf_NoDelete(QString& xml) const;
    bool LoadDataSetXMLBuf_NoDataBefore(const QString& xml, int flags = 0);

protected:
    void EnsureFields() const;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};
