#include "CVelmoraLibrary.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

// The Itanium C++ names of the exported members; a member function takes the
// object as its first argument.
const CVelmoraLibrary::EntryPoint CVelmoraLibrary::kInstance = {"_ZN12CCeateDialog8InstanceEv",
                                                                "CCeateDialog::Instance"};
const CVelmoraLibrary::EntryPoint CVelmoraLibrary::kDomodle = {"_ZN12CCeateDialog7DomodleEv",
                                                               "CCeateDialog::Domodle"};
const CVelmoraLibrary::EntryPoint CVelmoraLibrary::kRelease = {"_ZN12CCeateDialog7ReleaseEv",
                                                               "CCeateDialog::Release"};
const CVelmoraLibrary::EntryPoint CVelmoraLibrary::kScriptTest = {"_ZN14CVelmoraExport16DoJaveScriptTestEv",
                                                                  "CVelmoraExport::DoJaveScriptTest"};

QString CVelmoraLibrary::Locate(const QString& applicationDir, const QString& override)
{
    if (!override.isEmpty())
        return override;
    return QDir(applicationDir).filePath(kFileName);
}

bool CVelmoraLibrary::Load(const QString& path)
{
    m_path = path;
    m_missing.clear();
    m_error.clear();
    if (!QFileInfo::exists(path)) {
        m_error = QStringLiteral("不存在文件:%1\n请先编译脚本工作台库, 或用环境变量VELMORA_LIBRARY指定它的位置。").arg(path);
        return false;
    }
    m_handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) {
        m_error = QStringLiteral("无法加载脚本工作台库:%1\n%2").arg(path, QString::fromLocal8Bit(dlerror()));
        return false;
    }
    m_instance = reinterpret_cast<void* (*)()>(Resolve(kInstance));
    m_domodle = reinterpret_cast<void (*)(void*)>(Resolve(kDomodle));
    m_release = reinterpret_cast<void (*)()>(Resolve(kRelease));
    m_scriptTest = reinterpret_cast<int (*)()>(Resolve(kScriptTest));
    if (m_missing.isEmpty())
        return true;
    m_error = QStringLiteral("脚本工作台库%1中缺少入口:\n%2").arg(path, m_missing.join(QLatin1Char('\n')));
    return false;
}

void* CVelmoraLibrary::Resolve(const EntryPoint& entry)
{
    void* address = dlsym(m_handle, entry.symbol);
    if (!address)
        m_missing.append(QStringLiteral("%1 (%2)").arg(QString::fromLatin1(entry.name), QString::fromLatin1(entry.symbol)));
    return address;
}

bool CVelmoraLibrary::OpenWorkbench()
{
    if (!HasWorkbench())
        return false;
    void* dialog = m_instance();
    if (!dialog)
        return false;
    m_domodle(dialog);
    return true;
}

bool CVelmoraLibrary::ReleaseWorkbench()
{
    if (!m_release)
        return false;
    m_release();
    return true;
}

int CVelmoraLibrary::RunScriptTest()
{
    return m_scriptTest ? m_scriptTest() : -1;
}
