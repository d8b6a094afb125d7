#include "RunnerTestSupport.h"

TEST(GlobalParmsTest, DeclarationsBecomeRowsAfterExistingOnes)
{
    const struct { QString text; QStringList rows; /* "name|value|comment" */ } cases[] = {
        {"var x=1;var y = 2 ////two", {"x|1;|", "y|2|two"}},
        {"var a=1;\r\nvar b = 2;", {"a|1;\r\n|", "b|2;|"}},
        {"var d = 25 ////钢筋直径(mm)\r\nvar fy = 360 ////强度", {"d|25|钢筋直径(mm)\r\n", "fy|360|强度"}},
        {"var t = 1 //// a b\t c", {"t|1|abc"}},
        {"var s = \"a b\"", {"s|\"ab\"|"}},
        {"x = 3", {"x|3|"}},
        {"var p = 1 ////one////more", {"p|1|one"}},
        {"", {}},
        {"var ", {}},
        {"var s = \"a=b\";", {}},    // three parts at "="
        {"var lonely;", {}},         // no "="
        {"var x=", {}},              // the empty value part is dropped: one part
        {"var\tt = 5", {"vart|5|"}}, // only "var " with a blank starts a declaration
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        CTestCaseInfoTable table;
        table.SetAsString(CTestCaseInfoTable::ParmName, table.InsertRow(0), "old");
        ASSERT_TRUE(CTestCaseStore::ParseGlobalParms(c.text, table));
        EXPECT_EQ(table.GetAsString(CTestCaseInfoTable::ParmName, 1), "old");
        EXPECT_TRUE(table.IsNull(table.GetFieldIndex(CTestCaseInfoTable::ParmMode), 1));
        for (int row = 2; row <= table.GetRowCount(); ++row)
            EXPECT_EQ(table.GetAsInteger(CTestCaseInfoTable::ParmMode, row), 1);
        EXPECT_EQ(RowTexts(table, 2), c.rows);
    }
}

using LastRunScriptsTest = TempHomeTest;

TEST_F(LastRunScriptsTest, OnlyTheLastRunIsListedAndMacLogRewritten)
{
    const QString stars = QString(29, QLatin1Char('*'));
    const QString none; // a null text: the file is absent, or not checked
    const struct { QString macroList, macLog; bool ok; QStringList lines; QString macLogAfter; } cases[] = {
        {"clock[1]'s sum is (5) \tall \r\n" + stars + "\r\nold.js:梁\r\n" + stars
             + "\r\n  通用脚本\\a.js:板\r\nb.js:NotExecute\r\nclock[2]'s sum is (3) \tx \r\nc.js:柱\r\nnotes.txt\r\n\r\n",
         "previous.js:x\r\n", true, {"通用脚本\\a.js:板", "c.js:柱"},
         "通用脚本\\a.js:板\r\nb.js:NotExecute\r\nclock[2]'s sum is (3) \tx \r\nc.js:柱\r\nnotes.txt"},
        // Without asterisk lines the whole trimmed text is used.
        {"\r\n\t a.js:1\nb.js:2\nc.txt \r\n \r\n", "old.js\r\n", true, {"a.js:1", "b.js:2"}, "a.js:1\nb.js:2\nc.txt"},
        {stars + "\r\nz.js : 1 \r\nNotExecute.js\r\nA.JS\r\nmy.json\r\nm.js", none, true, {"z.js : 1 ", "my.json", "m.js"}, none},
        {"a.js\r\n" + stars + "\r\nb.js\r\n" + stars + "\r\n", none, true, {"b.js"}, none},
        // An empty macrolist.log gives no piece, so mac.log stays as it was.
        {"  \r\n", "kept.js\r\n", true, {"kept.js"}, "kept.js\r\n"},
        {none, "kept.js\r\n", true, {"kept.js"}, "kept.js\r\n"},
        {none, none, false, {}, none},
    };
    const QString sys = QxMfc::Fun::GetSysDataPath() + QLatin1Char('/');
    for (const auto& c : cases) {
        SCOPED_TRACE(c.macroList.toStdString());
        for (const auto& [file, text] : {std::pair{"macrolist.log", c.macroList}, std::pair{"mac.log", c.macLog}}) {
            QFile::remove(sys + file);
            ASSERT_TRUE(text.isNull() || WriteBytes(sys + file, CodePage::FromUnicode(text)));
        }
        CArray<QString> lines;
        lines.Add("stale");
        EXPECT_EQ(CTestCaseStore::ReadLastRunScripts(lines), c.ok);
        EXPECT_EQ(QStringList(lines.begin(), lines.end()), c.lines);
        if (!c.macLogAfter.isNull()) {
            EXPECT_EQ(ReadBytes(sys + "mac.log"), CodePage::FromUnicode(c.macLogAfter));
        }
    }
}
