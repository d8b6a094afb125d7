#pragma once
#include <QString>

// Windows-style paths stay in the code as the system writes them
// ("C:\testJSCover\", sysdata + "\mac.log"); every file operation maps them
// here, at the file-system boundary. Backslashes become slashes and a drive
// letter "X:" (either case) becomes the host context's root for that drive.
class NativePath
{
public:
    static QString Map(const QString& path);
};
