// Any text as a global-parameter text: parsing never crashes, and every row
// it makes is marked as parsed and has a name without blanks, tabs or "=".
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = fuzz::Utf8(data, size);
    CTestCaseInfoTable table;
    if (!CTestCaseStore::ParseGlobalParms(text, table) || table.GetRowCount() > text.count(QStringLiteral("var ")) + 1)
        std::abort();
    for (int row = 1; row <= table.GetRowCount(); ++row) {
        const QString name = table.GetAsString(CTestCaseInfoTable::ParmName, row);
        if (table.GetAsInteger(CTestCaseInfoTable::ParmMode, row) != 1 || name.isEmpty()
            || name.contains(QLatin1Char(' ')) || name.contains(QLatin1Char('\t')) || name.contains(QLatin1Char('=')))
            std::abort();
    }
    return 0;
}
