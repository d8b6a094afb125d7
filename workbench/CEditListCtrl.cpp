#include "CEditListCtrl.h"

#include <QHeaderView>

CEditListCtrl::CEditListCtrl(int id, QWidget* parent)
    : QTableWidget(parent)
{
    setObjectName(QString::number(id));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setShowGrid(true);
    setSortingEnabled(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    SetEditable(false);
    connect(this, &QTableWidget::activated, this, [this](const QModelIndex& index) { emit rowChosen(index.row()); });
}

void CEditListCtrl::SetEditable(bool editable)
{
    setEditTriggers(editable ? QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                                   | QAbstractItemView::AnyKeyPressed
                             : QAbstractItemView::NoEditTriggers);
}

void CEditListCtrl::InsertColumn(int column, const QString& title, int width)
{
    insertColumn(column);
    setHorizontalHeaderItem(column, new QTableWidgetItem(title));
    setColumnWidth(column, width);
}

int CEditListCtrl::InsertRow(const QStringList& cells)
{
    const int row = rowCount();
    insertRow(row);
    for (int column = 0; column < columnCount(); ++column)
        setItem(row, column, new QTableWidgetItem(cells.value(column)));
    return row;
}

QString CEditListCtrl::GetItemText(int row, int column) const
{
    const QTableWidgetItem* cell = item(row, column);
    return cell ? cell->text() : QString();
}

void CEditListCtrl::SetItemText(int row, int column, const QString& text)
{
    if (QTableWidgetItem* cell = item(row, column))
        cell->setText(text);
    else if (row >= 0 && row < rowCount() && column >= 0 && column < columnCount())
        setItem(row, column, new QTableWidgetItem(text));
}

QList<int> CEditListCtrl::SelectedRows() const
{
    QList<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}
