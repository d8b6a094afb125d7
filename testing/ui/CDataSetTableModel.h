#pragma once
#include <QAbstractTableModel>
#include <QList>

class NDataModelDataSet;

// A table model read straight from a data set: chosen fields as columns, the
// data set's rows as rows (model row r is data-set row r + 1). Nothing is
// copied, so a table of any size shows at once; edits, inserted and removed
// rows go into the data set itself. The data set is not owned.
class CDataSetTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    struct Column
    {
        QString field;
        QString title;
        int width = 100;
    };

    explicit CDataSetTableModel(QObject* parent = nullptr);

    void SetColumns(const QList<Column>& columns);
    const QList<Column>& Columns() const { return m_columns; }
    // Shows another data set (or none); the view is rebuilt.
    void SetDataSet(NDataModelDataSet* data);
    NDataModelDataSet* DataSet() const { return m_data; }
    void SetEditable(bool editable) { m_editable = editable; }
    // After the data set changed behind the model's back.
    void Refresh();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;

private:
    void ResolveFields();

    QList<Column> m_columns;
    // Column of each shown field in the data set, -1 when it has none.
    QList<int> m_fieldColumns;
    NDataModelDataSet* m_data = nullptr;
    bool m_editable = false;
};
