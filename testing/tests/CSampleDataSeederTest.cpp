#include "CComDB.h"
#include "RunnerTestSupport.h"

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
    return HostContext::Instance().SysDataPath() + "/macrolist.log";
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

    // Every case of `script` reads back through the store as the samples give it.
    void ExpectCases(const CSampleScripts::Script& script)
    {
        EXPECT_EQ(Globals(script.keyCh), m_samples.GlobalFun() + "|" + script.globalParm);
        CArray<QString> names;
        ASSERT_TRUE(CTestCaseStore::ListTestCases(script.keyCh, names));
        ASSERT_EQ(names.GetSize(), script.cases.size());
        for (const CSampleScripts::Case& testCase : script.cases) {
            QString text;
            CTestCaseInfoTable table;
            ASSERT_TRUE(CTestCaseStore::LoadTestCase(script.keyCh, testCase.name + ".tx", text, &table));
            EXPECT_EQ(text, testCase.script);
            EXPECT_EQ(RowTexts(table), ExpectedTexts(testCase.expected));
        }
    }

    // NeedsSeeding before, then SeedIfNeeded and Seeded, as digits; then any error.
    static QString Seed(CSampleDataSeeder& seeder)
    {
        const bool needed = CSampleDataSeeder::NeedsSeeding();
        const bool ok = seeder.SeedIfNeeded();
        return QString("%1%2%3").arg(int(needed)).arg(int(ok)).arg(int(seeder.Seeded())) + seeder.Error();
    }
    static QString Seed()
    {
        CSampleDataSeeder seeder;
        return Seed(seeder);
    }

    CSampleScripts m_samples;
};

TEST_F(CSampleDataSeederTest, FreshHomeGetsEveryScriptCaseAndTheMacroListOnce)
{
    CSampleDataSeeder seeder;
    ASSERT_EQ(Seed(seeder), "111");
    EXPECT_FALSE(CSampleDataSeeder::NeedsSeeding());
    EXPECT_EQ(seeder.ScriptCount(), m_samples.Scripts().size());

    const QList<QVariantList> rows = Rows("Macros");
    ASSERT_EQ(rows.size(), m_samples.Scripts().size());
    QStringList v2Expected, macroList{QString(29, QLatin1Char('*'))};
    int cases = 0;
    for (int i = 0; i < rows.size(); ++i) {
        const CSampleScripts::Script& script = m_samples.Scripts().at(i);
        SCOPED_TRACE(script.keyCh.toStdString());
        EXPECT_EQ(rows[i], (QVariantList{script.keyCh, script.keyEn, script.script, script.description}));
        if (CSampleScripts::IsV2Key(script.keyCh))
            v2Expected << script.keyCh;
        macroList << script.keyCh + QLatin1Char(':') + script.category;
        cases += int(script.cases.size());
        ExpectCases(script);
    }
    EXPECT_EQ(seeder.CaseCount(), cases);
    QStringList v2;
    for (const QVariantList& row : Rows("MacrosV2"))
        v2 << row[0].toString();
    ASSERT_FALSE(v2.isEmpty());
    EXPECT_EQ(v2, v2Expected);
    EXPECT_EQ(CodePage::ToUnicode(ReadBytes(MacroListPath())), macroList.join("\r\n") + "\r\n");

    const QByteArray dbBytes = ReadBytes(HostContext::Instance().SystemDatabase());
    EXPECT_EQ(Seed(), "010"); // seeding again changes nothing
    EXPECT_EQ(ReadBytes(HostContext::Instance().SystemDatabase()), dbBytes);
}

TEST_F(CSampleDataSeederTest, ExistingOrServerDatabasesAreNeverSeeded)
{
    const QString db = HostContext::Instance().SystemDatabase();
    ASSERT_TRUE(WriteBytes(db, QByteArray()));
    ASSERT_EQ(Seed(), "010");
    EXPECT_EQ(QFileInfo(db).size(), 0);
    EXPECT_FALSE(QFileInfo::exists(MacroListPath()));
    EXPECT_FALSE(CTestCaseStore::HasTestCases(m_samples.Scripts()[0].keyCh));

    HostContext::Instance().SetSystemDatabase("postgresql://u@localhost/none");
    EXPECT_EQ(Seed(), "010");
}

TEST_F(CSampleDataSeederTest, UsersCasesAndMacroListStay)
{
    const CSampleScripts::Script& mine = m_samples.Scripts()[1];
    ASSERT_TRUE(CTestCaseStore::SaveGlobals(mine.keyCh, "// my functions", "var a = 1"));
    ASSERT_TRUE(WriteBytes(MacroListPath(), "my log"));
    ASSERT_EQ(Seed(), "111");
    EXPECT_EQ(Globals(mine.keyCh), "// my functions|var a = 1");
    CArray<QString> names;
    CTestCaseStore::ListTestCases(mine.keyCh, names);
    EXPECT_EQ(names.GetSize(), 0);
    EXPECT_EQ(ReadBytes(MacroListPath()), QByteArray("my log"));
    // The other scripts were seeded all the same.
    ExpectCases(m_samples.Scripts()[0]);
}

TEST_F(CSampleDataSeederTest, FailureLeavesNoDatabaseSoTheNextStartRetries)
{
    const QString root = HostContext::Instance().TestCaseRoot();
    ASSERT_TRUE(QDir(root).removeRecursively());
    ASSERT_TRUE(WriteBytes(root, "not a folder"));
    const QString failed = Seed();
    EXPECT_EQ(failed.left(3), "100");
    EXPECT_GT(failed.size(), 3); // with the error text
    EXPECT_TRUE(CSampleDataSeeder::NeedsSeeding());
    EXPECT_TRUE(QDir(HostContext::Instance().SysDataPath()).entryList({"*.seeding-*"}).isEmpty());

    ASSERT_TRUE(QFile::remove(root));
    ASSERT_TRUE(QDir().mkpath(root));
    EXPECT_EQ(Seed(), "111");
}
