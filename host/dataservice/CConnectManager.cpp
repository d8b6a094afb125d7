#include "CConnectManager.h"

#include "HostContext.h"

CConnectManager* CConnectManager::Instance()
{
    static CConnectManager manager;
    return &manager;
}

QString CConnectManager::GetFileDir(int database) const
{
    const HostContext& context = HostContext::Instance();
    switch (database) {
    case CQxDataBase::HomeFolder:
        return context.Home();
    case CQxDataBase::SysDataFolder:
        return context.SysDataPath();
    case CQxDataBase::SysDataBase:
        return context.SystemDatabase();
    case CQxDataBase::TestCaseFolder:
        return context.TestCaseRoot();
    default:
        return QString();
    }
}
