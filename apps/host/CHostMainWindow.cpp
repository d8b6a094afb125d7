#include "CHostMainWindow.h"

#include "CVelmoraLibrary.h"
#include "UIFunction.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QStatusBar>
#include <QTableWidget>
#include <QThread>
#include <QToolBar>

namespace {

QAction* AddAction(QMenu* menu, const QString& text, const char* id)
{
    QAction* action = menu->addAction(text);
    action->setObjectName(QString::fromLatin1(id));
    return action;
}

} // namespace

CHostMainWindow::CHostMainWindow(CVelmoraLibrary& library, QWidget* parent)
    : QMainWindow(parent), m_library(library)
{
    setObjectName(QStringLiteral("hostMainWindow"));
    setWindowTitle(QStringLiteral("钢筋工程量计算 - 示例工程"));
    BuildMenus();
    BuildTable();
    m_libraryStatus = new QLabel(this);
    m_libraryStatus->setObjectName(QStringLiteral("libraryStatus"));
    const bool partly = m_library.HasWorkbench() || m_library.HasScriptTest();
    m_libraryStatus->setText(m_library.Error().isEmpty()
                                 ? QStringLiteral("脚本工作台库: %1").arg(QFileInfo(m_library.Path()).fileName())
                             : partly ? QStringLiteral("脚本工作台库缺少入口")
                                      : QStringLiteral("脚本工作台库未加载"));
    m_libraryStatus->setToolTip(m_library.Error().isEmpty() ? m_library.Path() : m_library.Error());
    m_summary = new QLabel(QStringLiteral("选择\"计算\"计算示例工程"), this);
    m_summary->setObjectName(QStringLiteral("summary"));
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("computeProgress"));
    m_progress->setMaximumWidth(240);
    m_progress->hide();
    statusBar()->addWidget(m_summary, 1);
    statusBar()->addPermanentWidget(m_progress);
    statusBar()->addPermanentWidget(m_libraryStatus);
    resize(1100, 640);
}

CHostMainWindow::~CHostMainWindow()
{
    StopWorker();
    delete m_worker;
}

void CHostMainWindow::BuildMenus()
{
    QMenu* project = menuBar()->addMenu(QStringLiteral("工程"));
    m_computeAction = AddAction(project, QStringLiteral("计算"), "actionCompute");
    project->addSeparator();
    QAction* exit = AddAction(project, QStringLiteral("退出"), "actionExit");
    QMenu* scripts = menuBar()->addMenu(QStringLiteral("脚本"));
    QAction* workbench = AddAction(scripts, QStringLiteral("脚本调试工具"), "actionWorkbench");
    QAction* test = AddAction(scripts, QStringLiteral("脚本测试"), "actionScriptTest");
    workbench->setEnabled(m_library.HasWorkbench());
    test->setEnabled(m_library.HasScriptTest());
    connect(m_computeAction, &QAction::triggered, this, &CHostMainWindow::Compute);
    connect(exit, &QAction::triggered, this, &QWidget::close);
    connect(workbench, &QAction::triggered, this, &CHostMainWindow::OpenWorkbench);
    connect(test, &QAction::triggered, this, &CHostMainWindow::RunScriptTest);
    QToolBar* bar = addToolBar(QStringLiteral("工具栏"));
    bar->setObjectName(QStringLiteral("mainToolBar"));
    bar->addActions({m_computeAction, workbench, test});
}

void CHostMainWindow::BuildTable()
{
    m_table = new QTableWidget(0, 6, this);
    m_table->setObjectName(QStringLiteral("resultTable"));
    m_table->setHorizontalHeaderLabels({QStringLiteral("构件"), QStringLiteral("类型"), QStringLiteral("脚本"),
                                        QStringLiteral("计算结果"), QStringLiteral("钢筋重量(kg)"),
                                        QStringLiteral("说明")});
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 6);
    const int widths[] = {70, 50, 250, 280, 110};
    for (int column = 0; column < 5; ++column)
        m_table->setColumnWidth(column, widths[column]);
    setCentralWidget(m_table);
}

