#include "RunnerTestSupport.h"

namespace {

const QString kSep = "@@@@@@######@@@@@";

QString StoreFile(const QString& script, const QString& file)
{
    return NativePath::Map(CTestCaseStore::ScriptFolder(script) + file);
}

} // namespace

class CTestCaseStoreTest : public TempHomeTest
{
protected:
    // Writes a case file of "s.js" byte for byte, in the code page.
    void WriteCase(const QString& name, const QString& text)
    {
        QDir().mkpath(NativePath::Map(CTestCaseStore::ScriptFolder("s.js")));
        ASSERT_TRUE(WriteBytes(StoreFile("s.js", name), CodePage::FromUnicode(text)));
    }
};

TEST_F(CTestCaseStoreTest, SanitizeReplacesDotsBackslashesAndDoubleSlashes)
{
    const struct { QString in, out; } cases[] = {
        {"a.b\\c//d", "a_b_c_d"}, {"a_b_c_d", "a_b_c_d"}, {"a/b", "a/b"}, {"a///b", "a_/b"}, {"a////b", "a__b"},
        {"通用脚本\\钢筋每米重量.js", "通用脚本_钢筋每米重量_js"}, {"..", "__"}, {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CTestCaseStore::SanitizeScriptName(c.in), c.out) << c.in.toStdString();
    EXPECT_TRUE(CTestCaseStore::RootFolder().endsWith("脚本测试用例\\"));
    EXPECT_EQ(CTestCaseStore::ScriptFolder("x.js"), HostContext::Instance().TestCaseRoot() + "\\x_js\\");
    // Names that sanitize alike share one folder.
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("a.b\\c//d", "function f(){}", "var x = 1"));
    EXPECT_EQ(Globals("a_b_c_d"), "function f(){}|var x = 1");
}

TEST_F(CTestCaseStoreTest, GlobalsAreWrittenInTheCodePageAndReplaced)
{
    const QString fun = "// 公用函数\r\nfunction g(a) { return \"引号\" + a; }";
    const QString parm = "var d = 25 ////直径";
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("梁.js", fun, parm));
    EXPECT_EQ(ReadBytes(StoreFile("梁.js", "GlobalFun.txt")), CodePage::FromUnicode(fun));
    EXPECT_EQ(ReadBytes(StoreFile("梁.js", "GlobalParm.txt")), CodePage::FromUnicode(parm));
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("梁.js", "f2", "p2"));
    EXPECT_EQ(Globals("梁.js"), "f2|p2");
}

TEST_F(CTestCaseStoreTest, MissingGlobalFilesAndFoldersFail)
{
    for (const char* missing : {"GlobalParm.txt", "GlobalFun.txt"}) {
        ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "f", "p"));
        ASSERT_TRUE(QFile::remove(StoreFile("s.js", missing)));
        EXPECT_EQ(Globals("s.js"), "<failed>") << missing;
    }
    // Only GlobalFun.txt makes a script count as having cases.
    WriteCase("c1.tx", "x=1;" + kSep);
    EXPECT_FALSE(CTestCaseStore::HasTestCases("s.js"));
    ASSERT_TRUE(WriteBytes(StoreFile("s.js", "GlobalFun.txt"), ""));
    EXPECT_TRUE(CTestCaseStore::HasTestCases("s.js"));
    EXPECT_EQ(Globals("never.js"), "<failed>");
    EXPECT_FALSE(CTestCaseStore::SaveGlobals("deep/er.js", "f", "p")); // one folder level only
    EXPECT_FALSE(CTestCaseStore::SaveTestCase("nofolder.js", "c.tx", "x", nullptr));
    ASSERT_TRUE(QDir(HostContext::Instance().TestCaseRoot()).removeRecursively());
    EXPECT_FALSE(CTestCaseStore::SaveGlobals("x.js", "f", "p"));
    EXPECT_FALSE(CTestCaseStore::HasTestCases("x.js"));
}

