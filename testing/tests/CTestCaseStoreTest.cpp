#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CodePage.h"
#include "HostContext.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QDir>

namespace {

const QString kSep = QStringLiteral("@@@@@@######@@@@@");

// Native path of a file in a script's folder.
QString StoreFile(const QString& script, const QString& file)
{
    return NativePath::Map(CTestCaseStore::ScriptFolder(script) + file);
}

void AddRow(NDataModelDataSet& table, const QString& name, const QString& value, const QString& msg = {})
{
    const int row = table.InsertRow(0);
    table.SetAsString(CTestCaseInfoTable::ParmName, row, name);
    table.SetAsString(CTestCaseInfoTable::ParmValue, row, value);
    table.SetAsString(CTestCaseInfoTable::ParmMsg, row, msg);
}

} // namespace

class CTestCaseStoreTest : public TempHomeTest
{
protected:
    // Writes a case file byte for byte, in the code page.
    void WriteCase(const QString& script, const QString& name, const QString& text)
    {
        QDir().mkpath(NativePath::Map(CTestCaseStore::ScriptFolder(script)));
        ASSERT_TRUE(WriteBytes(StoreFile(script, name), CodePage::FromUnicode(text)));
    }
};

TEST_F(CTestCaseStoreTest, TableHasTheFourFieldsInOrder)
{
    CTestCaseInfoTable table;
    ASSERT_EQ(table.GetFieldCount(), 4);
    EXPECT_EQ(table.GetTableName(), QStringLiteral("TestCase"));
    const QStringList names = {"ParmMode", "ParmName", "ParmValue", "ParmMsg"};
    const FieldType types[] = {FT_Integer, FT_LongString, FT_LongString, FT_LongString};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(table.GetFieldName(i), names[i]);
        EXPECT_EQ(table.GetFieldDataType(i), types[i]);
    }
    EXPECT_EQ(table.AddField(CTestCaseInfoTable::NewParmValue, FT_LongString), 4);
    EXPECT_EQ(table.GetFieldCount(), 5);
}

TEST_F(CTestCaseStoreTest, SanitizeReplacesDotsBackslashesAndDoubleSlashes)
{
    const struct
    {
        QString in;
        QString out;
    } cases[] = {
        {"a.b\\c//d", "a_b_c_d"},
        {"a_b_c_d", "a_b_c_d"},
        {"a/b", "a/b"},
        {"a///b", "a_/b"},
        {"a////b", "a__b"},
        {"通用脚本\\钢筋每米重量.js", "通用脚本_钢筋每米重量_js"},
        {"..", "__"},
        {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CTestCaseStore::SanitizeScriptName(c.in), c.out) << c.in.toStdString();
}

TEST_F(CTestCaseStoreTest, FoldersHangOffTheRootWithBackslashes)
{
    const QString root = HostContext::Instance().TestCaseRoot();
    EXPECT_TRUE(CTestCaseStore::RootFolder().endsWith(QStringLiteral("脚本测试用例\\")));
    EXPECT_EQ(CTestCaseStore::ScriptFolder("x.js"), root + QStringLiteral("\\x_js\\"));
}

TEST_F(CTestCaseStoreTest, NamesThatSanitizeAlikeShareOneFolder)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("a.b\\c//d", "function f(){}", "var x = 1"));
    EXPECT_TRUE(CTestCaseStore::HasTestCases("a_b_c_d"));
    QString fun, parm;
    ASSERT_TRUE(CTestCaseStore::LoadGlobals("a_b_c_d", fun, parm));
    EXPECT_EQ(fun, QStringLiteral("function f(){}"));
    EXPECT_EQ(parm, QStringLiteral("var x = 1"));
    EXPECT_TRUE(QFileInfo(HomeFile(QStringLiteral("脚本测试用例/a_b_c_d/GlobalFun.txt"))).isFile());
}

TEST_F(CTestCaseStoreTest, GlobalsAreWrittenInTheCodePageAndReadBack)
{
    const QString fun = QStringLiteral("// 公用函数\r\nfunction g(a) { return \"引号\" + a; }");
    const QString parm = QStringLiteral("var d = 25 ////直径");
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("梁.js", fun, parm));
    EXPECT_EQ(ReadBytes(StoreFile("梁.js", "GlobalFun.txt")), CodePage::FromUnicode(fun));
    EXPECT_EQ(ReadBytes(StoreFile("梁.js", "GlobalParm.txt")), CodePage::FromUnicode(parm));
    // Saving again into the existing folder replaces both.
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("梁.js", "f2", "p2"));
    QString loadedFun, loadedParm;
    ASSERT_TRUE(CTestCaseStore::LoadGlobals("梁.js", loadedFun, loadedParm));
    EXPECT_EQ(loadedFun, QStringLiteral("f2"));
    EXPECT_EQ(loadedParm, QStringLiteral("p2"));
}

