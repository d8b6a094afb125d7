#pragma once
#include <QProcess>
#include <QString>
#include <QStringList>

// A helper program a test starts (coverage server, browser): run in a process
// group of its own so that stopping it by its id also ends whatever it
// spawned, and always stopped when the object goes, even after a failed
// assertion.
class ExternalProcess
{
public:
    ExternalProcess() = default;
    ~ExternalProcess();
    ExternalProcess(const ExternalProcess&) = delete;
    ExternalProcess& operator=(const ExternalProcess&) = delete;

    // False (with the reason in Error()) when the program does not start.
    bool Start(const QString& program, const QStringList& arguments);
    // Waits for the program to end by itself; false on timeout.
    bool WaitForExit(int timeoutMs);
    // Ends the whole group: a polite request first, then a kill.
    void Stop();

    bool IsRunning() const { return m_process.state() != QProcess::NotRunning; }
    QString Error() const { return m_error; }
    // Everything the program wrote so far (stdout and stderr merged).
    QByteArray Output();

private:
    void SignalGroup(int signal) const;

    QProcess m_process;
    qint64 m_pid = 0;
    QByteArray m_output;
    QString m_error;
};
