#include "CCliHostSetup.h"

#include "CCliOptions.h"
#include "CConnectionString.h"
#include "HostContext.h"

#include <QDir>
#include <QFileInfo>

namespace {

QString Absolute(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

} // namespace

bool CCliHostSetup::Apply(const CCliOptions& options)
{
    HostContext& context = HostContext::Instance();
    if (!ApplyHome(options))
        return false;
    if (!options.SystemDb().isEmpty() && !ApplySystemDb(options.SystemDb()))
        return false;
    if (!options.CasesDir().isEmpty() && !ApplyCases(options.CasesDir()))
        return false;
    if (options.TimeoutMs() > 0)
        context.SetScriptTimeBudgetMs(options.TimeoutMs());
    if (!context.EnsureFolders())
        return Fail(QStringLiteral("cannot create the folders of the home folder %1").arg(context.Home()));
    const QFileInfo home(context.Home());
    if (!home.isReadable() || !home.isWritable() || !home.isExecutable())
        return Fail(QStringLiteral("home folder %1 is not readable and writable").arg(context.Home()));
    return true;
}

bool CCliHostSetup::ApplyHome(const CCliOptions& options)
{
    HostContext& context = HostContext::Instance();
    // Only the home folder changes: overrides of the other values that the
    // environment gives stay in force unless an option replaces them too.
    if (!options.Home().isEmpty())
        qputenv("VELMORA_HOME", Absolute(options.Home()).toUtf8());
    context.LoadFromEnvironment();
    // The default home is made on first use; a home someone named must exist.
    if (qEnvironmentVariableIsEmpty("VELMORA_HOME"))
        return true;
    const QFileInfo home(context.Home());
    if (!home.exists())
        return Fail(QStringLiteral("home folder %1 does not exist").arg(context.Home()));
    if (!home.isDir())
        return Fail(QStringLiteral("home folder %1 is not a folder").arg(context.Home()));
    return true;
}

bool CCliHostSetup::ApplySystemDb(const QString& path)
{
    // A team's server database is taken as named; the data service reports
    // when it cannot be reached.
    if (CConnectionString::IsServerUrl(path)) {
        HostContext::Instance().SetSystemDatabase(path);
        m_systemDbNamed = true;
        return true;
    }
    const QFileInfo file(Absolute(path));
    if (!file.exists())
        return Fail(QStringLiteral("system database %1 does not exist").arg(file.filePath()));
    if (!file.isFile() || !file.isReadable())
        return Fail(QStringLiteral("system database %1 is not a readable file").arg(file.filePath()));
    HostContext::Instance().SetSystemDatabase(file.filePath());
    m_systemDbNamed = true;
    return true;
}

bool CCliHostSetup::ApplyCases(const QString& path)
{
    const QFileInfo folder(Absolute(path));
    if (!folder.exists())
        return Fail(QStringLiteral("test-case folder %1 does not exist").arg(folder.filePath()));
    if (!folder.isDir() || !folder.isReadable())
        return Fail(QStringLiteral("test-case folder %1 is not a readable folder").arg(folder.filePath()));
    HostContext::Instance().SetTestCaseRoot(folder.filePath());
    return true;
}

bool CCliHostSetup::Fail(const QString& error)
{
    m_error = error;
    return false;
}
