// Any text as a global-parameter text: parsing never crashes, and every row
// it makes is marked as parsed and has a name without blanks, tabs or "=".
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "FuzzSupport.h"

#include <QRegularExpression>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(fuzz::Bytes(data, size));
    CTestCaseInfoTable table;
    fuzz::Require(CTestCaseStore::ParseGlobalParms(text, table)
                  && table.GetRowCount() <= text.count(QStringLiteral("var ")) + 1);
    for (int row = 1; row <= table.GetRowCount(); ++row) {
        const QString name = table.GetAsString(CTestCaseInfoTable::ParmName, row);
        fuzz::Require(table.GetAsInteger(CTestCaseInfoTable::ParmMode, row) == 1 && !name.isEmpty()
                      && !name.contains(QRegularExpression(QStringLiteral("[ \t=]"))));
    }
    return 0;
}
