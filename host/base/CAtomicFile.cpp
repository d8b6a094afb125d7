#include "CAtomicFile.h"

#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Qt's file classes report a short write (a full disk) as success, so the
// bytes go through the system calls themselves.
bool WriteAll(int fd, const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}

// A new file beside the target, made with the usual permissions (0666 less
// the umask), or -1.
int CreateBeside(const QString& target, QByteArray& name)
{
    static std::atomic<unsigned> counter{0};
    const QFileInfo info(target);
    for (int attempt = 0; attempt < 100; ++attempt) {
        name = QFile::encodeName(info.absolutePath() + QStringLiteral("/.") + info.fileName()
                                 + QStringLiteral(".%1-%2.tmp").arg(getpid()).arg(++counter));
        const int fd = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

} // namespace

bool CAtomicFile::Write(const QString& nativePath, const QByteArray& bytes)
{
    if (nativePath.isEmpty())
        return false;
    // A link is kept: its target is what gets replaced.
    const QFileInfo info(nativePath);
    const QString target = info.isSymLink() && info.exists() ? info.canonicalFilePath() : nativePath;
    if (QFileInfo(target).isDir())
        return false;
    QByteArray temporary;
    const int fd = CreateBeside(target, temporary);
    if (fd < 0)
        return false;
    // The replacement keeps the old file's permissions.
    struct stat old {};
    if (::stat(QFile::encodeName(target).constData(), &old) == 0)
        ::fchmod(fd, old.st_mode & 07777);
    bool ok = WriteAll(fd, bytes) && ::fsync(fd) == 0;
    ok = ::close(fd) == 0 && ok;
    ok = ok && ::rename(temporary.constData(), QFile::encodeName(target).constData()) == 0;
    if (!ok)
        ::unlink(temporary.constData());
    return ok;
}
