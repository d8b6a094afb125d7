#include "Diagnostics.h"

#include "CClockTable.h"
#include "CDiagnosticLog.h"
#include "CDiagnosticTrace.h"

namespace QXCommon {

void AppendToFile(const QString& path, const QString& text)
{
    CDiagnosticLog::AppendToFile(path, text);
}

void WriteAnalyseLog(const QString& message)
{
    CDiagnosticLog::WriteAnalyseLog(message);
}

void WriteTimeLog(const QString& path, const QString& message)
{
    CDiagnosticLog::WriteTimeLog(path, message);
}

void StartClock(quint32 id, const QString& label)
{
    CClockTable::Instance().Start(id, label);
}

void StopClock(quint32 id)
{
    CClockTable::Instance().Stop(id);
}

void DumpClock(quint32 id)
{
    CClockTable::Instance().Dump(id);
}

void DumpClocks()
{
    CClockTable::Instance().DumpAll();
}

void ClearClocks()
{
    CClockTable::Instance().Clear();
}

QString TraceDataSet(const NDataModelDataSet* dataSet)
{
    return CDiagnosticTrace::TraceDataSet(dataSet);
}

QString TraceCParms(const CParms* parms)
{
    return CDiagnosticTrace::TraceCParms(parms);
}

} // namespace QXCommon
