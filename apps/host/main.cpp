#include "CHostMainWindow.h"
#include "CHostUIService.h"
#include "CSampleDataSeeder.h"
#include "CUIServices.h"
#include "CVelmoraLibrary.h"
#include "HostContext.h"
#include "UIFunction.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("velmora-host"));
    QApplication::setApplicationDisplayName(QStringLiteral("钢筋工程量计算"));
    HostContext::Instance().LoadFromEnvironment();

    CVelmoraLibrary library;
    library.Load(CVelmoraLibrary::Locate(QApplication::applicationDirPath(),
                                         qEnvironmentVariable("VELMORA_LIBRARY")));
    CHostMainWindow window(library);
    CUIServices::Install(std::make_shared<CHostUIService>(&window));
    // The workbench window has no owner: closing the host ends the program.
    QObject::connect(&window, &CHostMainWindow::closed, &app, &QApplication::quit, Qt::QueuedConnection);
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
