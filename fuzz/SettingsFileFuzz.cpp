// Any bytes as a macro settings file: reading never crashes or hangs, and the
// parameters of a file that reads are written and read back unchanged.
#include "CMacroParamFile.h"
#include "CRecordingUIService.h"
#include "CUIServices.h"
#include "FuzzSupport.h"

#include <memory>

namespace {

bool SameParams(const CArray<CMacroParam>& a, const CArray<CMacroParam>& b)
{
    if (a.GetSize() != b.GetSize())
        return false;
    for (int i = 0; i < a.GetSize(); ++i)
        if (a[i].GetName() != b[i].GetName() || a[i].GetValue() != b[i].GetValue()
            || a[i].GetDescription() != b[i].GetDescription() || a[i].GetDataType() != b[i].GetDataType())
            return false;
    return true;
}

// Writes what was read (without touching any script file) and reads it again.
void CheckRoundTrip(const CMacroParamFile& read, const QString& again)
{
    CArray<CMacroParam> inputs, outputs, inputsBack, outputsBack;
    read.GetInputParams(inputs);
    read.GetOutputParams(outputs);
    fuzz::WriteFile(again, CMacroParamFile::BuildDocument(inputs, outputs, read.GetScriptFile()));
    CMacroParamFile back;
    back.Read(again);
    back.GetInputParams(inputsBack);
    back.GetOutputParams(outputsBack);
    if (back.GetFilePath() != again || back.GetScriptFile() != read.GetScriptFile()
        || !SameParams(inputs, inputsBack) || !SameParams(outputs, outputsBack))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Drive letters in a ScriptFile path land inside the home.
    static const fuzz::Home home(false);
    static const auto ui = std::make_shared<CRecordingUIService>();
    static const bool installed = (CUIServices::Install(ui), true);
    (void)installed;
    ui->Clear();
    const QString input = home.dir.filePath(QStringLiteral("input.xml"));
    fuzz::WriteFile(input, fuzz::Bytes(data, size));
    CMacroParamFile file;
    const bool ok = file.Read(input);
    if (file.GetFilePath().isEmpty()) {
        // Only a document that did not load clears the object.
        if (ok || !file.GetErrorText().isEmpty() || !file.GetScriptFile().isEmpty())
            std::abort();
        return 0;
    }
    if (!ok && !file.GetErrorText().startsWith(QStringLiteral("CMacroParamFile::Read出错:文件")))
        std::abort();
    CheckRoundTrip(file, home.dir.filePath(QStringLiteral("again.xml")));
    return 0;
}
