#pragma once
#include "CQxDataBase.h"

#include <QString>

// Where the host keeps its databases: GetFileDir(CQxDataBase::SysDataBase)
// (number 2) is the system database (a file path, or a "postgresql://" URL
// for a team database). All values come from the host context.
class CConnectManager
{
public:
    static CConnectManager* Instance();

    // Empty for a number the host does not know.
    QString GetFileDir(int database) const;

private:
    CConnectManager() = default;
};
