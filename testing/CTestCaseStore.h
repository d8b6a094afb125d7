#pragma once
#include "CArray.h"

#include <QString>

class NDataModelDataSet;

// Where a script's test cases and its two global texts live, and how they are
// read and written. Every script has a folder under the test-case root named
// after it (made safe), holding "GlobalFun.txt", "GlobalParm.txt" and one
// ".tx" file per case: the case script text, the separator, then the case's
// parameter table as data-set XML.
//
// Nothing here shows a message: failures come back as results and the callers
// decide what to tell the user. Stateless and safe to call from any thread as
// long as two threads do not write the same script's files.
class CTestCaseStore
{
public:
    // Between the case script text and the table XML in a case file.
    static inline const QString kSeparator = QStringLiteral("@@@@@@######@@@@@");
    static inline const QString kCaseExtension = QStringLiteral(".tx");
    static inline const QString kGlobalFunFile = QStringLiteral("GlobalFun.txt");
    static inline const QString kGlobalParmFile = QStringLiteral("GlobalParm.txt");
    // The host's record of its last runs, in the system data folder: each run
    // starts with the line of 29 asterisks, then one "key:category" line per script.
    static inline const QString kMacroListLog = QStringLiteral("\\macrolist.log");
    static inline const QString kMacLog = QStringLiteral("\\mac.log");
    static inline const QString kRunSeparator = QString(29, QLatin1Char('*'));

    virtual ~CTestCaseStore() = default;

    // The test-case root with its trailing backslash.
    static QString RootFolder();
    // Root + safe name + backslash.
    static QString ScriptFolder(const QString& script);

    // "." and "\" become "_", then "//" becomes "_"; a single "/" stays.
    static QString SanitizeScriptName(const QString& script);

    // A script counts as tested when its global functions file exists; case
    // files alone do not make it so.
    static bool HasTestCases(const QString& script);
    // Case names with their ".tx", in name order; false when the folder is missing.
    static bool ListTestCases(const QString& script, CArray<QString>& names);

    // Creates the script folder (one level) and writes both global texts.
    static bool SaveGlobals(const QString& script, const QString& globalFun, const QString& globalParm);
    static bool LoadGlobals(const QString& script, QString& globalFun, QString& globalParm);

    // `table` may be null: the case is then saved with an empty table part,
    // or loaded for its script text only.
    static bool SaveTestCase(const QString& script, const QString& caseName, const QString& caseText,
                             const NDataModelDataSet* table);
    // `tableUnreadable`, when given, tells whether a table part was there but
    // did not load (the table then stays empty and the load still succeeds).
    static bool LoadTestCase(const QString& script, const QString& caseName, QString& caseText,
                             NDataModelDataSet* table, bool* tableUnreadable = nullptr);
    static bool TestCaseExists(const QString& script, const QString& caseName);
    static bool DeleteTestCase(const QString& script, const QString& caseName);

    // Turns "var name = value ////comment" declarations into rows with
    // ParmMode 1. Always true.
    static bool ParseGlobalParms(const QString& text, NDataModelDataSet& table);

    // The ".js" lines of the last recorded run of the host, refreshing
    // "mac.log" from "macrolist.log" on the way.
    static bool ReadLastRunScripts(CArray<QString>& lines);

private:
    static QString CaseFile(const QString& script, const QString& caseName);
};
