#pragma once
#include <QString>

class CParms;
class NDataModelDataSet;

// Text dumps for the host's developers; the formats are read by people and
// tools as they are, uneven dash lines included.
class CDiagnosticTrace
{
public:
    // Banner, Begin line, one line per row ("name=value," per field; values
    // of 50 characters or more print as "too-large-Parm"; a line is cut to 511
    // characters), End line. Values by field type: text (1, 15) as they are,
    // integers (3) "%d", doubles (6) "%.3f", other types empty.
    static QString TraceDataSet(const NDataModelDataSet* dataSet);
    // Banner, then per parameter "name=value<type> //description" (or
    // "name= <too large> //description" for values of 200 characters or
    // more), End line.
    static QString TraceCParms(const CParms* parms);

    static constexpr int kDataSetValueLimit = 50;
    static constexpr int kDataSetLineLimit = 512;
    static constexpr int kParmValueLimit = 200;
};
