#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CodePage.h"
#include "QxMfcFun.h"
#include "TestEnvironment.h"

namespace {

struct ParsedRow
{
    QString name;
    QString value;
    QString comment;
};

QList<ParsedRow> Parse(const QString& text)
{
    CTestCaseInfoTable table;
    EXPECT_TRUE(CTestCaseStore::ParseGlobalParms(text, table));
    QList<ParsedRow> rows;
    for (int row = 1; row <= table.GetRowCount(); ++row) {
        EXPECT_EQ(table.GetAsInteger(CTestCaseInfoTable::ParmMode, row), 1);
        rows.append({table.GetAsString(CTestCaseInfoTable::ParmName, row),
                     table.GetAsString(CTestCaseInfoTable::ParmValue, row),
                     table.GetAsString(CTestCaseInfoTable::ParmMsg, row)});
    }
    return rows;
}

QString SysFile(const QString& name)
{
    return QxMfc::Fun::GetSysDataPath() + QLatin1Char('/') + name;
}

const QString kStars = QString(29, QLatin1Char('*'));

} // namespace

class GlobalParmsTest : public TempHomeTest
{
};

TEST_F(GlobalParmsTest, DeclarationsBecomeRows)
{
    const struct
    {
        QString text;
        QList<ParsedRow> rows;
    } cases[] = {
        {"var x=1;var y = 2 ////two", {{"x", "1;", ""}, {"y", "2", "two"}}},
        {"var a=1;\r\nvar b = 2;", {{"a", "1;\r\n", ""}, {"b", "2;", ""}}},
        {"var d = 25 ////钢筋直径(mm)\r\nvar fy = 360 ////强度",
         {{"d", "25", QStringLiteral("钢筋直径(mm)\r\n")}, {"fy", "360", QStringLiteral("强度")}}},
        {"var t = 1 //// a b\t c", {{"t", "1", "abc"}}},
        {"var s = \"a b\"", {{"s", "\"ab\"", ""}}},
        {"x = 3", {{"x", "3", ""}}},
        {"var p = 1 ////one////more", {{"p", "1", "one"}}},
        {"", {}},
        {"var ", {}},
        {"var s = \"a=b\";", {}},   // three parts at "="
        {"var lonely;", {}},        // no "="
        {"var x=", {}},             // the empty value part is dropped: one part
        {"var\tt = 5", {{"vart", "5", ""}}}, // only "var " with a blank starts a declaration
    };
    for (const auto& c : cases) {
        const QList<ParsedRow> rows = Parse(c.text);
        ASSERT_EQ(rows.size(), c.rows.size()) << c.text.toStdString();
        for (int i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(rows[i].name, c.rows[i].name) << c.text.toStdString();
            EXPECT_EQ(rows[i].value, c.rows[i].value) << c.text.toStdString();
            EXPECT_EQ(rows[i].comment, c.rows[i].comment) << c.text.toStdString();
        }
    }
}

TEST_F(GlobalParmsTest, RowsAreAppendedAfterExistingOnes)
{
    CTestCaseInfoTable table;
    const int first = table.InsertRow(0);
    table.SetAsString(CTestCaseInfoTable::ParmName, first, "old");
    ASSERT_TRUE(CTestCaseStore::ParseGlobalParms("var n = 7", table));
    ASSERT_EQ(table.GetRowCount(), 2);
    EXPECT_EQ(table.GetAsString(CTestCaseInfoTable::ParmName, 1), QStringLiteral("old"));
    EXPECT_TRUE(table.IsNull(table.GetFieldIndex(CTestCaseInfoTable::ParmMode), 1));
    EXPECT_EQ(table.GetAsString(CTestCaseInfoTable::ParmName, 2), QStringLiteral("n"));
    EXPECT_EQ(table.GetAsInteger(CTestCaseInfoTable::ParmMode, 2), 1);
}

class LastRunScriptsTest : public TempHomeTest
{
protected:
    void WriteSys(const QString& name, const QString& text)
    {
        ASSERT_TRUE(WriteBytes(SysFile(name), CodePage::FromUnicode(text)));
    }
    static QStringList Read(bool expected = true)
    {
        CArray<QString> lines;
        lines.Add("stale");
        EXPECT_EQ(CTestCaseStore::ReadLastRunScripts(lines), expected);
        QStringList list;
        for (const QString& line : lines)
            list.append(line);
        return list;
    }
};

TEST_F(LastRunScriptsTest, OnlyTheLastRunIsListedAndMacLogRewritten)
{
    WriteSys("macrolist.log", "clock[1]'s sum is (5) \tall \r\n" + kStars + "\r\nold.js:梁\r\n" + kStars
                                  + QStringLiteral("\r\n  通用脚本\\a.js:板\r\nb.js:NotExecute\r\n"
                                                   "clock[2]'s sum is (3) \tx \r\nc.js:柱\r\nnotes.txt\r\n\r\n"));
    WriteSys("mac.log", "previous.js:x\r\n");
    EXPECT_EQ(Read(), QStringList({QStringLiteral("通用脚本\\a.js:板"), QStringLiteral("c.js:柱")}));
    EXPECT_EQ(ReadBytes(SysFile("mac.log")),
              CodePage::FromUnicode(QStringLiteral("通用脚本\\a.js:板\r\nb.js:NotExecute\r\n"
                                                   "clock[2]'s sum is (3) \tx \r\nc.js:柱\r\nnotes.txt")));
}

TEST_F(LastRunScriptsTest, WithoutAsteriskLinesTheWholeTrimmedTextIsUsed)
{
    WriteSys("macrolist.log", "\r\n\t a.js:1\nb.js:2\nc.txt \r\n \r\n");
    WriteSys("mac.log", "old.js\r\n");
    EXPECT_EQ(Read(), QStringList({"a.js:1", "b.js:2"}));
    EXPECT_EQ(ReadBytes(SysFile("mac.log")), QByteArray("a.js:1\nb.js:2\nc.txt"));
}

TEST_F(LastRunScriptsTest, LinesAreKeptWholeAndInOrder)
{
    WriteSys("macrolist.log", kStars + "\r\nz.js : 1 \r\nNotExecute.js\r\nA.JS\r\nmy.json\r\nm.js");
    EXPECT_EQ(Read(), QStringList({"z.js : 1 ", "my.json", "m.js"}));
}

TEST_F(LastRunScriptsTest, MissingLogsFailAndMacLogAloneIsStillRead)
{
    EXPECT_EQ(Read(false), QStringList());
    // An empty macrolist.log gives no piece, so mac.log stays as it was.
    WriteSys("mac.log", "kept.js\r\n");
    EXPECT_EQ(Read(), QStringList({"kept.js"}));
    WriteSys("macrolist.log", "  \r\n");
    EXPECT_EQ(Read(), QStringList({"kept.js"}));
}

TEST_F(LastRunScriptsTest, TrailingAsteriskLineKeepsThePreviousPiece)
{
    WriteSys("macrolist.log", "a.js\r\n" + kStars + "\r\nb.js\r\n" + kStars + "\r\n");
    EXPECT_EQ(Read(), QStringList({"b.js"}));
}
