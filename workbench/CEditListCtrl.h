#pragma once
#include <QTableWidget>

// The report list of the panes: titled columns of given widths, rows kept in
// the order they are inserted, cells read and written by (row, column),
// optional in-place editing, and a signal when the user chooses a row
// (double click or Enter).
class CEditListCtrl : public QTableWidget
{
    Q_OBJECT
public:
    explicit CEditListCtrl(int id, QWidget* parent = nullptr);

    void InsertColumn(int column, const QString& title, int width);
    // Appends a row; missing cells stay empty. Returns its index.
    int InsertRow(const QStringList& cells);
    QString GetItemText(int row, int column) const;
    void SetItemText(int row, int column, const QString& text);
    int GetItemCount() const { return rowCount(); }
    void DeleteItem(int row) { removeRow(row); }
    void DeleteAllItems() { setRowCount(0); }
    // Selected rows, ascending.
    QList<int> SelectedRows() const;
    void SetEditable(bool editable);

signals:
    void rowChosen(int row);
};
