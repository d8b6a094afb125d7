#include "CAccessSysData_MacrosTable.h"
#include "CComDB.h"
#include "CConnectManager.h"
#include "CDBFactory.h"
#include "CSysDataSchema.h"
#include "DbBackendTest.h"
#include "HostContext.h"
#include "PgTestServer.h"

#include <QFileInfo>
#include <latch>
#include <set>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

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
    return db->Retrieve(u"select count(*) from "_s + QLatin1String(table), count) && count == "0";
}

QString JournalMode(CDataServiceAbsolute& db)
{
    QString mode;
    EXPECT_TRUE(db.Retrieve(u"PRAGMA journal_mode"_s, mode));
    return mode;
}

TEST_F(DBFactoryTest, FirstUseCreatesASqliteFileWithAWriteAheadLogAndKeepsExistingData)
{
    const QString path = HomeFile(u"深/层/目录/system.db"_s);
    HostContext::Instance().SetSystemDatabase(path);
    CDataServiceAbsolute* db = CDBFactory::GetSingle(0);
    ASSERT_TRUE(db->IsConnected()) << db->GetError().toStdString();
    EXPECT_TRUE(QFileInfo(path).isFile());
    EXPECT_EQ(CDBFactory::GetSingle(1), nullptr);
    EXPECT_EQ(JournalMode(*db), u"wal"_s);
    // A plain connection leaves the journal alone; the factory adds missing tables beside existing data.
    CDBFactory::ReleaseThread();
    const QString old = HomeFile(u"old.db"_s);
    CComDB seed;
    ASSERT_TRUE(WriteBytes(old, QByteArray()) && seed.Connect(old, QString(), QString()));
    EXPECT_EQ(JournalMode(seed), u"delete"_s);
    for (const char* sql : {"create table Macros (key_ch text, key_en text, content text, description text)",
                            "insert into Macros values ('k', 'e', 'c', 'd')"})
        ASSERT_TRUE(seed.ExecuteNonQuery(QString::fromUtf8(sql)));
    seed.DisConnect();
    HostContext::Instance().SetSystemDatabase(old);
    QString content;
    ASSERT_TRUE(CAccessSysData_MacrosTable::GetMacroContent(u"k"_s, content));
    EXPECT_EQ(content, u"c"_s);
    EXPECT_TRUE(HasTable(CDBFactory::GetSingle(0), "MacrosV2"));
}

TEST_F(DBFactoryTest, FollowsTheHostContextButKeepsAnExplicitConnection)
{
    CDataServiceAbsolute* db = CDBFactory::GetSingle(0);
    ASSERT_TRUE(CAccessSysData_MacrosTable::SetMacroContent(u"a.js"_s, u"first"_s));
    HostContext::Instance().SetSystemDatabase(HomeFile(u"second.db"_s));
    EXPECT_EQ(CDBFactory::GetSingle(0), db);
    EXPECT_EQ(db->GetConnectionString(), HomeFile(u"second.db"_s));
    QString content;
    EXPECT_FALSE(CAccessSysData_MacrosTable::GetMacroContent(u"a.js"_s, content));
    const QString explicitDb = HomeFile(u"explicit.db"_s);
    CComDB maker;
    ASSERT_TRUE(CDBFactory::OpenSystemDatabase(maker, explicitDb));
    ASSERT_TRUE(db->Connect(explicitDb, QString(), QString()));
    HostContext::Instance().SetSystemDatabase(HomeFile(u"third.db"_s));
    EXPECT_EQ(CDBFactory::GetSingle(0)->GetConnectionString(), explicitDb);
    db->DisConnect();
    EXPECT_EQ(CDBFactory::GetSingle(0)->GetConnectionString(), HomeFile(u"third.db"_s));
}

TEST_F(DBFactoryTest, UnusableSystemDatabaseGivesAFailingServiceAndAnInstalledOneWinsUntilReleased)
{
    ASSERT_TRUE(WriteBytes(HomeFile(u"plainfile"_s), "x"));
    HostContext::Instance().SetSystemDatabase(HomeFile(u"plainfile/system.db"_s));
    ASSERT_NE(CDBFactory::GetSingle(0), nullptr);
    EXPECT_FALSE(CDBFactory::GetSingle(0)->IsConnected());
    EXPECT_EQ(CAccessSysData_MacrosTable::GetDataSet(), nullptr);
    HostContext::Instance().SetSystemDatabase(HomeFile(u"good.db"_s));
    auto own = std::make_unique<CComDB>();
    CComDB* raw = own.get();
    CDBFactory::InstallForThread(std::move(own));
    EXPECT_EQ(CDBFactory::GetSingle(0), raw);
    CDBFactory::ReleaseThread();
    EXPECT_TRUE(CDBFactory::GetSingle(0)->IsConnected());
}

TEST_F(DBFactoryTest, EachThreadHasItsOwnConnection)
{
    constexpr int kThreads = 4, kKeys = 25;
    std::vector<const void*> services(kThreads + 1, CDBFactory::GetSingle(0));
    std::vector<int> stored(kThreads, 0);
    std::vector<std::thread> threads;
    std::latch allConnected(kThreads); // keeps every thread (and so its service) alive until all have one
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            services[size_t(t)] = CDBFactory::GetSingle(0);
            allConnected.arrive_and_wait();
            for (int k = 0; k < kKeys; ++k)
                stored[size_t(t)] += CAccessSysData_MacrosTable::SetMacroContent(u"t%1\\k%2.js"_s.arg(t).arg(k), u"x"_s);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::set<const void*>(services.begin(), services.end()).size(), size_t(kThreads + 1));
    EXPECT_EQ(stored, std::vector<int>(kThreads, kKeys));
    EXPECT_EQ(CAccessSysData_MacrosTable::GetDataSet()->GetRowCount(), kThreads * kKeys);
}

TEST_F(DBFactoryTest, ServerUserMayComeFromTheCall)
{
    QString error;
    ASSERT_TRUE(PgTestServer::Instance().Start(error)) << error.toStdString();
    const QString withoutUser = PgTestServer::Instance().Url(u"postgres"_s).remove("postgres@");
    CComDB db;
    ASSERT_TRUE(db.Connect(withoutUser, u"postgres"_s, QString())) << db.GetError().toStdString();
    EXPECT_FALSE(db.Connect(withoutUser, u"nosuchrole"_s, QString()));
}

using SystemDatabaseTest = DbBackendTest;

TEST_P(SystemDatabaseTest, FirstUseCreatesTheSchemaOnce)
{
    CDataServiceAbsolute* db = CDBFactory::GetSingle(0);
    for (const char* table : {"SC_MACRO_DEFINE", "SC_MACROPARAM", "Macros", "MacrosV2"})
        EXPECT_TRUE(HasTable(db, table)) << table;
    EXPECT_TRUE(CSysDataSchema::Create(*db));
    EXPECT_EQ(CDBFactory::GetSingle(0), db);
    EXPECT_EQ(CConnectManager::Instance()->GetFileDir(CQxDataBase::SysDataBase), Target());
}

VELMORA_INSTANTIATE_DB_BACKENDS(SystemDatabaseTest);

} // namespace
