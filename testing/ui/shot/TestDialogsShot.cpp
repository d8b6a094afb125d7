// Writes PNGs of the script chooser and of the test case dialog after a
// single-case run, on a fresh home seeded with the samples. Run under
// xvfb-run; usage: testing_ui_screenshots OUTDIR
#include "CDialog_JaveList.h"
#include "CDialog_TestSimScript.h"
#include "CGridCtrlForDataSet.h"
#include "CModuleResourceScope.h"
#include "CRecordingUIService.h"
#include "CSampleDataSeeder.h"
#include "CUIServices.h"
#include "HostContext.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

namespace {

bool Save(QWidget& window, const QString& file)
{
    window.show();
    window.raise();
    window.activateWindow();
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents();
        QThread::msleep(20);
    }
    return window.grab().save(file);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: testing_ui_screenshots OUTDIR\n");
        return 2;
    }
    QTemporaryDir home;
    HostContext::Instance().LoadFromEnvironment();
    HostContext::Instance().SetHome(home.path());
    HostContext::Instance().EnsureFolders();
    CSampleDataSeeder seeder;
    if (!seeder.SeedIfNeeded())
        return 1;
    CUIServices::Install(std::make_shared<CRecordingUIService>());
    CModuleResourceScope resources;
    const QString out = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(out);

    CDialog_JaveList chooser;
    chooser.findChild<QLineEdit*>(QStringLiteral("1023"))->setText(QStringLiteral("梁\\"));
    chooser.OnSearch();
    bool ok = Save(chooser, out + QStringLiteral("/script-chooser.png"));

    CDialog_TestSimScript dialog(QStringLiteral("梁\\矩形箍筋下料长度.js"));
    dialog.OnInitDialog();
    dialog.OnRun();
    ok = Save(dialog, out + QStringLiteral("/test-case-dialog.png")) && ok;
    return ok ? 0 : 1;
}
