#include "ExternalProcess.h"

#include <csignal>
#include <sys/types.h>
#include <unistd.h>

ExternalProcess::~ExternalProcess()
{
    Stop();
}

bool ExternalProcess::Start(const QString& program, const QStringList& arguments)
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

bool ExternalProcess::WaitForExit(int timeoutMs)
{
    return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(timeoutMs);
}

QByteArray ExternalProcess::Output()
{
    m_output += m_process.readAll();
    return m_output;
}

void ExternalProcess::SignalGroup(int signal) const
{
    // The group's id is the program's own id (setpgid above).
    if (m_pid > 0)
        ::kill(-static_cast<pid_t>(m_pid), signal);
}

void ExternalProcess::Stop()
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
    // Children that outlived the program itself.
    SignalGroup(SIGKILL);
    Output();
    m_pid = 0;
}
