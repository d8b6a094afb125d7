#include "CliFixture.h"

#include <QSet>

using CliShardTest = CliFixture;

// Four shards one after the other (two told by the CI variables): between
// them every script once, the outcomes of one unsharded run, and a result
// file and a JUnit file each whose suites carry the shard.
TEST_F(CliShardTest, FourShardsInSequenceGiveTheOutcomesOfOneRun)
{
    Seed();
    const QString failing = Samples().at(0).keyCh;
    SetExpected(failing, "直径25.tx", "W", "3.9");
    const Outcome whole = Run({"--quiet"});
    ASSERT_EQ(whole.exitCode, 1) << whole.err.toStdString();
    QStringList expected;
    for (const QString& line : ResultLines(whole))
        expected << WithoutStamp(line);
    const int everyScript = int(Run({"--list"}).out.split('\n', Qt::SkipEmptyParts).size());
    ASSERT_EQ(everyScript, Samples().size());

    QStringList outcomes;
    QSet<QString> resultFiles;
    int tests = 0;
    for (int k = 1; k <= 4; ++k) {
        const QString shard = QStringLiteral("%1/4").arg(k), junit = HomeFile(QStringLiteral("junit-%1.xml").arg(k));
        SCOPED_TRACE(shard.toStdString());
        const QStringList mine = Run({"--list", "--shard", shard}).out.split('\n', Qt::SkipEmptyParts);
        QProcessEnvironment ci;
        ci.insert("CI_NODE_INDEX", QString::number(k));
        ci.insert("CI_NODE_TOTAL", "4");
        const Outcome run = k % 2 ? Run({"--quiet", "--junit", junit}, ci) : Run({"--quiet", "--shard", shard, "--junit", junit});
        EXPECT_EQ(run.exitCode, mine.contains(failing) ? 1 : 0) << run.err.toStdString();
        EXPECT_TRUE(run.out.contains(QStringLiteral("velmora-test: shard %1: %2 of %3 scripts").arg(shard).arg(mine.size()).arg(everyScript)))
            << run.out.toStdString();
        for (const QString& line : ResultLines(run))
            outcomes << WithoutStamp(line);
        resultFiles.insert(ResultPath(run));

        const QDomElement root = JUnit(junit).documentElement();
        tests += root.attribute("tests").toInt();
        const QDomNodeList suites = root.elementsByTagName("testsuite");
        ASSERT_EQ(suites.size(), mine.size());
        for (int i = 0; i < suites.size(); ++i)
            EXPECT_EQ(suites.at(i).toElement().attribute("name"), mine.at(i) + " (shard " + shard + ")");
    }
    outcomes.sort(); // between them every script once, as in the whole run
    expected.sort();
    EXPECT_EQ(outcomes, expected);
    EXPECT_EQ(tests, SampleCaseCount());
    resultFiles.insert(ResultPath(whole));
    EXPECT_EQ(resultFiles.size(), 5);
}

// A named script runs alone, in the one shard its name falls into and in no
// other; a seeded home is not seeded again.
TEST_F(CliShardTest, NamedScriptRunsInItsShardOnly)
{
    Seed();
    const QString added = "梁\\新加的脚本.js";
    AddScript(added, "var x = 1;", QString(), {"x"});
    int runs = 0;
    for (int k = 1; k <= 3; ++k) {
        const QString shard = QStringLiteral("%1/3").arg(k);
        const Outcome run = Run({"--quiet", "--script", added, "--shard", shard});
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString();
        const bool listed = Run({"--list", "--shard", shard}).out.split('\n').contains(added);
        EXPECT_EQ(Counts(run), listed ? std::make_pair(1, 0) : std::make_pair(0, 0)) << k;
        runs += Counts(run).first;
    }
    EXPECT_EQ(runs, 1);
}
