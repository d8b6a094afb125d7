#include "COutPutTextTable.h"
#include "CMacroImplement.h"
#include "RunnerTestSupport.h"

#include <QRegularExpression>

namespace {

using Rows = QList<std::pair<QString, QString>>;

std::unique_ptr<CTestCaseInfoTable> Table(const Rows& rows)
{
    auto table = std::make_unique<CTestCaseInfoTable>();
    for (const auto& [name, value] : rows) {
        const int row = table->InsertRow(0);
        table->SetAsString(CTestCaseInfoTable::ParmName, row, name);
        table->SetAsString(CTestCaseInfoTable::ParmValue, row, value);
    }
    return table;
}

QString ExpectedTable(const QList<QStringList>& rows)
{
    COutPutTextTable table;
    for (const char* title : {"ParmName", "ParmValue", "NewParmValue"})
        table.AddTextNode(title);
    for (const QStringList& row : rows)
        for (const QString& cell : row)
            table.AddNodeValue(cell);
    return table.ToText();
}

} // namespace

class ServiceTest : public RunnerTest
{
};

TEST_F(ServiceTest, LogLinesHaveUnpaddedStampsThreeDotsAndATrailingBlank)
{
    EXPECT_EQ(CTestJavaScriptService::FormatLogLine("s.js", "c.tx", "测试通过!", QDateTime(QDate(2024, 3, 5), QTime(7, 8, 9))),
              QStringLiteral("2024.3.5 7:8:9...脚本(s.js)检测测试(c.tx)发现错误:测试通过! \r\n"));
    EXPECT_EQ(CTestJavaScriptService::FormatLogLine("s", "", "m", QDateTime(QDate(2025, 12, 31), QTime(23, 59, 0))),
              QStringLiteral("2025.12.31 23:59:0...脚本(s)检测测试()发现错误:m \r\n"));
    EXPECT_EQ(CTestJavaScriptService::FormatLogLine("s", "c", "m", QDateTime()),
              QStringLiteral("0.0.0 -1:-1:-1...脚本(s)检测测试(c)发现错误:m \r\n"));
}

TEST_F(ServiceTest, ResultFileNameIsShiftedAndDiffersPerService)
{
    const QDateTime before = QDateTime::currentDateTime();
    CTestJavaScriptService first;
    CTestJavaScriptService second;
    static const QRegularExpression form(QStringLiteral(
        "^C:\\\\测试脚本结果(\\d{4,})-(\\d{4})-(\\d{2})-(\\d{2})-(\\d{2})-(\\d{2})-(\\d{2})-(\\d{2,3})\\.txt$"));
    const auto match = form.match(first.GetResultFileName());
    ASSERT_TRUE(match.hasMatch()) << first.GetResultFileName().toStdString();
    EXPECT_EQ(match.captured(2).toInt(), before.date().year());
    EXPECT_EQ(match.captured(3).toInt(), before.date().month());
    EXPECT_NE(first.GetResultFileName(), second.GetResultFileName());
    EXPECT_TRUE(form.match(second.GetResultFileName()).hasMatch());
    // Lines go to the file in the code page.
    first.LogTestMessage("钢筋.js", "用例1.tx", "x");
    EXPECT_EQ(Masked(first), Line("钢筋.js", "用例1.tx", "x"));
    EXPECT_TRUE(ReadBytes(NativePath::Map(first.GetResultFileName()))
                    .contains(CodePage::FromUnicode(QStringLiteral("脚本(钢筋.js)"))));
}

TEST_F(ServiceTest, RunTestCaseJoinsTheFourTextsAndReadsEveryRowBack)
{
    CTestJavaScriptService service;
    auto table = Table({{"area", "expected"}, {"label", ""}, {"area", "second"}, {"missing", "m"}});
    QString error = "untouched";
    ASSERT_TRUE(service.RunTestCase("function sq(a) { return a * a; }", "var w = 2;", "w = 3; var h = 4;",
                                    "var area = sq(w) * h; var label = '面积' + area;", *table, error));
    EXPECT_EQ(error, QStringLiteral("untouched"));
    EXPECT_EQ(table->GetAsString(CTestCaseInfoTable::ParmValue, 1), QStringLiteral("36"));
    EXPECT_EQ(table->GetAsString(CTestCaseInfoTable::ParmValue, 2), QStringLiteral("面积36"));
    // Only the first row of a name receives the value.
    EXPECT_EQ(table->GetAsString(CTestCaseInfoTable::ParmValue, 3), QStringLiteral("second"));
    EXPECT_EQ(table->GetAsString(CTestCaseInfoTable::ParmValue, 4), QStringLiteral("参数不存在!"));
}

TEST_F(ServiceTest, RunTestCaseHandsBackTheEnginesErrorText)
{
    CMacroImplement direct;
    CArray<CMacroParam> none;
    ASSERT_EQ(direct.ExecuteScript(QStringLiteral("\r\n\r\nx = 1;\r\nvar y = ;"), none), 0);
    const QString engineError = direct.GetError();
    ASSERT_TRUE(engineError.startsWith(QStringLiteral("Error: "))) << engineError.toStdString();

    CTestJavaScriptService service;
    auto table = Table({{"y", "1"}});
    QString error;
    EXPECT_FALSE(service.RunTestCase("", "", "x = 1;", "var y = ;", *table, error));
    EXPECT_EQ(error, engineError);
    EXPECT_EQ(table->GetAsString(CTestCaseInfoTable::ParmValue, 1), QStringLiteral("1"));
}

TEST_F(ServiceTest, ComparisonIsExactTextCaseSensitiveAndPrintsEveryRow)
{
    const struct
    {
        Rows computed;
        Rows stored;
        QList<QStringList> printed; // empty when the values agree
    } cases[] = {
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
        SCOPED_TRACE(c.stored.first().second.toStdString());
        CTestJavaScriptService service;
        const bool agree = c.printed.isEmpty();
        EXPECT_EQ(service.CompareResults("s", "c", *Table(c.computed), *Table(c.stored)), agree);
        EXPECT_EQ(Masked(service), agree ? Line("s", "c", "计算结果一致!")
                                         : Line("s", "c", "计算结果不一致!") + ExpectedTable(c.printed));
    }
}
