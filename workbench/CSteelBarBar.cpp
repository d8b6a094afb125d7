#include "CSteelBarBar.h"

#include "CEditListCtrl.h"
#include "CTestCaseStore.h"

CSteelBarBar::CSteelBarBar(QWidget* parent)
    : CCoolBar(QStringLiteral("输入参数"), parent, QSize(100, 200), 123)
    , m_list(new CEditListCtrl(1001, this))
{
    m_list->InsertColumn(0, QStringLiteral("序号"), 50);
    m_list->InsertColumn(1, QStringLiteral("脚本名字"), 700);
    m_list->InsertColumn(2, QStringLiteral("钢筋类别"), 300);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_list, &CEditListCtrl::rowChosen, this, &CSteelBarBar::ChooseRow);
    setWidget(m_list);
    Load();
}

void CSteelBarBar::Load()
{
    m_list->DeleteAllItems();
    CArray<QString> lines;
    if (!CTestCaseStore::ReadLastRunScripts(lines))
        return; // no run yet: an empty list, no message
    for (const QString& line : lines) {
        const QStringList pieces = line.split(QLatin1Char(':'));
        if (pieces.size() < 2)
            continue;
        const QString number = QString::number(m_list->GetItemCount() + 1);
        m_list->InsertRow({number, pieces.first(), pieces.mid(1).join(QString())});
    }
}

QString CSteelBarBar::GetCellText(int row, int column) const
{
    return m_list->GetItemText(row, column);
}

void CSteelBarBar::Clear()
{
    m_list->DeleteAllItems();
}

void CSteelBarBar::ChooseRow(int row)
{
    if (row < 0 || row >= m_list->GetItemCount())
        return;
    m_lastChosen = m_list->GetItemText(row, 1);
    emit scriptChosen(m_lastChosen);
}
