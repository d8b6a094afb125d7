// Any bytes as "macrolist.log": reading never crashes, and every line listed
// names a script (".js") that ran (no "NotExecute").
#include "CTestCaseStore.h"
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const fuzz::Home home(true);
    const QString sys = HostContext::Instance().SysDataPath();
    QFile::remove(sys + QStringLiteral("/mac.log"));
    fuzz::WriteFile(sys + QStringLiteral("/macrolist.log"), fuzz::Bytes(data, size));
    CArray<QString> lines;
    CTestCaseStore::ReadLastRunScripts(lines);
    for (const QString& line : lines)
        fuzz::Require(line.contains(QStringLiteral(".js")) && !line.contains(QStringLiteral("NotExecute"))
                      && !line.contains(QLatin1Char('\n')));
    return 0;
}
