#include "CComDB.h"
#include "CSampleDataSeeder.h"
#include "CSampleScripts.h"
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CodePage.h"
#include "HostContext.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFileInfo>

namespace {

QList<QVariantList> Rows(const QString& table)
{
    CComDB db;
    QList<QVariantList> rows;
    if (!db.Init() || !db.Connect(HostContext::Instance().SystemDatabase(), QString(), QString()))
        return rows;
    db.Query(QStringLiteral("select key_ch, key_en, content, description from %1 order by rowid").arg(table), {}, rows);
    return rows;
}

QString MacroListPath()
{
    return HostContext::Instance().SysDataPath() + QStringLiteral("/macrolist.log");
}

} // namespace

class CSampleDataSeederTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        ASSERT_TRUE(m_samples.LoadBuiltIn());
    }

    CSampleScripts m_samples;
};

TEST_F(CSampleDataSeederTest, FreshHomeGetsEveryScriptInMacros)
{
    CSampleDataSeeder seeder;
    ASSERT_TRUE(CSampleDataSeeder::NeedsSeeding());
    ASSERT_TRUE(seeder.SeedIfNeeded()) << seeder.Error().toStdString();
    EXPECT_TRUE(seeder.Seeded());
    EXPECT_EQ(seeder.ScriptCount(), m_samples.Scripts().size());
    EXPECT_FALSE(CSampleDataSeeder::NeedsSeeding());

    const QList<QVariantList> rows = Rows(QStringLiteral("Macros"));
    ASSERT_EQ(rows.size(), m_samples.Scripts().size());
    for (int i = 0; i < rows.size(); ++i) {
        const CSampleScripts::Script& script = m_samples.Scripts().at(i);
        EXPECT_EQ(rows[i][0].toString(), script.keyCh);
        EXPECT_EQ(rows[i][1].toString(), script.keyEn);
        EXPECT_EQ(rows[i][2].toString(), script.script);
        EXPECT_EQ(rows[i][3].toString(), script.description);
    }
}

TEST_F(CSampleDataSeederTest, OnlyGeneralAndGraphicScriptsGoToMacrosV2)
{
    CSampleDataSeeder seeder;
    ASSERT_TRUE(seeder.SeedIfNeeded());
    QStringList expected;
    for (const CSampleScripts::Script& script : m_samples.Scripts()) {
        if (script.keyCh.startsWith(QStringLiteral("通用脚本\\")) || script.keyCh.startsWith(QStringLiteral("图形法脚本\\")))
            expected << script.keyCh;
    }
    ASSERT_FALSE(expected.isEmpty());
    QStringList actual;
    for (const QVariantList& row : Rows(QStringLiteral("MacrosV2")))
        actual << row[0].toString();
    EXPECT_EQ(actual, expected);
}

TEST_F(CSampleDataSeederTest, CasesReadBackThroughTheStore)
{
    CSampleDataSeeder seeder;
    ASSERT_TRUE(seeder.SeedIfNeeded());
    int cases = 0;
    for (const CSampleScripts::Script& script : m_samples.Scripts()) {
        ASSERT_TRUE(CTestCaseStore::HasTestCases(script.keyCh)) << script.keyCh.toStdString();
        QString fun;
        QString parm;
        ASSERT_TRUE(CTestCaseStore::LoadGlobals(script.keyCh, fun, parm));
        EXPECT_EQ(fun, m_samples.GlobalFun());
        EXPECT_EQ(parm, script.globalParm);
        CArray<QString> names;
        ASSERT_TRUE(CTestCaseStore::ListTestCases(script.keyCh, names));
        ASSERT_EQ(names.GetSize(), script.cases.size());
        for (const CSampleScripts::Case& testCase : script.cases) {
            const QString name = testCase.name + QStringLiteral(".tx");
            QString text;
            CTestCaseInfoTable table;
            ASSERT_TRUE(CTestCaseStore::LoadTestCase(script.keyCh, name, text, &table)) << name.toStdString();
            EXPECT_EQ(text, testCase.script);
            ASSERT_EQ(table.GetRowCount(), testCase.expected.size());
            for (int row = 1; row <= table.GetRowCount(); ++row) {
                const CSampleScripts::Expected& e = testCase.expected.at(row - 1);
                EXPECT_EQ(table.GetAsString(CTestCaseInfoTable::ParmName, row), e.name);
                EXPECT_EQ(table.GetAsString(CTestCaseInfoTable::ParmValue, row), e.value);
                EXPECT_EQ(table.GetAsString(CTestCaseInfoTable::ParmMsg, row), e.comment);
            }
            ++cases;
        }
    }
    EXPECT_EQ(seeder.CaseCount(), cases);
}

TEST_F(CSampleDataSeederTest, MacroListLooksLikeTheHostsRun)
{
    CSampleDataSeeder seeder;
    ASSERT_TRUE(seeder.SeedIfNeeded());
    const QString text = CodePage::ToUnicode(ReadBytes(MacroListPath()));
    QString expected = QString(29, QLatin1Char('*')) + QStringLiteral("\r\n");
    for (const CSampleScripts::Script& script : m_samples.Scripts())
        expected += script.keyCh + QLatin1Char(':') + script.category + QStringLiteral("\r\n");
    EXPECT_EQ(text, expected);

    CArray<QString> lines;
    ASSERT_TRUE(CTestCaseStore::ReadLastRunScripts(lines));
    ASSERT_EQ(lines.GetSize(), m_samples.Scripts().size());
    EXPECT_EQ(lines[0], m_samples.Scripts()[0].keyCh + QLatin1Char(':') + m_samples.Scripts()[0].category);
}

