#pragma once
#include <QString>

class CComDB;

// A short-lived connection to an MS Access file the user picked, to read its
// Macros table. The database object is made on the first connect and reused
// by later ones; neither Disconnect nor destruction deletes it: it stays with
// the process, as the host's connection objects do.
class CConnectJSSysData
{
public:
    CConnectJSSysData();
    virtual ~CConnectJSSysData();
    CConnectJSSysData(const CConnectJSSysData&) = delete;
    CConnectJSSysData& operator=(const CConnectJSSysData&) = delete;

    // Messages go to the user (style 64) for a missing file and for a failed
    // connection; the connection attempt alone decides the result.
    bool ConnectDatabase(const QString& path);
    // Closes the connection and sets path and folder back to "error".
    void Disconnect();

    CComDB* GetDatabase() const { return m_database; }
    const QString& GetConnectionString() const { return m_connectionString; }
    const QString& GetDatabasePath() const { return m_databasePath; }
    const QString& GetDatabaseFolder() const { return m_databaseFolder; }

private:
    QString m_connectionString;
    CComDB* m_database = nullptr;
    QString m_databasePath = QStringLiteral("error");
    QString m_databaseFolder = QStringLiteral("error");
};
