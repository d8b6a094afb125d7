#include "CVelmoraExport.h"

#include "CLibraryStartup.h"
#include "CModuleResourceScope.h"
#include "CScriptTestEntry.h"

#include <QApplication>

int CVelmoraExport::DoJaveScriptTest()
{
    if (!CLibraryStartup::Begin("CVelmoraExport::DoJaveScriptTest"))
        return 0;
    CModuleResourceScope resources;
    return CScriptTestEntry::Run(QApplication::activeWindow());
}
