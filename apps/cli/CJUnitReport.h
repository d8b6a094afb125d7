#pragma once
#include "CScriptTestReport.h"

#include <QByteArray>
#include <QString>
#include <vector>

// JUnit XML as Jenkins and GitLab read it: one <testsuite> per script, in the
// order scripts were run, one <testcase> per case with the script as its
// classname. A failed case carries the mismatch table or the engine error; a
// script that could not run its cases is one failed test case.
class CJUnitReport
{
public:
    void Add(const CScriptTestReport& report, double seconds);
    // "K/N": suite names carry the shard, so reports merged from every shard
    // tell their suites apart; test-case names stay as they are.
    void SetShard(const QString& shard) { m_shard = shard; }

    int Tests() const;
    int Failures() const;

    QByteArray ToXml() const;
    // False (with a one-line reason) when the file cannot be written.
    bool Write(const QString& path, QString& error) const;

    // Test-case name used when a whole script failed before its cases ran.
    static QString ScriptLevelCaseName();
    // The line naming a case that passed against an empty table because its
    // own could not be read.
    static QString TableWarning(const CTestCaseOutcome& outcome);
    static inline const QString kTableUnreadable = QStringLiteral("case table cannot be read");
    // The comparison table as the result file prints it, LF line breaks.
    static QString FormatRows(const QList<CTestCaseOutcome::Row>& rows);

private:
    struct Suite
    {
        QString name;
        QList<CTestCaseOutcome> cases;
        double seconds = 0;
    };
    std::vector<Suite> m_suites;
    QString m_shard;
};
