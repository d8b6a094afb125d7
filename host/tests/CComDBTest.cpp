#include "CComDB.h"
#include "DbBackendTest.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace {

class ComDBTest : public DbBackendTest
{
protected:
    void SetUp() override
    {
        DbBackendTest::SetUp();
        if (HasFatalFailure())
            return;
        m_db = SecondConnection();
        ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("create table t (ID integer primary key, NAME text, "
                                                         "CONTENT text, N integer, X double precision)")))
            << m_db->GetError().toStdString();
    }

    std::unique_ptr<CComDB> m_db;
};

TEST_P(ComDBTest, ExecutesAndRetrievesOneValue)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t values (1, '钢筋', 'c', 7, 2.5)")));
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t values (2, 'b', NULL, NULL, NULL)")));
    QString value = QStringLiteral("stale");
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select NAME from t where ID = 1"), value));
    EXPECT_EQ(value, QStringLiteral("钢筋"));
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select max(id) from t"), value));
    EXPECT_EQ(value, QStringLiteral("2"));
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select CONTENT from t where ID = 2"), value));
    EXPECT_EQ(value, QString());
    value = QStringLiteral("stale");
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select NAME from t where ID = 99"), value));
    EXPECT_EQ(value, QString());
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select X from t where ID = 1"), value));
    EXPECT_EQ(value, QStringLiteral("2.5"));
}

TEST_P(ComDBTest, QueryKeepsNullsAndTypes)
{
    ASSERT_TRUE(m_db->ExecuteBound(QStringLiteral("insert into t values (?, ?, ?, ?, ?)"),
                                   {1, QStringLiteral("it's"), QVariant(), 42, 0.5}));
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db->Query(QStringLiteral("select ID, NAME, CONTENT, N, X from t where NAME = ?"),
                            {QStringLiteral("it's")}, rows));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][1].toString(), QStringLiteral("it's"));
    EXPECT_TRUE(rows[0][2].isNull());
    EXPECT_EQ(rows[0][3].toInt(), 42);
    EXPECT_DOUBLE_EQ(rows[0][4].toDouble(), 0.5);
}

TEST_P(ComDBTest, ExecuteBoundReportsAffectedRows)
{
    for (int id = 1; id <= 3; ++id)
        ASSERT_TRUE(m_db->ExecuteBound(QStringLiteral("insert into t (ID, N) values (?, ?)"), {id, id % 2}));
    int affected = -1;
    ASSERT_TRUE(m_db->ExecuteBound(QStringLiteral("update t set NAME = ? where N = ?"), {QStringLiteral("odd"), 1},
                                   &affected));
    EXPECT_EQ(affected, 2);
    ASSERT_TRUE(m_db->ExecuteBound(QStringLiteral("delete from t where ID = ?"), {9}, &affected));
    EXPECT_EQ(affected, 0);
}

TEST_P(ComDBTest, FailedStatementReportsAndLeavesConnectionUsable)
{
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("insert into nope values (1)")));
    EXPECT_FALSE(m_db->GetError().isEmpty());
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("insert into t values (1, 'broken)")));
    QString value;
    EXPECT_FALSE(m_db->Retrieve(QStringLiteral("select nothing from t"), value));
    EXPECT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (1)")));
    EXPECT_TRUE(m_db->GetError().isEmpty());
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (1)")));
}

TEST_P(ComDBTest, RunsExactlyOneStatementPerCall)
{
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (1); drop table t")));
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (2); insert into t (ID) values (3)")));
    QString count;
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select count(*) from t"), count)) << m_db->GetError().toStdString();
    EXPECT_EQ(count.toInt(), 0);
}

TEST_P(ComDBTest, UpdateBlobBindsTheBytesAsTheRowsContent)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID, CONTENT) values (5, 'old')")));
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID, CONTENT) values (6, 'other')")));
    const QByteArray bytes("a 'quoted'; drop table t; --\r\n\xe9", 32);
    const QString sql = QStringLiteral("update t set CONTENT = 'a 'quoted'; where ID=6' where ID=5");
    ASSERT_TRUE(m_db->UpdateBlob(sql, reinterpret_cast<const unsigned char*>(bytes.constData()), bytes.size()))
        << m_db->GetError().toStdString();
    QString value;
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select CONTENT from t where ID = 5"), value));
    EXPECT_EQ(value, QStringLiteral("a 'quoted'; drop table t; --\r\n\u00e9"));
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select CONTENT from t where ID = 6"), value));
    EXPECT_EQ(value, QStringLiteral("other"));
}

TEST_P(ComDBTest, UpdateBlobStopsAtCountOrZeroByte)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID, CONTENT) values (1, 'old')")));
    const unsigned char bytes[] = {'a', 'b', 0, 'c', 'd'};
    const QString sql = QStringLiteral("update t set CONTENT = '' where ID=1");
    QString value;
    ASSERT_TRUE(m_db->UpdateBlob(sql, bytes, 1));
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select CONTENT from t"), value));
    EXPECT_EQ(value, QStringLiteral("a"));
    ASSERT_TRUE(m_db->UpdateBlob(sql, bytes, 5));
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select CONTENT from t"), value));
    EXPECT_EQ(value, QStringLiteral("ab"));
    ASSERT_TRUE(m_db->UpdateBlob(sql, bytes, 0));
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select CONTENT from t"), value));
    EXPECT_EQ(value, QString());
}

