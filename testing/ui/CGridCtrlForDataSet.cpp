#include "CGridCtrlForDataSet.h"

#include "NDataModelDataSet.h"

#include <QHeaderView>

CGridCtrlForDataSet::CGridCtrlForDataSet(QWidget* parent) : QTableView(parent)
{
    setModel(&m_model);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    // Fixed row heights: the view never measures rows, so 100,000 of them
    // scroll as fast as ten.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid())
                    m_currentRow = current.row();
            });
}

CGridCtrlForDataSet::~CGridCtrlForDataSet()
{
    // The model must let go of the data set before it is destroyed.
    m_model.SetDataSet(nullptr);
}

void CGridCtrlForDataSet::SetColumns(const QList<CDataSetTableModel::Column>& columns)
{
    m_model.SetColumns(columns);
    for (int i = 0; i < columns.size(); ++i)
        setColumnWidth(i, columns.at(i).width);
}

void CGridCtrlForDataSet::SetDataSet(std::unique_ptr<NDataModelDataSet> data)
{
    m_model.SetDataSet(data.get());
    m_data = std::move(data);
    m_currentRow = -1;
    Refresh();
}

void CGridCtrlForDataSet::SetEditable(bool editable)
{
    m_model.SetEditable(editable);
    setEditTriggers(editable ? QAbstractItemView::AllEditTriggers : QAbstractItemView::NoEditTriggers);
}

void CGridCtrlForDataSet::Refresh()
{
    const int keep = m_currentRow;
    m_model.Refresh();
    for (int i = 0; i < m_model.Columns().size(); ++i)
        setColumnWidth(i, m_model.Columns().at(i).width);
    SetCurrentRow(keep);
}

void CGridCtrlForDataSet::SetCurrentRow(int row)
{
    if (row >= 0 && row < m_model.rowCount()) {
        const QModelIndex index = m_model.index(row, 0);
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        scrollTo(index);
    } else {
        selectionModel()->clearSelection();
        selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
    }
    m_currentRow = row;
}
