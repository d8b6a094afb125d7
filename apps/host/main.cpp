#include "CHostMainWindow.h"
#include "CQtUIService.h"
#include "CSampleDataSeeder.h"
#include "CUIServices.h"
#include "CVelmoraLibrary.h"
#include "HostContext.h"
#include "UIFunction.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("velmora-host"));
    QApplication::setApplicationDisplayName(QStringLiteral("钢筋工程量计算"));
    HostContext::Instance().LoadFromEnvironment();

    CVelmoraLibrary library;
    library.Load(CVelmoraLibrary::Locate(QApplication::applicationDirPath(),
                                         qEnvironmentVariable("VELMORA_LIBRARY")));
    CHostMainWindow window(library);
    CUIServices::Install(std::make_shared<CQtUIService>());
    // The workbench window has no owner: closing the host ends the program.
    QObject::connect(&window, &CHostMainWindow::closed, &app, &QApplication::quit, Qt::QueuedConnection);
    // For the start-up benchmark: report when the window is on the screen, then end.
    if (QApplication::arguments().contains(QStringLiteral("--exit-when-shown")))
        QObject::connect(&window, &CHostMainWindow::firstPainted, &app, [&sinceStart] {
            std::printf("velmora-host: window shown %lld ms after main\n", static_cast<long long>(sinceStart.elapsed()));
            QTimer::singleShot(0, qApp, &QApplication::quit);
        });
    window.show();
    QTimer::singleShot(0, &window, [&window] {
        CSampleDataSeeder seeder;
        if (!seeder.SeedIfNeeded())
            UIFunction::QXMessageBox(QStringLiteral("示例数据无法写入:") + seeder.Error(), QString(),
                                     UIFunction::MB_OK);
        window.ReportLibrary();
    });
    const int status = QApplication::exec();
    CUIServices::Install(nullptr);
    return status;
}
