#pragma once
#include "VelmoraExport.h"

// The host's door to the script test (name kept as the host knows it).
class VELMORA_EXPORT CVelmoraExport
{
public:
    // Chooses a script or all of them and tests them in the library's
    // dialogs; needs the host's QApplication. 1 when a test ran or the test
    // case dialog was shown, 0 when the user cancelled or there is no
    // QApplication.
    static int DoJaveScriptTest();
};
