#pragma once
#include "CSampleScripts.h"
#include "TestEnvironment.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// Runs the built velmora-test on the fixture's temporary home and gives its
// exit status, output and result file. The child sees no VELMORA_* variable
// of the calling environment; the home is passed with --home.
class CliFixture : public TempHomeTest
{
protected:
    struct Outcome
    {
        int exitCode = -1;
        bool finished = false;
        QString out;
        QString err;
    };

    // Appends --home <temp home> unless the arguments name a home themselves.
    Outcome Run(QStringList args, const QProcessEnvironment& extra = {});
    // Runs once so that the home is seeded with the samples; expects a pass.
    void Seed();

    // The lines of the result file named on stdout ("result file: ..."),
    // without their CR LF; empty when there is none.
    static QStringList ResultLines(const Outcome& outcome);
    static QString ResultPath(const Outcome& outcome);
    // The line's text after its time stamp ("y.m.d h:m:s...").
    static QString WithoutStamp(const QString& line);
    // "N passed, M failed" read from stdout; -1 each when missing.
    static std::pair<int, int> Counts(const Outcome& outcome);

    // The built-in samples; their number of cases, all or of one script.
    static const QList<CSampleScripts::Script>& Samples();
    static int SampleCaseCount();
    static QString SampleKey(int index) { return Samples().at(index).keyCh; }

    // Replaces the stored expected value of one output of one case.
    void SetExpected(const QString& script, const QString& caseName, const QString& output, const QString& value);
    // Stores a script and one case for it whose table reads `outputs`.
    void AddScript(const QString& key, const QString& text, const QString& caseText, const QStringList& outputs);
};
