#include "CAccessSysData_MacrosTable.h"
#include "CJSCoverTestService.h"
#include "CTestJavaScriptService.h"
#include "CodePage.h"
#include "TestEnvironment.h"

#include <QDir>

namespace {

QByteArray Index(const QString& onload)
{
    return CodePage::FromUnicode(
        QStringLiteral("<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\"><html><head>"
                       "<script type=\"text/javascript\" src=\"mainJs.js\"></script>"
                       "<script type=\"text/javascript\" src=\"RunJs.js\"></script></head>\r\n<body onload=\"")
        + onload + QStringLiteral("\">\r\n</body>\r\n</html>\r\n"));
}

CArray<QString> Names(const QStringList& list)
{
    CArray<QString> names;
    for (const QString& name : list)
        names.Add(name);
    return names;
}

const QString kGlobals = QStringLiteral("function f(){ return 1; }\r\nvar d = 1;");

} // namespace

class HarnessTest : public TempHomeTest
{
protected:
    QByteArray Out(const QString& file) const { return ReadBytes(HomeFile("drives/c/testJSCover/" + file)); }
    static QByteArray Bytes(const QString& text) { return CodePage::FromUnicode(text); }

    void SeedColumn()
    {
        ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(
            "柱.js", QStringLiteral("// 柱箍筋\r\nvar n = d > 10 ? \"多\" : '少';\r\n</script>")));
        ASSERT_TRUE(CTestCaseStore::SaveGlobals("柱.js", QStringLiteral("function f(){ return 1; }\r\n"),
                                                QStringLiteral("var d = 1;")));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase("柱.js", "a.tx", QStringLiteral("d = 12; // 十二"), nullptr));
        ASSERT_TRUE(CTestCaseStore::SaveTestCase("柱.js", "b.tx", "d = 5;", nullptr));
    }

    CTestJavaScriptService m_tests;
};

TEST_F(HarnessTest, TwoCasesGiveTheThreeFilesByteForByte)
{
    SeedColumn();
    EXPECT_FALSE(QDir(HomeFile("drives/c/testJSCover")).exists());
    CJSCoverTestService harness;
    EXPECT_EQ(harness.OutputFolder(), QStringLiteral("C:\\testJSCover\\"));
    EXPECT_TRUE(QDir(HomeFile("drives/c/testJSCover")).exists());
    ASSERT_TRUE(harness.BuildCoverageHarness(m_tests, "柱.js", Names({"a.tx", "b.tx"})));
    EXPECT_EQ(Out("mainJs.js"), Bytes(kGlobals + QStringLiteral("\r\nfunction setParm_0(){\r\nd = 12; // 十二\r\n}\r\n"
                                                                "\r\nfunction setParm_1(){\r\nd = 5;\r\n}\r\n")));
    EXPECT_EQ(Out("RunJs.js"), Bytes(QStringLiteral("function QXRunJS(){\r\n// 柱箍筋\r\n"
                                                    "var n = d > 10 ? \"多\" : '少';\r\n</script>\r\n}\r\n")));
    EXPECT_EQ(Out("index.html"), Index("setParm_0();QXRunJS();setParm_1();QXRunJS();"));
    const auto opens = Ui().CallsOf("ShellOpen");
    ASSERT_EQ(opens.size(), 1);
    EXPECT_EQ(opens[0].text, QStringLiteral("http://localhost:8080/jscoverage.html?index.html"));

    // A second build repeats the first build's setters in index.html; an
    // existing folder is fine.
    CJSCoverTestService again;
    ASSERT_TRUE(harness.BuildCoverageHarness(m_tests, "柱.js", Names({"b.tx"})));
    EXPECT_EQ(Out("index.html"), Index("setParm_0();QXRunJS();setParm_1();QXRunJS();setParm_0();QXRunJS();"));
    EXPECT_EQ(Out("mainJs.js"), Bytes(kGlobals + QStringLiteral("\r\nfunction setParm_0(){\r\nd = 5;\r\n}\r\n")));
    // No cases still writes and opens.
    ASSERT_TRUE(again.BuildCoverageHarness(m_tests, "柱.js", {}));
    EXPECT_EQ(Out("mainJs.js"), Bytes(kGlobals));
    EXPECT_EQ(Out("index.html"), Index(""));
    EXPECT_EQ(Ui().CallsOf("ShellOpen").size(), 3);
}

TEST_F(HarnessTest, MissingGlobalsStopTheBuildBeforeAnyFile)
{
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("x.js", "var a = 1;"));
    CJSCoverTestService harness;
    EXPECT_FALSE(harness.BuildCoverageHarness(m_tests, "x.js", Names({"a.tx"})));
    for (const char* file : {"mainJs.js", "RunJs.js", "index.html"})
        EXPECT_FALSE(QFile::exists(HomeFile(QStringLiteral("drives/c/testJSCover/") + file))) << file;
    EXPECT_TRUE(Ui().calls.isEmpty());
    EXPECT_TRUE(harness.Setters().isEmpty());
}

TEST_F(HarnessTest, UnreadableCasesAndUnknownScriptsLeaveEmptyBodies)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("ghost.js", "", ""));
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("ghost.js", "ok.tx", "v = 1;", nullptr));
    CJSCoverTestService harness;
    ASSERT_TRUE(harness.BuildCoverageHarness(m_tests, "ghost.js", Names({"missing.tx", "ok.tx"})));
    EXPECT_EQ(Out("mainJs.js"), Bytes("\r\nfunction setParm_0(){\r\n\r\n}\r\n\r\nfunction setParm_1(){\r\nv = 1;\r\n}\r\n"));
    EXPECT_EQ(Out("RunJs.js"), Bytes("function QXRunJS(){\r\n\r\n}\r\n"));
}
