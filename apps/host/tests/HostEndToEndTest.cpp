// The host as a user meets it, on real windows (xcb under Xvfb): the window
// loads the built libvelmora.so with dlopen, computes the sample project, and
// opens the workbench and the script test of the library. Each step leaves a
// screenshot under build/screenshots/.
#include "CHostMainWindow.h"
#include "CRecordingUIService.h"
#include "CSampleDataSeeder.h"
#include "CTestCaseStore.h"
#include "CUIServices.h"
#include "CDBFactory.h"
#include "CDataServiceAbsolute.h"
#include "CVelmoraLibrary.h"
#include "CodePage.h"
#include "HostContext.h"
#include "NativePath.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <Qsci/qsciscintilla.h>
#include <QScreen>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

QList<QWidget*> WorkbenchWindows()
{
    QList<QWidget*> windows;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == "102" && window->isVisible())
            windows.append(window);
    return windows;
}

QStringList Column(QTableWidget* list, int column)
{
    QStringList cells;
    for (int row = 0; row < list->rowCount(); ++row)
        cells.append(list->item(row, column) ? list->item(row, column)->text() : QString());
    return cells;
}

QList<QVariantList> Rows(const QString& sql, const QVariantList& params)
{
    QList<QVariantList> rows;
    CDBFactory::GetSingle(CDBFactory::kSystemDatabase)->Query(sql, params, rows);
    return rows;
}

} // namespace

class HostEndToEndTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_home.isValid());
        // The library reads its host context from the environment, as the host's does.
        qputenv("VELMORA_HOME", QFile::encodeName(m_home.path()));
        HostContext::Instance().LoadFromEnvironment();
        ASSERT_TRUE(HostContext::Instance().EnsureFolders());
        CUIServices::Install(m_ui);
        CSampleDataSeeder seeder;
        ASSERT_TRUE(seeder.SeedIfNeeded()) << seeder.Error().toStdString();
        QDir().mkpath(QStringLiteral(VELMORA_SCREENSHOT_DIR));
    }
    void TearDown() override { CUIServices::Install(nullptr); }

    // The whole screen, so that windows of the library are in the picture too.
    static void Shot(const QString& name)
    {
        QCoreApplication::processEvents();
        QTest::qWait(200);
        QScreen* display = QGuiApplication::primaryScreen();
        const QRect all = display->geometry();
        const QPixmap screen = display->grabWindow(0, all.x(), all.y(), all.width(), all.height());
        EXPECT_TRUE(screen.save(QStringLiteral(VELMORA_SCREENSHOT_DIR "/%1.png").arg(name))) << name.toStdString();
    }
    static QAction* Action(QWidget& window, const char* id) { return window.findChild<QAction*>(id); }

    // Answers the library's modal windows as a user would: message boxes are
    // read and closed, "宏设置" gets a macro name and OK.
    void WatchModals()
    {
        m_watcher.setInterval(100);
        QObject::connect(&m_watcher, &QTimer::timeout, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal || m_answering)
                return;
            m_answering = true;
            if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                m_boxes.append(box->text());
                Shot(QStringLiteral("%1-message").arg(m_boxes.size() + 3, 2, 10, QLatin1Char('0')));
                box->accept();
            } else if (modal->objectName() == "1016") {
                Shot("06-script-test");
                modal->findChild<QAbstractButton*>("1006")->click();
            } else if (modal->objectName() == "139") {
                modal->findChild<QLineEdit*>("1017")->setText(kMacroName);
                Shot("05-macro-dialog");
                modal->findChild<QAbstractButton*>("1")->click();
            }
            m_answering = false;
        });
        m_watcher.start();
    }

    static inline const QString kMacroName = "锚固长度(端到端)";
    QTimer m_watcher;
    bool m_answering = false;
    QStringList m_boxes;

    QTemporaryDir m_home;
    std::shared_ptr<CRecordingUIService> m_ui = std::make_shared<CRecordingUIService>();
};

