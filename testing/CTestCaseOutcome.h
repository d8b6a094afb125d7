#pragma once
#include <QList>
#include <QString>

// What became of one test case (or of a whole script that could not be
// tested): handed to the runner's case observer and kept in a script report.
struct CTestCaseOutcome
{
    // One compared output: the value the case stores and the value the run gave.
    struct Row
    {
        QString name;
        QString storedValue;
        QString newValue;
    };

    QString script;
    // Empty when the script as a whole failed (no cases, no global texts).
    QString caseName;
    bool passed = false;
    // The message of the case's last log line: "测试通过!", "计算结果不一致!",
    // the engine's error text, or a store failure.
    QString message;
    // Every compared output in row order; empty when the case did not run.
    QList<Row> rows;
    // The case's table could not be read: it ran against an empty table.
    bool tableUnreadable = false;
    // For an engine error, its line within the piece a user edits
    // ("script line 2"); empty otherwise.
    QString where;
};
