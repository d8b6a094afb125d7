#include "ExternalProcess.h"

#include <csignal>
#include <sys/types.h>
#include <unistd.h>

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
    return !IsRunning() || m_process.waitForFinished(timeoutMs);
}

void ExternalProcess::SignalGroup(int signal) const
{
    if (m_pid > 0) // the group's id is the program's own id (setpgid above)
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
    SignalGroup(SIGKILL); // children that outlived the program itself
    Output();
    m_pid = 0;
}
