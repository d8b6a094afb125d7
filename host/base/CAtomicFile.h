#pragma once
#include <QByteArray>
#include <QString>

// Replaces a file users keep as a whole: the bytes go to a temporary file in
// the same folder, which is renamed over the old one only once every byte is
// on disk. A write that fails half-way (a full disk, a crash) leaves the old
// file as it was and no temporary file behind.
class CAtomicFile
{
public:
    // `nativePath` is already mapped; false when nothing was replaced.
    static bool Write(const QString& nativePath, const QByteArray& bytes);
};
