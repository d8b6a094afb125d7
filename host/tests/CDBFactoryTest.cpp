#include "CAccessSysData_MacrosTable.h"
#include "CComDB.h"
#include "CConnectManager.h"
#include "CDBFactory.h"
#include "CSysDataSchema.h"
#include "DbBackendTest.h"
#include "HostContext.h"
#include "PgTestServer.h"

#include <QFile>
#include <QFileInfo>
#include <latch>
#include <set>
#include <thread>
#include <vector>

namespace {

class DBFactoryTest : public TempHomeTest
{
protected:
    void SetUp() override { TempHomeTest::SetUp(); CDBFactory::ReleaseThread(); }
    void TearDown() override { CDBFactory::ReleaseThread(); TempHomeTest::TearDown(); }
};

bool HasTable(CDataServiceAbsolute* db, const char* table)
{
    QString count;
    return db->Retrieve(QStringLiteral("select count(*) from ") + QLatin1String(table), count) && count == "0";
}

TEST_F(DBFactoryTest, FirstUseCreatesASqliteFileWithAWriteAheadLog)
{
    const QString path = HomeFile(QStringLiteral("深/层/目录/system.db"));
    HostContext::Instance().SetSystemDatabase(path);
    CDataServiceAbsolute* db = CDBFactory::GetSingle(0);
    ASSERT_TRUE(db->IsConnected()) << db->GetError().toStdString();
    EXPECT_TRUE(QFileInfo(path).isFile());
    EXPECT_EQ(CDBFactory::GetSingle(1), nullptr);
    EXPECT_EQ(CDBFactory::GetSingle(-1), nullptr);
    QString mode;
    ASSERT_TRUE(db->Retrieve(QStringLiteral("PRAGMA journal_mode"), mode));
    EXPECT_EQ(mode, QStringLiteral("wal"));
    CComDB plain; // a plain connection leaves the journal alone
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("plain.db")), QByteArray()));
    ASSERT_TRUE(plain.Connect(HomeFile(QStringLiteral("plain.db")), QString(), QString()));
    ASSERT_TRUE(plain.Retrieve(QStringLiteral("PRAGMA journal_mode"), mode));
    EXPECT_EQ(mode, QStringLiteral("delete"));
}

TEST_F(DBFactoryTest, ExistingDataIsKeptAndMissingTablesAdded)
{
    const QString path = HostContext::Instance().SystemDatabase();
    {
        CComDB seed;
        ASSERT_TRUE(WriteBytes(path, QByteArray()));
        ASSERT_TRUE(seed.Connect(path, QString(), QString()));
        for (const char* sql : {"create table Macros (key_ch text, key_en text, content text, description text)",
                                "insert into Macros values ('k', 'e', 'c', 'd')"})
            ASSERT_TRUE(seed.ExecuteNonQuery(QString::fromUtf8(sql)));
    }
    QString content;
    ASSERT_TRUE(CAccessSysData_MacrosTable::GetMacroContent(QStringLiteral("k"), content));
    EXPECT_EQ(content, QStringLiteral("c"));
    EXPECT_TRUE(HasTable(CDBFactory::GetSingle(0), "MacrosV2"));
}

TEST_F(DBFactoryTest, FollowsTheHostContextButKeepsAnExplicitConnection)
{
    CDataServiceAbsolute* db = CDBFactory::GetSingle(0);
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(QStringLiteral("a.js"), QStringLiteral("first")));
    const QString second = HomeFile(QStringLiteral("second.db"));
    HostContext::Instance().SetSystemDatabase(second);
    EXPECT_EQ(CDBFactory::GetSingle(0), db);
    EXPECT_EQ(db->GetConnectionString(), second);
    QString content;
    EXPECT_FALSE(CAccessSysData_MacrosTable::GetMacroContent(QStringLiteral("a.js"), content));

    const QString explicitDb = HomeFile(QStringLiteral("explicit.db"));
    CComDB maker;
    ASSERT_TRUE(CDBFactory::OpenSystemDatabase(maker, explicitDb));
    ASSERT_TRUE(db->Connect(explicitDb, QString(), QString()));
    HostContext::Instance().SetSystemDatabase(HomeFile(QStringLiteral("third.db")));
    EXPECT_EQ(CDBFactory::GetSingle(0)->GetConnectionString(), explicitDb);
    db->DisConnect();
    EXPECT_EQ(CDBFactory::GetSingle(0)->GetConnectionString(), HomeFile(QStringLiteral("third.db")));
}

