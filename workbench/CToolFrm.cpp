#include "CToolFrm.h"

#include "CEditCtr.h"
#include "CEditListCtrl.h"
#include "CResultBar.h"
#include "CScriptBar.h"
#include "CSteelBarBar.h"
#include "CToolIcons.h"

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

namespace {

const QMap<int, QString>& StringTable()
{
    static const QMap<int, QString> table = {
        {32778, QStringLiteral("计算脚本\n执行")},
        {32777, QStringLiteral("打开设置文件\n打开")},
        {32776, QStringLiteral("保存设置文件\n保存")},
        {32779, QStringLiteral("新建设置文件\n新建")},
        {32786, QStringLiteral("执行脚本\n保存上一次执行的完整脚本")},
        {32787, QStringLiteral("保存信息到Access数据库\r\n保存信息到Access数据库")},
        {32775, QStringLiteral("设置\n设置")},
        {32783, QStringLiteral("外部调用文件\n外部调用")},
        {32788, QStringLiteral("从数据库中导出宏信息\n从数据库中导出宏信息")},
    };
    return table;
}

} // namespace

CToolFrm::CToolFrm(CCommandTarget* owner, QWidget* parent)
    : QMainWindow(parent)
    , m_owner(owner)
{
    setObjectName(QStringLiteral("ToolFrame"));
    setWindowFlags(Qt::Widget);
    setDockOptions(QMainWindow::AnimatedDocks | QMainWindow::AllowNestedDocks);
    CreateToolBar();
    CreateMenus();
    CreatePanes();
    CreateStatusBar();
    Editor()->SetStatusTarget(this);
    SetStatusLine(0, 0);
}

CEditCtr* CToolFrm::Editor() const
{
    return m_scriptBar->Editor();
}

QString CToolFrm::CommandText(int id)
{
    return StringTable().value(id);
}

QAction* CToolFrm::CommandAction(int id, const QString& text)
{
    auto* action = new QAction(text, this);
    action->setObjectName(QString::number(id));
    action->setData(id);
    connect(action, &QAction::triggered, this, [this, id] { OnCommand(id); });
    return action;
}

void CToolFrm::CreateToolBar()
{
    m_toolBar = addToolBar(QString());
    m_toolBar->setObjectName(QStringLiteral("130"));
    m_toolBar->setIconSize(QSize(17, 16));
    m_toolBar->setAllowedAreas(Qt::AllToolBarAreas);
    for (int id : {32778, 32777, 32923}) {
        const QStringList parts = CommandText(id).split(QLatin1Char('\n'));
        QAction* action = CommandAction(id, parts.value(1));
        action->setIcon(CToolIcons::Icon(id));
        action->setStatusTip(parts.value(0).trimmed());
        action->setToolTip(parts.value(1));
        m_toolBar->addAction(action);
    }
    addToolBar(Qt::TopToolBarArea, m_toolBar);
}

void CToolFrm::CreateMenus()
{
    QMenu* script = menuBar()->addMenu(QStringLiteral("脚本(&S)"));
    const struct { int id; QKeySequence keys; } items[] = {
        {32779, QKeySequence::New}, {32776, QKeySequence::Save}, {32778, QKeySequence(Qt::Key_F5)},
        {32787, {}}, {32786, {}}, {32775, {}}};
    for (const auto& item : items) {
        QAction* action = CommandAction(item.id, CommandText(item.id).section(QLatin1Char('\n'), 0, 0).trimmed());
        action->setShortcut(item.keys);
        action->setShortcutContext(Qt::WindowShortcut);
        script->addAction(action);
    }
    QMenu* help = menuBar()->addMenu(QStringLiteral("帮助(&H)"));
    help->addAction(CommandAction(16, QStringLiteral("关于 Velmora(&A)...")));
}

void CToolFrm::CreatePanes()
{
    m_steelBar = new CSteelBarBar(this);
    m_resultBar = new CResultBar(this);
    m_scriptBar = new CScriptBar(this);
    // The program's docking order: parameters at the bottom, the script list
    // on the right, the script pane on the right and at once again at the
    // bottom, where it ends above the parameters.
    addDockWidget(Qt::BottomDockWidgetArea, m_resultBar);
    addDockWidget(Qt::RightDockWidgetArea, m_steelBar);
    addDockWidget(Qt::RightDockWidgetArea, m_scriptBar);
    addDockWidget(Qt::BottomDockWidgetArea, m_scriptBar, Qt::Vertical);
    splitDockWidget(m_scriptBar, m_resultBar, Qt::Vertical);
    m_resultBar->List()->connect(m_resultBar->List(), &QWidget::customContextMenuRequested, this,
                                 [this](const QPoint& at) { ShowPopup(135, m_resultBar->List(), at); });
    m_steelBar->List()->connect(m_steelBar->List(), &QWidget::customContextMenuRequested, this,
                                [this](const QPoint& at) { ShowPopup(129, m_steelBar->List(), at); });
}

void CToolFrm::CreateStatusBar()
{
    QStatusBar* bar = statusBar();
    bar->setObjectName(QStringLiteral("StatusBar"));
    bar->setStyleSheet(QStringLiteral("QStatusBar::item { border: none; }"));
    m_linePane = new QLabel(bar);
    m_linePane->setObjectName(QStringLiteral("32924"));
    m_linePane->setContentsMargins(0, 0, 0, 0);
    bar->addWidget(m_linePane);
    const std::pair<int, const char*> indicators[] = {{59137, "CAP"}, {59138, "NUM"}, {59139, "SCRL"}};
    for (const auto& [id, text] : indicators) {
        auto* label = new QLabel(QString::fromLatin1(text), bar);
        label->setObjectName(QString::number(id));
        label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        bar->addPermanentWidget(label);
    }
}

void CToolFrm::SetStatusLine(int line, int count)
{
    const QString text = QStringLiteral("第%1行,共%2行").arg(line).arg(count);
    m_linePane->setFixedWidth(m_linePane->fontMetrics().horizontalAdvance(text));
    m_linePane->setText(text);
    statusBar()->update();
}

qintptr CToolFrm::SendMessage(unsigned message, quintptr wparam, qintptr lparam)
{
    if (message != WindowMessages::kLinePosition)
        return 0;
    SetStatusLine(static_cast<int>(wparam), static_cast<int>(lparam));
    return 1;
}

bool CToolFrm::OnCommand(int id)
{
    // The workbench first; the frame itself handles nothing further.
    return m_owner && m_owner->OnCommand(id);
}

QMenu* CToolFrm::CreatePopupMenu(int menuId, QWidget* parent)
{
    auto* menu = new QMenu(QStringLiteral("编辑"), parent);
    menu->setObjectName(QString::number(menuId));
    QList<std::pair<int, const char16_t*>> items = {{32772, u"添加"}, {32773, u"删除"}, {32789, u"修改"}};
    if (menuId == 135)
        items = {{32780, u"添加"},     {32781, u"删除"},     {32782, u"修改"},
                 {32789, u"导入参数"}, {32791, u"导出参数"}, {32793, u"清除"}};
    for (const auto& [id, text] : items)
        menu->addAction(QString::fromUtf16(text))->setData(id);
    return menu;
}

void CToolFrm::ShowPopup(int menuId, QWidget* list, const QPoint& at)
{
    QMenu* menu = CreatePopupMenu(menuId, this);
    QAction* chosen = menu->exec(list->mapToGlobal(at));
    const int id = chosen ? chosen->data().toInt() : 0;
    delete menu;
    if (id)
        OnCommand(id);
}
