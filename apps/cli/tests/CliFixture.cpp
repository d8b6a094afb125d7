#include "CliFixture.h"

#include "CAccessSysData_MacrosTable.h"
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CodePage.h"

#include <QProcess>
#include <QRegularExpression>
#include <numeric>

namespace {

QRegularExpressionMatch MatchLine(const QString& pattern, const QString& text)
{
    return QRegularExpression(pattern, QRegularExpression::MultilineOption).match(text);
}

} // namespace

CliFixture::Outcome CliFixture::Run(QStringList args, const QProcessEnvironment& extra)
{
    if (!args.contains("--home"))
        args << "--home" << Home();
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const QString& key : env.keys())
        if (key.startsWith("VELMORA_") || key.startsWith("CI_NODE_"))
            env.remove(key);
    for (const QString& key : extra.keys())
        env.insert(key, extra.value(key));
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(VELMORA_TEST_BINARY, args);
    Outcome outcome;
    outcome.finished = process.waitForStarted(10000) && process.waitForFinished(240000);
    EXPECT_TRUE(outcome.finished) << "velmora-test did not finish: " << args.join(' ').toStdString();
    if (!outcome.finished)
        process.kill(); // QProcess waits for it on destruction
    else if (process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

void CliFixture::Seed()
{
    const Outcome first = Run({"--quiet"});
    ASSERT_EQ(first.exitCode, 0) << first.out.toStdString() << first.err.toStdString();
}

QString CliFixture::ResultPath(const Outcome& outcome)
{
    return MatchLine("^result file: (/.*)$", outcome.out).captured(1);
}

QStringList CliFixture::ResultLines(const Outcome& outcome)
{
    const QString path = ResultPath(outcome);
    QStringList lines = path.isEmpty() ? QStringList() : CodePage::ToUnicode(ReadBytes(path)).split("\r\n");
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QDomDocument CliFixture::JUnit(const QString& path)
{
    QDomDocument doc;
    EXPECT_TRUE(doc.setContent(ReadBytes(path))) << path.toStdString();
    return doc;
}

QString CliFixture::WithoutStamp(const QString& line)
{
    const int dots = int(line.indexOf("...脚本("));
    return dots < 0 ? line : line.mid(dots);
}

std::pair<int, int> CliFixture::Counts(const Outcome& outcome)
{
    const QRegularExpressionMatch match = MatchLine("^(\\d+) passed, (\\d+) failed$", outcome.out);
    return match.hasMatch() ? std::pair{match.captured(1).toInt(), match.captured(2).toInt()} : std::pair{-1, -1};
}

const QList<CSampleScripts::Script>& CliFixture::Samples()
{
    static const QList<CSampleScripts::Script> scripts = [] {
        CSampleScripts samples;
        return samples.LoadBuiltIn() ? samples.Scripts() : QList<CSampleScripts::Script>();
    }();
    return scripts;
}

int CliFixture::SampleCaseCount()
{
    return std::accumulate(Samples().begin(), Samples().end(), 0,
                           [](int n, const CSampleScripts::Script& script) { return n + int(script.cases.size()); });
}

void CliFixture::SetExpected(const QString& script, const QString& caseName, const QString& output, const QString& value)
{
    QString text;
    CTestCaseInfoTable table;
    ASSERT_TRUE(CTestCaseStore::LoadTestCase(script, caseName, text, &table));
    int found = 0;
    for (int row = 1; row <= table.GetRowCount(); ++row)
        if (table.GetAsString(CTestCaseInfoTable::ParmName, row) == output && ++found)
            table.SetAsString(CTestCaseInfoTable::ParmValue, row, value);
    ASSERT_GT(found, 0) << output.toStdString();
    ASSERT_TRUE(CTestCaseStore::SaveTestCase(script, caseName, text, &table));
}

void CliFixture::AddScript(const QString& key, const QString& text, const QString& caseText, const QStringList& outputs)
{
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(key, text));
    ASSERT_TRUE(CTestCaseStore::SaveGlobals(key, "function One() { return 1; }", "var a = 1 ////a"));
    CTestCaseInfoTable table;
    for (const QString& output : outputs) {
        const int row = table.InsertRow(0);
        table.SetAsString(CTestCaseInfoTable::ParmName, row, output);
        table.SetAsString(CTestCaseInfoTable::ParmValue, row, "1");
    }
    ASSERT_TRUE(CTestCaseStore::SaveTestCase(key, "one.tx", caseText, &table));
}
