#include "CClockTable.h"

#include "CDiagnosticLog.h"

#include <chrono>

CClockTable& CClockTable::Instance()
{
    static CClockTable table;
    return table;
}

quint32 CClockTable::Ticks() const
{
    if (m_ticks)
        return m_ticks();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
    return quint32(quint64(ms.count()));
}

void CClockTable::SetTickSource(TickSource source)
{
    m_ticks = std::move(source);
}

// A restart keeps the sum; an empty label keeps the old one.
void CClockTable::Start(quint32 id, const QString& label)
{
    const quint32 now = Ticks();
    auto found = m_clocks.find(id);
    if (found != m_clocks.end())
    {
        found->second->start = now;
        if (!label.isEmpty())
            found->second->label = label;
        return;
    }
    auto clock = std::make_unique<QXCommon::ClockInfo_>();
    clock->start = now;
    clock->label = label;
    m_clocks.emplace(id, std::move(clock));
}

// Unsigned subtraction: a wrap of the tick counter still gives the stretch.
void CClockTable::Stop(quint32 id)
{
    const quint32 now = Ticks();
    auto found = m_clocks.find(id);
    if (found != m_clocks.end())
        found->second->sum += now - found->second->start;
}

QString CClockTable::FormatLine(quint32 id, const QXCommon::ClockInfo_& clock)
{
    return QStringLiteral("clock[") + QString::number(qint32(id)) + QStringLiteral("]'s sum is (")
        + QString::number(qint32(clock.sum)) + QStringLiteral(") \t") + clock.label + QStringLiteral(" \r\n");
}

QString CClockTable::LogPath()
{
    return CDiagnosticLog::MacroListLogPath();
}

void CClockTable::Dump(quint32 id) const
{
    if (const QXCommon::ClockInfo_* clock = Find(id))
        CDiagnosticLog::AppendToFile(LogPath(), FormatLine(id, *clock));
}

void CClockTable::DumpAll() const
{
    QString text;
    for (const auto& [id, clock] : m_clocks)
        text += FormatLine(id, *clock);
    CDiagnosticLog::AppendToFile(LogPath(), text);
}

void CClockTable::Clear()
{
    m_clocks.clear();
}

const QXCommon::ClockInfo_* CClockTable::Find(quint32 id) const
{
    const auto found = m_clocks.find(id);
    return found == m_clocks.end() ? nullptr : found->second.get();
}
