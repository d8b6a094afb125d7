// Any bytes as a data-set XML buffer: loading never crashes, and whatever
// loads saves and reloads to the same table.
#include "FuzzSupport.h"
#include "NDataModelDataSet.h"

namespace {

bool SameTable(const NDataModelDataSet& a, const NDataModelDataSet& b)
{
    bool same = a.GetTableName() == b.GetTableName() && a.GetFieldCount() == b.GetFieldCount()
                && a.GetRowCount() == b.GetRowCount();
    for (int c = 0; same && c < a.GetFieldCount(); ++c) {
        same = a.GetFieldName(c) == b.GetFieldName(c) && a.GetFieldDataType(c) == b.GetFieldDataType(c)
               && a.GetFieldWidth(c) == b.GetFieldWidth(c);
        for (int r = 1; same && r <= a.GetRowCount(); ++r)
            same = a.IsNull(c, r) == b.IsNull(c, r) && a.GetAsString(c, r) == b.GetAsString(c, r);
    }
    return same;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    NDataModelDataSet table, again;
    const bool loaded = table.LoadDataSetXMLBuf_NoDataBefore(QString::fromUtf8(fuzz::Bytes(data, size)), 0);
    fuzz::Require(loaded || (table.GetFieldCount() == 0 && table.GetRowCount() == 0)); // refused: left untouched
    QString saved;
    fuzz::Require(!loaded || (table.SaveDataSetXMLBuf_NoDelete(saved) && again.LoadDataSetXMLBuf_NoDataBefore(saved, 0)
                              && SameTable(table, again)));
    return 0;
}
