// Any bytes as a test-case file: loading never crashes, succeeds exactly when
// the text is short or splits in two at the separator, and a case that loads
// saves and loads back to the same text and rows.
#include "CTestCaseInfoTable.h"
#include "CTestCaseStore.h"
#include "CodePage.h"
#include "HostContext.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

namespace {

const QString kScript = QStringLiteral("fuzz.js");

struct Sandbox
{
    QTemporaryDir dir;
    QString caseFile;

    Sandbox()
    {
        if (!dir.isValid())
            std::abort();
        HostContext::Instance().SetHome(dir.path());
        if (!HostContext::Instance().EnsureFolders() || !CTestCaseStore::SaveGlobals(kScript, {}, {}))
            std::abort();
        caseFile = HostContext::Instance().TestCaseRoot() + QStringLiteral("/fuzz_js/in.tx");
    }
};

Sandbox& TheSandbox()
{
    static Sandbox sandbox;
    return sandbox;
}

// What a text looks like after one trip through the 8-bit code page.
QString Stored(const QString& text)
{
    return CodePage::ToUnicode(CodePage::FromUnicode(text));
}

bool SameRows(const NDataModelDataSet& a, const NDataModelDataSet& b)
{
    if (a.GetRowCount() != b.GetRowCount())
        return false;
    for (int c = 0; c < a.GetFieldCount(); ++c)
        for (int r = 1; r <= a.GetRowCount(); ++r)
            if (Stored(a.GetAsString(c, r)) != b.GetAsString(a.GetFieldName(c), r))
                return false;
    return true;
}

bool AnyCellHoldsSeparator(const NDataModelDataSet& table)
{
    for (int c = 0; c < table.GetFieldCount(); ++c)
        for (int r = 1; r <= table.GetRowCount(); ++r)
            if (table.GetAsString(c, r).contains(CTestCaseStore::kSeparator))
                return true;
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Sandbox& box = TheSandbox();
    QFile file(box.caseFile);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(reinterpret_cast<const char*>(data), qint64(size)) != qint64(size))
        std::abort();
    file.close();

    const QString whole = CodePage::ToUnicode(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
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
    if (AnyCellHoldsSeparator(table))
        return 0;
    if (!CTestCaseStore::SaveTestCase(kScript, QStringLiteral("out.tx"), text, &table))
        std::abort();
    QString textBack;
    CTestCaseInfoTable back;
    if (!CTestCaseStore::LoadTestCase(kScript, QStringLiteral("out.tx"), textBack, &back))
        std::abort();
    if (textBack != Stored(text) || !SameRows(table, back))
        std::abort();
    return 0;
}
