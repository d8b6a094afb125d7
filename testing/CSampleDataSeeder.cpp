#include "CSampleDataSeeder.h"

#include "CComDB.h"
#include "CConnectionString.h"
#include "CDBFactory.h"
#include "CSampleScripts.h"
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "HostContext.h"
#include "NativePath.h"
#include "QxMfcFun.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace {

QString SystemDbPath()
{
    return NativePath::Map(HostContext::Instance().SystemDatabase());
}

bool InsertScript(CComDB& db, const QString& table, const CSampleScripts::Script& script)
{
    return db.ExecuteBound(QStringLiteral("insert into %1 (key_ch, key_en, content, description) values (?, ?, ?, ?)")
                               .arg(table),
                           {script.keyCh, script.keyEn, script.script, script.description});
}

} // namespace

bool CSampleDataSeeder::NeedsSeeding()
{
    const QString target = HostContext::Instance().SystemDatabase();
    return !CConnectionString::IsServerUrl(target) && !QFileInfo::exists(SystemDbPath());
}

bool CSampleDataSeeder::SeedIfNeeded()
{
    if (!NeedsSeeding())
        return true;
    CSampleScripts samples;
    if (!samples.LoadBuiltIn())
        return Fail(samples.Error());
    return SeedIfNeeded(samples);
}

bool CSampleDataSeeder::SeedIfNeeded(const CSampleScripts& samples)
{
    m_seeded = false;
    m_scripts = 0;
    m_cases = 0;
    if (!NeedsSeeding())
        return true;
    if (!HostContext::Instance().EnsureFolders())
        return Fail(QStringLiteral("cannot create the folders of %1").arg(HostContext::Instance().Home()));
    // The database goes last: while it is missing, the next start seeds again.
    if (!WriteCases(samples) || !WriteMacroList(samples) || !WriteDatabase(samples))
        return false;
    m_seeded = true;
    m_scripts = int(samples.Scripts().size());
    return true;
}

bool CSampleDataSeeder::WriteCases(const CSampleScripts& samples)
{
    for (const CSampleScripts::Script& script : samples.Scripts()) {
        if (CTestCaseStore::HasTestCases(script.keyCh))
            continue; // the user's own cases of this script stay as they are
        if (!CTestCaseStore::SaveGlobals(script.keyCh, samples.GlobalFun(), script.globalParm))
            return Fail(QStringLiteral("cannot write the global texts of %1 under %2")
                            .arg(script.keyCh, HostContext::Instance().TestCaseRoot()));
        for (const CSampleScripts::Case& testCase : script.cases) {
            CTestCaseInfoTable table;
            for (const CSampleScripts::Expected& expected : testCase.expected) {
                const int row = table.InsertRow(0);
                table.SetAsString(CTestCaseInfoTable::ParmName, row, expected.name);
                table.SetAsString(CTestCaseInfoTable::ParmValue, row, expected.value);
                table.SetAsString(CTestCaseInfoTable::ParmMsg, row, expected.comment);
            }
            const QString caseName = testCase.name + CTestCaseStore::kCaseExtension;
            if (!CTestCaseStore::SaveTestCase(script.keyCh, caseName, testCase.script, &table))
                return Fail(QStringLiteral("cannot write the test case %1 of %2").arg(caseName, script.keyCh));
            ++m_cases;
        }
    }
    return true;
}

bool CSampleDataSeeder::WriteMacroList(const CSampleScripts& samples)
{
    const QString path = QxMfc::Fun::GetSysDataPath() + CTestCaseStore::kMacroListLog;
    if (QxMfc::Fun::CheckFile(path))
        return true;
    QString text = CTestCaseStore::kRunSeparator + QStringLiteral("\r\n");
    for (const CSampleScripts::Script& script : samples.Scripts())
        text += script.keyCh + QLatin1Char(':') + script.category + QStringLiteral("\r\n");
    if (!QxMfc::Fun::SaveFileContent(path, text))
        return Fail(QStringLiteral("cannot write %1").arg(NativePath::Map(path)));
    return true;
}

bool CSampleDataSeeder::WriteDatabase(const CSampleScripts& samples)
{
    const QString finalPath = SystemDbPath();
    const QString temporary = finalPath + QStringLiteral(".seeding-%1").arg(QCoreApplication::applicationPid());
    QFile::remove(temporary);
    QString error;
    {
        CComDB db;
        bool ok = CDBFactory::OpenSystemDatabase(db, temporary);
        // One transaction: a file sync per row would make seeding slow.
        const bool inTransaction = ok && db.ExecuteNonQuery(QStringLiteral("begin"));
        for (qsizetype i = 0; ok && i < samples.Scripts().size(); ++i) {
            const CSampleScripts::Script& script = samples.Scripts().at(i);
            ok = InsertScript(db, QStringLiteral("Macros"), script)
                 && (!CSampleScripts::IsV2Key(script.keyCh) || InsertScript(db, QStringLiteral("MacrosV2"), script));
        }
        if (ok && inTransaction)
            ok = db.ExecuteNonQuery(QStringLiteral("commit"));
        if (!ok)
            error = db.GetError();
        db.DisConnect();
    }
    if (error.isEmpty() && QFile::rename(temporary, finalPath))
        return true;
    QFile::remove(temporary);
    // Another process may have seeded the same home meanwhile: its database stands.
    if (error.isEmpty() && QFileInfo::exists(finalPath))
        return true;
    return Fail(QStringLiteral("cannot create the system database %1: %2")
                    .arg(finalPath, error.isEmpty() ? QStringLiteral("cannot move it into place") : error));
}

bool CSampleDataSeeder::Fail(const QString& error)
{
    m_error = error;
    return false;
}
