#include "CLibraryStartup.h"

#include "CQtUIService.h"

#include <QApplication>
#include <cstdio>

bool CLibraryStartup::Begin(const char* entry)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        std::fprintf(stderr,
                     "libvelmora: %s needs a QApplication created by the host application before it is called; "
                     "nothing was opened.\n",
                     entry);
        return false;
    }
    CQtUIService::InstallIfNone();
    return true;
}
