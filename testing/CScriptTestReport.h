#pragma once
#include "CTestCaseOutcome.h"

#include <QList>
#include <QString>

// Everything one script's test run would put into the result file, in order,
// gathered instead of written so that scripts can run on worker threads and
// their output be appended to one result file in script order afterwards.
struct CScriptTestReport
{
    // One piece of the result file: a finished log line, or a mismatch table.
    struct Entry
    {
        QString line;
        bool isTable = false;
        QList<CTestCaseOutcome::Row> table;
    };

    QString script;
    bool passed = true;
    QList<Entry> entries;
    QList<CTestCaseOutcome> outcomes;
};
