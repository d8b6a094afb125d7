#pragma once
#include <QString>

// File-dialog filters are written in the Windows form
// "Script (*.js)|*.js|All (*.*)|*.*||"; Qt wants "Script (*.js);;All (*)".
class CFileFilter
{
public:
    static QString ToQt(const QString& windowsFilter);
};
