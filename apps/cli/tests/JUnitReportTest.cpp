#include "CJUnitReport.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

CScriptTestReport Report(const QList<CTestCaseOutcome>& outcomes)
{
    CScriptTestReport r;
    r.script = outcomes.first().script;
    r.outcomes = outcomes;
    for (const CTestCaseOutcome& o : outcomes)
        r.passed = r.passed && o.passed;
    return r;
}

QDomElement Root(const CJUnitReport& junit)
{
    QDomDocument document;
    QString error;
    int line = 0;
    EXPECT_TRUE(document.setContent(junit.ToXml(), &error, &line)) << error.toStdString() << " at line " << line;
    return document.documentElement();
}

QDomElement Nth(const QDomElement& parent, const char* tag, int n)
{
    return parent.elementsByTagName(tag).at(n).toElement();
}

} // namespace

TEST(JUnitReportTest, OneSuitePerScriptOneCasePerCaseAndTypedFailures)
{
    const QString a = QStringLiteral("梁\\a.js");
    const QString error = QStringLiteral("Error: SyntaxError: missing ; before statement; in line 12");
    CJUnitReport junit;
    junit.Add(Report({{a, "c1.tx", true, "测试通过!", {}, false, {}}, {a, "c2.tx", false, "计算结果不一致!", {{"L", "3", "3.0"}}, false, {}}}), 0.5);
    junit.Add(Report({{"b.js", QString(), false, "没有测试用例!", {}, false, {}}}), 0.1);
    junit.Add(Report({{"s", "c.tx", false, error, {}, false, {}}}), 0);

    const QDomElement root = Root(junit);
    EXPECT_EQ(root.tagName() + " " + root.attribute("tests") + "/" + root.attribute("failures"), "testsuites 4/3");
    ASSERT_EQ(root.elementsByTagName("testsuite").size(), 3);
    const QDomElement first = Nth(root, "testsuite", 0), passing = Nth(first, "testcase", 0);
    EXPECT_EQ(first.attribute("name") + "|" + first.attribute("failures"), a + "|1");
    ASSERT_EQ(first.elementsByTagName("testcase").size(), 2);
    EXPECT_EQ(passing.attribute("classname") + "|" + passing.attribute("name"), a + "|c1.tx");
    EXPECT_TRUE(passing.elementsByTagName("failure").isEmpty());

    const QDomElement failure = Nth(first, "failure", 0);
    EXPECT_EQ(failure.attribute("message") + "|" + failure.attribute("type"), "计算结果不一致!|mismatch");
    EXPECT_TRUE(failure.text().startsWith("计算结果不一致!\n+---"));
    EXPECT_TRUE(failure.text().contains(QRegularExpression("\n\\| L +\\| 3 +\\| 3\\.0 +\\|\n"))) << failure.text().toStdString();
    EXPECT_FALSE(failure.text().contains('\r'));

    const QDomElement noCases = Nth(Nth(root, "testsuite", 1), "testcase", 0);
    EXPECT_EQ(noCases.attribute("name") + "|" + noCases.firstChildElement("failure").attribute("type"),
              CJUnitReport::ScriptLevelCaseName() + "|script");
    const QDomElement engine = Nth(Nth(root, "testsuite", 2), "failure", 0);
    EXPECT_EQ(engine.attribute("type") + "|" + engine.text(), "error|" + error);
}

TEST(JUnitReportTest, ControlCharactersMarkupAndSurrogatesStayWellFormed)
{
    CJUnitReport junit;
    const QString nasty = QStringLiteral("a<b>&\"c\x01\x1f") + QChar(0xD800) + "]]>";
    const QString emoji = QString::fromUtf8("\xF0\x9F\x98\x80 𠀀");
    junit.Add(Report({{nasty, nasty, false, nasty, {}, false, {}}}), 0);
    junit.Add(Report({{emoji, "c", true, "ok", {}, false, {}}}), 0);
    const QDomElement root = Root(junit);
    const QDomElement testCase = Nth(root, "testcase", 0);
    const QString kept = "a<b>&\"c" + QString(3, QChar(0xFFFD)) + "]]>";
    EXPECT_EQ(QStringList({testCase.attribute("name"), testCase.attribute("classname"),
                           testCase.firstChildElement("failure").text()}),
              QStringList(3, kept));
    EXPECT_EQ(Nth(root, "testsuite", 1).attribute("name"), emoji);
}

TEST(JUnitReportTest, EmptyRunIsAValidDocumentAndWriteFailsOnAMissingFolder)
{
    CJUnitReport junit;
    const QDomElement root = Root(junit);
    EXPECT_TRUE(root.attribute("tests") == "0" && root.firstChildElement().isNull());
    QTemporaryDir dir;
    QString error;
    EXPECT_FALSE(junit.Write(dir.filePath("no/such/junit.xml"), error));
    EXPECT_TRUE(error.contains("junit.xml"));
    EXPECT_TRUE(junit.Write(dir.filePath("junit.xml"), error)) << error.toStdString();
    EXPECT_TRUE(QFile::exists(dir.filePath("junit.xml")));
}
