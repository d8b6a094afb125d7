// Any bytes as a data-set XML buffer: loading never crashes, and whatever
// loads saves and reloads to the same table.
#include "FuzzSupport.h"
#include "NDataModelDataSet.h"

namespace {

bool SameTable(const NDataModelDataSet& a, const NDataModelDataSet& b)
{
    if (a.GetTableName() != b.GetTableName() || a.GetFieldCount() != b.GetFieldCount() || a.GetRowCount() != b.GetRowCount())
        return false;
    for (int c = 0; c < a.GetFieldCount(); ++c) {
        if (a.GetFieldName(c) != b.GetFieldName(c) || a.GetFieldDataType(c) != b.GetFieldDataType(c)
            || a.GetFieldWidth(c) != b.GetFieldWidth(c))
            return false;
        for (int r = 1; r <= a.GetRowCount(); ++r)
            if (a.IsNull(c, r) != b.IsNull(c, r) || a.GetAsString(c, r) != b.GetAsString(c, r))
                return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    NDataModelDataSet table, again;
    if (!table.LoadDataSetXMLBuf_NoDataBefore(fuzz::Utf8(data, size), 0)) {
        if (table.GetFieldCount() != 0 || table.GetRowCount() != 0)
            std::abort(); // a refused buffer must leave the table untouched
        return 0;
    }
    QString saved;
    if (!table.SaveDataSetXMLBuf_NoDelete(saved) || !again.LoadDataSetXMLBuf_NoDataBefore(saved, 0) || !SameTable(table, again))
        std::abort();
    return 0;
}
