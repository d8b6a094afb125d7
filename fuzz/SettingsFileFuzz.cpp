// Any bytes as a macro settings file: reading never crashes or hangs, and the
// parameters of a file that reads are written and read back unchanged.
#include "CMacroParamFile.h"
#include "CRecordingUIService.h"
#include "CUIServices.h"
#include "HostContext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

// Files in memory where the system offers it: a disk costs most of the speed.
QString SandboxTemplate()
{
    const QString shm = QStringLiteral("/dev/shm");
    const QString base = QFileInfo(shm).isWritable() ? shm : QDir::tempPath();
    return base + QStringLiteral("/velmora-fuzz-XXXXXX");
}

struct Sandbox
{
    QTemporaryDir dir{SandboxTemplate()};
    std::shared_ptr<CRecordingUIService> ui = std::make_shared<CRecordingUIService>();
    QString input;
    QString again;

    Sandbox()
    {
        if (!dir.isValid())
            std::abort();
        // Drive letters in a ScriptFile path land inside the sandbox.
        HostContext::Instance().SetHome(dir.path());
        CUIServices::Install(ui);
        input = dir.filePath(QStringLiteral("input.xml"));
        again = dir.filePath(QStringLiteral("again.xml"));
    }
};

Sandbox& TheSandbox()
{
    static Sandbox sandbox;
    return sandbox;
}

bool WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

bool SameParams(const CArray<CMacroParam>& a, const CArray<CMacroParam>& b)
{
    if (a.GetSize() != b.GetSize())
        return false;
    for (int i = 0; i < a.GetSize(); ++i) {
        if (a[i].GetName() != b[i].GetName() || a[i].GetValue() != b[i].GetValue()
            || a[i].GetDescription() != b[i].GetDescription() || a[i].GetDataType() != b[i].GetDataType())
            return false;
    }
    return true;
}

// Writes what was read (without touching any script file) and reads it again.
void CheckRoundTrip(const CMacroParamFile& read)
{
    Sandbox& box = TheSandbox();
    CArray<CMacroParam> inputs, outputs;
    read.GetInputParams(inputs);
    read.GetOutputParams(outputs);
    if (!WriteFile(box.again, CMacroParamFile::BuildDocument(inputs, outputs, read.GetScriptFile())))
        std::abort();
    CMacroParamFile back;
    back.Read(box.again);
    CArray<CMacroParam> inputsBack, outputsBack;
    back.GetInputParams(inputsBack);
    back.GetOutputParams(outputsBack);
    if (back.GetFilePath() != box.again || back.GetScriptFile() != read.GetScriptFile()
        || !SameParams(inputs, inputsBack) || !SameParams(outputs, outputsBack))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Sandbox& box = TheSandbox();
    box.ui->Clear();
    if (!WriteFile(box.input, QByteArray(reinterpret_cast<const char*>(data), qsizetype(size))))
        std::abort();
    CMacroParamFile file;
    const bool ok = file.Read(box.input);
    if (file.GetFilePath().isEmpty()) {
        // Only a document that did not load clears the object.
        if (ok || !file.GetErrorText().isEmpty() || !file.GetScriptFile().isEmpty())
            std::abort();
        return 0;
    }
    if (!ok && !file.GetErrorText().startsWith(QStringLiteral("CMacroParamFile::Read出错:文件")))
        std::abort();
    CheckRoundTrip(file);
    return 0;
}
