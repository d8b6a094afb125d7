#include "CliFixture.h"

#include "CTestCaseStore.h"
#include "NativePath.h"

#include <QDir>
#include <QDomDocument>
#include <QRegularExpression>
#include <QFileInfo>

namespace {

int CountContaining(const QStringList& lines, const QString& text)
{
    int n = 0;
    for (const QString& line : lines)
        n += line.contains(text) ? 1 : 0;
    return n;
}

} // namespace

class CliRunTest : public CliFixture
{
};

TEST_F(CliRunTest, FirstRunSeedsTheHomeAndEverySamplePasses)
{
    const Outcome run = Run({});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 0) << run.out.toStdString() << run.err.toStdString();
    const int cases = SampleCaseCount();
    ASSERT_GT(cases, 16);
    EXPECT_EQ(Counts(run), std::make_pair(cases, 0));
    EXPECT_TRUE(run.err.contains(QStringLiteral("seeded ")));
    EXPECT_TRUE(run.err.contains(QStringLiteral("开始测试脚本:")));  // the progress bar
    EXPECT_FALSE(run.err.contains(QStringLiteral("测试出现失败！")));

    const QString path = ResultPath(run);
    EXPECT_TRUE(path.startsWith(Home() + QStringLiteral("/drives/c/测试脚本结果"))) << path.toStdString();
    const QStringList lines = ResultLines(run);
    ASSERT_EQ(lines.size(), 2 * cases);
    EXPECT_EQ(CountContaining(lines, QStringLiteral("发现错误:测试通过! ")), cases);
    EXPECT_EQ(CountContaining(lines, QStringLiteral("发现错误:计算结果一致! ")), cases);
    for (const QString& line : lines)
        EXPECT_TRUE(WithoutStamp(line).startsWith(QStringLiteral("...脚本("))) << line.toStdString();

    // A seeded home is not seeded again.
    const Outcome again = Run({QStringLiteral("--quiet")});
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_FALSE(again.err.contains(QStringLiteral("seeded ")));
    EXPECT_TRUE(again.err.isEmpty()) << again.err.toStdString();
}

TEST_F(CliRunTest, OneMismatchFailsTheRunAndPrintsTheTable)
{
    Seed();
    const QString script = SampleKey(0);
    SetExpected(script, QStringLiteral("直径25.tx"), QStringLiteral("W"), QStringLiteral("3.9"));
    const Outcome run = Run({QStringLiteral("--quiet")});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 1);
    const int cases = SampleCaseCount();
    EXPECT_EQ(Counts(run), std::make_pair(cases - 1, 1));
    EXPECT_TRUE(run.err.contains(QStringLiteral("测试出现失败！")));
    EXPECT_TRUE(run.out.contains(QStringLiteral("FAILED ") + script + QStringLiteral(" / 直径25.tx: 计算结果不一致!")));

    const QStringList lines = ResultLines(run);
    const int at = int(lines.indexOf(QRegularExpression(QStringLiteral(".*\\(直径25\\.tx\\)发现错误:计算结果不一致! $"))));
    ASSERT_GE(at, 0);
    ASSERT_GT(lines.size(), at + 3);
    const QString table = lines.mid(at + 1, 5).join(QLatin1Char('\n'));
    EXPECT_TRUE(table.contains(QStringLiteral("NewParmValue")));
    EXPECT_TRUE(table.contains(QStringLiteral("3.9")));
    EXPECT_TRUE(table.contains(QStringLiteral("3.856")));
    EXPECT_EQ(CountContaining(lines, QStringLiteral("测试通过!")), cases - 1);
}

