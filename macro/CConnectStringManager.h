#pragma once

// Keeps the name of the connection-string concern; no data, no behaviour.
class CConnectStringManager
{
public:
    virtual ~CConnectStringManager();
};
