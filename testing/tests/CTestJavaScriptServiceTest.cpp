#include "CMacroImplement.h"
#include "RunnerTestSupport.h"

namespace {

using Rows = QList<Expect>;

std::unique_ptr<CTestCaseInfoTable> Table(const Rows& rows)
{
    auto table = std::make_unique<CTestCaseInfoTable>();
    Fill(*table, rows);
    return table;
}

} // namespace

using ServiceTest = RunnerTest;

TEST_F(ServiceTest, ResultFileNameHasItsFormAndDiffersPerService)
{
    CTestJavaScriptService first, second;
    static const QRegularExpression form(QStringLiteral(
        "^C:\\\\测试脚本结果(\\d{4,})-(\\d{4})-(\\d{2})-(\\d{2})-(\\d{2})-(\\d{2})-(\\d{2})-(\\d{2,3})\\.txt$"));
    const auto match = form.match(first.GetResultFileName());
    ASSERT_TRUE(match.hasMatch()) << first.GetResultFileName().toStdString();
    EXPECT_NE(first.GetResultFileName(), second.GetResultFileName());
    EXPECT_TRUE(form.match(second.GetResultFileName()).hasMatch());
    // Lines go to the file in the code page.
    first.LogTestMessage("钢筋.js", "用例1.tx", "x");
    EXPECT_EQ(Masked(first), Line("钢筋.js", "用例1.tx", "x"));
    EXPECT_TRUE(ReadBytes(NativePath::Map(first.GetResultFileName())).contains(CodePage::FromUnicode("脚本(钢筋.js)")));
}

TEST_F(ServiceTest, RunTestCaseJoinsTheFourTextsAndReadsEveryRowBackOrHandsBackTheEnginesError)
{
    CMacroImplement direct;
    CArray<CMacroParam> none;
    ASSERT_EQ(direct.ExecuteScript("\r\n\r\nx = 1;\r\nvar y = ;", none), 0);
    ASSERT_TRUE(direct.GetError().startsWith("Error: ")) << direct.GetError().toStdString();
    const struct { QStringList texts; Rows rows; bool ok; QString error; QStringList after; } cases[] = {
        // Only the first row of a name receives the value.
        {{"function sq(a) { return a * a; }", "var w = 2;", "w = 3; var h = 4;",
          "var area = sq(w) * h; var label = '面积' + area;"},
         {{"area", "expected"}, {"label", ""}, {"area", "second"}, {"missing", "m"}}, true, "untouched",
         {"area|36|", "label|面积36|", "area|second|", "missing|参数不存在!|"}},
        {{"", "", "x = 1;", "var y = ;"}, {{"y", "1"}}, false, direct.GetError(), {"y|1|"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.ok);
        auto table = Table(c.rows);
        QString error = "untouched";
        EXPECT_EQ(CTestJavaScriptService().RunTestCase(c.texts[0], c.texts[1], c.texts[2], c.texts[3], *table, error), c.ok);
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(RowTexts(*table), c.after);
    }
}

TEST_F(ServiceTest, ComparisonIsExactTextCaseSensitiveAndPrintsEveryRow)
{
    const struct { Rows computed, stored; QList<QStringList> printed; /* empty when the values agree */ } cases[] = {
        {{{"v", "3"}, {"w", "7"}}, {{"v", "3.0"}, {"w", "7"}}, {{"v", "3.0", "3"}, {"w", "7", "7"}}},
        {{{"v", "1.0"}}, {{"v", "1"}}, {{"v", "1", "1.0"}}},
        {{{"v", "A"}}, {{"v", "a"}}, {{"v", "a", "A"}}},
        {{{"v", "1"}}, {{"v", " 1"}}, {{"v", " 1", "1"}}},
        // Line breaks count in the comparison but are left out of the table.
        {{{"v", "1"}}, {{"v", "1\r\n"}}, {{"v", "1", "1"}}},
        {{{"s", "a\r\nb"}}, {{"s", "ab"}}, {{"s", "ab", "ab"}}},
        {{{"new", "5"}, {"old", "1"}}, {{"old", "1"}, {"extra", "9"}}, {{"new", "原测试中没有此参数", "5"}, {"old", "1", "1"}}},
        {{{"a", "1"}, {"b", "x\r\ny"}}, {{"b", "x\r\ny"}, {"a", "1"}}, {}},
        {{{"v", ""}}, {{"v", ""}}, {}},
        // Names match case-sensitively and the first stored row of a name wins.
        {{{"X", "1"}, {"y", "2"}}, {{"x", "1"}, {"y", "2"}, {"y", "3"}, {"X", "1"}}, {}},
        {{{"y", "2"}}, {{"y", "3"}, {"y", "2"}}, {{"y", "3", "2"}}},
        {{}, {{"a", "1"}}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored.first().value.toStdString());
        CTestJavaScriptService service;
        const bool agree = c.printed.isEmpty();
        EXPECT_EQ(service.CompareResults("s", "c", *Table(c.computed), *Table(c.stored)), agree);
        EXPECT_EQ(Masked(service), agree ? Line("s", "c", "计算结果一致!") : Line("s", "c", "计算结果不一致!") + PrintedTable(c.printed));
    }
}
