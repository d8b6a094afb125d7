#include "CDlgMacroList.h"

#include "CUIServices.h"
#include "UIFunction.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const QString kXmlFilter = QStringLiteral("XML FILES (*.xml)|*.xml|All Files (*.*)|*.*||");

} // namespace

CDlgMacroList::CDlgMacroList(QWidget* parent)
    : QDialog(parent)
    , m_list(new QTreeWidget(this))
    , m_popup(new QMenu(QStringLiteral("编辑"), this))
{
    setObjectName(QString::number(IDD));
    setWindowTitle(QStringLiteral("宏列表"));
    m_list->setObjectName(QString::number(IDC_LIST));
    m_list->setHeaderLabels({QStringLiteral("宏名"), QStringLiteral("描述")});
    m_list->setRootIsDecorated(false);
    m_list->setColumnWidth(0, 240);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_popup->setObjectName(QStringLiteral("129"));
    const std::pair<int, QString> items[] = {
        {ID_ADD, QStringLiteral("添加")}, {ID_DELETE, QStringLiteral("删除")}, {ID_MODIFY, QStringLiteral("修改")}};
    for (const auto& [id, text] : items) {
        QAction* action = m_popup->addAction(text, this, [this, id = id] { OnCommand(id); });
        action->setObjectName(QString::number(id));
        action->setData(id);
    }

    auto* buttons = new QHBoxLayout;
    const std::pair<int, QString> keys[] = {{ID_OPEN, QStringLiteral("打开")},
                                            {ID_DELETE, QStringLiteral("删除")},
                                            {ID_EXPORT, QStringLiteral("从数据库中导出宏信息")}};
    for (const auto& [id, text] : keys) {
        auto* button = new QPushButton(text, this);
        button->setObjectName(QString::number(id));
        button->setAutoDefault(id == ID_OPEN);
        connect(button, &QPushButton::clicked, this, [this, id = id] { OnCommand(id); });
        buttons->addWidget(button);
    }
    buttons->addStretch();
    auto* close = new QPushButton(QStringLiteral("关闭"), this);
    close->setObjectName(QStringLiteral("2"));
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    buttons->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    layout->addLayout(buttons);
    resize(520, 400);

    connect(m_list, &QTreeWidget::itemDoubleClicked, this, [this] { OnCommand(ID_OPEN); });
    connect(m_list, &QWidget::customContextMenuRequested, this, &CDlgMacroList::ShowPopup);
    Refill();
}

bool CDlgMacroList::OnCommand(int id)
{
    switch (id) {
    case ID_OPEN:
        return OpenCurrent();
    case ID_ADD:
        return AddMacro();
    case ID_DELETE: {
        const int row = CurrentRow();
        const bool done = m_service.Delete(row);
        if (done) {
            ShowList();
            SetCurrentRow(qMin(row, m_service.Macros().GetSize() - 1));
        }
        return done;
    }
    case ID_MODIFY:
        return ModifyCurrent();
    case ID_EXPORT:
        return ExportList();
    default:
        return false;
    }
}

void CDlgMacroList::Refill()
{
    m_service.Reload();
    ShowList();
}

void CDlgMacroList::ShowList()
{
    m_list->clear();
    for (const CMacro& macro : m_service.Macros())
        m_list->addTopLevelItem(new QTreeWidgetItem(QStringList{macro.GetName(), macro.GetDescription()}));
    SetCurrentRow(0);
}

int CDlgMacroList::CurrentRow() const
{
    return m_list->currentItem() ? m_list->indexOfTopLevelItem(m_list->currentItem()) : -1;
}

void CDlgMacroList::SetCurrentRow(int row)
{
    m_list->setCurrentItem(m_list->topLevelItem(row));
}

bool CDlgMacroList::OpenCurrent()
{
    CMacro macro;
    if (!m_service.Open(CurrentRow(), macro))
        return false;
    if (m_opener)
        m_opener(macro);
    accept();
    return true;
}

bool CDlgMacroList::AddMacro()
{
    CMacro facts;
    if (!m_askFacts || !m_askFacts(facts) || !m_service.Add(facts))
        return false;
    ShowList();
    SetCurrentRow(m_service.Macros().GetSize() - 1);
    return true;
}

bool CDlgMacroList::ModifyCurrent()
{
    const int row = CurrentRow();
    if (row < 0)
        return false;
    CMacro facts = m_service.Macros()[row];
    if (!m_askFacts || !m_askFacts(facts) || !m_service.Modify(row, facts))
        return false;
    ShowList();
    SetCurrentRow(row);
    return true;
}

bool CDlgMacroList::ExportList()
{
    const QString path =
        CUIServices::Current().SaveFileName(QStringLiteral("从数据库中导出宏信息"), kXmlFilter, QString());
    if (path.isEmpty() || !m_service.ExportXml(path))
        return false;
    UIFunction::QXMessageBox(QStringLiteral("已导出") + QString::number(m_service.Macros().GetSize())
                             + QStringLiteral("个宏到") + path);
    return true;
}

void CDlgMacroList::ShowPopup(const QPoint& at)
{
    m_popup->popup(m_list->viewport()->mapToGlobal(at));
}
