// Any bytes as "macrolist.log": reading never crashes, and every line listed
// names a script (".js") that ran (no "NotExecute").
#include "CTestCaseStore.h"
#include "HostContext.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

namespace {

struct Sandbox
{
    QTemporaryDir dir;
    QString log;

    Sandbox()
    {
        if (!dir.isValid())
            std::abort();
        HostContext::Instance().SetHome(dir.path());
        if (!HostContext::Instance().EnsureFolders())
            std::abort();
        log = HostContext::Instance().SysDataPath() + QStringLiteral("/macrolist.log");
    }
};

Sandbox& TheSandbox()
{
    static Sandbox sandbox;
    return sandbox;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Sandbox& box = TheSandbox();
    QFile::remove(HostContext::Instance().SysDataPath() + QStringLiteral("/mac.log"));
    QFile file(box.log);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(reinterpret_cast<const char*>(data), qint64(size)) != qint64(size))
        std::abort();
    file.close();

    CArray<QString> lines;
    CTestCaseStore::ReadLastRunScripts(lines);
    for (const QString& line : lines)
        if (!line.contains(QStringLiteral(".js")) || line.contains(QStringLiteral("NotExecute"))
            || line.contains(QLatin1Char('\n')))
            std::abort();
    return 0;
}
