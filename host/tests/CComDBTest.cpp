#include "CComDB.h"
#include "DbBackendTest.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace {

class ComDBTest : public DbBackendTest
{
protected:
    void Prepare() override
    {
        m_db = SecondConnection();
        ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("create table t (ID integer primary key, NAME text, "
                                                         "CONTENT text, N integer, X double precision)")))
            << m_db->GetError().toStdString();
    }

    QString Value(const QString& sql)
    {
        QString value = QStringLiteral("stale");
        EXPECT_TRUE(m_db->Retrieve(sql, value)) << sql.toStdString() << m_db->GetError().toStdString();
        return value;
    }

    std::unique_ptr<CComDB> m_db;
};

TEST_P(ComDBTest, RetrievesQueriesAndBindsValues)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t values (1, '钢筋', 'c', 7, 2.5)")));
    ASSERT_TRUE(m_db->ExecuteBound(QStringLiteral("insert into t values (?, ?, ?, ?, ?)"),
                                   {2, QStringLiteral("it's"), QVariant(), 1, 0.5}));
    const struct { const char* sql; const char* value; } cases[] = {
        {"select NAME from t where ID = 1", "钢筋"}, {"select max(id) from t", "2"},
        {"select CONTENT from t where ID = 2", ""}, {"select NAME from t where ID = 99", ""},
        {"select X from t where ID = 1", "2.5"}};
    for (const auto& c : cases)
        EXPECT_EQ(Value(QString::fromUtf8(c.sql)), QString::fromUtf8(c.value)) << c.sql;
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db->Query(QStringLiteral("select ID, NAME, CONTENT, N, X from t where NAME = ?"),
                            {QStringLiteral("it's")}, rows));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_TRUE(rows[0][2].isNull());
    EXPECT_EQ(rows[0][3].toInt(), 1);
    EXPECT_DOUBLE_EQ(rows[0][4].toDouble(), 0.5);
    int affected = -1;
    ASSERT_TRUE(m_db->ExecuteBound(QStringLiteral("update t set NAME = ? where N <= ?"), {QStringLiteral("x"), 7},
                                   &affected));
    EXPECT_EQ(affected, 2);
    ASSERT_TRUE(m_db->ExecuteBound(QStringLiteral("delete from t where ID = ?"), {9}, &affected));
    EXPECT_EQ(affected, 0);
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
    EXPECT_FALSE(m_db->Retrieve(QStringLiteral("select nothing from t"), value));
    EXPECT_EQ(Value(QStringLiteral("select count(*) from t")), QStringLiteral("0"));
    EXPECT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (1)")));
    EXPECT_TRUE(m_db->GetError().isEmpty());
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID) values (1)")));
}

TEST_P(ComDBTest, UpdateBlobPlacesTheBytesOnlyInTheOneContentRowNamed)
{
    ASSERT_TRUE(m_db->ExecuteNonQuery(QStringLiteral("insert into t (ID, CONTENT) values (5, 'old'), (6, 'other')")));
    const QByteArray odd("a 'quoted'; drop table t; --\r\n\xe9");
    const auto* oddBytes = reinterpret_cast<const unsigned char*>(odd.constData());
    const unsigned char zero[] = {'a', 'b', 0, 'c', 'd'};
    const QString row5 = QStringLiteral("update t set CONTENT = '' where ID=5");
    // content: row 5's afterwards.
    const struct { QString sql; const unsigned char* bytes; int count; bool ok; QString content; } cases[] = {
        {"update t set CONTENT = 'a 'quoted'; where ID=6' where ID=5", oddBytes, int(odd.size()), true,
         QStringLiteral("a 'quoted'; drop table t; --\r\n\u00e9")},
        {row5, zero, 1, true, "a"}, {row5, zero, 0, true, ""},
        {"update t set CONTENT = 'x' where ID=2", zero, 1, false, ""},
        {"update t set NAME = 'x' where ID=5", zero, 1, false, ""},
        {"update t set CONTENT = 'x'", zero, 1, false, ""},
        {"update t set CONTENT = 'x' where ID=5 or 1=1", zero, 1, false, ""},
        {"update nope set CONTENT = 'x' where ID=5", zero, 1, false, ""}, {row5, nullptr, 1, false, ""},
        {row5, zero, -1, false, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sql.toStdString() + " count " + std::to_string(c.count));
        EXPECT_EQ(m_db->UpdateBlob(c.sql, c.bytes, c.count), c.ok) << m_db->GetError().toStdString();
        EXPECT_EQ(Value(QStringLiteral("select CONTENT from t where ID = 5")), c.content);
        EXPECT_EQ(Value(QStringLiteral("select CONTENT from t where ID = 6")), QStringLiteral("other"));
    }
    // Every byte is kept, a zero byte too; a PostgreSQL text cannot hold one,
    // so the call fails there rather than cut the text.
    const bool sqlite = GetParam() == DbBackend::SQLite;
    EXPECT_EQ(m_db->UpdateBlob(row5, zero, 5), sqlite);
    EXPECT_EQ(Value(QStringLiteral("select CONTENT from t where ID = 5")),
              sqlite ? QString::fromUtf16(u"ab\u0000cd", 5) : QString());
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
    EXPECT_EQ(Value(QStringLiteral("select count(*) from t")), QStringLiteral("0"));
}

TEST_P(ComDBTest, DisconnectedServiceFailsAndReconnectsUnderItsName)
{
    m_db->DisConnect();
    EXPECT_FALSE(m_db->IsConnected());
    QString value;
    EXPECT_FALSE(m_db->Retrieve(QStringLiteral("select 1"), value));
    EXPECT_FALSE(m_db->ExecuteNonQuery(QStringLiteral("select 1")));
    ASSERT_TRUE(m_db->Connect(Target(), QString(), QString()));
    EXPECT_EQ(Value(QStringLiteral("select count(*) from t")), QStringLiteral("0"));
    const QString name = m_db->GetConnectionName();
    ASSERT_TRUE(m_db->Connect(Target(), QString(), QString()));
    EXPECT_EQ(m_db->GetConnectionName(), name);
    EXPECT_NE(CComDB().GetConnectionName(), name);
}

TEST_P(ComDBTest, LockReleasedWithinTheTimeoutIsWaitedFor)
{
    std::atomic<bool> locked{false};
    std::atomic<bool> holding{false};
    std::atomic<bool> release{false};
    std::thread holderThread([&] {
        CComDB holder;
        holding = holder.Connect(Target(), QString(), QString()) && LockTable(holder, GetParam(), "t");
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