TEST_P(ComDBTest, UpdateBlobRefusesWhatItCannotPlace)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID, CONTENT) values (1, 'old')")));
    const unsigned char bytes[] = {'x', 0};
    EXPECT_FALSE(m_db->UpdateBlob(QStringLiteral("update t set CONTENT = 'x' where ID=2"), bytes, 1));
    EXPECT_FALSE(m_db->UpdateBlob(QStringLiteral("update t set NAME = 'x' where ID=1"), bytes, 1));
    EXPECT_FALSE(m_db->UpdateBlob(QStringLiteral("update t set CONTENT = 'x'"), bytes, 1));
    EXPECT_FALSE(m_db->UpdateBlob(QStringLiteral("update t set CONTENT = 'x' where ID=1 or 1=1"), bytes, 1));
    EXPECT_FALSE(m_db->UpdateBlob(QStringLiteral("update nope set CONTENT = 'x' where ID=1"), bytes, 1));
    EXPECT_FALSE(m_db->UpdateBlob(QStringLiteral("update t set CONTENT = 'x' where ID=1"), nullptr, 1));
    EXPECT_FALSE(m_db->UpdateBlob(QStringLiteral("update t set CONTENT = 'x' where ID=1"), bytes, -1));
    QString value;
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select CONTENT from t"), value));
    EXPECT_EQ(value, QStringLiteral("old"));
}

TEST_P(ComDBTest, HugeTextRoundTrips)
{
    QString big;
    big.reserve(1 << 20);
    while (big.size() < (1 << 20))
        big += QStringLiteral("var x = '钢筋';\r\n");
    ASSERT_TRUE(m_db->ExecuteBound(QStringLiteral("insert into t (ID, CONTENT) values (1, ?)"), {big}));
    QString value;
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select CONTENT from t"), value));
    EXPECT_EQ(value, big);
}

TEST_P(ComDBTest, RefusesCallsFromAnotherThread)
{
    bool executed = true;
    QString error;
    std::thread other([&] {
        executed = m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (1)"));
        error = m_db->GetError();
        m_db->DisConnect();
    });
    other.join();
    EXPECT_FALSE(executed);
    EXPECT_TRUE(error.contains(QStringLiteral("thread")));
    EXPECT_TRUE(m_db->IsConnected());
    QString count;
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select count(*) from t"), count));
    EXPECT_EQ(count, QStringLiteral("0"));
}

TEST_P(ComDBTest, DisconnectedServiceFailsAndReconnects)
{
    m_db->DisConnect();
    EXPECT_FALSE(m_db->IsConnected());
    QString value;
    EXPECT_FALSE(m_db->Retrieve(QStringLiteral("select 1"), value));
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("select 1")));
    ASSERT_TRUE(m_db->Connect(Target(), QString(), QString()));
    EXPECT_TRUE(m_db->Retrieve(QStringLiteral("select count(*) from t"), value));
    const QString name = m_db->GetConnectionName();
    ASSERT_TRUE(m_db->Connect(Target(), QString(), QString()));
    EXPECT_EQ(m_db->GetConnectionName(), name);
    CComDB other;
    EXPECT_NE(other.GetConnectionName(), name);
}

// The lock holder keeps the table locked in an open transaction.
bool HoldLock(CComDB& holder, DbBackend backend)
{
    if (backend == DbBackend::SQLite)
        return holder.ExecuteNonQuery(QStringLiteral("BEGIN EXCLUSIVE"));
    return holder.ExecuteNonQuery(QStringLiteral("BEGIN"))
           && holder.ExecuteNonQuery(QStringLiteral("LOCK TABLE t IN ACCESS EXCLUSIVE MODE"));
}

TEST_P(ComDBTest, LockedDatabaseFailsCleanlyAfterTheTimeout)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (1)")));
    auto holder = SecondConnection();
    ASSERT_TRUE(HoldLock(*holder, GetParam())) << holder->GetError().toStdString();
    ASSERT_TRUE(m_db->SetBusyTimeoutMs(200));
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (2)")));
    EXPECT_FALSE(m_db->GetError().isEmpty());
    ASSERT_TRUE(holder->ExecuteNonQuery(QStringLiteral("ROLLBACK")));
    QString count;
    ASSERT_TRUE(m_db->Retrieve(QStringLiteral("select count(*) from t"), count));
    EXPECT_EQ(count, QStringLiteral("1"));
    EXPECT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (2)")));
}

TEST_P(ComDBTest, LockReleasedWithinTheTimeoutIsWaitedFor)
{
    std::atomic<bool> locked{false};
    std::atomic<bool> holding{false};
    std::atomic<bool> release{false};
    std::thread holderThread([&] {
        CComDB holder;
        holding = holder.Connect(Target(), QString(), QString()) && HoldLock(holder, GetParam());
        locked = true;
        while (holding && !release)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        holder.ExecuteNonQuery(QStringLiteral("COMMIT"));
    });
    while (!locked)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    release = true;
    const bool inserted = holding && m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (1)"));
    holderThread.join();
    ASSERT_TRUE(holding.load()) << "could not lock the table";
    EXPECT_TRUE(inserted) << m_db->GetError().toStdString();
}

VELMORA_INSTANTIATE_DB_BACKENDS(ComDBTest);

} // namespace
