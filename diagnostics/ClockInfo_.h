#pragma once
#include <QString>
#include <QtGlobal>

namespace QXCommon {

// One named clock: milliseconds added up over its start/stop pairs.
struct ClockInfo_
{
    quint32 start = 0; // tick count (ms) at the last start
    quint32 sum = 0;   // ms added up; wraps like the tick counter
    QString label;     // printed with the clock
};

} // namespace QXCommon
