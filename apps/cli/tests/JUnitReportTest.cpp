#include "CJUnitReport.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

CTestCaseOutcome Outcome(const QString& script, const QString& caseName, bool passed, const QString& message,
                         QList<CTestCaseOutcome::Row> rows = {})
{
    CTestCaseOutcome o;
    o.script = script;
    o.caseName = caseName;
    o.passed = passed;
    o.message = message;
    o.rows = rows;
    return o;
}

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
    return parent.elementsByTagName(QLatin1String(tag)).at(n).toElement();
}

} // namespace

TEST(JUnitReportTest, OneSuitePerScriptOneCasePerCaseAndTypedFailures)
{
    const QString a = QStringLiteral("梁\\a.js");
    const QString error = QStringLiteral("Error: SyntaxError: missing ; before statement; in line 12");
    CJUnitReport junit;
    junit.Add(Report({Outcome(a, "c1.tx", true, QStringLiteral("测试通过!")),
                      Outcome(a, "c2.tx", false, QStringLiteral("计算结果不一致!"), {{"L", "3", "3.0"}})}), 0.5);
    junit.Add(Report({Outcome("b.js", QString(), false, QStringLiteral("没有测试用例!"))}), 0.1);
    junit.Add(Report({Outcome("s", "c.tx", false, error)}), 0);
    EXPECT_EQ(junit.Tests(), 4);
    EXPECT_EQ(junit.Failures(), 3);

    const QDomElement root = Root(junit);
    EXPECT_EQ(root.tagName(), QStringLiteral("testsuites"));
    EXPECT_EQ(root.attribute("tests") + "/" + root.attribute("failures"), QStringLiteral("4/3"));
    ASSERT_EQ(root.elementsByTagName("testsuite").size(), 3);
    const QDomElement first = Nth(root, "testsuite", 0);
    EXPECT_EQ(first.attribute("name"), a);
    EXPECT_EQ(first.attribute("failures"), QStringLiteral("1"));
    ASSERT_EQ(first.elementsByTagName("testcase").size(), 2);
    EXPECT_EQ(Nth(first, "testcase", 0).attribute("classname"), a);
    EXPECT_EQ(Nth(first, "testcase", 0).attribute("name"), QStringLiteral("c1.tx"));
    EXPECT_TRUE(Nth(first, "testcase", 0).elementsByTagName("failure").isEmpty());

    const QDomElement failure = Nth(first, "failure", 0);
    EXPECT_EQ(failure.attribute("message"), QStringLiteral("计算结果不一致!"));
    EXPECT_EQ(failure.attribute("type"), QStringLiteral("mismatch"));
    EXPECT_TRUE(failure.text().startsWith(QStringLiteral("计算结果不一致!\n+---")));
    EXPECT_TRUE(failure.text().contains(QRegularExpression(QStringLiteral("\n\\| L +\\| 3 +\\| 3\\.0 +\\|\n"))))
        << failure.text().toStdString();
    EXPECT_FALSE(failure.text().contains(QLatin1Char('\r')));

    const QDomElement noCases = Nth(Nth(root, "testsuite", 1), "testcase", 0);
    EXPECT_EQ(noCases.attribute("name"), CJUnitReport::ScriptLevelCaseName());
    EXPECT_EQ(noCases.firstChildElement("failure").attribute("type"), QStringLiteral("script"));
    const QDomElement engine = Nth(Nth(root, "testsuite", 2), "failure", 0);
    EXPECT_EQ(engine.attribute("type"), QStringLiteral("error"));
    EXPECT_EQ(engine.text(), error);
}

TEST(JUnitReportTest, ControlCharactersMarkupAndSurrogatesStayWellFormed)
{
    CJUnitReport junit;
    const QString nasty = QStringLiteral("a<b>&\"c\x01\x1f") + QChar(0xD800) + QStringLiteral("]]>");
    const QString emoji = QString::fromUtf8("\xF0\x9F\x98\x80 𠀀");
    junit.Add(Report({Outcome(nasty, nasty, false, nasty)}), 0);
    junit.Add(Report({Outcome(emoji, "c", true, "ok")}), 0);
    const QDomElement root = Root(junit);
    const QDomElement testCase = Nth(root, "testcase", 0);
    const QString kept = QStringLiteral("a<b>&\"c") + QString(3, QChar(0xFFFD)) + QStringLiteral("]]>");
    EXPECT_EQ(testCase.attribute("name"), kept);
    EXPECT_EQ(testCase.attribute("classname"), kept);
    EXPECT_EQ(testCase.firstChildElement("failure").text(), kept);
    EXPECT_EQ(Nth(root, "testsuite", 1).attribute("name"), emoji);
}

TEST(JUnitReportTest, EmptyRunIsAValidDocumentAndWriteFailsOnAMissingFolder)
{
    CJUnitReport junit;
    const QDomElement root = Root(junit);
    EXPECT_EQ(root.attribute("tests"), QStringLiteral("0"));
    EXPECT_TRUE(root.firstChildElement().isNull());
    QTemporaryDir dir;
    QString error;
    EXPECT_FALSE(junit.Write(dir.filePath(QStringLiteral("no/such/junit.xml")), error));
    EXPECT_TRUE(error.contains(QStringLiteral("junit.xml")));
    EXPECT_TRUE(junit.Write(dir.filePath(QStringLiteral("junit.xml")), error)) << error.toStdString();
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("junit.xml"))));
}
