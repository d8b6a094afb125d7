// Any bytes as a macro settings file: reading never crashes or hangs, and the
// parameters of a file that reads are written and read back unchanged.
#include "CMacroParamFile.h"
#include "CRecordingUIService.h"
#include "CUIServices.h"
#include "FuzzSupport.h"
#include "MacroParamFields.h"

#include <memory>

namespace {

// The number of inputs, then every field of every input and output.
QStringList Fields(const CMacroParamFile& file, CArray<CMacroParam>& inputs, CArray<CMacroParam>& outputs)
{
    file.GetInputParams(inputs);
    file.GetOutputParams(outputs);
    return QStringList{QString::number(inputs.GetSize())} + ParamFields(inputs) + ParamFields(outputs);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Drive letters in a ScriptFile path land inside the home.
    static const auto ui = std::make_shared<CRecordingUIService>();
    static const fuzz::Home home(false, [] { CUIServices::Install(ui); return true; });
    ui->Clear();
    const QString input = home.dir.filePath(QStringLiteral("input.xml"));
    fuzz::WriteFile(input, fuzz::Bytes(data, size));
    CMacroParamFile file;
    const bool ok = file.Read(input);
    if (file.GetFilePath().isEmpty()) {
        // Only a document that did not load clears the object.
        fuzz::Require(!ok && file.GetErrorText().isEmpty() && file.GetScriptFile().isEmpty());
        return 0;
    }
    fuzz::Require(ok || file.GetErrorText().startsWith(QStringLiteral("CMacroParamFile::Read出错:文件")));
    // Written back (without touching any script file), the parameters read the same.
    CArray<CMacroParam> inputs, outputs, inputsBack, outputsBack;
    const QStringList fields = Fields(file, inputs, outputs);
    const QString again = home.dir.filePath(QStringLiteral("again.xml"));
    fuzz::WriteFile(again, CMacroParamFile::BuildDocument(inputs, outputs, file.GetScriptFile()));
    CMacroParamFile back;
    back.Read(again);
    fuzz::Require(back.GetFilePath() == again && back.GetScriptFile() == file.GetScriptFile()
                  && Fields(back, inputsBack, outputsBack) == fields);
    return 0;
}