TEST_F(CTestCaseStoreTest, CaseRoundTripKeepsTextAndTableExactly)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "", ""));
    CTestCaseInfoTable table;
    Fill(table, {{"W", "3.856", "每米重量(kg/m)"}, {"txt", "a \"q\" <b> & 'c'\r\nline2\nline3", ""}, {"长度", "", "空值"}});
    const QString text = "d = 25;\r\n// 注释 with @@@ and ###\r\n";
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("s.js", "用例1.tx", text, &table));
    QString xml;
    ASSERT_TRUE(table.SaveDataSetXMLBuf_NoDelete(xml));
    EXPECT_EQ(ReadBytes(StoreFile("s.js", "用例1.tx")), CodePage::FromUnicode(text + kSep + xml));

    CTestCaseInfoTable back;
    QString backText;
    ASSERT_TRUE(CTestCaseStore::LoadTestCase("s.js", "用例1.tx", backText, &back));
    EXPECT_EQ(QStringList{backText} + RowTexts(back), QStringList{text} + RowTexts(table));
    EXPECT_EQ(back.GetRowCount(), 3);

    // Without a table the file ends at the separator and loads an empty one.
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("s.js", "c.tx", "x = 1;", nullptr));
    EXPECT_EQ(ReadBytes(StoreFile("s.js", "c.tx")), QByteArray("x = 1;@@@@@@######@@@@@"));
    CTestCaseInfoTable none;
    ASSERT_TRUE(CTestCaseStore::LoadTestCase("s.js", "c.tx", backText, &none));
    EXPECT_EQ(backText + "|" + QString::number(none.GetRowCount()), "x = 1;|0");
}

TEST_F(CTestCaseStoreTest, CaseFilesLoadOnlyWhenShortOrSplitInTwo)
{
    CTestCaseInfoTable good;
    Fill(good, {{"a", "1"}, {"b", "2"}});
    QString xml;
    ASSERT_TRUE(good.SaveDataSetXMLBuf_NoDelete(xml));
    const QString x1 = "x = 1;" + kSep;
    const struct { QString content; bool ok; QString text; /* after loading into "before" */ } cases[] = {
        // At most 17 characters: success with nothing loaded.
        {"", true, "before"}, {"x", true, "before"}, {QString(16, 'a'), true, "before"}, {kSep, true, "before"},
        {"用例用例用例用例用例用例用例用例用", true, "before"}, {"x" + kSep, true, "x"}, {kSep + "y", true, ""},
        {QString(18, 'a'), false, "before"},            // no separator
        {"a" + kSep + "b" + kSep + "c", false, "before"}, // separator twice
        {kSep + kSep, false, "before"},
        // A damaged table part loads nothing, not half the rows.
        {x1 + xml.left(xml.size() / 2), true, "x = 1;"}, {x1 + xml + "<", true, "x = 1;"},
        {x1 + "<DataSet>", true, "x = 1;"}, {x1 + "not xml", true, "x = 1;"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.content.toStdString());
        WriteCase("c.tx", c.content);
        QString text = "before";
        CTestCaseInfoTable table;
        Fill(table, {{"kept", "1"}});
        EXPECT_EQ(CTestCaseStore::LoadTestCase("s.js", "c.tx", text, c.ok ? &table : nullptr), c.ok);
        EXPECT_EQ(text, c.text);
        if (c.ok) {
            EXPECT_EQ(RowTexts(table), QStringList{"kept|1|"});
        }
    }
    QString text;
    EXPECT_FALSE(CTestCaseStore::LoadTestCase("s.js", "missing.tx", text, nullptr));
}

TEST_F(CTestCaseStoreTest, ListingGivesCaseFilesByNameAndDeleteWorksOnce)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "f", "p"));
    for (const QString& name : QStringList{"b.tx", "a.tx", "用例.tx", "x.txt", "y.tx.bak", "z.TX"})
        WriteCase(name, "v=1;" + kSep);
    CArray<QString> names;
    names.Add("stale");
    ASSERT_TRUE(CTestCaseStore::ListTestCases("s.js", names));
    EXPECT_EQ(QStringList(names.begin(), names.end()), QStringList({"a.tx", "b.tx", "用例.tx"}));

    EXPECT_EQ((QList<bool>{CTestCaseStore::DeleteTestCase("s.js", "a.tx"), CTestCaseStore::TestCaseExists("s.js", "a.tx"),
                           CTestCaseStore::TestCaseExists("s.js", "b.tx"), CTestCaseStore::DeleteTestCase("s.js", "a.tx")}),
              (QList<bool>{true, false, true, false}));
    EXPECT_TRUE(CTestCaseStore::HasTestCases("s.js"));
    EXPECT_FALSE(CTestCaseStore::ListTestCases("nothing.js", names));
    EXPECT_EQ(names.GetSize(), 0);
}
