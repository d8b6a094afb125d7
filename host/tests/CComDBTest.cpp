#include "CComDB.h"
#include "DbBackendTest.h"
#include "PgTestServer.h"

#include <chrono>
#include <latch>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

class ComDBTest : public DbBackendTest
{
protected:
    void Prepare() override
    {
        m_db = SecondConnection();
        ASSERT_TRUE(m_db->ExecuteNonQuery(u"create table t (ID integer primary key, NAME text, "
                                          "CONTENT text, N integer, X double precision)"_s));
    }

    QString Value(const QString& sql)
    {
        QString value = u"stale"_s;
        EXPECT_TRUE(m_db->Retrieve(sql, value)) << sql.toStdString() << m_db->GetError().toStdString();
        return value;
    }

    std::unique_ptr<CComDB> m_db;
};

TEST_P(ComDBTest, RetrievesQueriesAndBindsValues)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(u"insert into t values (1, '钢筋', 'c', 7, 2.5)"_s));
    ASSERT_TRUE(m_db->ExecuteBound(u"insert into t values (?, ?, ?, ?, ?)"_s, {2, u"it's"_s, QVariant(), 1, 0.5}));
    const struct { const char* sql; const char* value; } cases[] = {
        {"select NAME from t where ID = 1", "钢筋"}, {"select max(id) from t", "2"},
        {"select CONTENT from t where ID = 2", ""}, {"select NAME from t where ID = 99", ""},
        {"select X from t where ID = 1", "2.5"}};
    for (const auto& c : cases)
        EXPECT_EQ(Value(QString::fromUtf8(c.sql)), QString::fromUtf8(c.value)) << c.sql;
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db->Query(u"select ID, NAME, CONTENT, N, X from t where NAME = ?"_s, {u"it's"_s}, rows));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(std::tuple(rows[0][2].isNull(), rows[0][3].toInt(), rows[0][4].toDouble()), std::tuple(true, 1, 0.5));
    for (const auto& [id, affected] : {std::pair{2, 1}, {9, 0}}) {
        int count = -1;
        ASSERT_TRUE(m_db->ExecuteBound(u"delete from t where ID = ?"_s, {id}, &count));
        EXPECT_EQ(count, affected) << id;
    }
}

TEST_P(ComDBTest, FailedOrCompoundStatementsChangeNothingAndLeaveTheConnectionUsable)
{
    for (const char* sql : {"insert into nope values (1)", "insert into t values (1, 'broken)",
                            "insert into t (ID) values (1); drop table t",
                            "insert into t (ID) values (2); insert into t (ID) values (3)"}) {
        EXPECT_FALSE(m_db->ExecuteNonQuery(QString::fromUtf8(sql))) << sql;
        EXPECT_FALSE(m_db->GetError().isEmpty()) << sql;
    }
    QString value;
    EXPECT_FALSE(m_db->Retrieve(u"select nothing from t"_s, value));
    EXPECT_EQ(Value(u"select count(*) from t"_s), u"0"_s);
    EXPECT_TRUE(m_db->ExecuteNonQuery(u"insert into t (ID) values (1)"_s));
    EXPECT_TRUE(m_db->GetError().isEmpty());
    EXPECT_FALSE(m_db->ExecuteNonQuery(u"insert into t (ID) values (1)"_s));
}

