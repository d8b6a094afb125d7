#include "CSettingsFileOpener.h"

#include "CMacroParamFile.h"
#include "UIFunction.h"

bool CSettingsFileOpener::Open(const QString& path, CMacroParamFile& file)
{
    CMacroParamFile read;
    if (!read.Read(path)) {
        // A file that is no settings file clears the reader's error text too.
        const QString error = read.GetErrorText();
        UIFunction::QXMessageBox(error.isEmpty() ? QStringLiteral("无法读取设置文件") + path : error);
        return false;
    }
    file = read;
    return true;
}
