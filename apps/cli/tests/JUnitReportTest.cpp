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

CScriptTestReport Report(const QString& script, QList<CTestCaseOutcome> outcomes)
{
    CScriptTestReport r;
    r.script = script;
    r.outcomes = outcomes;
    for (const CTestCaseOutcome& o : outcomes)
        r.passed = r.passed && o.passed;
    return r;
}

QDomDocument Parse(const QByteArray& xml)
{
    QDomDocument document;
    QString error;
    int line = 0;
    EXPECT_TRUE(document.setContent(xml, &error, &line)) << error.toStdString() << " at line " << line;
    return document;
}

} // namespace

TEST(JUnitReportTest, OneSuitePerScriptOneCasePerCase)
{
    CJUnitReport junit;
    junit.Add(Report(QStringLiteral("梁\\a.js"), {Outcome(QStringLiteral("梁\\a.js"), QStringLiteral("c1.tx"), true, QStringLiteral("测试通过!")),
                                                  Outcome(QStringLiteral("梁\\a.js"), QStringLiteral("c2.tx"), false, QStringLiteral("计算结果不一致!"),
                                                          {{QStringLiteral("L"), QStringLiteral("3"), QStringLiteral("3.0")}})}),
              0.5);
    junit.Add(Report(QStringLiteral("b.js"), {Outcome(QStringLiteral("b.js"), QString(), false, QStringLiteral("没有测试用例!"))}), 0.1);
    EXPECT_EQ(junit.Tests(), 3);
    EXPECT_EQ(junit.Failures(), 2);

    const QDomDocument doc = Parse(junit.ToXml());
    const QDomElement root = doc.documentElement();
    EXPECT_EQ(root.tagName(), QStringLiteral("testsuites"));
    EXPECT_EQ(root.attribute(QStringLiteral("tests")), QStringLiteral("3"));
    EXPECT_EQ(root.attribute(QStringLiteral("failures")), QStringLiteral("2"));
    const QDomNodeList suites = root.elementsByTagName(QStringLiteral("testsuite"));
    ASSERT_EQ(suites.size(), 2);
    const QDomElement first = suites.at(0).toElement();
    EXPECT_EQ(first.attribute(QStringLiteral("name")), QStringLiteral("梁\\a.js"));
    EXPECT_EQ(first.attribute(QStringLiteral("failures")), QStringLiteral("1"));
    const QDomNodeList cases = first.elementsByTagName(QStringLiteral("testcase"));
    ASSERT_EQ(cases.size(), 2);
    EXPECT_EQ(cases.at(0).toElement().attribute(QStringLiteral("classname")), QStringLiteral("梁\\a.js"));
    EXPECT_EQ(cases.at(0).toElement().attribute(QStringLiteral("name")), QStringLiteral("c1.tx"));
    EXPECT_TRUE(cases.at(0).toElement().elementsByTagName(QStringLiteral("failure")).isEmpty());

    const QDomElement failure = cases.at(1).toElement().firstChildElement(QStringLiteral("failure"));
    ASSERT_FALSE(failure.isNull());
    EXPECT_EQ(failure.attribute(QStringLiteral("message")), QStringLiteral("计算结果不一致!"));
    EXPECT_EQ(failure.attribute(QStringLiteral("type")), QStringLiteral("mismatch"));
    EXPECT_TRUE(failure.text().startsWith(QStringLiteral("计算结果不一致!\n+---")));
    EXPECT_TRUE(failure.text().contains(QRegularExpression(QStringLiteral("\n\\| L +\\| 3 +\\| 3\\.0 +\\|\n"))))
        << failure.text().toStdString();
    EXPECT_FALSE(failure.text().contains(QLatin1Char('\r')));

    const QDomElement noCases = suites.at(1).toElement().firstChildElement(QStringLiteral("testcase"));
    EXPECT_EQ(noCases.attribute(QStringLiteral("name")), CJUnitReport::ScriptLevelCaseName());
    EXPECT_EQ(noCases.firstChildElement(QStringLiteral("failure")).attribute(QStringLiteral("type")), QStringLiteral("script"));
}

TEST(JUnitReportTest, EngineErrorIsTheFailureText)
{
    CJUnitReport junit;
    const QString error = QStringLiteral("Error: SyntaxError: missing ; before statement; in line 12");
    junit.Add(Report(QStringLiteral("s"), {Outcome(QStringLiteral("s"), QStringLiteral("c.tx"), false, error)}), 0);
    const QDomElement failure = Parse(junit.ToXml()).documentElement().elementsByTagName(QStringLiteral("failure")).at(0).toElement();
    EXPECT_EQ(failure.attribute(QStringLiteral("type")), QStringLiteral("error"));
    EXPECT_EQ(failure.text(), error);
}

TEST(JUnitReportTest, ControlCharactersAndMarkupStayWellFormed)
{
    CJUnitReport junit;
    const QString nasty = QStringLiteral("a<b>&\"c\x01\x1f") + QChar(0xD800) + QStringLiteral("]]>");
    junit.Add(Report(nasty, {Outcome(nasty, nasty, false, nasty)}), 0);
    const QDomElement testCase = Parse(junit.ToXml()).documentElement().elementsByTagName(QStringLiteral("testcase")).at(0).toElement();
    const QString kept = QStringLiteral("a<b>&\"c") + QString(3, QChar(0xFFFD)) + QStringLiteral("]]>");
    EXPECT_EQ(testCase.attribute(QStringLiteral("name")), kept);
    EXPECT_EQ(testCase.attribute(QStringLiteral("classname")), kept);
    EXPECT_EQ(testCase.firstChildElement(QStringLiteral("failure")).text(), kept);
}

TEST(JUnitReportTest, SurrogatePairsSurvive)
{
    CJUnitReport junit;
    const QString emoji = QString::fromUtf8("\xF0\x9F\x98\x80 𠀀");
    junit.Add(Report(emoji, {Outcome(emoji, QStringLiteral("c"), true, QStringLiteral("ok"))}), 0);
    EXPECT_EQ(Parse(junit.ToXml()).documentElement().firstChildElement().attribute(QStringLiteral("name")), emoji);
}

TEST(JUnitReportTest, EmptyRunIsAValidDocument)
{
    CJUnitReport junit;
    const QDomElement root = Parse(junit.ToXml()).documentElement();
    EXPECT_EQ(root.attribute(QStringLiteral("tests")), QStringLiteral("0"));
    EXPECT_TRUE(root.firstChildElement().isNull());
}

TEST(JUnitReportTest, WriteFailsOnAMissingFolder)
{
    QTemporaryDir dir;
    CJUnitReport junit;
    QString error;
    EXPECT_FALSE(junit.Write(dir.filePath(QStringLiteral("no/such/junit.xml")), error));
    EXPECT_TRUE(error.contains(QStringLiteral("junit.xml")));
    EXPECT_TRUE(junit.Write(dir.filePath(QStringLiteral("junit.xml")), error)) << error.toStdString();
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("junit.xml"))));
}
