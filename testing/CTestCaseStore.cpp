#include "CTestCaseStore.h"

#include "CTestCaseInfoTable.h"
#include "CodePage.h"
#include "HostContext.h"
#include "NDataModelDataSet.h"
#include "NativePath.h"
#include "QxMfcFun.h"

#include <QDir>
#include <QFile>

using QxMfc::Fun;

namespace {

// Lines of an 8-bit text file as a text-mode reader sees them: "\r\n" and "\n"
// end a line, a last line without a line break still counts.
bool ReadLines(const QString& path, QStringList& lines)
{
    QFile file(NativePath::Map(path));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QString text = CodePage::ToUnicode(file.readAll());
    lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QString& line : lines)
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    return true;
}

} // namespace

QString CTestCaseStore::RootFolder()
{
    QString root = HostContext::Instance().TestCaseRoot();
    if (!root.endsWith(QLatin1Char('\\')) && !root.endsWith(QLatin1Char('/')))
        root += QLatin1Char('\\');
    return root;
}

QString CTestCaseStore::ScriptFolder(const QString& script)
{
    return RootFolder() + SanitizeScriptName(script) + QLatin1Char('\\');
}

QString CTestCaseStore::CaseFile(const QString& script, const QString& caseName)
{
    return ScriptFolder(script) + caseName;
}

QString CTestCaseStore::SanitizeScriptName(const QString& script)
{
    QString safe = script;
    safe.replace(QLatin1Char('.'), QLatin1Char('_'));
    safe.replace(QLatin1Char('\\'), QLatin1Char('_'));
    safe.replace(QStringLiteral("//"), QStringLiteral("_"));
    return safe;
}

bool CTestCaseStore::HasTestCases(const QString& script)
{
    return Fun::CheckFile(ScriptFolder(script) + kGlobalFunFile);
}

bool CTestCaseStore::ListTestCases(const QString& script, CArray<QString>& names)
{
    return Fun::ScanFolder_HasExtendName(ScriptFolder(script), QStringLiteral("*") + kCaseExtension, names);
}

bool CTestCaseStore::SaveGlobals(const QString& script, const QString& globalFun, const QString& globalParm)
{
    const QString folder = ScriptFolder(script);
    // One level only: a missing root makes the writes below fail.
    QDir().mkdir(NativePath::Map(folder));
    if (!Fun::SaveFileContent(folder + kGlobalFunFile, globalFun))
        return false;
    return Fun::SaveFileContent(folder + kGlobalParmFile, globalParm);
}

bool CTestCaseStore::LoadGlobals(const QString& script, QString& globalFun, QString& globalParm)
{
    const QString folder = ScriptFolder(script);
    if (!Fun::File2CString(folder + kGlobalFunFile, globalFun))
        return false;
    return Fun::File2CString(folder + kGlobalParmFile, globalParm);
}

bool CTestCaseStore::SaveTestCase(const QString& script, const QString& caseName, const QString& caseText,
                                  const NDataModelDataSet* table)
{
    QString xml;
    if (table && !table->SaveDataSetXMLBuf_NoDelete(xml))
        xml.clear();
    return Fun::SaveFileContent(CaseFile(script, caseName), caseText + kSeparator + xml);
}

bool CTestCaseStore::LoadTestCase(const QString& script, const QString& caseName, QString& caseText,
                                  NDataModelDataSet* table, bool* tableUnreadable)
{
    if (tableUnreadable)
        *tableUnreadable = false;
    QString text;
    if (!Fun::File2CString(CaseFile(script, caseName), text))
        return false;
    // Too short to hold a separator: an empty case, nothing to load.
    if (text.size() <= kSeparator.size())
        return true;
    CArray<QString> pieces;
    if (Fun::SplitCString(text, kSeparator, pieces) != 2)
        return false;
    caseText = pieces[0];
    // A table part that does not load leaves the table empty; a case saved
    // without a table has an empty part, and that must still load.
    const bool loaded = !table || table->LoadDataSetXMLBuf_NoDataBefore(pieces[1], 0);
    if (tableUnreadable)
        *tableUnreadable = !loaded && !pieces[1].trimmed().isEmpty();
    return true;
}

bool CTestCaseStore::TestCaseExists(const QString& script, const QString& caseName)
{
    return Fun::CheckFile(CaseFile(script, caseName));
}

bool CTestCaseStore::DeleteTestCase(const QString& script, const QString& caseName)
{
    return QFile::remove(NativePath::Map(CaseFile(script, caseName)));
}

bool CTestCaseStore::ParseGlobalParms(const QString& text, NDataModelDataSet& table)
{
    // The base library's split drops empty pieces, so "x=" has one part and
    // is skipped, and "////c" alone is a value, not a comment.
    CArray<QString> declarations;
    Fun::Split(text, QStringLiteral("var "), declarations);
    for (QString piece : declarations) {
        piece.remove(QLatin1Char(' '));
        piece.remove(QLatin1Char('\t'));
        CArray<QString> parts;
        if (Fun::Split(piece, QStringLiteral("="), parts) != 2)
            continue;
        CArray<QString> valueParts;
        QString value = parts[1];
        QString comment;
        if (Fun::Split(parts[1], QStringLiteral("////"), valueParts) > 1) {
            value = valueParts[0];
            comment = valueParts[1];
        }
        const int row = table.InsertRow(0);
        table.SetAsInteger(CTestCaseInfoTable::ParmMode, row, 1);
        table.SetAsString(CTestCaseInfoTable::ParmName, row, parts[0]);
        table.SetAsString(CTestCaseInfoTable::ParmValue, row, value);
        table.SetAsString(CTestCaseInfoTable::ParmMsg, row, comment);
    }
    return true;
}

bool CTestCaseStore::ReadLastRunScripts(CArray<QString>& lines)
{
    const QString sysData = Fun::GetSysDataPath();
    QString log;
    Fun::File2CString(sysData + kMacroListLog, log);
    log = log.trimmed();
    // Only the last run counts: the piece after the last asterisk line.
    CArray<QString> runs;
    if (Fun::Split(log, kRunSeparator, runs) > 0) {
        QFile::remove(NativePath::Map(sysData + kMacLog));
        Fun::SaveFileContent(sysData + kMacLog, runs[runs.GetSize() - 1].trimmed());
    }
    lines.SetSize(0);
    QStringList fileLines;
    if (!ReadLines(sysData + kMacLog, fileLines))
        return false;
    for (const QString& line : fileLines)
        if (!line.contains(QStringLiteral("NotExecute")) && line.contains(QStringLiteral(".js")))
            lines.Add(line);
    return true;
}
