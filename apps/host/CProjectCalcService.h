#pragma once
#include "CMacroImplement.h"
#include "CSampleProject.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>

// The host's "计算": runs, for every member of the project, each stored
// script its member type uses (global functions and global parameters of the
// script's test cases, the member's inputs as declarations, then the script,
// as one text), reads the outputs and the rebar weight, and records the run:
// its lines in "CalAnalyse.log", and in "macrolist.log" the run line of 29
// asterisks followed by one "key:category" line per stored script, those that
// did not run marked "NotExecute".
//
// Runs on the calling thread with that thread's script engine and database
// connection; a host calls it from a worker thread so that its window stays
// responsive. Not shared between threads.
class CProjectCalcService
{
public:
    struct Result
    {
        QString member;
        QString kind;
        QString script;
        QString quantities; // "L=1730, n=31"
        double weight = 0;  // kg
        QString error;      // empty when the script ran
    };
    using Progress = std::function<void(int done, int total)>;

    static inline const QString kNotExecute = QStringLiteral("NotExecute");
    // Category of a script that ran for more than one member type.
    static inline const QString kCommonCategory = QStringLiteral("通用");

    // Loads the project and computes it. False with Error() when the project
    // or the scripts cannot be read; a failing script is a result row, not a
    // failure of the run. `stop` ends the run after the current member.
    bool Run(const Progress& progress = {}, const std::atomic<bool>* stop = nullptr);

    const QList<Result>& Results() const { return m_results; }
    double TotalWeight() const { return m_totalWeight; }
    int MemberCount() const { return m_members; }
    int FailureCount() const { return m_failures; }
    bool Stopped() const { return m_stopped; }
    QString Error() const { return m_error; }

    // The text appended to "macrolist.log" for a run: the 29 asterisks, then
    // each stored key in order with the member types it ran for.
    static QString MacroListText(const QStringList& keys, const QMap<QString, QSet<QString>>& ranFor);

    // The inputs as "var name = value;" lines (CR LF between): a source is a number or a name
    // in `values`. False with the first unknown source in `missing`.
    static bool Declare(const QList<QPair<QString, QString>>& inputs, const QMap<QString, QString>& values,
                        QString& declarations, QString& missing);

private:
    struct Script
    {
        QString text;
        QString globalFun;
        QString globalParm;
    };

    bool LoadScripts(QStringList& keys);
    void RunMember(const CSampleProject::Member& member, const QList<CSampleProject::ScriptUse>& uses);
    Result RunUse(const CSampleProject::Member& member, const CSampleProject::ScriptUse& use,
                  QMap<QString, QString>& values);
    QString AnalyseLine(const Result& result) const;
    void WriteLogs(const QStringList& keys, double seconds);

    CSampleProject m_project;
    CMacroImplement m_macro;
    QMap<QString, Script> m_scripts;
    QMap<QString, QSet<QString>> m_ranFor;
    QList<Result> m_results;
    QString m_analyse;
    double m_totalWeight = 0;
    int m_members = 0;
    int m_failures = 0;
    bool m_stopped = false;
    QString m_error;
};
