#include "COutPutTextTable.h"
#include "CMacroImplement.h"
#include "HostContext.h"
#include "NativePath.h"
#include "RunnerTestSupport.h"

#include <QDir>
#include <QRegularExpression>

namespace {

std::unique_ptr<CTestCaseInfoTable> Table(const QList<std::pair<QString, QString>>& rows)
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
    table.AddTextNode("ParmName");
    table.AddTextNode("ParmValue");
    table.AddTextNode("NewParmValue");
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
    const QDateTime when(QDate(2024, 3, 5), QTime(7, 8, 9));
    EXPECT_EQ(CTestJavaScriptService::FormatLogLine("s.js", "c.tx", "测试通过!", when),
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
}

TEST_F(ServiceTest, LogTestMessageAppendsToTheResultFileInTheCodePage)
{
    CTestJavaScriptService service;
    service.LogTestMessage("钢筋.js", "用例1.tx", "计算结果一致!");
    service.LogTestMessage("b", "", "x");
    EXPECT_EQ(Masked(service), Line("钢筋.js", "用例1.tx", "计算结果一致!") + Line("b", "", "x"));
    const QString native = NativePath::Map(service.GetResultFileName());
    EXPECT_TRUE(native.startsWith(HostContext::Instance().DriveRoot('C')));
    EXPECT_TRUE(ReadBytes(native).contains(CodePage::FromUnicode(QStringLiteral("脚本(钢筋.js)"))));
    EXPECT_FALSE(service.ResultFileWriteFailed());
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
    const QString program = QStringLiteral("\r\n\r\nx = 1;\r\nvar y = ;");
    CMacroImplement direct;
    CArray<CMacroParam> none;
    ASSERT_EQ(direct.ExecuteScript(program, none), 0);
    const QString engineError = direct.GetError();
    ASSERT_TRUE(engineError.startsWith(QStringLiteral("Error: "))) << engineError.toStdString();

    CTestJavaScriptService service;
    auto table = Table({{"y", "1"}});
    QString error;
    EXPECT_FALSE(service.RunTestCase("", "", "x = 1;", "var y = ;", *table, error));
    EXPECT_EQ(error, engineError);
    EXPECT_EQ(table->GetAsString(CTestCaseInfoTable::ParmValue, 1), QStringLiteral("1"));
}

TEST_F(ServiceTest, EqualValuesLogAgreementOnly)
{
    CTestJavaScriptService service;
    auto after = Table({{"a", "1"}, {"b", "x\r\ny"}});
    auto stored = Table({{"b", "x\r\ny"}, {"a", "1"}});
    EXPECT_TRUE(service.CompareResults("s", "c", *after, *stored));
    EXPECT_EQ(Masked(service), Line("s", "c", "计算结果一致!"));
}

TEST_F(ServiceTest, ComparisonIsExactTextAndPrintsEveryRow)
{
    const struct
    {
        QString stored;
        QString computed;
        bool agree;
    } cases[] = {
        {"3.0", "3", false}, {"3", "3", true},   {"1", "1.0", false}, {"a", "A", false},
        {" 1", "1", false},  {"", "", true},      {"1\r\n", "1", false},
    };
    for (const auto& c : cases) {
        CTestJavaScriptService service;
        auto after = Table({{"v", c.computed}, {"w", "7"}});
        auto stored = Table({{"v", c.stored}, {"w", "7"}});
        EXPECT_EQ(service.CompareResults("s", "c", *after, *stored), c.agree) << c.stored.toStdString();
        if (c.agree)
            continue;
        const auto unbroken = [](QString v) { return v.remove('\r').remove('\n'); };
        EXPECT_EQ(Masked(service), Line("s", "c", "计算结果不一致!")
                                       + ExpectedTable({{"v", unbroken(c.stored), c.computed}, {"w", "7", "7"}}));
    }
}

TEST_F(ServiceTest, LineBreaksCountInTheComparisonButNotInTheTable)
{
    CTestJavaScriptService service;
    auto after = Table({{"s", "a\r\nb"}});
    auto stored = Table({{"s", "ab"}});
    EXPECT_FALSE(service.CompareResults("s", "c", *after, *stored));
    const QString text = Masked(service);
    EXPECT_EQ(text, Line("s", "c", "计算结果不一致!") + ExpectedTable({{"s", "ab", "ab"}}));
    EXPECT_FALSE(text.mid(Line("s", "c", "x").size()).contains(QStringLiteral("a\r\nb")));
}

TEST_F(ServiceTest, AParameterTheStoredCaseLacksIsAMismatch)
{
    CTestJavaScriptService service;
    auto after = Table({{"new", "5"}, {"old", "1"}});
    auto stored = Table({{"old", "1"}, {"extra", "9"}});
    EXPECT_FALSE(service.CompareResults("s", "c", *after, *stored));
    EXPECT_EQ(Masked(service), Line("s", "c", "计算结果不一致!")
                                   + ExpectedTable({{"new", "原测试中没有此参数", "5"}, {"old", "1", "1"}}));
}

TEST_F(ServiceTest, NamesMatchCaseSensitivelyAndTheFirstStoredRowWins)
{
    CTestJavaScriptService service;
    auto after = Table({{"X", "1"}, {"y", "2"}});
    auto stored = Table({{"x", "1"}, {"y", "2"}, {"y", "3"}, {"X", "1"}});
    EXPECT_TRUE(service.CompareResults("s", "c", *after, *stored));
    auto stored2 = Table({{"y", "3"}, {"y", "2"}, {"X", "1"}});
    EXPECT_FALSE(service.CompareResults("s", "c", *after, *stored2));
}

TEST_F(ServiceTest, AnEmptyRunTableAgrees)
{
    CTestJavaScriptService service;
    CTestCaseInfoTable after;
    auto stored = Table({{"a", "1"}});
    EXPECT_TRUE(service.CompareResults("s", "c", after, *stored));
}

TEST_F(ServiceTest, OpenResultFileShowsTheNativePath)
{
    CTestJavaScriptService service;
    service.OpenResultFile();
    const auto opens = Ui().CallsOf("ShellOpen");
    ASSERT_EQ(opens.size(), 1);
    EXPECT_EQ(opens[0].text, NativePath::Map(service.GetResultFileName()));
    EXPECT_TRUE(opens[0].text.contains(QStringLiteral("/测试脚本结果")));
}
