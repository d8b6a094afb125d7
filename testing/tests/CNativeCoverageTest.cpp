#include "CNativeCoverageService.h"
#include "RunnerTestSupport.h"

// Line coverage of a script whose reached and unreached lines are known: two
// branches, a function never called (in the script and in its library), and
// a case that throws half-way. Counts are summed over the cases.
namespace {

const QString kScript = "箍筋\\根数.js";
const QString kGlobalFun = QStringLiteral("function Twice(x) {\r\n" // 1
                                          "  return 2 * x;\r\n"    // 2: case a
                                          "}\r\n"                  // 3
                                          "function Never(x) {\n"  // 4 (LF only)
                                          "  return x;\n"          // 5: never
                                          "}");                    // 6
const QString kGlobalParm = "var d = 0;\r\nvar e = 1;";
const QString kText = QStringLiteral("// 箍筋根数\r\n"                 // 1
                                     "var r = 0;\r\n"                  // 2: all
                                     "if (d > 10) {\r\n"               // 3: all
                                     "  r = Twice(d);\r\n"             // 4: a
                                     "} else {\r\n"                    // 5
                                     "  r = d;\r\n"                    // 6: b, c
                                     "}\r\n"                           // 7
                                     "function Unused() {\r\n"         // 8
                                     "  return 1;\r\n"                 // 9: never
                                     "}\r\n"                           // 10
                                     "if (d < 0)\r\n"                  // 11: all
                                     "  throw new Error(\"负数\");\r\n" // 12: c
                                     "r = r + 1;");                    // 13: a, b

using Hits = CNativeCoverage::LineHits;
const Hits kAllScript = {{2, 3}, {3, 3}, {4, 1}, {6, 2}, {9, 0}, {11, 3}, {12, 1}, {13, 2}};
const Hits kAllLibrary = {{2, 1}, {5, 0}};

class NativeCoverageTest : public RunnerTest
{
protected:
    void SetUp() override
    {
        RunnerTest::SetUp();
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(kScript, kText));
        SeedGlobals(kScript, kGlobalFun, kGlobalParm);
        SeedCase(kScript, "a.tx", "// 直径大\r\nd = 12;", {{"r", "25"}});
        SeedCase(kScript, "b.tx", "d = 5;", {{"r", "6"}});
        SeedCase(kScript, "c.tx", "d = -1;", {{"r", "-1"}});
        m_service.SetOutputFolder("C:\\cover\\");
    }

    Hits HitsOf(const QString& fileName) const
    {
        const CNativeCoverage::File* file = m_service.Coverage().Find(kScript, fileName);
        return file ? file->hits : Hits{{-1, -1}};
    }

    CNativeCoverageService m_service;
};

TEST_F(NativeCoverageTest, CountsEveryLineTheCasesReachAndOpensTheReport)
{
    // A plain run first, as after 测试所有: what it compiled must not be reused with counters.
    CScriptTestReport plain;
    CTestJavaScriptService().RunScriptTests(kScript, kText, &plain);
    ASSERT_EQ(plain.outcomes.size(), 3);
    ASSERT_TRUE(m_service.RunScriptCoverage(kScript)) << Ui().MessageTexts().join("\n").toStdString();
    EXPECT_EQ(HitsOf("根数.js"), kAllScript);
    EXPECT_EQ(HitsOf("GlobalFun.txt"), kAllLibrary);
    // The throwing case failed, the others passed: counted all the same.
    QStringList outcomes;
    for (const CTestCaseOutcome& outcome : m_service.Report().outcomes)
        outcomes << outcome.caseName + (outcome.passed ? " ok" : " failed");
    EXPECT_EQ(outcomes, QStringList({"a.tx ok", "b.tx ok", "c.tx failed"}));

    // The lcov file, one record per source.
    const QString dir = NativePath::Map(m_service.OutputFolder());
    const QByteArray lcov = ReadBytes(dir + "/lcov.info");
    EXPECT_EQ(lcov.count("end_of_record"), 2) << lcov.toStdString();
    EXPECT_TRUE(lcov.contains("DA:12,1\nDA:13,2\nLF:8\nLH:7\n")) << lcov.toStdString();
    EXPECT_EQ(Ui().MessageTexts(), QStringList());
    const QList<CRecordingUIService::Call> opened = Ui().CallsOf("ShellOpen");
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened.at(0).text, m_service.ReportPage());
    EXPECT_TRUE(QFile::exists(m_service.ReportPage()));
}

TEST_F(NativeCoverageTest, OneCaseCountsOnlyItsOwnLines)
{
    ASSERT_TRUE(m_service.RunScriptCoverage(kScript, "c.tx"));
    EXPECT_EQ(HitsOf("根数.js"), Hits({{2, 1}, {3, 1}, {4, 0}, {6, 1}, {9, 0}, {11, 1}, {12, 1}, {13, 0}}));
    EXPECT_EQ(HitsOf("GlobalFun.txt"), Hits({{2, 0}, {5, 0}}));
}

TEST_F(NativeCoverageTest, NothingToRunIsSaidAndNothingOpened)
{
    const struct { QString script, caseName, message; } rows[] = {
        {"没有.js", "", CNativeCoverageService::kNoScript + "没有.js"},
        {kScript, "x.tx", CNativeCoverageService::kNoSuchCase + "x.tx"},
        {"无用例.js", "", CTestJavaScriptService::kNoTestCases},
    };
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("无用例.js", "var x = 1;"));
    for (const auto& row : rows) {
        Ui().Clear();
        EXPECT_FALSE(m_service.RunScriptCoverage(row.script, row.caseName));
        EXPECT_EQ(Ui().MessageTexts(), QStringList({row.message}));
        EXPECT_TRUE(Ui().CallsOf("ShellOpen").isEmpty());
    }
}

} // namespace
