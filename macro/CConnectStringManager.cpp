#include "CConnectStringManager.h"

CConnectStringManager::~CConnectStringManager() = default;
