#pragma once

// Numbers of the host's databases and folders, as CConnectManager::GetFileDir
// takes them.
class CQxDataBase
{
public:
    enum DataBaseName
    {
        HomeFolder = 0,
        SysDataFolder = 1,
        SysDataBase = 2,
        TestCaseFolder = 3,
    };
};
