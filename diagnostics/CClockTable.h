#pragma once
#include "ClockInfo_.h"

#include <functional>
#include <map>
#include <memory>

// The process-wide clocks: a map from a 32-bit id to its record, made on the
// first start of an id and freed by Clear. UI thread only, no lock. Dumps go
// to "\macrolist.log" of the system data folder, one line per clock:
//   clock[<id>]'s sum is (<sum>) \t<label> \r\n
// with id and sum printed as signed 32-bit numbers ("%d"), in ascending
// (unsigned) id order.
class CClockTable
{
public:
    // A millisecond tick counter that wraps at 2^32 (GetTickCount).
    using TickSource = std::function<quint32()>;

    static CClockTable& Instance();

    void Start(quint32 id, const QString& label);
    void Stop(quint32 id);
    void Dump(quint32 id) const;
    void DumpAll() const;
    void Clear();

    // Null for an id never started (or cleared since).
    const QXCommon::ClockInfo_* Find(quint32 id) const;
    int Count() const { return int(m_clocks.size()); }

    static QString FormatLine(quint32 id, const QXCommon::ClockInfo_& clock);
    static QString LogPath();

    // Replaces the tick counter (tests); an empty source restores the system's.
    void SetTickSource(TickSource source);

private:
    CClockTable() = default;
    quint32 Ticks() const;

    std::map<quint32, std::unique_ptr<QXCommon::ClockInfo_>> m_clocks;
    TickSource m_ticks;
};
