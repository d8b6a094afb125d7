// Times the test dialogs on a seeded home:
//   velmora-testdialog-bench open HOME SCRIPT [CASES]  opens the test case dialog
//       on SCRIPT after giving it CASES cases (default 200), best of 5 openings
//   velmora-testdialog-bench runall HOME [JOBS]  runs "测试所有脚本" through the
//       entry with the desktop backend, as a user would from the chooser
// Prints one line "<what> <seconds>".
#include "CDialog_TestSimScript.h"
#include "CQtUIService.h"
#include "CScriptTestEntry.h"
#include "CTestCaseInfoTable.h"
#include "CUIServices.h"
#include "HostContext.h"
#include "../../testing/ui/tests/ModalScript.h"

#include <QElapsedTimer>
#include <QPushButton>
#include <cstdio>

namespace {

void GiveCases(const QString& script, int cases)
{
    CTestCaseStore::SaveGlobals(script, QStringLiteral("function f(a){return a*2;}"), QStringLiteral("var a = 1;"));
    for (int i = 0; i < cases; ++i) {
        CTestCaseInfoTable table;
        for (const char* name : {"r", "s", "t"}) {
            const int row = table.InsertRow(0);
            table.SetAsString(CTestCaseInfoTable::ParmName, row, QString::fromLatin1(name));
            table.SetAsString(CTestCaseInfoTable::ParmValue, row, QString::number(i));
        }
        CTestCaseStore::SaveTestCase(script, QStringLiteral("case%1.tx").arg(i, 3, 10, QLatin1Char('0')),
                                     QStringLiteral("a = %1;").arg(i), &table);
    }
}

double OpenSeconds(const QString& script)
{
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer timer;
        timer.start();
        CDialog_TestSimScript dialog(script);
        dialog.OnInitDialog();
        dialog.show();
        QCoreApplication::processEvents();
        best = std::min(best, double(timer.nsecsElapsed()) / 1e9);
    }
    return best;
}

double RunAllSeconds()
{
    ModalScript chooser;
    chooser.Then(QStringLiteral("1016"), [](QDialog& d) { d.findChild<QPushButton*>(QStringLiteral("1006"))->click(); });
    QElapsedTimer timer;
    timer.start();
    CScriptTestEntry::Run();
    return double(timer.nsecsElapsed()) / 1e9;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 3 || (args[1] != QLatin1String("open") && args[1] != QLatin1String("runall"))) {
        std::fprintf(stderr, "usage: velmora-testdialog-bench open HOME SCRIPT [CASES] | runall HOME\n");
        return 2;
    }
    HostContext::Instance().LoadFromEnvironment();
    HostContext::Instance().SetHome(args[2]);
    CUIServices::Install(std::make_shared<CQtUIService>());
    if (args[1] == QLatin1String("open")) {
        if (args.size() < 4)
            return 2;
        GiveCases(args[3], args.size() > 4 ? args[4].toInt() : 200);
        std::printf("open %.4f\n", OpenSeconds(args[3]));
    } else {
        std::printf("runall %.3f\n", RunAllSeconds());
    }
    return 0;
}
