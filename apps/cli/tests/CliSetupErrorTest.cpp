#include "CliFixture.h"

#include "HostContext.h"

#include <QDir>
#include <QFileInfo>

class CliSetupErrorTest : public CliFixture
{
protected:
    // Exit status 2, one line on stderr naming `what`, nothing on stdout.
    static void ExpectSetupError(const Outcome& run, const QString& what)
    {
        EXPECT_EQ(run.exitCode, 2) << run.out.toStdString() << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
        EXPECT_EQ(run.err.count('\n'), 1) << run.err.toStdString();
        EXPECT_TRUE(run.err.startsWith("velmora-test: ") && run.err.contains(what)) << run.err.toStdString();
    }
};

TEST_F(CliSetupErrorTest, BadOptionsAndUnusableFoldersStopBeforeAnything)
{
    const QString missing = HomeFile("nowhere"), file = HomeFile("plain-file"), noDrive = HomeFile("h2");
    ASSERT_TRUE(WriteBytes(file, "x"));
    // A home whose drive C (where the result file goes) cannot be made.
    ASSERT_TRUE(QDir().mkpath(noDrive + "/drives"));
    ASSERT_TRUE(WriteBytes(noDrive + "/drives/c", "x"));
    const struct { QStringList args; QString what; } cases[] = {
        {{"--frobnicate"}, "--frobnicate"}, // each option's own refusals are the option parser's
        {{"--home", missing}, missing},     {{"--home", file}, file},   {{"--home", noDrive}, noDrive},
        {{"--cases", missing}, missing},    {{"--system-db", missing}, missing},
        {{"--junit", HomeFile("no/such/junit.xml")}, "junit.xml"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args.join(' ').toStdString());
        ExpectSetupError(Run(c.args), c.what);
    }
    EXPECT_FALSE(QFileInfo::exists(HostContext::Instance().SystemDatabase())); // nothing seeded by the failed starts
}

// On a seeded home: an unknown script stops the run; options win over the environment; a home
// pointed at another's database and case folder seeds neither.
TEST_F(CliSetupErrorTest, UnknownScriptOptionsOverTheEnvironmentAndOwnDatabaseNeverSeeded)
{
    Seed();
    ExpectSetupError(Run({"--script", "梁\\没有.js"}), "梁\\没有.js");
    const QString other = HomeFile("other");
    ASSERT_TRUE(QDir().mkpath(other));
    QProcessEnvironment env;
    env.insert("VELMORA_HOME", HomeFile("elsewhere")); // missing: it would fail if it were read
    const Outcome run = Run({"--quiet", "--home", other, "--system-db", HostContext::Instance().SystemDatabase(), "--cases",
                             HostContext::Instance().TestCaseRoot()}, env);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(Counts(run), std::make_pair(SampleCaseCount(), 0));
    EXPECT_TRUE(ResultPath(run).startsWith(other + "/drives/c/"));
    EXPECT_FALSE(QFileInfo::exists(other + "/sysdata/system.db"));
}
