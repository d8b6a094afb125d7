#pragma once
#include <QProcess>
#include <QString>
#include <QStringList>

#include <csignal>
#include <sys/types.h>
#include <unistd.h>

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

    // False, with the reason in Error(), when the program does not start.
    bool Start(const QString& program, const QStringList& arguments)
    {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.setChildProcessModifier([] { ::setpgid(0, 0); });
        m_process.start(program, arguments);
        if (!m_process.waitForStarted(15000)) {
            m_error = m_process.errorString();
            return false;
        }
        m_pid = m_process.processId();
        return true;
    }

    bool WaitForExit(int timeoutMs) { return !IsRunning() || m_process.waitForFinished(timeoutMs); }
    bool IsRunning() const { return m_process.state() != QProcess::NotRunning; }
    QString Error() const { return m_error; }
    QByteArray Output() { return m_output += m_process.readAll(); } // stdout and stderr merged

    // SIGTERM to the whole group, then SIGKILL; children that outlived the program are killed too.
    void Stop()
    {
        if (m_pid <= 0)
            return;
        if (IsRunning()) {
            SignalGroup(SIGTERM);
            if (!m_process.waitForFinished(5000)) {
                SignalGroup(SIGKILL);
                m_process.waitForFinished(5000);
            }
        }
        SignalGroup(SIGKILL);
        Output();
        m_pid = 0;
    }

private:
    // The group's id is the program's own id (setpgid above).
    void SignalGroup(int signal) const { ::kill(-static_cast<pid_t>(m_pid), signal); }

    QProcess m_process;
    qint64 m_pid = 0;
    QByteArray m_output;
    QString m_error;
};
