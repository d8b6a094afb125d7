#pragma once
#include "CTestShard.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

class QCommandLineParser;

// The command line of velmora-test. Parsing never exits the process: the
// caller decides what to print and which status to return.
class CCliOptions
{
public:
    enum class Action { Run, Help, Version, Error };

    // args[0] is the program name, as in QCoreApplication::arguments(). `env`
    // gives the shard when --shard does not: VELMORA_SHARD=K/N, else the
    // 1-based CI_NODE_INDEX and CI_NODE_TOTAL of GitLab-style parallel jobs.
    Action Parse(const QStringList& args, const QProcessEnvironment& env = QProcessEnvironment());

    // One line saying what was wrong, set when Parse returns Error.
    QString Error() const { return m_error; }
    // The usage text listing every option.
    static QString HelpText();
    static QString VersionText();

    QString Script() const { return m_script; }     // empty: every script
    int Jobs() const { return m_jobs; }             // 0: one per core
    QString JUnitFile() const { return m_junit; }
    QString Home() const { return m_home; }
    QString SystemDb() const { return m_systemDb; }
    QString CasesDir() const { return m_cases; }
    int TimeoutMs() const { return m_timeoutMs; }   // 0: the host context's budget
    bool Quiet() const { return m_quiet; }
    CTestShard Shard() const { return m_shard; }
    QString CoverageDir() const { return m_coverage; } // empty: no coverage
    bool List() const { return m_list; }                // print the chosen scripts, run nothing
    bool Strict() const { return m_strict; }            // unreadable case tables fail

    static constexpr int kMaxJobs = 256;

private:
    bool ReadValues(const QCommandLineParser& parser);
    bool ReadPositiveInt(const QCommandLineParser& parser, const QString& name, int max, int& value);
    bool ReadShard(const QCommandLineParser& parser, const QProcessEnvironment& env);
    bool Fail(const QString& error);

    QString m_error;
    QString m_script;
    int m_jobs = 0;
    QString m_junit;
    QString m_home;
    QString m_systemDb;
    QString m_cases;
    int m_timeoutMs = 0;
    bool m_quiet = false;
    CTestShard m_shard;
    bool m_list = false;
    QString m_coverage;
    bool m_strict = false;
};
