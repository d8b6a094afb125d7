#include "TextFile.h"

#include "CAtomicFile.h"
#include "CodePage.h"
#include "NativePath.h"
#include "UIFunction.h"

#include <QFile>
#include <QFileInfo>

bool ReadTextFile(const QString& path, QString& text)
{
    const QString native = NativePath::Map(path);
    QFile file(native);
    QByteArray bytes;
    // Only regular files: a device or a pipe would never end or never answer.
    bool ok = !path.isEmpty() && QFileInfo(native).isFile() && file.open(QIODevice::ReadOnly);
    if (ok) {
        bytes = file.readAll();
        ok = file.error() == QFileDevice::NoError;
    }
    if (!ok) {
        UIFunction::QXMessageBox(QStringLiteral("不存在文件") + path, QString(), UIFunction::MB_OK);
        return false;
    }
    const qsizetype zero = bytes.indexOf('\0');
    if (zero >= 0)
        bytes.truncate(zero);
    text = CodePage::ToUnicode(bytes);
    return true;
}

bool WriteTextFile(const QString& path, const QString& text)
{
    if (path.isEmpty())
        return false;
    // Little-endian 16-bit form built explicitly, then cut to one byte per character.
    QByteArray bytes;
    bytes.reserve(text.size() * 2);
    for (QChar c : text) {
        bytes.append(char(c.unicode() & 0xFF));
        bytes.append(char(c.unicode() >> 8));
    }
    bytes.truncate(text.size());
    return CAtomicFile::Write(NativePath::Map(path), bytes);
}
