#include "CliFixture.h"

#include "CTestCaseStore.h"
#include "NativePath.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

using CliRunTest = CliFixture;

TEST_F(CliRunTest, FirstRunSeedsTheHomeAndEverySamplePasses)
{
    const Outcome run = Run({});
    EXPECT_EQ(run.exitCode, 0) << run.out.toStdString() << run.err.toStdString();
    const int cases = SampleCaseCount();
    ASSERT_GT(cases, 16);
    EXPECT_EQ(Counts(run), std::make_pair(cases, 0));
    EXPECT_FALSE(run.err.contains("测试出现失败！"));
    EXPECT_TRUE(ResultPath(run).startsWith(Home() + "/drives/c/测试脚本结果")) << ResultPath(run).toStdString();
    EXPECT_EQ(ResultLines(run).filter("发现错误:测试通过! ").size(), cases); // the lines' form is the service's
}

// A mismatch, an engine error, a script without cases and one that never
// ends: each is one logged failure and the run goes on. That any job count
// writes the same lines is the parallel runner's and the service's to show.
TEST_F(CliRunTest, FaultsFailTheRunAndEachIsReported)
{
    Seed();
    const QString sample = Samples().at(0).keyCh, uncased = Samples().at(2).keyCh;
    SetExpected(sample, "直径25.tx", "W", "3.9");
    AddScript("梁\\坏脚本.js", "var x = ;", "a = 2;", {"x"});
    AddScript("梁\\死循环.js", "while (true) {}", QString(), {"a"});
    ASSERT_TRUE(QDir(NativePath::Map(CTestCaseStore::ScriptFolder(uncased))).removeRecursively());
    const int passed = SampleCaseCount() - int(Samples().at(2).cases.size()) - 1;

    const QString junit = HomeFile("junit.xml");
    const Outcome run = Run({"--quiet", "--jobs", "3", "--timeout", "300", "--junit", junit});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(Counts(run), std::make_pair(passed, 4));
    EXPECT_TRUE(run.err.contains("测试出现失败！"));
    EXPECT_TRUE(run.out.contains("FAILED " + sample + " / 直径25.tx: 计算结果不一致!"));
    EXPECT_EQ(ResultLines(run).filter("测试通过!").size(), passed);

    // The JUnit file parses back: one test per case, script-level ones included.
    const QDomElement root = JUnit(junit).documentElement();
    EXPECT_EQ(root.attribute("tests") + "/" + QString::number(root.elementsByTagName("failure").size()),
              QString::number(passed + 4) + "/4");
}

// Line coverage: the same lcov.info from one job and from several, one record
// per sample script plus the one library they all share, accepted by genhtml.
TEST_F(CliRunTest, CoverageIsTheSameFromOneJobAndFromAllCores)
{
    Seed();
    QString reference;
    for (const QString jobs : {"1", "3"}) {
        SCOPED_TRACE(jobs.toStdString());
        const QString dir = HomeFile("coverage" + jobs);
        const Outcome run = Run({"--quiet", "--jobs", jobs, "--coverage", dir});
        EXPECT_EQ(run.exitCode, 0) << run.out.toStdString() << run.err.toStdString();
        EXPECT_TRUE(QFile::exists(dir + "/html/index.html"));
        const QString lcov = QString::fromUtf8(ReadBytes(dir + "/lcov.info")).replace(dir, "DIR");
        EXPECT_EQ(lcov.count("end_of_record"), Samples().size() + 1);
        EXPECT_EQ(lcov.count("/GlobalFun.txt\n"), 1);
        if (reference.isEmpty())
            reference = lcov;
        EXPECT_EQ(lcov, reference);
    }
}

// A case whose table cannot be read passes (the result file keeps that) but is
// named as a warning, and fails under --strict. Output into a pipe holds no
// control sequences; a failure names the line within the script.
TEST_F(CliRunTest, UnreadableTablesWarnStrictFailsThemAndFailuresNameTheScriptLine)
{
    Seed();
    const QString broken = "梁\\坏表.js";
    AddScript(broken, "var a = 1;", "a = 1;", {"a"});
    const QString caseFile = NativePath::Map(CTestCaseStore::ScriptFolder(broken)) + "one.tx";
    ASSERT_TRUE(WriteBytes(caseFile, "a = 1;" + CTestCaseStore::kSeparator.toLatin1() + "<DataSet><broken"));
    const QString junit = HomeFile("junit.xml");
    const int cases = SampleCaseCount() + 1;

    const Outcome warned = Run({"--junit", junit});
    EXPECT_EQ(warned.exitCode, 0) << warned.err.toStdString();
    EXPECT_EQ(Counts(warned), std::make_pair(cases, 0));
    const QString warning = "warning: " + broken + " / one.tx: case table cannot be read, compared as empty";
    EXPECT_TRUE(warned.err.contains(warning + "\n")) << warned.err.toStdString();
    EXPECT_TRUE(warned.out.contains(QString("%1 passed, 0 failed\n1 warnings\n").arg(cases))) << warned.out.toStdString();
    EXPECT_TRUE(warned.err.contains("开始测试脚本:"));
    EXPECT_FALSE(warned.err.contains('\r') || warned.err.contains(QChar(0x1B)));
    EXPECT_EQ(ResultLines(warned).filter("脚本(" + broken + ")检测测试(one.tx)发现错误:测试通过!").size(), 1);
    EXPECT_TRUE(JUnit(junit).toString().contains("<system-err>" + warning.toHtmlEscaped() + "</system-err>"));

    const Outcome strict = Run({"--quiet", "--strict"});
    EXPECT_EQ(strict.exitCode, 1);
    EXPECT_EQ(Counts(strict), std::make_pair(cases - 1, 1));
    EXPECT_TRUE(strict.out.contains("FAILED " + broken + " / one.tx: case table cannot be read")) << strict.out.toStdString();

    // The runner's empty global script, the global functions and parameters
    // take lines 1 to 3, the case line 4.
    const QString faulty = "梁\\坏行.js";
    AddScript(faulty, "var x = 1;\r\nvar y = ;", "a = 2;", {"x"});
    const Outcome failed = Run({"--quiet", "--script", faulty});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_TRUE(QRegularExpression("FAILED " + QRegularExpression::escape(faulty)
                                   + " / one.tx: Error: .*; in line 6 \\(script line 2\\)\n")
                    .match(failed.out).hasMatch()) << failed.out.toStdString();
}
