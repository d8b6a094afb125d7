#include "CNativeCoverage.h"

#include "CJsText.h"
#include "CTestCaseStore.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

namespace {

bool WriteUtf8(const QString& path, const QString& text)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 && file.commit();
}

QString SourcePath(const QString& dir, const CNativeCoverage::File& file)
{
    return dir + QStringLiteral("/source/") + CTestCaseStore::SanitizeScriptName(file.script) + QLatin1Char('/')
           + file.fileName;
}

} // namespace

QString CNativeCoverage::ScriptFileName(const QString& script)
{
    const qsizetype cut = std::max(script.lastIndexOf(QLatin1Char('\\')), script.lastIndexOf(QLatin1Char('/')));
    QString name = script.mid(cut + 1);
    if (name.isEmpty())
        name = QStringLiteral("script");
    if (!name.endsWith(QStringLiteral(".js"), Qt::CaseInsensitive))
        name += QStringLiteral(".js");
    return name;
}

void CNativeCoverage::AddRun(const QString& script, const QString& globalFun, const QString& globalParm,
                             const QString& caseText, const QString& scriptText, const LineHits& joinedHits)
{
    if (joinedHits.empty())
        return;
    // Each piece starts on the line after the previous piece's last one.
    const int funLines = CJsText::LineBreaks(globalFun) + 1;
    const int scriptFirst = funLines + CJsText::LineBreaks(globalParm) + 1 + CJsText::LineBreaks(caseText) + 1 + 1;
    AddHits(LibraryFor(script, globalFun), joinedHits, 1, funLines);
    AddHits(FileFor(script, ScriptFileName(script), scriptText), joinedHits, scriptFirst,
            CJsText::LineBreaks(scriptText) + 1);
}

void CNativeCoverage::AddHits(File& file, const LineHits& joinedHits, int firstLine, int lineCount)
{
    for (auto it = joinedHits.lower_bound(firstLine); it != joinedHits.end() && it->first < firstLine + lineCount;
         ++it)
        file.hits[it->first - firstLine + 1] += it->second;
}

CNativeCoverage::File& CNativeCoverage::FileFor(const QString& script, const QString& fileName,
                                                const QString& source)
{
    if (fileName == CTestCaseStore::kGlobalFunFile)
        return LibraryFor(script, source);
    for (File& file : m_files)
        if (file.script == script && file.fileName == fileName)
            return file;
    return Add({script, fileName, source, {}});
}

CNativeCoverage::File& CNativeCoverage::LibraryFor(const QString& script, const QString& source)
{
    for (File& file : m_files)
        if (file.fileName == CTestCaseStore::kGlobalFunFile && file.source == source)
            return file;
    return Add({script, CTestCaseStore::kGlobalFunFile, source, {}});
}

CNativeCoverage::File& CNativeCoverage::Add(const File& file)
{
    m_files.append(file);
    return m_files.last();
}

const CNativeCoverage::File* CNativeCoverage::FindLibrary(const QString& source) const
{
    for (const File& file : m_files)
        if (file.fileName == CTestCaseStore::kGlobalFunFile && file.source == source)
            return &file;
    return nullptr;
}

const CNativeCoverage::File* CNativeCoverage::Find(const QString& script, const QString& fileName) const
{
    for (const File& file : m_files)
        if (file.script == script && file.fileName == fileName)
            return &file;
    return nullptr;
}

void CNativeCoverage::Merge(const CNativeCoverage& other)
{
    for (const File& theirs : other.m_files) {
        File& mine = FileFor(theirs.script, theirs.fileName, theirs.source);
        for (const auto& [line, count] : theirs.hits)
            mine.hits[line] += count;
    }
}

bool CNativeCoverage::WriteLcov(const QString& dir, QString& error) const
{
    QString lcov;
    for (const File& file : m_files) {
        // A library without a line of code has nothing to show.
        if (file.hits.empty())
            continue;
        const QString path = SourcePath(dir, file);
        if (!QDir().mkpath(QFileInfo(path).path()) || !WriteUtf8(path, file.source)) {
            error = QStringLiteral("无法写入文件:") + path;
            return false;
        }
        lcov += QStringLiteral("TN:\nSF:") + QFileInfo(path).absoluteFilePath() + QLatin1Char('\n');
        int reached = 0;
        for (const auto& [line, count] : file.hits) {
            lcov += QStringLiteral("DA:%1,%2\n").arg(line).arg(count);
            reached += count > 0 ? 1 : 0;
        }
        lcov += QStringLiteral("LF:%1\nLH:%2\nend_of_record\n").arg(file.hits.size()).arg(reached);
    }
    const QString path = dir + QLatin1Char('/') + kLcovFile;
    if (!QDir().mkpath(dir) || !WriteUtf8(path, lcov)) {
        error = QStringLiteral("无法写入文件:") + path;
        return false;
    }
    return true;
}

bool CNativeCoverage::HasGenhtml()
{
    return !QStandardPaths::findExecutable(QStringLiteral("genhtml")).isEmpty();
}

bool CNativeCoverage::WriteHtml(const QString& dir, QString& error)
{
    const QString genhtml = QStandardPaths::findExecutable(QStringLiteral("genhtml"));
    if (genhtml.isEmpty()) {
        error = QStringLiteral("没有找到genhtml(Debian软件包lcov)，只生成了") + dir + QLatin1Char('/') + kLcovFile;
        return false;
    }
    const QString html = dir + QStringLiteral("/html");
    QDir(html).removeRecursively();
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(genhtml, {QStringLiteral("--quiet"), QStringLiteral("--prefix"),
                            QFileInfo(dir + QStringLiteral("/source")).absoluteFilePath(),
                            QStringLiteral("--title"), QStringLiteral("Velmora"), QStringLiteral("--output-directory"),
                            html, dir + QLatin1Char('/') + kLcovFile});
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        process.kill();
        error = QStringLiteral("genhtml失败:") + QString::fromLocal8Bit(process.readAll()).trimmed();
        return false;
    }
    return true;
}