TEST_F(CTestCaseStoreTest, SaveGlobalsNeedsTheRootAndMakesOneLevelOnly)
{
    EXPECT_FALSE(CTestCaseStore::SaveGlobals("deep/er.js", "f", "p")); // "deep" does not exist
    ASSERT_TRUE(QDir(HostContext::Instance().TestCaseRoot()).removeRecursively());
    EXPECT_FALSE(CTestCaseStore::SaveGlobals("x.js", "f", "p"));
    EXPECT_FALSE(CTestCaseStore::HasTestCases("x.js"));
}

TEST_F(CTestCaseStoreTest, HasTestCasesLooksOnlyAtGlobalFun)
{
    WriteCase("s.js", "c1.tx", "x=1;" + kSep);
    EXPECT_FALSE(CTestCaseStore::HasTestCases("s.js"));
    ASSERT_TRUE(WriteBytes(StoreFile("s.js", "GlobalFun.txt"), ""));
    EXPECT_TRUE(CTestCaseStore::HasTestCases("s.js"));
    EXPECT_FALSE(CTestCaseStore::HasTestCases("other.js"));
}

TEST_F(CTestCaseStoreTest, LoadGlobalsFailsWhenEitherFileIsMissing)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "f", "p"));
    QString fun, parm;
    ASSERT_TRUE(QFile::remove(StoreFile("s.js", "GlobalParm.txt")));
    EXPECT_FALSE(CTestCaseStore::LoadGlobals("s.js", fun, parm));
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "f", "p"));
    ASSERT_TRUE(QFile::remove(StoreFile("s.js", "GlobalFun.txt")));
    EXPECT_FALSE(CTestCaseStore::LoadGlobals("s.js", fun, parm));
    EXPECT_FALSE(CTestCaseStore::LoadGlobals("never.js", fun, parm));
}

TEST_F(CTestCaseStoreTest, CaseRoundTripKeepsTextAndTableExactly)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "", ""));
    CTestCaseInfoTable table;
    AddRow(table, "W", "3.856", QStringLiteral("每米重量(kg/m)"));
    AddRow(table, "txt", "a \"q\" <b> & 'c'\r\nline2\nline3", "");
    AddRow(table, QStringLiteral("长度"), "", QStringLiteral("空值"));
    const QString text = QStringLiteral("d = 25;\r\n// 注释 with @@@ and ###\r\n");
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("s.js", QStringLiteral("用例1.tx"), text, &table));

    QString xml;
    ASSERT_TRUE(table.SaveDataSetXMLBuf_NoDelete(xml));
    EXPECT_EQ(ReadBytes(StoreFile("s.js", QStringLiteral("用例1.tx"))), CodePage::FromUnicode(text + kSep + xml));

    CTestCaseInfoTable back;
    QString backText;
    ASSERT_TRUE(CTestCaseStore::LoadTestCase("s.js", QStringLiteral("用例1.tx"), backText, &back));
    EXPECT_EQ(backText, text);
    ASSERT_EQ(back.GetRowCount(), 3);
    for (int row = 1; row <= 3; ++row)
        for (const QString& field : {CTestCaseInfoTable::ParmName, CTestCaseInfoTable::ParmValue,
                                     CTestCaseInfoTable::ParmMsg})
            EXPECT_EQ(back.GetAsString(field, row), table.GetAsString(field, row)) << row;
}

TEST_F(CTestCaseStoreTest, CaseWithoutTableHasAnEmptyTablePart)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "", ""));
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("s.js", "c.tx", "x = 1;", nullptr));
    EXPECT_EQ(ReadBytes(StoreFile("s.js", "c.tx")), QByteArray("x = 1;@@@@@@######@@@@@"));
    QString text;
    CTestCaseInfoTable table;
    ASSERT_TRUE(CTestCaseStore::LoadTestCase("s.js", "c.tx", text, &table));
    EXPECT_EQ(text, QStringLiteral("x = 1;"));
    EXPECT_EQ(table.GetRowCount(), 0);
    text.clear();
    ASSERT_TRUE(CTestCaseStore::LoadTestCase("s.js", "c.tx", text, nullptr));
    EXPECT_EQ(text, QStringLiteral("x = 1;"));
}

TEST_F(CTestCaseStoreTest, ShortCaseFilesLoadAsSuccessWithNothingLoaded)
{
    const QString texts[] = {"", "x", QString(16, 'a'), kSep, QStringLiteral("用例用例用例用例用例用例用例用例用")};
    for (const QString& content : texts) {
        ASSERT_LE(content.size(), 17);
        WriteCase("s.js", "short.tx", content);
        QString text = "before";
        CTestCaseInfoTable table;
        AddRow(table, "kept", "1");
        EXPECT_TRUE(CTestCaseStore::LoadTestCase("s.js", "short.tx", text, &table)) << content.toStdString();
        EXPECT_EQ(text, QStringLiteral("before"));
        ASSERT_EQ(table.GetRowCount(), 1);
        EXPECT_EQ(table.GetAsString(CTestCaseInfoTable::ParmName, 1), QStringLiteral("kept"));
    }
}

