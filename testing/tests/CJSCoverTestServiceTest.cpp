#include "CJSCoverTestService.h"
#include "RunnerTestSupport.h"

namespace {

QString Index(const QString& onload)
{
    return "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\"><html><head>"
           "<script type=\"text/javascript\" src=\"mainJs.js\"></script>"
           "<script type=\"text/javascript\" src=\"RunJs.js\"></script></head>\r\n<body onload=\""
           + onload + "\">\r\n</body>\r\n</html>\r\n";
}

CArray<QString> Names(const QStringList& list)
{
    CArray<QString> names;
    for (const QString& name : list)
        names.Add(name);
    return names;
}

const QString kGlobals = "function f(){ return 1; }\r\nvar d = 1;";

} // namespace

class HarnessTest : public TempHomeTest
{
protected:
    // A harness file byte for byte: `text` in the code page.
    void ExpectOut(const QString& file, const QString& text) const
    {
        EXPECT_EQ(ReadBytes(HomeFile("drives/c/testJSCover/" + file)), CodePage::FromUnicode(text)) << file.toStdString();
    }
    // The page is opened without a server: the files are what is checked here.
    bool Build(CJSCoverTestService& harness, const QString& script, const QStringList& cases)
    {
        harness.SetServer(nullptr);
        return harness.BuildCoverageHarness(m_tests, script, Names(cases));
    }

    CTestJavaScriptService m_tests;
};

TEST_F(HarnessTest, TwoCasesGiveTheThreeFilesByteForByte)
{
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("柱.js", "// 柱箍筋\r\nvar n = d > 10 ? \"多\" : '少';\r\n</script>"));
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("柱.js", "function f(){ return 1; }\r\n", "var d = 1;"));
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("柱.js", "a.tx", "d = 12; // 十二", nullptr));
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("柱.js", "b.tx", "d = 5;", nullptr));
    CJSCoverTestService harness;
    ASSERT_TRUE(Build(harness, "柱.js", {"a.tx", "b.tx"}));
    ExpectOut("mainJs.js", kGlobals + "\r\nfunction setParm_0(){\r\nd = 12; // 十二\r\n}\r\n\r\nfunction setParm_1(){\r\nd = 5;\r\n}\r\n");
    ExpectOut("RunJs.js", "function QXRunJS(){\r\n// 柱箍筋\r\nvar n = d > 10 ? \"多\" : '少';\r\n</script>\r\n}\r\n");
    ExpectOut("index.html", Index("setParm_0();QXRunJS();setParm_1();QXRunJS();"));
    const auto opens = Ui().CallsOf("ShellOpen");
    ASSERT_EQ(opens.size(), 1);
    EXPECT_EQ(opens[0].text, "http://localhost:8080/jscoverage.html?index.html");

    // A second build repeats the first build's setters in index.html; an existing folder is fine.
    CJSCoverTestService again;
    ASSERT_TRUE(Build(harness, "柱.js", {"b.tx"}));
    ExpectOut("index.html", Index("setParm_0();QXRunJS();setParm_1();QXRunJS();setParm_0();QXRunJS();"));
    ExpectOut("mainJs.js", kGlobals + "\r\nfunction setParm_0(){\r\nd = 5;\r\n}\r\n");
    ASSERT_TRUE(Build(again, "柱.js", {})); // no cases still writes and opens
    ExpectOut("mainJs.js", kGlobals);
    ExpectOut("index.html", Index(""));
    EXPECT_EQ(Ui().CallsOf("ShellOpen").size(), 3);
}

TEST_F(HarnessTest, MissingGlobalsStopTheBuildBeforeAnyFile)
{
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent("x.js", "var a = 1;"));
    CJSCoverTestService harness;
    EXPECT_FALSE(Build(harness, "x.js", {"a.tx"}));
    for (const char* file : {"mainJs.js", "RunJs.js", "index.html"})
        EXPECT_FALSE(QFile::exists(HomeFile("drives/c/testJSCover/" + QString(file)))) << file;
    EXPECT_TRUE(Ui().calls.isEmpty());
}

TEST_F(HarnessTest, UnreadableCasesAndUnknownScriptsLeaveEmptyBodies)
{
    ASSERT_TRUE(CTestCaseStore::SaveGlobals("ghost.js", "", ""));
    ASSERT_TRUE(CTestCaseStore::SaveTestCase("ghost.js", "ok.tx", "v = 1;", nullptr));
    CJSCoverTestService harness;
    ASSERT_TRUE(Build(harness, "ghost.js", {"missing.tx", "ok.tx"}));
    ExpectOut("mainJs.js", "\r\nfunction setParm_0(){\r\n\r\n}\r\n\r\nfunction setParm_1(){\r\nv = 1;\r\n}\r\n");
    ExpectOut("RunJs.js", "function QXRunJS(){\r\n\r\n}\r\n");
}
