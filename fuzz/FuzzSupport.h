#pragma once
// Shared by the fuzz targets: a temporary home for the whole run, and the
// input bytes as a file or as text. Any failure of the set-up aborts.
#include "HostContext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

namespace fuzz {

// Sets the host's home to a fresh temporary folder (in memory where the
// system offers it: a disk costs most of the speed), with the standard
// folders in it when `folders`.
struct Home
{
    QTemporaryDir dir{(QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm") : QDir::tempPath())
                      + QStringLiteral("/velmora-fuzz-XXXXXX")};

    explicit Home(bool folders)
    {
        if (!dir.isValid())
            std::abort();
        HostContext::Instance().SetHome(dir.path());
        if (folders && !HostContext::Instance().EnsureFolders())
            std::abort();
    }
};

inline void WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        std::abort();
}

inline QByteArray Bytes(const uint8_t* data, size_t size) { return QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)); }
inline QString Utf8(const uint8_t* data, size_t size) { return QString::fromUtf8(Bytes(data, size)); }

} // namespace fuzz
