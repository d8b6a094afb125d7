#include "CDBFactory.h"

#include "CComDB.h"
#include "CConnectionString.h"
#include "CSysDataSchema.h"
#include "HostContext.h"
#include "NativePath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

struct ThreadSlot
{
    std::unique_ptr<CDataServiceAbsolute> service;
    bool installed = false;
    // The system database this thread's service connected to by itself.
    QString autoTarget;
};

ThreadSlot& Slot()
{
    thread_local ThreadSlot slot;
    return slot;
}

bool EnsureFile(const QString& target)
{
    if (CConnectionString::IsServerUrl(target))
        return true;
    const QString path = NativePath::Map(target);
    if (QFileInfo::exists(path))
        return true;
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    // An empty file is a new SQLite database. Another thread may win the race.
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || QFileInfo::exists(path);
}

// Every store statement commits by itself; with the default rollback journal
// each one waits for the disk (about 3 ms here). A write-ahead log makes a
// commit cheap and lets the worker threads read while one writes. A database
// that cannot switch (read-only folder) keeps its journal.
void UseWriteAheadLog(CComDB& db)
{
    QString mode;
    const bool logged = db.Retrieve(QStringLiteral("PRAGMA journal_mode = WAL"), mode)
                        && mode.compare(QLatin1String("wal"), Qt::CaseInsensitive) == 0;
    if (logged)
        db.ExecuteNonQuery(QStringLiteral("PRAGMA synchronous = NORMAL"));
}

} // namespace

bool CDBFactory::OpenSystemDatabase(CComDB& db, const QString& target)
{
    if (!EnsureFile(target) || !db.Init() || !db.Connect(target, QString(), QString()))
        return false;
    if (db.GetBackend() == CConnectionString::Backend::Access)
        return true;
    if (db.GetBackend() == CConnectionString::Backend::SQLite)
        UseWriteAheadLog(db);
    return CSysDataSchema::Create(db);
}

CDataServiceAbsolute* CDBFactory::GetSingle(int type)
{
    if (type != kSystemDatabase)
        return nullptr;
    ThreadSlot& slot = Slot();
    if (slot.installed)
        return slot.service.get();
    if (!slot.service)
        slot.service = std::make_unique<CComDB>();
    auto* db = static_cast<CComDB*>(slot.service.get());
    const QString target = HostContext::Instance().SystemDatabase();
    const bool ownConnection = db->IsConnected() && db->GetConnectionString() == slot.autoTarget;
    if (db->IsConnected() && !(ownConnection && slot.autoTarget != target))
        return db;
    slot.autoTarget = target;
    OpenSystemDatabase(*db, target);
    return db;
}

void CDBFactory::ReleaseThread()
{
    ThreadSlot& slot = Slot();
    slot.service.reset();
    slot.installed = false;
    slot.autoTarget.clear();
}

void CDBFactory::InstallForThread(std::unique_ptr<CDataServiceAbsolute> service)
{
    ThreadSlot& slot = Slot();
    slot.service = std::move(service);
    slot.installed = slot.service != nullptr;
    slot.autoTarget.clear();
}
