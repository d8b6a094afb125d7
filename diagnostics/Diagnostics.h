#pragma once
#include "ClockInfo_.h"

#include <QString>

class CParms;
class NDataModelDataSet;

// The diagnostics library under the names the host's developers use: run
// logs, clocks and traces. Formats and files are those of CDiagnosticLog,
// CClockTable and CDiagnosticTrace.
namespace QXCommon {

void AppendToFile(const QString& path, const QString& text);
void WriteAnalyseLog(const QString& message);
void WriteTimeLog(const QString& path, const QString& message);

void StartClock(quint32 id, const QString& label = QString());
void StopClock(quint32 id);
void DumpClock(quint32 id);
void DumpClocks();
void ClearClocks();

QString TraceDataSet(const NDataModelDataSet* dataSet);
QString TraceCParms(const CParms* parms);

} // namespace QXCommon
