#include "QxMfcFun.h"

#include "CAtomicFile.h"
#include "CodePage.h"
#include "HostContext.h"
#include "NativePath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QxMfc {

namespace {

bool WriteBytes(const QString& path, const QByteArray& bytes, QIODevice::OpenMode mode)
{
    QFile file(NativePath::Map(path));
    if (!file.open(mode))
        return false;
    return file.write(bytes) == bytes.size() && file.flush();
}

} // namespace

QString Fun::GetSysDataPath()
{
    return HostContext::Instance().SysDataPath();
}

bool Fun::CheckFile(const QString& path)
{
    return !path.isEmpty() && QFileInfo::exists(NativePath::Map(path));
}

int Fun::Split(const QString& text, const QString& separator, CArray<QString>& pieces)
{
    pieces.SetSize(0);
    for (const QString& piece : text.split(separator, Qt::SkipEmptyParts))
        pieces.Add(piece);
    return pieces.GetSize();
}

int Fun::SplitCString(const QString& text, const QString& separator, CArray<QString>& pieces)
{
    pieces.SetSize(0);
    for (const QString& piece : text.split(separator, Qt::KeepEmptyParts))
        pieces.Add(piece);
    return pieces.GetSize();
}

bool Fun::SaveFileContent(const QString& path, const QString& text)
{
    return !path.isEmpty() && CAtomicFile::Write(NativePath::Map(path), CodePage::FromUnicode(text));
}

bool Fun::AppendCString2File(const QString& path, const QString& text)
{
    return WriteBytes(path, CodePage::FromUnicode(text), QIODevice::WriteOnly | QIODevice::Append);
}

bool Fun::File2CString(const QString& path, QString& text)
{
    // Plain system calls: a test run reads a file for every case, and QFile
    // asks the file system about it twice as often as this does.
    const int fd = ::open(QFile::encodeName(NativePath::Map(path)).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    QByteArray bytes;
    struct stat info;
    bool ok = ::fstat(fd, &info) == 0 && !S_ISDIR(info.st_mode);
    if (ok && S_ISREG(info.st_mode))
        bytes.reserve(qsizetype(info.st_size) + 1);
    char chunk[16384];
    for (ssize_t n = 0; ok;) {
        n = ::read(fd, chunk, sizeof chunk);
        if (n < 0 && errno == EINTR)
            continue;
        ok = n >= 0;
        if (n <= 0)
            break;
        bytes.append(chunk, qsizetype(n));
    }
    ::close(fd);
    if (!ok)
        return false;
    text = CodePage::ToUnicode(bytes);
    return true;
}

bool Fun::ScanFolder_HasExtendName(const QString& folder, const QString& pattern, CArray<QString>& names)
{
    names.SetSize(0);
    QDir dir(NativePath::Map(folder));
    if (!dir.exists())
        return false;
    const auto filter = QDir::Files | QDir::NoDotAndDotDot | QDir::CaseSensitive;
    for (const QString& name : dir.entryList({pattern}, filter, QDir::Name))
        names.Add(name);
    return true;
}

} // namespace QxMfc
