#include "DbBackendTest.h"

#include "CComDB.h"
#include "CDBFactory.h"
#include "HostContext.h"
#include "PgTestServer.h"

#include <QDir>
#include <QFile>

void DbBackendTest::SetUp()
{
    TempHomeTest::SetUp();
    CDBFactory::ReleaseThread();
    if (GetParam() == DbBackend::PostgreSQL) {
        QString error;
        m_target = PgTestServer::Instance().NewDatabaseUrl(error);
        ASSERT_FALSE(m_target.isEmpty()) << error.toStdString();
        HostContext::Instance().SetSystemDatabase(m_target);
    } else {
        m_target = HostContext::Instance().SystemDatabase();
    }
    ASSERT_NE(SystemDb(), nullptr);
    ASSERT_TRUE(SystemDb()->IsConnected()) << SystemDb()->GetError().toStdString();
    Prepare();
}

void DbBackendTest::TearDown()
{
    CDBFactory::ReleaseThread();
    TempHomeTest::TearDown();
}

CComDB* DbBackendTest::SystemDb()
{
    return dynamic_cast<CComDB*>(CDBFactory::GetSingle(CDBFactory::kSystemDatabase));
}

std::unique_ptr<CComDB> DbBackendTest::SecondConnection()
{
    auto db = std::make_unique<CComDB>();
    EXPECT_TRUE(db->Connect(m_target, QString(), QString())) << db->GetError().toStdString();
    return db;
}

int DbBackendTest::CountRows(const QString& table, const QString& where)
{
    auto db = SecondConnection();
    QString count;
    const bool ok = db->Retrieve(QStringLiteral("select count(*) from ") + table + QLatin1Char(' ') + where, count);
    return ok ? count.toInt() : -1;
}

std::string DbBackendName(const ::testing::TestParamInfo<DbBackend>& info)
{
    return info.param == DbBackend::SQLite ? "SQLite" : "PostgreSQL";
}

bool LockTable(CComDB& holder, DbBackend backend, const char* table)
{
    if (backend == DbBackend::SQLite)
        return holder.ExecuteNonQuery(QStringLiteral("BEGIN EXCLUSIVE"));
    return holder.ExecuteNonQuery(QStringLiteral("BEGIN"))
           && holder.ExecuteNonQuery(QStringLiteral("LOCK TABLE %1 IN ACCESS EXCLUSIVE MODE").arg(table));
}

QString CopyAccessFixture(const QString& folder, const QString& name)
{
    QDir().mkpath(folder);
    const QString target = folder + QLatin1Char('/') + name;
    QFile::remove(target);
    if (!QFile::copy(QStringLiteral(VELMORA_ACCESS_FIXTURE), target))
        return QString();
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    return target;
}

void AccessFixtureTest::SetUp()
{
    TempHomeTest::SetUp();
    m_path = CopyAccessFixture(Home());
    ASSERT_FALSE(m_path.isEmpty());
    m_original = ReadBytes(m_path);
}