TEST_F(DBFactoryTest, UnusableSystemDatabaseGivesAFailingService)
{
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("plainfile")), "x"));
    HostContext::Instance().SetSystemDatabase(HomeFile(QStringLiteral("plainfile/system.db")));
    CDataServiceAbsolute* db = CDBFactory::GetSingle(0);
    ASSERT_NE(db, nullptr);
    EXPECT_FALSE(db->IsConnected());
    QString value;
    EXPECT_FALSE(db->Retrieve(QStringLiteral("select 1"), value));
    EXPECT_EQ(CAccessSysData_MacrosTable::GetDataSet(), nullptr);
}

TEST_F(DBFactoryTest, InstalledServiceIsReturnedUntilReleased)
{
    auto own = std::make_unique<CComDB>();
    CComDB* raw = own.get();
    CDBFactory::InstallForThread(std::move(own));
    EXPECT_EQ(CDBFactory::GetSingle(0), raw);
    EXPECT_FALSE(raw->IsConnected());
    CDBFactory::ReleaseThread();
    EXPECT_NE(CDBFactory::GetSingle(0), nullptr);
    EXPECT_TRUE(CDBFactory::GetSingle(0)->IsConnected());
}

TEST_F(DBFactoryTest, EachThreadHasItsOwnConnection)
{
    CDataServiceAbsolute* mainService = CDBFactory::GetSingle(0);
    ASSERT_TRUE(mainService->IsConnected());
    constexpr int kThreads = 4, kKeys = 25;
    std::vector<const void*> services(kThreads + 1, mainService);
    std::vector<int> stored(kThreads, 0);
    std::vector<std::thread> threads;
    std::latch allConnected(kThreads); // keeps every thread (and so its service) alive until all have one
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            services[size_t(t)] = CDBFactory::GetSingle(0);
            allConnected.arrive_and_wait();
            for (int k = 0; k < kKeys; ++k) {
                const QString key = QStringLiteral("t%1\\k%2.js").arg(t).arg(k);
                stored[size_t(t)] += CAccessSysData_MacrosTable::SetMacroContent(key, key) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const std::set<const void*> distinct(services.begin(), services.end());
    EXPECT_EQ(distinct.size(), size_t(kThreads + 1));
    for (int t = 0; t < kThreads; ++t)
        EXPECT_EQ(stored[size_t(t)], kKeys) << "thread " << t;
    auto all = CAccessSysData_MacrosTable::GetDataSet();
    ASSERT_NE(all, nullptr);
    EXPECT_EQ(all->GetRowCount(), kThreads * kKeys);
}

TEST_F(DBFactoryTest, ServerUserMayComeFromTheCall)
{
    QString error;
    ASSERT_TRUE(PgTestServer::Instance().Start(error)) << error.toStdString();
    const QString withoutUser = PgTestServer::Instance().Url(QStringLiteral("postgres")).remove("postgres@");
    CComDB db;
    ASSERT_TRUE(db.Connect(withoutUser, QStringLiteral("postgres"), QString())) << db.GetError().toStdString();
    EXPECT_FALSE(db.Connect(withoutUser, QStringLiteral("nosuchrole"), QString()));
}

using SystemDatabaseTest = DbBackendTest;

TEST_P(SystemDatabaseTest, FirstUseCreatesTheSchemaOnce)
{
    CDataServiceAbsolute* db = CDBFactory::GetSingle(0);
    for (const char* table : {"SC_MACRO_DEFINE", "SC_MACROPARAM", "Macros", "MacrosV2"})
        EXPECT_TRUE(HasTable(db, table)) << table;
    EXPECT_TRUE(CSysDataSchema::Create(*db));
    EXPECT_EQ(CDBFactory::GetSingle(0), db);
    EXPECT_EQ(CConnectManager::Instance()->GetFileDir(2), Target());
}

VELMORA_INSTANTIATE_DB_BACKENDS(SystemDatabaseTest);

TEST(ConnectManagerTest, KnowsTheHostsFoldersByNumber)
{
    HostContext& context = HostContext::Instance();
    context.SetSystemDatabase(QStringLiteral("/data/system.db"));
    CConnectManager* manager = CConnectManager::Instance();
    EXPECT_EQ(manager, CConnectManager::Instance());
    EXPECT_EQ(manager->GetFileDir(CQxDataBase::SysDataBase), QStringLiteral("/data/system.db"));
    EXPECT_EQ(manager->GetFileDir(CQxDataBase::SysDataFolder), context.SysDataPath());
    EXPECT_EQ(manager->GetFileDir(CQxDataBase::HomeFolder), context.Home());
    EXPECT_EQ(manager->GetFileDir(CQxDataBase::TestCaseFolder), context.TestCaseRoot());
    EXPECT_EQ(manager->GetFileDir(99), QString());
    context.LoadFromEnvironment();
}

} // namespace
