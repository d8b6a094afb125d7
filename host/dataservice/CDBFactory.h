#pragma once
#include <QString>
#include <memory>

class CComDB;
class CDataServiceAbsolute;

// The host's process-wide data services. Service type 0 is the system
// database named by the host context (HostContext::SystemDatabase: a SQLite
// file path or a "postgresql://" URL).
//
// Thread rule: every thread gets its own service object with its own
// connection, made on that thread's first GetSingle(0) and destroyed when the
// thread ends (or by ReleaseThread). Never hand the pointer to another thread.
//
// The service connects itself on first use and again whenever it is not
// connected. While it holds the connection it made itself, a change of the
// host context's system database moves it there; a connection made by an
// explicit Connect call (CMacroDataManager::Connect) is kept until DisConnect.
// A missing system database file is created with the schema (CSysDataSchema);
// on SQLite and PostgreSQL alike missing tables are created on connecting. A
// SQLite system database is switched to a write-ahead log (files "-wal" and
// "-shm" beside it) with synchronous=NORMAL.
class CDBFactory
{
public:
    static constexpr int kSystemDatabase = 0;

    // nullptr for an unknown type. A service whose connection failed is still
    // returned; its calls fail and GetError tells why.
    static CDataServiceAbsolute* GetSingle(int type);

    // Drops the calling thread's service (and its connection).
    static void ReleaseThread();

    // Makes `service` the calling thread's type-0 service until ReleaseThread,
    // e.g. a decorator that records or fails statements.
    static void InstallForThread(std::unique_ptr<CDataServiceAbsolute> service);

    // Connects `db` to a system database, creating the file (and its folder)
    // when missing and any missing table.
    static bool OpenSystemDatabase(CComDB& db, const QString& target);
};
