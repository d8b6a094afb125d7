#include "NativePath.h"

#include "HostContext.h"

QString NativePath::Map(const QString& path)
{
    QString native = path;
    native.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (native.size() >= 2 && native.at(1) == QLatin1Char(':') && native.at(0).isLetter()
        && native.at(0).unicode() < 128) {
        QString rest = native.mid(2);
        if (!rest.isEmpty() && !rest.startsWith(QLatin1Char('/')))
            rest.prepend(QLatin1Char('/'));
        native = HostContext::Instance().DriveRoot(native.at(0)) + rest;
    }
    return native;
}
