#include "CDialog_JaveList.h"

#include "CAccessSysData_MacrosTable.h"
#include "CGridCtrlForDataSet.h"
#include "CSysMacrosTable.h"
#include "UIFunction.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

namespace {

QPushButton* Button(QWidget* parent, const char* id, const QString& text)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(id));
    button->setAutoDefault(false);
    return button;
}

} // namespace

CDialog_JaveList::CDialog_JaveList(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("1016"));
    setWindowTitle(QStringLiteral("请选择要测试的脚本"));
    m_grid = new CGridCtrlForDataSet(this);
    m_grid->setObjectName(QStringLiteral("1005"));
    m_search = new QLineEdit(this);
    m_search->setObjectName(QStringLiteral("1023"));
    QPushButton* search = Button(this, "1024", QStringLiteral("搜索"));
    QPushButton* current = Button(this, "1", QStringLiteral("测试当前脚本"));
    QPushButton* all = Button(this, "1006", QStringLiteral("测试所有脚本"));
    connect(search, &QPushButton::clicked, this, &CDialog_JaveList::OnSearch);
    connect(current, &QPushButton::clicked, this, &CDialog_JaveList::OnTestCurrent);
    connect(all, &QPushButton::clicked, this, &CDialog_JaveList::OnTestAll);
    connect(m_search, &QLineEdit::returnPressed, this, &CDialog_JaveList::OnSearch);

    auto* layout = new QGridLayout(this);
    layout->addWidget(m_search, 0, 0);
    layout->addWidget(search, 0, 1);
    layout->addWidget(m_grid, 1, 0, 1, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(current);
    buttons->addWidget(all);
    layout->addLayout(buttons, 2, 0, 1, 2);
    resize(480, 560);

    m_grid->SetColumns({{CSysMacrosTable::CFieldInfo::key_ch, QStringLiteral("脚本名称"), 400}});
    m_grid->SetDataSet(CAccessSysData_MacrosTable::GetDataSet());
}

void CDialog_JaveList::OnTestCurrent()
{
    const int row = m_grid->GetCurrentRow();
    if (row < 0 || row >= m_grid->GetRowCount()) {
        UIFunction::QXMessageBox(kChooseFirst, QString(), UIFunction::MB_OK);
        return;
    }
    m_chosen = m_grid->DataSet()->GetAsString(CSysMacrosTable::CFieldInfo::key_ch, row + 1);
    accept();
}

void CDialog_JaveList::OnTestAll()
{
    m_chosen.clear();
    accept();
}

void CDialog_JaveList::OnSearch()
{
    const NDataModelDataSet* data = m_grid->DataSet();
    const int last = data ? data->GetRowCount() : 0;
    const QString text = m_search->text();
    // From the row after the current one to the end; the rows before the
    // start are not searched again.
    int row = m_grid->GetCurrentRow() + 2;
    if (row < 1 || row > last)
        row = 1;
    for (; row <= last; ++row) {
        if (data->GetAsString(CSysMacrosTable::CFieldInfo::key_ch, row).contains(text, Qt::CaseSensitive))
            break;
    }
    if (row > last)
        UIFunction::QXMessageBox(kNotFound, QString(), UIFunction::MB_OK);
    m_grid->SetCurrentRow(row - 1);
}