void CHostMainWindow::ReportLibrary()
{
    if (!m_library.Error().isEmpty())
        UIFunction::QXMessageBox(m_library.Error(), QString(), UIFunction::MB_OK);
}

void CHostMainWindow::OpenWorkbench()
{
    if (!m_library.OpenWorkbench())
        UIFunction::QXMessageBox(QStringLiteral("脚本调试工具无法打开"), QString(), UIFunction::MB_OK);
}

void CHostMainWindow::RunScriptTest()
{
    if (m_library.RunScriptTest() < 0)
        UIFunction::QXMessageBox(QStringLiteral("脚本测试无法打开"), QString(), UIFunction::MB_OK);
}

void CHostMainWindow::Compute()
{
    if (m_worker)
        return;
    m_stop = false;
    m_computeAction->setEnabled(false);
    m_progress->setRange(0, 0);
    m_progress->show();
    m_summary->setText(QStringLiteral("正在计算..."));
    m_worker = QThread::create([this] {
        // The service, its script engine and its database connection live
        // and die on this thread.
        CProjectCalcService service;
        Outcome outcome;
        outcome.ok = service.Run(
            [this](int done, int total) {
                QMetaObject::invokeMethod(this, [this, done, total] { ShowProgress(done, total); },
                                          Qt::QueuedConnection);
            },
            &m_stop);
        outcome.error = service.Error();
        outcome.results = service.Results();
        outcome.totalWeight = service.TotalWeight();
        outcome.members = service.MemberCount();
        outcome.failures = service.FailureCount();
        outcome.stopped = service.Stopped();
        m_outcome = outcome;
    });
    connect(m_worker, &QThread::finished, this, &CHostMainWindow::ShowOutcome);
    m_worker->start();
}

void CHostMainWindow::ShowProgress(int done, int total)
{
    m_progress->setRange(0, total);
    m_progress->setValue(done);
}

void CHostMainWindow::ShowOutcome()
{
    m_worker->deleteLater();
    m_worker = nullptr;
    m_progress->hide();
    m_computeAction->setEnabled(true);
    if (!m_outcome.ok) {
        m_summary->setText(QStringLiteral("计算失败"));
        UIFunction::QXMessageBox(QStringLiteral("计算失败:") + m_outcome.error, QString(), UIFunction::MB_OK);
        emit computeFinished();
        return;
    }
    m_table->setRowCount(0);
    for (const CProjectCalcService::Result& result : m_outcome.results) {
        const int row = m_table->rowCount();
        m_table->insertRow(row);
        const QString weight = result.weight != 0 ? QString::number(result.weight, 'f', 2) : QString();
        const QStringList cells = {result.member, result.kind, result.script, result.quantities, weight,
                                   result.error};
        for (int column = 0; column < cells.size(); ++column)
            m_table->setItem(row, column, new QTableWidgetItem(cells.at(column)));
    }
    const int total = m_table->rowCount();
    m_table->insertRow(total);
    m_table->setItem(total, 0, new QTableWidgetItem(QStringLiteral("合计")));
    m_table->setItem(total, 4, new QTableWidgetItem(QString::number(m_outcome.totalWeight, 'f', 2)));
    QFont bold = m_table->font();
    bold.setBold(true);
    m_table->item(total, 0)->setFont(bold);
    m_table->item(total, 4)->setFont(bold);
    m_summary->setText(QStringLiteral("%1个构件, 钢筋总重%2kg, 出错%3处%4")
                           .arg(m_outcome.members)
                           .arg(m_outcome.totalWeight, 0, 'f', 2)
                           .arg(m_outcome.failures)
                           .arg(m_outcome.stopped ? QStringLiteral(" (已中止)") : QString()));
    emit computeFinished();
}

void CHostMainWindow::StopWorker()
{
    if (!m_worker)
        return;
    m_stop = true;
    m_worker->wait();
}

void CHostMainWindow::closeEvent(QCloseEvent* event)
{
    StopWorker();
    m_library.ReleaseWorkbench();
    event->accept();
    emit closed();
}

bool CHostMainWindow::event(QEvent* event)
{
    if (event->type() == QEvent::Paint && !m_painted) {
        m_painted = true;
        emit firstPainted();
    }
    return QMainWindow::event(event);
}
