#include "CDiagnosticTrace.h"

#include "CArray.h"
#include "CParms.h"
#include "NDataModelDataSet.h"

namespace {

const QString kEol = QStringLiteral("\r\n");

QString FieldValue(const NDataModelDataSet& dataSet, int column, int row)
{
    switch (int(dataSet.GetFieldDataType(column)))
    {
    case FT_String:
    case FT_LongString:
        return dataSet.GetAsString(column, row);
    case FT_Integer:
        return QString::asprintf("%d", dataSet.GetAsInteger(column, row));
    case FT_Double:
        return QString::asprintf("%.3f", dataSet.GetAsDouble(column, row));
    default:
        return QString();
    }
}

QString RowLine(const NDataModelDataSet& dataSet, int row)
{
    QString line;
    for (int column = 0; column < dataSet.GetFieldCount(); ++column)
    {
        QString value = FieldValue(dataSet, column, row);
        if (value.size() >= CDiagnosticTrace::kDataSetValueLimit)
            value = QStringLiteral("too-large-Parm");
        line += dataSet.GetFieldName(column) + QLatin1Char('=') + value + QLatin1Char(',');
    }
    if (line.size() >= CDiagnosticTrace::kDataSetLineLimit)
        line.truncate(CDiagnosticTrace::kDataSetLineLimit - 1);
    return line;
}

} // namespace

QString CDiagnosticTrace::TraceDataSet(const NDataModelDataSet* dataSet)
{
    if (!dataSet)
        return QStringLiteral("ERROR: dataset是空指针！");
    QString text;
    text.reserve(4096);
    text += QStringLiteral("\r\n*************** TraceDataSet *****************\r\n");
    text += QStringLiteral("---------------------- Begin ----------------------\r\n");
    for (int row = 1; row <= dataSet->GetRowCount(); ++row)
        text += RowLine(*dataSet, row) + kEol;
    // One dash fewer before End than the other lines have: the format is read as it is.
    text += QStringLiteral("--------------------- End ----------------------\r\n");
    return text;
}

QString CDiagnosticTrace::TraceCParms(const CParms* parms)
{
    if (!parms)
        return QStringLiteral("ERROR: CParms是空指针！");
    QString text = QStringLiteral("\r\n*************** TraceCParms *****************\r\n");
    CArray<const CParm*> list;
    parms->GetParmsArray(list);
    for (int i = 0; i < list.GetSize(); ++i)
    {
        const CParm& parm = *list[i];
        text += parm.GetParmName();
        if (parm.GetParmValue().size() >= kParmValueLimit)
            text += QStringLiteral("= <too large>");
        else
            text += QLatin1Char('=') + parm.GetParmValue() + QString::asprintf("<%d>", parm.GetType());
        text += QStringLiteral(" //") + parm.GetDes() + kEol;
    }
    text += QStringLiteral("---------------------- End ----------------------\r\n");
    return text;
}
