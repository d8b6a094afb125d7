#pragma once
// Shared by the fuzz targets: a temporary home for the whole run, the input bytes as a file, and aborting
// when a property or the set-up fails.
#include "HostContext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

namespace fuzz {

// Aborts, so that the fuzzer keeps the input, when a property does not hold.
inline void Require(bool holds) { if (!holds) std::abort(); }

// Sets the host's home to a fresh temporary folder (in memory where the system offers it: a disk costs most
// of the speed), with the standard folders in it when `folders`, then runs `prepare`.
struct Home
{
    QTemporaryDir dir{(QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm") : QDir::tempPath())
                      + QStringLiteral("/velmora-fuzz-XXXXXX")};

    explicit Home(bool folders, bool (*prepare)() = [] { return true; })
    {
        HostContext::Instance().SetHome(dir.path());
        Require(dir.isValid() && (!folders || HostContext::Instance().EnsureFolders()) && prepare());
    }
};

inline void WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    Require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size());
}

inline QByteArray Bytes(const uint8_t* data, size_t size) { return QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)); }

} // namespace fuzz
