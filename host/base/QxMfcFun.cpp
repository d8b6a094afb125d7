#include "QxMfcFun.h"

#include "CAtomicFile.h"
#include "CodePage.h"
#include "HostContext.h"
#include "NativePath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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
    QFile file(NativePath::Map(path));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
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
