#include "CDataSetTableModel.h"

#include "NDataModelDataSet.h"

CDataSetTableModel::CDataSetTableModel(QObject* parent) : QAbstractTableModel(parent) {}

void CDataSetTableModel::SetColumns(const QList<Column>& columns)
{
    beginResetModel();
    m_columns = columns;
    ResolveFields();
    endResetModel();
}

void CDataSetTableModel::SetDataSet(NDataModelDataSet* data)
{
    beginResetModel();
    m_data = data;
    ResolveFields();
    endResetModel();
}

void CDataSetTableModel::Refresh()
{
    beginResetModel();
    ResolveFields();
    endResetModel();
}

void CDataSetTableModel::ResolveFields()
{
    m_fieldColumns.clear();
    for (const Column& column : m_columns)
        m_fieldColumns.append(m_data ? m_data->GetFieldIndex(column.field) : -1);
}

int CDataSetTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !m_data ? 0 : m_data->GetRowCount();
}

int CDataSetTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant CDataSetTableModel::data(const QModelIndex& index, int role) const
{
    if (!m_data || !index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    return m_data->GetAsString(m_fieldColumns.value(index.column(), -1), index.row() + 1);
}

QVariant CDataSetTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    return section < m_columns.size() ? QVariant(m_columns.at(section).title) : QVariant();
}

Qt::ItemFlags CDataSetTableModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (m_editable && index.isValid())
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool CDataSetTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!m_data || !index.isValid() || role != Qt::EditRole)
        return false;
    if (!m_data->SetAsString(m_fieldColumns.value(index.column(), -1), index.row() + 1, value.toString()))
        return false;
    emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
    return true;
}

bool CDataSetTableModel::insertRows(int row, int count, const QModelIndex& parent)
{
    if (!m_data || parent.isValid() || row < 0 || row > rowCount() || count < 1)
        return false;
    beginInsertRows(parent, row, row + count - 1);
    for (int i = 0; i < count; ++i)
        m_data->InsertRow(row + 1 + i);
    endInsertRows();
    return true;
}

bool CDataSetTableModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (!m_data || parent.isValid() || row < 0 || count < 1 || row + count > rowCount())
        return false;
    beginRemoveRows(parent, row, row + count - 1);
    for (int i = 0; i < count; ++i)
        m_data->DeleteRow(row + 1);
    endRemoveRows();
    return true;
}
