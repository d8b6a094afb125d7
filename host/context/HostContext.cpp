#include "HostContext.h"

#include <QDir>
#include <QStandardPaths>
#include <QtGlobal>

const char* const HostContext::kTestCaseFolderName = "脚本测试用例";

namespace {

QString Env(const char* name)
{
    return qEnvironmentVariable(name);
}

QString DefaultHome()
{
    const QString home = QDir::homePath();
    return home + QStringLiteral("/.local/share/velmora");
}

} // namespace

HostContext& HostContext::Instance()
{
    static HostContext context;
    return context;
}

HostContext::HostContext()
{
    LoadFromEnvironment();
}

void HostContext::LoadFromEnvironment()
{
    const QString home = Env("VELMORA_HOME");
    SetHome(home.isEmpty() ? DefaultHome() : home);
    m_sysData = Env("VELMORA_SYSDATA");
    m_systemDb = Env("VELMORA_SYSTEM_DB");
    m_testCaseRoot = Env("VELMORA_TESTCASE_ROOT");
    for (char c = 'A'; c <= 'Z'; ++c) {
        const QString root = Env(QByteArray("VELMORA_DRIVE_").append(c).constData());
        if (!root.isEmpty())
            m_driveRoots.insert(QChar(c), root);
    }
    const QString codePage = Env("VELMORA_CODEPAGE");
    m_codePage = codePage.isEmpty() ? QByteArray("GBK") : codePage.toLatin1();
    bool ok = false;
    const int budget = Env("VELMORA_SCRIPT_TIMEOUT_MS").toInt(&ok);
    m_scriptBudgetMs = ok && budget > 0 ? budget : kDefaultScriptBudgetMs;
}

void HostContext::SetHome(const QString& home)
{
    m_home = QDir::cleanPath(home);
    m_sysData.clear();
    m_systemDb.clear();
    m_testCaseRoot.clear();
    m_driveRoots.clear();
}

QString HostContext::SysDataPath() const
{
    return m_sysData.isEmpty() ? m_home + QStringLiteral("/sysdata") : m_sysData;
}

QString HostContext::SystemDatabase() const
{
    return m_systemDb.isEmpty() ? SysDataPath() + QStringLiteral("/system.db") : m_systemDb;
}

QString HostContext::TestCaseRoot() const
{
    return m_testCaseRoot.isEmpty() ? m_home + QLatin1Char('/') + QString::fromUtf8(kTestCaseFolderName)
                                    : m_testCaseRoot;
}

QString HostContext::DriveRoot(QChar letter) const
{
    const QChar upper = letter.toUpper();
    const auto it = m_driveRoots.constFind(upper);
    if (it != m_driveRoots.constEnd())
        return *it;
    return m_home + QStringLiteral("/drives/") + upper.toLower();
}

void HostContext::SetDriveRoot(QChar letter, const QString& path)
{
    m_driveRoots.insert(letter.toUpper(), path);
}

bool HostContext::EnsureFolders() const
{
    QDir dir;
    return dir.mkpath(m_home) && dir.mkpath(SysDataPath()) && dir.mkpath(TestCaseRoot())
           && dir.mkpath(DriveRoot(QLatin1Char('C')));
}