TEST_F(CSampleDataSeederTest, AnExistingDatabaseIsNeverSeeded)
{
    const QString db = HostContext::Instance().SystemDatabase();
    ASSERT_TRUE(WriteBytes(db, QByteArray()));
    CSampleDataSeeder seeder;
    EXPECT_FALSE(CSampleDataSeeder::NeedsSeeding());
    ASSERT_TRUE(seeder.SeedIfNeeded());
    EXPECT_FALSE(seeder.Seeded());
    EXPECT_EQ(QFileInfo(db).size(), 0);
    EXPECT_FALSE(QFileInfo::exists(MacroListPath()));
    EXPECT_FALSE(CTestCaseStore::HasTestCases(m_samples.Scripts()[0].keyCh));
}

TEST_F(CSampleDataSeederTest, SeedingTwiceChangesNothing)
{
    CSampleDataSeeder first;
    ASSERT_TRUE(first.SeedIfNeeded());
    const QByteArray dbBytes = ReadBytes(HostContext::Instance().SystemDatabase());
    CSampleDataSeeder second;
    ASSERT_TRUE(second.SeedIfNeeded());
    EXPECT_FALSE(second.Seeded());
    EXPECT_EQ(ReadBytes(HostContext::Instance().SystemDatabase()), dbBytes);
}

TEST_F(CSampleDataSeederTest, UsersCasesAndMacroListStay)
{
    const CSampleScripts::Script& mine = m_samples.Scripts()[1];
    ASSERT_TRUE(CTestCaseStore::SaveGlobals(mine.keyCh, QStringLiteral("// my functions"), QStringLiteral("var a = 1")));
    ASSERT_TRUE(WriteBytes(MacroListPath(), "my log"));
    CSampleDataSeeder seeder;
    ASSERT_TRUE(seeder.SeedIfNeeded());
    EXPECT_TRUE(seeder.Seeded());
    QString fun;
    QString parm;
    ASSERT_TRUE(CTestCaseStore::LoadGlobals(mine.keyCh, fun, parm));
    EXPECT_EQ(fun, QStringLiteral("// my functions"));
    EXPECT_EQ(parm, QStringLiteral("var a = 1"));
    CArray<QString> names;
    CTestCaseStore::ListTestCases(mine.keyCh, names);
    EXPECT_EQ(names.GetSize(), 0);
    EXPECT_EQ(ReadBytes(MacroListPath()), QByteArray("my log"));
    // The other scripts were seeded all the same.
    EXPECT_TRUE(CTestCaseStore::HasTestCases(m_samples.Scripts()[0].keyCh));
}

TEST_F(CSampleDataSeederTest, FailureLeavesNoDatabaseSoTheNextStartRetries)
{
    const QString root = HostContext::Instance().TestCaseRoot();
    ASSERT_TRUE(QDir(root).removeRecursively());
    ASSERT_TRUE(WriteBytes(root, "not a folder"));
    CSampleDataSeeder seeder;
    EXPECT_FALSE(seeder.SeedIfNeeded());
    EXPECT_FALSE(seeder.Error().isEmpty());
    EXPECT_FALSE(seeder.Seeded());
    EXPECT_TRUE(CSampleDataSeeder::NeedsSeeding());
    EXPECT_TRUE(QDir(HostContext::Instance().SysDataPath()).entryList({QStringLiteral("*.seeding-*")}).isEmpty());

    ASSERT_TRUE(QFile::remove(root));
    ASSERT_TRUE(QDir().mkpath(root));
    CSampleDataSeeder again;
    ASSERT_TRUE(again.SeedIfNeeded()) << again.Error().toStdString();
    EXPECT_TRUE(again.Seeded());
}

TEST_F(CSampleDataSeederTest, ServerDatabasesAreNotSeeded)
{
    HostContext::Instance().SetSystemDatabase(QStringLiteral("postgresql://u@localhost/none"));
    EXPECT_FALSE(CSampleDataSeeder::NeedsSeeding());
    CSampleDataSeeder seeder;
    EXPECT_TRUE(seeder.SeedIfNeeded());
    EXPECT_FALSE(seeder.Seeded());
}

TEST_F(CSampleDataSeederTest, GivenScriptsAreSeededInstead)
{
    CSampleScripts own;
    ASSERT_TRUE(own.Load(R"({"X": {"key_ch": "柱\\x.js", "key_en": "X", "description": "", "category": "柱",
        "globalParm": "", "script": "var y = 1;", "cases": [{"name": "one", "script": "", "expect": [["y", "1", ""]]}]}})",
                         "// f\n"));
    CSampleDataSeeder seeder;
    ASSERT_TRUE(seeder.SeedIfNeeded(own));
    EXPECT_EQ(seeder.ScriptCount(), 1);
    EXPECT_EQ(seeder.CaseCount(), 1);
    ASSERT_EQ(Rows(QStringLiteral("Macros")).size(), 1);
    EXPECT_TRUE(Rows(QStringLiteral("MacrosV2")).isEmpty());
}