TEST_P(ComDBTest, UpdateBlobPlacesTheBytesOnlyInTheOneContentRowNamed)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(u"insert into t (ID, CONTENT) values (5, 'old'), (6, 'other')"_s));
    const QByteArray odd("a 'quoted'; drop table t; --\r\n\xe9"); // zero bytes: the macro store tests
    const auto* oddBytes = reinterpret_cast<const unsigned char*>(odd.constData());
    const unsigned char ab[] = {'a', 'b'};
    const QString row5 = u"update t set CONTENT = '' where ID=5"_s;
    // content: row 5's afterwards.
    const struct { QString sql; const unsigned char* bytes; int count; bool ok; QString content; } cases[] = {
        {"update t set CONTENT = 'a 'quoted'; where ID=6' where ID=5", oddBytes, int(odd.size()), true,
         u"a 'quoted'; drop table t; --\r\n\u00e9"_s},
        {row5, ab, 1, true, "a"}, {row5, ab, 0, true, ""}, {"update t set CONTENT = 'x' where ID=2", ab, 1, false, ""},
        {"update t set NAME = 'x' where ID=5", ab, 1, false, ""}, {"update t set CONTENT = 'x'", ab, 1, false, ""},
        {"update t set CONTENT = 'x' where ID=5 or 1=1", ab, 1, false, ""},
        {"update nope set CONTENT = 'x' where ID=5", ab, 1, false, ""}, {row5, nullptr, 1, false, ""},
        {row5, ab, -1, false, ""}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sql.toStdString() + " count " + std::to_string(c.count));
        EXPECT_EQ(m_db->UpdateBlob(c.sql, c.bytes, c.count), c.ok) << m_db->GetError().toStdString();
        EXPECT_EQ(Value(u"select CONTENT from t where ID = 5"_s), c.content);
        EXPECT_EQ(Value(u"select CONTENT from t where ID = 6"_s), u"other"_s);
    }
}

TEST_P(ComDBTest, RefusesCallsFromAnotherThreadAndReconnectsUnderItsName)
{
    bool executed = true;
    QString error;
    std::thread([&] {
        executed = m_db->ExecuteNonQuery(u"insert into t (ID) values (1)"_s);
        error = m_db->GetError();
        m_db->DisConnect();
    }).join();
    EXPECT_FALSE(executed);
    EXPECT_TRUE(error.contains(u"thread"_s));
    EXPECT_EQ(Value(u"select count(*) from t"_s), u"0"_s);
    const QString name = m_db->GetConnectionName();
    m_db->DisConnect();
    EXPECT_FALSE(m_db->ExecuteNonQuery(u"select 1"_s));
    ASSERT_TRUE(m_db->Connect(Target(), QString(), QString()));
    EXPECT_EQ(Value(u"select count(*) from t"_s), u"0"_s);
    EXPECT_EQ(m_db->GetConnectionName(), name);
    EXPECT_NE(CComDB().GetConnectionName(), name);
}

TEST_P(ComDBTest, LockReleasedWithinTheTimeoutIsWaitedFor)
{
    std::latch locked(1);
    bool holding = false;
    std::thread holderThread([&] {
        CComDB holder;
        holding = holder.Connect(Target(), QString(), QString()) && LockTable(holder, GetParam(), "t");
        locked.count_down();
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        holder.ExecuteNonQuery(u"COMMIT"_s);
    });
    locked.wait();
    const bool inserted = holding && m_db->ExecuteNonQuery(u"insert into t (ID) values (1)"_s);
    holderThread.join();
    ASSERT_TRUE(holding) << "could not lock the table";
    EXPECT_TRUE(inserted) << m_db->GetError().toStdString();
}

VELMORA_INSTANTIATE_DB_BACKENDS(ComDBTest);

using PgRestartTest = ComDBTest;

// A session outlives a restart of its server: the next statement reopens the
// connection and runs exactly once.
TEST_P(PgRestartTest, StatementAfterAServerRestartReconnectsAndRunsOnce)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(u"create table if not exists t (ID integer primary key)"_s));
    ASSERT_TRUE(m_db->ExecuteNonQuery(u"insert into t (ID) values (1)"_s));
    QString error;
    ASSERT_TRUE(PgTestServer::Instance().Restart(error)) << error.toStdString();
    EXPECT_TRUE(m_db->ExecuteNonQuery(u"insert into t (ID) values (2)"_s)) << m_db->GetError().toStdString();
    EXPECT_EQ(Value(u"select count(*) from t"_s), u"2"_s);
    ASSERT_TRUE(PgTestServer::Instance().Restart(error)) << error.toStdString();
    EXPECT_EQ(Value(u"select max(ID) from t"_s), u"2"_s);
}

INSTANTIATE_TEST_SUITE_P(Backends, PgRestartTest, ::testing::Values(DbBackend::PostgreSQL), DbBackendName);

} // namespace
