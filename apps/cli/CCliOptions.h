#pragma once
#include <QString>
#include <QStringList>

// The command line of velmora-test. Parsing never exits the process: the
// caller decides what to print and which status to return.
class CCliOptions
{
public:
    enum class Action { Run, Help, Version, Error };

    // args[0] is the program name, as in QCoreApplication::arguments().
    Action Parse(const QStringList& args);

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
    QString CoverageDir() const { return m_coverage; } // empty: no coverage

    static constexpr int kMaxJobs = 256;

private:
    bool ReadValues(const QStringList& args);
    bool ReadPositiveInt(const QString& option, const QString& text, int max, int& value);

    QString m_error;
    QString m_script;
    int m_jobs = 0;
    QString m_junit;
    QString m_home;
    QString m_systemDb;
    QString m_cases;
    int m_timeoutMs = 0;
    bool m_quiet = false;
    QString m_coverage;
};
