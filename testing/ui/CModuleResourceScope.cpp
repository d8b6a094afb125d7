#include "CModuleResourceScope.h"

#include <QApplication>
#include <QIcon>
#include <QtCore/qglobal.h>

// Outside any namespace: the macros declare the generated functions.
static void InitResources()
{
    Q_INIT_RESOURCE(velmora_testing_ui_resources);
}

static void CleanupResources()
{
    Q_CLEANUP_RESOURCE(velmora_testing_ui_resources);
}

namespace {

int g_depth = 0;
QIcon g_hostIcon;

} // namespace

CModuleResourceScope::CModuleResourceScope()
{
    if (g_depth++ > 0)
        return;
    InitResources();
    // Dialogs without a parent take the application's icon: ours while the
    // scope lasts, the host's again afterwards.
    g_hostIcon = QApplication::windowIcon();
    QApplication::setWindowIcon(QIcon(QString::fromLatin1(kWindowIcon)));
}

CModuleResourceScope::~CModuleResourceScope()
{
    if (--g_depth > 0)
        return;
    QApplication::setWindowIcon(g_hostIcon);
    g_hostIcon = QIcon();
    CleanupResources();
}

int CModuleResourceScope::Depth()
{
    return g_depth;
}
