// Any bytes as a test-case file: loading never crashes, succeeds exactly when
// the text is short or splits in two at the separator, and a case that loads
// saves and loads back to the same text and rows.
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CodePage.h"
#include "FuzzSupport.h"

namespace {

const QString kScript = QStringLiteral("fuzz.js");

// What a text looks like after one trip through the 8-bit code page.
QString Stored(const QString& text) { return CodePage::ToUnicode(CodePage::FromUnicode(text)); }

// Whether `test` holds for any cell (field index, row) of the table.
template <typename Test> bool AnyCell(const NDataModelDataSet& table, Test test)
{
    for (int c = 0; c < table.GetFieldCount(); ++c)
        for (int r = 1; r <= table.GetRowCount(); ++r)
            if (test(c, r))
                return true;
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const fuzz::Home home(true, [] { return CTestCaseStore::SaveGlobals(kScript, {}, {}); }); // makes fuzz_js/
    fuzz::WriteFile(HostContext::Instance().TestCaseRoot() + QStringLiteral("/fuzz_js/in.tx"), fuzz::Bytes(data, size));
    const QString whole = CodePage::ToUnicode(fuzz::Bytes(data, size));
    const bool splits = whole.split(CTestCaseStore::kSeparator).size() == 2;
    QString text;
    CTestCaseInfoTable table;
    const bool ok = CTestCaseStore::LoadTestCase(kScript, QStringLiteral("in.tx"), text, &table);
    fuzz::Require(ok == (whole.size() <= CTestCaseStore::kSeparator.size() || splits));
    if (!ok || !splits)
        return 0;
    fuzz::Require(!text.contains(CTestCaseStore::kSeparator));
    // A value may hold the separator through a character reference; written plainly, it no longer loads.
    if (AnyCell(table, [&](int c, int r) { return table.GetAsString(c, r).contains(CTestCaseStore::kSeparator); }))
        return 0;
    QString textBack;
    CTestCaseInfoTable back;
    fuzz::Require(CTestCaseStore::SaveTestCase(kScript, QStringLiteral("out.tx"), text, &table)
                  && CTestCaseStore::LoadTestCase(kScript, QStringLiteral("out.tx"), textBack, &back));
    fuzz::Require(textBack == Stored(text) && back.GetRowCount() == table.GetRowCount()
                  && !AnyCell(table, [&](int c, int r) {
                         return Stored(table.GetAsString(c, r)) != back.GetAsString(table.GetFieldName(c), r);
                     }));
    return 0;
}
