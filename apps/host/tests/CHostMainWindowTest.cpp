#include "CHostMainWindow.h"
#include "CSampleDataSeeder.h"
#include "CVelmoraLibrary.h"
#include "TestEnvironment.h"

#include <QAction>
#include <QLabel>
#include <QSignalSpy>
#include <QTableWidget>

#include <dlfcn.h>

using CHostMainWindowTest = TempHomeTest;

static QAction* Action(CHostMainWindow& window, const char* id) { return window.findChild<QAction*>(id); }

TEST_F(CHostMainWindowTest, MissingEntryPointsAreReportedAndTheirMenuEntriesOff)
{
    CVelmoraLibrary library;
    library.Load(QStringLiteral(VELMORA_FAKE_PARTIAL));
    CHostMainWindow window(library);
    window.ReportLibrary();
    EXPECT_EQ(Ui().MessageTexts(), QStringList{library.Error()});
    ASSERT_EQ(std::pair(Action(window, "actionScriptTest")->isEnabled(), Action(window, "actionWorkbench")->isEnabled()),
              std::pair(false, true));

    auto calls = reinterpret_cast<int (*)()>(
        dlsym(dlopen(VELMORA_FAKE_PARTIAL, RTLD_NOW | RTLD_NOLOAD), "FakeDomodleCalls"));
    ASSERT_NE(calls, nullptr);
    const int before = calls();
    Action(window, "actionWorkbench")->trigger();
    EXPECT_EQ(calls(), before + 1);
}

TEST_F(CHostMainWindowTest, ComputeFillsTheTableOnAWorkerThread)
{
    CSampleDataSeeder seeder;
    ASSERT_TRUE(seeder.SeedIfNeeded());
    CVelmoraLibrary library;
    library.Load(QStringLiteral(VELMORA_FAKE_FULL));
    CHostMainWindow window(library);
    QSignalSpy finished(&window, &CHostMainWindow::computeFinished);
    Action(window, "actionCompute")->trigger();
    EXPECT_EQ(std::pair(window.IsComputing(), Action(window, "actionCompute")->isEnabled()), std::pair(true, false));
    ASSERT_TRUE(finished.wait(60000));
    EXPECT_TRUE(Action(window, "actionCompute")->isEnabled());
    EXPECT_TRUE(Ui().MessageTexts().isEmpty()) << Ui().MessageTexts().join('\n').toStdString();

    auto* table = window.findChild<QTableWidget*>("resultTable");
    ASSERT_NE(table, nullptr);
    const int last = table->rowCount() - 1;
    ASSERT_GT(last, 0);
    double sum = 0;
    for (int row = 0; row < last; ++row) {
        EXPECT_TRUE(table->item(row, 5)->text().isEmpty()) << table->item(row, 5)->text().toStdString();
        sum += table->item(row, 4)->text().toDouble();
    }
    EXPECT_NEAR(table->item(last, 4)->text().toDouble(), sum, 0.01 * last);
    EXPECT_TRUE(window.findChild<QLabel*>("summary")
                    ->text()
                    .startsWith(QStringLiteral("7个构件, 钢筋总重%1kg").arg(table->item(last, 4)->text())));
}
