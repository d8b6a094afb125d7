#include "CliFixture.h"

#include "HostContext.h"

#include <QDir>
#include <QFileInfo>

class CliSetupErrorTest : public CliFixture
{
protected:
    // Exit status 2, one line on stderr naming `what`, nothing on stdout.
    void ExpectSetupError(const Outcome& run, const QString& what)
    {
        ASSERT_TRUE(run.finished);
        EXPECT_EQ(run.exitCode, 2) << run.out.toStdString() << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
        EXPECT_EQ(run.err.count(QLatin1Char('\n')), 1) << run.err.toStdString();
        EXPECT_TRUE(run.err.startsWith(QStringLiteral("velmora-test: ")));
        EXPECT_TRUE(run.err.contains(what)) << run.err.toStdString();
    }
};

TEST_F(CliSetupErrorTest, UnknownScript)
{
    Seed();
    ExpectSetupError(Run({QStringLiteral("--script"), QStringLiteral("梁\\没有.js")}), QStringLiteral("梁\\没有.js"));
}

TEST_F(CliSetupErrorTest, BadOptions)
{
    ExpectSetupError(Run({QStringLiteral("--frobnicate")}), QStringLiteral("--frobnicate"));
    ExpectSetupError(Run({QStringLiteral("--jobs"), QStringLiteral("0")}), QStringLiteral("--jobs"));
    ExpectSetupError(Run({QStringLiteral("--timeout")}), QStringLiteral("--timeout"));
}

TEST_F(CliSetupErrorTest, MissingOrUnusableFolders)
{
    const QString missing = HomeFile(QStringLiteral("nowhere"));
    ExpectSetupError(Run({QStringLiteral("--home"), missing}), missing);
    const QString file = HomeFile(QStringLiteral("plain-file"));
    ASSERT_TRUE(WriteBytes(file, "x"));
    ExpectSetupError(Run({QStringLiteral("--home"), file}), file);
    ExpectSetupError(Run({QStringLiteral("--cases"), missing}), missing);
    ExpectSetupError(Run({QStringLiteral("--system-db"), missing}), missing);
    const QString junit = HomeFile(QStringLiteral("no/such/junit.xml"));
    ExpectSetupError(Run({QStringLiteral("--junit"), junit}), QStringLiteral("junit.xml"));
    // A home whose drive C (where the result file goes) cannot be made.
    ASSERT_TRUE(QDir().mkpath(HomeFile(QStringLiteral("h2/drives"))));
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("h2/drives/c")), "x"));
    ExpectSetupError(Run({QStringLiteral("--home"), HomeFile(QStringLiteral("h2"))}), HomeFile(QStringLiteral("h2")));
    // Nothing was seeded by the failed starts.
    EXPECT_FALSE(QFileInfo::exists(HostContext::Instance().SystemDatabase()));
}

TEST_F(CliSetupErrorTest, OptionsWinOverTheEnvironment)
{
    QProcessEnvironment env;
    env.insert(QStringLiteral("VELMORA_HOME"), HomeFile(QStringLiteral("elsewhere")));
    const Outcome viaEnv = Run({QStringLiteral("--home"), HomeFile(QStringLiteral("elsewhere"))}, env);
    EXPECT_EQ(viaEnv.exitCode, 2);
    // The option names the real home; the environment's missing one is ignored.
    const Outcome run = Run({QStringLiteral("--quiet")}, env);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
}

TEST_F(CliSetupErrorTest, OwnDatabaseAndCaseFolder)
{
    Seed();
    // Point a second home at the first home's database and case folder.
    const QString other = HomeFile(QStringLiteral("other"));
    ASSERT_TRUE(QDir().mkpath(other));
    const Outcome run = Run({QStringLiteral("--quiet"), QStringLiteral("--home"), other, QStringLiteral("--system-db"),
                             HostContext::Instance().SystemDatabase(), QStringLiteral("--cases"),
                             HostContext::Instance().TestCaseRoot()});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(Counts(run), std::make_pair(SampleCaseCount(), 0));
    EXPECT_TRUE(ResultPath(run).startsWith(other + QStringLiteral("/drives/c/")));
    // A named database is never seeded: the second home has none of its own.
    EXPECT_FALSE(QFileInfo::exists(other + QStringLiteral("/sysdata/system.db")));
}

TEST_F(CliSetupErrorTest, HelpAndVersion)
{
    const Outcome help = Run({QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains(QStringLiteral("--system-db")));
    const Outcome version = Run({QStringLiteral("--version")});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_TRUE(version.out.startsWith(QStringLiteral("velmora-test ")));
}
