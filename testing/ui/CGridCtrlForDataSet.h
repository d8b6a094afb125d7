#pragma once
#include "CDataSetTableModel.h"

#include <QTableView>
#include <memory>

// A grid over a data set it keeps: the columns chosen by field with a title
// and a width each, cells read and written in the data set itself. The
// current row is a number that may lie outside the rows (a search that
// found nothing leaves it one past the last); then no row is highlighted.
class CGridCtrlForDataSet : public QTableView
{
    Q_OBJECT
public:
    explicit CGridCtrlForDataSet(QWidget* parent = nullptr);
    ~CGridCtrlForDataSet() override;

    void SetColumns(const QList<CDataSetTableModel::Column>& columns);
    // Takes the data set (null: the grid shows nothing); the current row resets.
    void SetDataSet(std::unique_ptr<NDataModelDataSet> data);
    NDataModelDataSet* DataSet() const { return m_data.get(); }
    void SetEditable(bool editable);
    // Shows the data set again after it changed.
    void Refresh();

    int GetRowCount() const { return m_model.rowCount(); }
    int GetCurrentRow() const { return m_currentRow; }
    void SetCurrentRow(int row);

private:
    std::unique_ptr<NDataModelDataSet> m_data;
    CDataSetTableModel m_model;
    int m_currentRow = -1;
};
