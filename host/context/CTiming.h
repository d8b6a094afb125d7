#pragma once
#include <QString>

// A scoped timer: it starts when made and ends when destroyed (or at Stop),
// and then adds the stretch to the process-wide table of CTimingLog under
// (group, label). Made with enabled = false it records nothing. With
// writeEachStretch = true the stretch is also appended to the timing log file
// at once (slow: a file append per stretch; meant for a one-off look).
class CTiming
{
public:
    explicit CTiming(const QString& label, bool enabled = true, const QString& group = QString(),
                     bool writeEachStretch = false);
    ~CTiming();
    CTiming(const CTiming&) = delete;
    CTiming& operator=(const CTiming&) = delete;

    // Ends the stretch now; later calls and the destructor do nothing.
    void Stop();

private:
    QString m_label;
    QString m_group;
    qint64 m_startNs = 0;
    bool m_enabled = true;
    bool m_writeNow = false;
    bool m_running = true;
};