TEST_F(CliRunTest, EngineErrorIsLoggedAndTheOtherScriptsRun)
{
    Seed();
    AddScript(QStringLiteral("梁\\坏脚本.js"), QStringLiteral("var x = ;"), QStringLiteral("a = 2;"), {QStringLiteral("x")});
    const Outcome run = Run({QStringLiteral("--quiet")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(Counts(run), std::make_pair(SampleCaseCount(), 1));
    const QStringList lines = ResultLines(run);
    const int at = int(lines.indexOf(QRegularExpression(QStringLiteral(".*脚本\\(梁\\\\坏脚本\\.js\\)检测测试\\(one\\.tx\\)发现错误:.*Error.*"))));
    ASSERT_GE(at, 0) << lines.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(lines[at].contains(QStringLiteral("; in line "))) << lines[at].toStdString();
}

TEST_F(CliRunTest, ScriptWithoutCasesFailsTheRun)
{
    Seed();
    const QString script = SampleKey(2);
    ASSERT_TRUE(QDir(NativePath::Map(CTestCaseStore::ScriptFolder(script))).removeRecursively());
    const Outcome run = Run({QStringLiteral("--quiet")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(Counts(run).second, 1);
    const QStringList lines = ResultLines(run);
    EXPECT_EQ(lines.filter(QStringLiteral("脚本(") + script + QStringLiteral(")检测测试()发现错误:没有测试用例! ")).size(), 1);
}

TEST_F(CliRunTest, DamagedCaseFileIsALoggedFailure)
{
    Seed();
    const QString script = SampleKey(0);
    const QString file = NativePath::Map(CTestCaseStore::ScriptFolder(script) + QStringLiteral("直径12.tx"));
    // Two separators: the file cannot be split into text and table.
    ASSERT_TRUE(WriteBytes(file, "d = 1;@@@@@@######@@@@@<TestCase/>@@@@@@######@@@@@"));
    const Outcome run = Run({QStringLiteral("--quiet")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(Counts(run).second, 1);
    EXPECT_EQ(ResultLines(run).filter(QStringLiteral("(直径12.tx)发现错误:无法获取测试用例信息!")).size(), 1);
}

TEST_F(CliRunTest, OneScriptOnly)
{
    Seed();
    const QString script = SampleKey(3);
    const Outcome run = Run({QStringLiteral("--script"), script, QStringLiteral("--quiet")});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QStringList lines = ResultLines(run);
    ASSERT_FALSE(lines.isEmpty());
    for (const QString& line : lines)
        EXPECT_TRUE(line.contains(QStringLiteral("脚本(") + script + QStringLiteral(")"))) << line.toStdString();
    EXPECT_TRUE(run.out.contains(QStringLiteral("velmora-test: 1 scripts")));
}

TEST_F(CliRunTest, NeverEndingScriptTimesOutAndTheRunGoesOn)
{
    Seed();
    AddScript(QStringLiteral("梁\\死循环.js"), QStringLiteral("while (true) {}"), QString(), {QStringLiteral("a")});
    const Outcome run = Run({QStringLiteral("--quiet"), QStringLiteral("--timeout"), QStringLiteral("300")});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(Counts(run), std::make_pair(SampleCaseCount(), 1));
    const QStringList failed = ResultLines(run).filter(QStringLiteral("脚本(梁\\死循环.js)检测测试(one.tx)发现错误:"));
    ASSERT_EQ(failed.size(), 1);
    EXPECT_FALSE(failed[0].contains(QStringLiteral("测试通过!")));
}

TEST_F(CliRunTest, JobsDoNotChangeTheResultFile)
{
    Seed();
    SetExpected(SampleKey(0), QStringLiteral("直径8.tx"), QStringLiteral("W"), QStringLiteral("0.4"));
    AddScript(QStringLiteral("梁\\坏脚本.js"), QStringLiteral("var x = ;"), QString(), {QStringLiteral("x")});
    ASSERT_TRUE(QDir(NativePath::Map(CTestCaseStore::ScriptFolder(SampleKey(5)))).removeRecursively());
    QStringList reference;
    for (const char* jobs : {"1", "4", "3"}) {
        const Outcome run = Run({QStringLiteral("--quiet"), QStringLiteral("--jobs"), QLatin1String(jobs)});
        EXPECT_EQ(run.exitCode, 1) << jobs;
        QStringList lines;
        for (const QString& line : ResultLines(run))
            lines << WithoutStamp(line);
        ASSERT_GT(lines.size(), 2 * SampleCaseCount() - 6);
        if (reference.isEmpty())
            reference = lines;
        else
            EXPECT_EQ(lines, reference) << "with --jobs " << jobs;
    }
}

TEST_F(CliRunTest, JUnitFileReadsBack)
{
    Seed();
    SetExpected(SampleKey(0), QStringLiteral("直径25.tx"), QStringLiteral("W"), QStringLiteral("1"));
    const QString junit = HomeFile(QStringLiteral("junit.xml"));
    const Outcome run = Run({QStringLiteral("--quiet"), QStringLiteral("--junit"), junit, QStringLiteral("--jobs"), QStringLiteral("2")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.out.contains(QStringLiteral("junit file: ") + junit));
    QDomDocument doc;
    ASSERT_TRUE(doc.setContent(ReadBytes(junit)));
    const QDomElement root = doc.documentElement();
    EXPECT_EQ(root.attribute(QStringLiteral("tests")).toInt(), SampleCaseCount());
    EXPECT_EQ(root.attribute(QStringLiteral("failures")).toInt(), 1);
    const QDomNodeList cases = root.elementsByTagName(QStringLiteral("testcase"));
    ASSERT_EQ(cases.size(), SampleCaseCount());
    int failures = 0;
    for (int i = 0; i < cases.size(); ++i) {
        const QDomElement testCase = cases.at(i).toElement();
        EXPECT_TRUE(testCase.attribute(QStringLiteral("name")).endsWith(QStringLiteral(".tx")));
        const QDomElement failure = testCase.firstChildElement(QStringLiteral("failure"));
        if (failure.isNull())
            continue;
        ++failures;
        EXPECT_EQ(testCase.attribute(QStringLiteral("classname")), SampleKey(0));
        EXPECT_EQ(testCase.attribute(QStringLiteral("name")), QStringLiteral("直径25.tx"));
        EXPECT_TRUE(failure.text().contains(QRegularExpression(QStringLiteral("\\| W +\\| 1 +\\| 3\\.856 +\\|"))))
            << failure.text().toStdString();
    }
    EXPECT_EQ(failures, 1);
}
