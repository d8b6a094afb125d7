#include "CTiming.h"

#include "CTimingLog.h"

CTiming::CTiming(const QString& label, bool enabled, const QString& group, bool writeEachStretch)
    : m_label(label), m_group(group), m_enabled(enabled), m_writeNow(writeEachStretch)
{
    if (m_enabled)
        m_startNs = CTimingLog::Instance().Now();
}

CTiming::~CTiming()
{
    Stop();
}

void CTiming::Stop()
{
    if (!m_running)
        return;
    m_running = false;
    if (!m_enabled)
        return;
    CTimingLog& log = CTimingLog::Instance();
    log.Add(m_group, m_label, log.Now() - m_startNs, m_writeNow);
}
