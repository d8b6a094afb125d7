#pragma once
#include <QProcess>
#include <QString>
#include <QStringList>

// A helper program a test starts (coverage server, browser), in a process group
// of its own so that stopping it ends whatever it spawned; stopped when the
// object goes, even after a failed assertion.
class ExternalProcess
{
public:
    ExternalProcess() = default;
    ~ExternalProcess() { Stop(); }
    ExternalProcess(const ExternalProcess&) = delete;
    ExternalProcess& operator=(const ExternalProcess&) = delete;

    bool Start(const QString& program, const QStringList& arguments); // false with the reason in Error()
    bool WaitForExit(int timeoutMs);
    void Stop(); // SIGTERM to the group, then SIGKILL
    bool IsRunning() const { return m_process.state() != QProcess::NotRunning; }
    QString Error() const { return m_error; }
    QByteArray Output() { return m_output += m_process.readAll(); } // stdout and stderr merged

private:
    void SignalGroup(int signal) const;

    QProcess m_process;
    qint64 m_pid = 0;
    QByteArray m_output;
    QString m_error;
};
