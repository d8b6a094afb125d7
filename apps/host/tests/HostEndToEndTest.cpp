// The host as a user meets it, on real windows (xcb under Xvfb): the window
// loads the built libvelmora.so with dlopen, computes the sample project, and
// opens the workbench and the script test of the library. Each step leaves a
// screenshot under build/screenshots/.
#include "CDiagnosticLog.h"
#include "CHostMainWindow.h"
#include "CRecordingUIService.h"
#include "CSampleDataSeeder.h"
#include "CTestCaseStore.h"
#include "CUIServices.h"
#include "CVelmoraLibrary.h"
#include "CodePage.h"
#include "HostContext.h"
#include "NativePath.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

QString ReadLog(const QString& path)
{
    QFile file(NativePath::Map(path));
    return file.open(QIODevice::ReadOnly) ? CodePage::ToUnicode(file.readAll()) : QString();
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
    static QAction* Action(QWidget& window, const char* id)
    {
        return window.findChild<QAction*>(QString::fromLatin1(id));
    }

    QTemporaryDir m_home;
    std::shared_ptr<CRecordingUIService> m_ui = std::make_shared<CRecordingUIService>();
};

TEST_F(HostEndToEndTest, ComputeThenWorkbenchThenScriptTest)
{
    CVelmoraLibrary library;
    library.Load(QStringLiteral(VELMORA_E2E_LIBRARY));
    ASSERT_TRUE(library.HasWorkbench()) << library.Error().toStdString();
    CHostMainWindow window(library);
    window.move(0, 0);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    // 1. "计算": the table, the analysis log and the run record of the script list.
    QSignalSpy finished(&window, &CHostMainWindow::computeFinished);
    Action(window, "actionCompute")->trigger();
    ASSERT_TRUE(finished.wait(60000));
    EXPECT_TRUE(m_ui->MessageTexts().isEmpty()) << m_ui->MessageTexts().join('\n').toStdString();
    auto* table = window.findChild<QTableWidget*>(QStringLiteral("resultTable"));
    ASSERT_GT(table->rowCount(), 1);
    EXPECT_EQ(table->item(table->rowCount() - 1, 0)->text(), QStringLiteral("合计"));
    EXPECT_TRUE(ReadLog(CDiagnosticLog::CalAnalyseLogPath()).contains(QStringLiteral("计算完成: 7个构件, 0次出错")));
    CArray<QString> lastRun;
    ASSERT_TRUE(CTestCaseStore::ReadLastRunScripts(lastRun));
    EXPECT_EQ(lastRun.GetSize(), 7);
    Shot(QStringLiteral("01-host-computed"));
    EXPECT_TRUE(window.grab().save(QStringLiteral(VELMORA_SCREENSHOT_DIR "/host-main-window.png")));
}
