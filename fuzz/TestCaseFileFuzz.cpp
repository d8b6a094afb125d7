// Any bytes as a test-case file: loading never crashes, succeeds exactly when
// the text is short or splits in two at the separator, and a case that loads
// saves and loads back to the same text and rows.
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CodePage.h"
#include "FuzzSupport.h"

namespace {

const QString kScript = QStringLiteral("fuzz.js");

// A home with the script's folder, for the whole run.
struct Sandbox : fuzz::Home
{
    Sandbox() : Home(true)
    {
        if (!CTestCaseStore::SaveGlobals(kScript, {}, {}))
            std::abort();
    }
};

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
    static const Sandbox sandbox;
    fuzz::WriteFile(HostContext::Instance().TestCaseRoot() + QStringLiteral("/fuzz_js/in.tx"), fuzz::Bytes(data, size));
    const QString whole = CodePage::ToUnicode(fuzz::Bytes(data, size));
    const bool splits = whole.split(CTestCaseStore::kSeparator).size() == 2;
    QString text;
    CTestCaseInfoTable table;
    const bool ok = CTestCaseStore::LoadTestCase(kScript, QStringLiteral("in.tx"), text, &table);
    if (ok != (whole.size() <= CTestCaseStore::kSeparator.size() || splits))
        std::abort();
    if (!ok || !splits)
        return 0;
    if (text.contains(CTestCaseStore::kSeparator))
        std::abort();
    // A value may hold the separator through a character reference; written
    // plainly, such a case no longer loads. That is the file form's limit.
    if (AnyCell(table, [&](int c, int r) { return table.GetAsString(c, r).contains(CTestCaseStore::kSeparator); }))
        return 0;
    QString textBack;
    CTestCaseInfoTable back;
    if (!CTestCaseStore::SaveTestCase(kScript, QStringLiteral("out.tx"), text, &table)
        || !CTestCaseStore::LoadTestCase(kScript, QStringLiteral("out.tx"), textBack, &back))
        std::abort();
    if (textBack != Stored(text) || back.GetRowCount() != table.GetRowCount() || AnyCell(table, [&](int c, int r) {
            return Stored(table.GetAsString(c, r)) != back.GetAsString(table.GetFieldName(c), r);
        }))
        std::abort();
    return 0;
}
