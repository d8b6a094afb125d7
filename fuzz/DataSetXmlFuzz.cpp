// Any bytes as a data-set XML buffer: loading never crashes, whatever loads
// saves and reloads to the same table, and whatever the scanner reads the XML
// parser reads the same.
#include "CDataSetXmlScanner.h"
#include "DataSetTestTables.h"
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString xml = QString::fromUtf8(fuzz::Bytes(data, size));
    CDataSetXmlCodec::Table scanned, parsed;
    fuzz::Require(!CDataSetXmlScanner::Read(xml, scanned)
                  || (CDataSetXmlCodec::ReadWithXmlParser(xml, parsed) && scanned == parsed));
    NDataModelDataSet table, again;
    const bool loaded = table.LoadDataSetXMLBuf_NoDataBefore(xml, 0);
    fuzz::Require(loaded || (table.GetFieldCount() == 0 && table.GetRowCount() == 0)); // refused: left untouched
    QString saved;
    fuzz::Require(!loaded || (table.SaveDataSetXMLBuf_NoDelete(saved) && again.LoadDataSetXMLBuf_NoDataBefore(saved, 0)
                              && Dump(table) == Dump(again)));
    return 0;
}
