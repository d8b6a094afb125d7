#pragma once
#include "CSampleScripts.h"
#include "TestEnvironment.h"

#include <QDomDocument>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// Runs the built velmora-test on the fixture's temporary home and gives its
// exit status, output and result file. The child sees no VELMORA_* or
// CI_NODE_* variable of the calling environment; the home is passed with --home.
class CliFixture : public TempHomeTest
{
protected:
    struct Outcome
    {
        int exitCode = -1;
        bool finished = false;
        QString out, err;
    };

    // Adds --home unless args name one; a run that does not finish is a failure.
    Outcome Run(QStringList args, const QProcessEnvironment& extra = {});
    void Seed(); // runs once so that the home is seeded with the samples; expects a pass

    static QString ResultPath(const Outcome& outcome); // from "result file: ..." on stdout
    static QStringList ResultLines(const Outcome& outcome); // without CR LF; empty when there is none
    static QDomDocument JUnit(const QString& path); // a failure when it does not parse
    static QString WithoutStamp(const QString& line); // the text after "y.m.d h:m:s"
    static std::pair<int, int> Counts(const Outcome& outcome); // "N passed, M failed"; -1 each when missing

    static const QList<CSampleScripts::Script>& Samples();
    static int SampleCaseCount();

    // Replaces the stored expected value of one output of one case.
    void SetExpected(const QString& script, const QString& caseName, const QString& output, const QString& value);
    // Stores a script and one case "one.tx" for it whose table expects "1" for each of `outputs`.
    void AddScript(const QString& key, const QString& text, const QString& caseText, const QStringList& outputs);
};
