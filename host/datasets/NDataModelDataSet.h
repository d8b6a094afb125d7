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
    //
    // Layout (no XML declaration; the text is a QString, whatever carries it
    // decides the bytes):
    //   <DataSet version="1" table="TestCase">
    //    <Fields>
    //     <Field name="ParmName" type="15" width="0"/>     one per field, in column order
    //    </Fields>
    //    <Rows>
    //     <Row>                                            one per row, in row order
    //      <Cell field="ParmName">a&#13;b</Cell>           one per cell that holds a value
    //     </Row>
    //    </Rows>
    //   </DataSet>
    // Values are element text, never attributes: every CR is written as "&#13;"
    // (a literal CR would come back as LF), LF stays literal, and whitespace,
    // quotes, "<", "&" and Chinese come back as they were. A value that XML
    // cannot carry at all (control characters, lone surrogates) is written
    // with encoding="base64": the base64 of its UTF-16LE code units. A cell
    // never set has no Cell element; an empty text has an empty one. Numbers
    // are C-locale text: integers in decimal, doubles in their shortest exact
    // form ("0.1", "1e+300", "nan", "inf").
    //
    // Load is strict: the root, version, element order and names, unique
    // non-empty field names, known type codes, numeric width, Cell fields
    // declared in Fields and at most one Cell per field and row, and values
    // that parse as the target field's type; a DTD or entity reference makes
    // the buffer damaged. Fields of the buffer that this table lacks are added
    // to it (AddField, after the existing ones), so a plain data set loads any
    // saved buffer whole; a field this table already has keeps its own type
    // and the buffer's text must convert to it. The table name is taken from
    // the buffer only when this table has none. `flags` is unused.
    bool SaveDataSetXMLBuf_NoDelete(QString& xml) const;
    bool LoadDataSetXMLBuf_NoDataBefore(const QString& xml, int flags = 0);

protected:
    void EnsureFields() const;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};