TEST_F(CTestCaseStoreTest, CaseFilesThatDoNotSplitInTwoFail)
{
    const QString texts[] = {
        QString(18, 'a'),                 // long enough, no separator
        "a" + kSep + "b" + kSep + "c",   // separator twice
        kSep + kSep,                      // only separators
    };
    for (const QString& content : texts) {
        WriteCase("s.js", "bad.tx", content);
        QString text = "before";
        EXPECT_FALSE(CTestCaseStore::LoadTestCase("s.js", "bad.tx", text, nullptr)) << content.toStdString();
        EXPECT_EQ(text, QStringLiteral("before"));
    }
    QString text;
    EXPECT_FALSE(CTestCaseStore::LoadTestCase("s.js", "missing.tx", text, nullptr));
}

TEST_F(CTestCaseStoreTest, EighteenCharactersWithTheSeparatorLoad)
{
    WriteCase("s.js", "c.tx", "x" + kSep);
    QString text;
    ASSERT_TRUE(CTestCaseStore::LoadTestCase("s.js", "c.tx", text, nullptr));
    EXPECT_EQ(text, QStringLiteral("x"));
    WriteCase("s.js", "c.tx", kSep + "y");
    text = "before";
    ASSERT_TRUE(CTestCaseStore::LoadTestCase("s.js", "c.tx", text, nullptr));
    EXPECT_EQ(text, QString());
}

TEST_F(CTestCaseStoreTest, DamagedTableXmlLeavesTheTableEmptyNotHalfLoaded)
{
    CTestCaseInfoTable good;
    AddRow(good, "a", "1");
    AddRow(good, "b", "2");
    QString xml;
    ASSERT_TRUE(good.SaveDataSetXMLBuf_NoDelete(xml));
    const QString damaged[] = {xml.left(xml.size() / 2), xml + "<", "<DataSet>", "not xml at all"};
    for (const QString& tablePart : damaged) {
        WriteCase("s.js", "c.tx", "x = 1;" + kSep + tablePart);
        QString text;
        CTestCaseInfoTable table;
        EXPECT_TRUE(CTestCaseStore::LoadTestCase("s.js", "c.tx", text, &table));
        EXPECT_EQ(text, QStringLiteral("x = 1;"));
        EXPECT_EQ(table.GetRowCount(), 0) << tablePart.toStdString();
    }
}

TEST_F(CTestCaseStoreTest, ListingReturnsOnlyCaseFilesByNameThatOpen)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "f", "p"));
    for (const QString& name : QStringList{"b.tx", "a.tx", QStringLiteral("用例.tx"), "x.txt", "y.tx.bak", "z.TX"})
        WriteCase("s.js", name, "v=1;" + kSep);
    CArray<QString> names;
    names.Add("stale");
    ASSERT_TRUE(CTestCaseStore::ListTestCases("s.js", names));
    ASSERT_EQ(names.GetSize(), 3);
    EXPECT_EQ(names[0], QStringLiteral("a.tx"));
    EXPECT_EQ(names[1], QStringLiteral("b.tx"));
    EXPECT_EQ(names[2], QStringLiteral("用例.tx"));
    for (const QString& name : names) {
        EXPECT_TRUE(CTestCaseStore::TestCaseExists("s.js", name));
        QString text;
        EXPECT_TRUE(CTestCaseStore::LoadTestCase("s.js", name, text, nullptr));
        EXPECT_EQ(text, QStringLiteral("v=1;"));
    }
    EXPECT_FALSE(CTestCaseStore::ListTestCases("nothing.js", names));
    EXPECT_EQ(names.GetSize(), 0);
}

TEST_F(CTestCaseStoreTest, DeleteRemovesOnceThenFails)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("s.js", "f", "p"));
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("s.js", "c.tx", "x", nullptr));
    EXPECT_TRUE(CTestCaseStore::TestCaseExists("s.js", "c.tx"));
    EXPECT_TRUE(CTestCaseStore::DeleteTestCase("s.js", "c.tx"));
    EXPECT_FALSE(CTestCaseStore::TestCaseExists("s.js", "c.tx"));
    EXPECT_FALSE(CTestCaseStore::DeleteTestCase("s.js", "c.tx"));
    EXPECT_TRUE(CTestCaseStore::HasTestCases("s.js"));
}

TEST_F(CTestCaseStoreTest, SaveTestCaseFailsWithoutTheScriptFolder)
{
    EXPECT_FALSE(CTestCaseStore::SaveTestCase("nofolder.js", "c.tx", "x", nullptr));
    EXPECT_FALSE(CTestCaseStore::TestCaseExists("nofolder.js", "c.tx"));
}