TEST_F(HostEndToEndTest, ComputeThenWorkbenchThenScriptTest)
{
    CVelmoraLibrary library;
    ASSERT_TRUE(library.Load(QStringLiteral(VELMORA_E2E_LIBRARY))) << library.Error().toStdString();
    CHostMainWindow window(library);
    window.move(0, 0);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    // 1. "计算": the run record of the script list.
    QSignalSpy finished(&window, &CHostMainWindow::computeFinished);
    Action(window, "actionCompute")->trigger();
    ASSERT_TRUE(finished.wait(60000)); // what it computes and records: CProjectCalcServiceTest
    CArray<QString> lastRun;
    ASSERT_TRUE(CTestCaseStore::ReadLastRunScripts(lastRun));
    Shot("01-host-computed");
    EXPECT_TRUE(window.grab().save(QStringLiteral(VELMORA_SCREENSHOT_DIR "/host-main-window.png")));

    // 2. The workbench, whose script list is the run just made (one window however
    // often it is opened, and kept on release, is the library entry's own test).
    WatchModals();
    Action(window, "actionWorkbench")->trigger();
    ASSERT_EQ(WorkbenchWindows().size(), 1);
    QWidget* workbench = WorkbenchWindows().first();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(workbench));
    auto* scripts = workbench->findChild<QTableWidget*>("1001");
    auto* params = workbench->findChild<QTableWidget*>("1005");
    auto* editor = workbench->findChild<QsciScintilla*>("1003");
    ASSERT_TRUE(scripts && params && editor);
    QStringList lastRunNames;
    for (const QString& line : lastRun)
        lastRunNames.append(line.section(QLatin1Char(':'), 0, 0));
    EXPECT_EQ(Column(scripts, 1), lastRunNames);
    Shot("02-workbench");

    // 3. Choosing a row loads and runs the script; alone it lacks its inputs.
    const QString key = "通用脚本\\受拉钢筋锚固长度.js";
    const int row = int(Column(scripts, 1).indexOf(key));
    ASSERT_GE(row, 0);
    scripts->setFocus();
    scripts->setCurrentCell(row, 1);
    QTest::keyClick(scripts, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(m_boxes.size(), 1, 10000);
    EXPECT_TRUE(m_boxes.first().startsWith("Error: ")) << m_boxes.first().toStdString();
    EXPECT_TRUE(editor->text().contains("var la = "));

    // 4. With its inputs declared and its outputs listed, the run fills the pane.
    editor->setText("var d = 25, fy = 360, ft = 1.43, alpha = 0.14, zetaA = 1.0;\r\n" + editor->text());
    params->setRowCount(2);
    params->setItem(0, 0, new QTableWidgetItem("lab"));
    params->setItem(1, 0, new QTableWidgetItem("la"));
    Action(*workbench, "32778")->trigger();
    EXPECT_EQ(m_boxes.size(), 1) << m_boxes.join('\n').toStdString();
    EXPECT_EQ(Column(params, 0) + Column(params, 1), (QStringList{"lab", "la", "882", "882"}));
    Shot("03-workbench-run");

    // 5. Saved to the system database under the name given in "宏设置".
    Action(*workbench, "32787")->trigger();
    const QList<QVariantList> macros = Rows("select ID from SC_MACRO_DEFINE where NAME = ?", {kMacroName});
    ASSERT_EQ(macros.size(), 1);
    EXPECT_EQ(Rows("select NAME, VALUE from SC_MACROPARAM where MACROID = ? order by ID", {macros.first().value(0)}),
              (QList<QVariantList>{{"lab", "882"}, {"la", "882"}}));

    // 6. The script test, "测试所有脚本", into one result file (that every sample
    // case passes is the command-line runner's test).
    Action(window, "actionScriptTest")->trigger();
    m_watcher.stop();
    EXPECT_EQ(m_boxes.size(), 1) << m_boxes.join('\n').toStdString();
    const QString drive = HostContext::Instance().DriveRoot(QLatin1Char('c'));
    const QStringList results = QDir(drive).entryList({"测试脚本结果*.txt"}, QDir::Files);
    ASSERT_EQ(results.size(), 1);
    QFile resultFile(NativePath::Map(drive + QLatin1Char('/') + results.first()));
    ASSERT_TRUE(resultFile.open(QIODevice::ReadOnly));
    const QString resultText = CodePage::ToUnicode(resultFile.readAll());
    EXPECT_TRUE(resultText.contains("发现错误:测试通过!") && !resultText.contains("计算结果不一致!"));
}
