#pragma once
#include <QString>

class CMacroParamFile;

// Opens a settings file for the workbench: the read goes to a scratch object,
// so a failed one leaves the workbench's file (names, lists, script) as it was.
class CSettingsFileOpener
{
public:
    // False after telling the user why; `file` then is unchanged.
    static bool Open(const QString& path, CMacroParamFile& file);
};
