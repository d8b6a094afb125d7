#include "CLibraryStartup.h"

#include "CQtUIService.h"
#include "CSampleDataSeeder.h"
#include "HostContext.h"

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
    PrepareHostData(entry);
    return true;
}

void CLibraryStartup::PrepareHostData(const char* entry)
{
    // The host context read the environment when first used; its folders and,
    // on a first start, the sample scripts are made here so that the windows
    // open on usable data. A failure is reported and the window still opens.
    if (!HostContext::Instance().EnsureFolders())
        std::fprintf(stderr, "libvelmora: %s cannot create the folders under %s\n", entry,
                     qPrintable(HostContext::Instance().Home()));
    CSampleDataSeeder seeder;
    if (!seeder.SeedIfNeeded())
        std::fprintf(stderr, "libvelmora: %s could not seed the sample data: %s\n", entry,
                     qPrintable(seeder.Error()));
}
