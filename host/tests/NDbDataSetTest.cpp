#include "CComDB.h"
#include "DbBackendTest.h"
#include "NDbDataSet.h"

namespace {

TEST(NDbDataSetSqlTest, FormsTheSelectFromItsDeclaration)
{
    NDbDataSet set;
    EXPECT_FALSE(set.ParseSQL());
    set.AddField(QStringLiteral("id"), FT_Integer, 32);
    EXPECT_FALSE(set.ParseSQL());
    set.SetTableName(QStringLiteral("SC_MACRO_DEFINE"));
    ASSERT_TRUE(set.ParseSQL());
    EXPECT_EQ(set.GetSQL(), QStringLiteral("select id from SC_MACRO_DEFINE"));
    set.AddField(QStringLiteral("name"), FT_String, 200);
    set.SetWhere(QStringLiteral("where ID =3"), 1);
    ASSERT_TRUE(set.ParseSQL());
    EXPECT_EQ(set.GetSQL(), QStringLiteral("select id, name from SC_MACRO_DEFINE where ID =3"));
    set.SetWhere(QStringLiteral("AND TYPE=0"), 0);
    EXPECT_EQ(set.GetWhere(), QStringLiteral("where ID =3 AND TYPE=0"));
    set.SetWhere(QStringLiteral("where ID =4"), 1);
    EXPECT_EQ(set.GetWhere(), QStringLiteral("where ID =4"));
}

TEST(NDbDataSetSqlTest, PrimaryKeyNeedsAnExistingColumn)
{
    NDbDataSet set;
    EXPECT_FALSE(set.SetFieldPK(0, true));
    set.AddField(QStringLiteral("a"), FT_String, 10);
    set.AddField(QStringLiteral("b"), FT_String, 10);
    EXPECT_TRUE(set.SetFieldPK(1, true));
    EXPECT_TRUE(set.IsFieldPK(1));
    EXPECT_FALSE(set.IsFieldPK(0));
    EXPECT_TRUE(set.SetFieldPK(1, false));
    EXPECT_FALSE(set.IsFieldPK(1));
    EXPECT_FALSE(set.SetFieldPK(2, true));
    EXPECT_FALSE(set.SetFieldPK(-1, true));
}

TEST(NDbDataSetSqlTest, RetrievalWithoutServiceFails)
{
    NDbDataSet set;
    set.AddField(QStringLiteral("a"), FT_String, 10);
    set.SetTableName(QStringLiteral("t"));
    EXPECT_EQ(set.RetrieveByXml(), -1);
    EXPECT_FALSE(set.GetError().isEmpty());
}

class DbDataSetTest : public DbBackendTest
{
protected:
    void SetUp() override
    {
        DbBackendTest::SetUp();
        if (HasFatalFailure())
            return;
        CComDB* db = SystemDb();
        ASSERT_TRUE(db->ExecuteNonQuery(QStringLiteral("create table d (k text, n integer, x double precision, "
                                                       "big text)")));
        ASSERT_TRUE(db->ExecuteNonQuery(QStringLiteral("insert into d values ('b', 2, 0.25, 'line1\r\nline2')")));
        ASSERT_TRUE(db->ExecuteNonQuery(QStringLiteral("insert into d values ('a', -7, NULL, NULL)")));
        ASSERT_TRUE(db->ExecuteNonQuery(QStringLiteral("insert into d values ('钢', 2147483647, 1e300, '')")));
    }

    void Declare(NDbDataSet& set)
    {
        set.SetComDB(SystemDb());
        set.AddField(QStringLiteral("k"), FT_String, 200);
        set.AddField(QStringLiteral("n"), FT_Integer, 32);
        set.AddField(QStringLiteral("x"), FT_Double, 0);
        set.AddField(QStringLiteral("big"), FT_LongString, 10000);
        set.SetTableName(QStringLiteral("d"));
    }
};

TEST_P(DbDataSetTest, FillsRowsByFieldType)
{
    NDbDataSet set;
    Declare(set);
    ASSERT_EQ(set.RetrieveByXml(), 3) << set.GetError().toStdString();
    ASSERT_EQ(set.GetRowCount(), 3);
    EXPECT_EQ(set.GetAsString(0, 1), QStringLiteral("b"));
    EXPECT_EQ(set.GetAsInteger(1, 1), 2);
    EXPECT_DOUBLE_EQ(set.GetAsDouble(2, 1), 0.25);
    EXPECT_EQ(set.GetAsString(QStringLiteral("big"), 1), QStringLiteral("line1\r\nline2"));
    EXPECT_EQ(set.GetAsInteger(QStringLiteral("n"), 2), -7);
    EXPECT_TRUE(set.IsNull(2, 2));
    EXPECT_TRUE(set.IsNull(3, 2));
    EXPECT_EQ(set.GetAsString(0, 3), QStringLiteral("钢"));
    EXPECT_EQ(set.GetAsInteger(1, 3), 2147483647);
    EXPECT_DOUBLE_EQ(set.GetAsDouble(2, 3), 1e300);
}

TEST_P(DbDataSetTest, ConditionAndSortApply)
{
    NDbDataSet set;
    Declare(set);
    set.SetWhere(QStringLiteral("where n > 0"), 1);
    ASSERT_EQ(set.RetrieveByXml(), 2);
    ASSERT_TRUE(set.Sort(QStringLiteral("k"), false));
    EXPECT_EQ(set.GetAsString(0, 1), QStringLiteral("钢"));
    EXPECT_EQ(set.GetAsString(0, 2), QStringLiteral("b"));
    set.SetWhere(QStringLiteral("where n = 12345"), 1);
    EXPECT_EQ(set.RetrieveByXml(), 0);
    EXPECT_EQ(set.GetRowCount(), 0);
}

TEST_P(DbDataSetTest, FailedRetrievalKeepsEarlierRows)
{
    NDbDataSet set;
    Declare(set);
    ASSERT_EQ(set.RetrieveByXml(), 3);
    set.SetWhere(QStringLiteral("where nope = 1"), 1);
    EXPECT_EQ(set.RetrieveByXml(), -1);
    EXPECT_FALSE(set.GetError().isEmpty());
    EXPECT_EQ(set.GetRowCount(), 3);
    NDbDataSet missing;
    missing.SetComDB(SystemDb());
    missing.AddField(QStringLiteral("a"), FT_String, 1);
    missing.SetTableName(QStringLiteral("no_such_table"));
    EXPECT_EQ(missing.RetrieveByXml(), -1);
}

TEST_P(DbDataSetTest, RetrievingAgainReplacesTheRows)
{
    NDbDataSet set;
    Declare(set);
    ASSERT_EQ(set.RetrieveByXml(), 3);
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QStringLiteral("delete from d where k = 'a'")));
    ASSERT_EQ(set.RetrieveByXml(), 2);
    EXPECT_EQ(set.GetRowCount(), 2);
}

TEST_P(DbDataSetTest, TextInAnIntegerFieldIsKeptOnlyWhenNumeric)
{
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QStringLiteral("create table s (v text)")));
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QStringLiteral("insert into s values ('12')")));
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QStringLiteral("insert into s values ('abc')")));
    NDbDataSet set(SystemDb());
    set.AddField(QStringLiteral("v"), FT_Integer, 32);
    set.SetTableName(QStringLiteral("s"));
    ASSERT_EQ(set.RetrieveByXml(), 2);
    EXPECT_EQ(set.GetAsInteger(0, 1), 12);
    EXPECT_TRUE(set.IsNull(0, 2));
}

VELMORA_INSTANTIATE_DB_BACKENDS(DbDataSetTest);

class AccessDataSetTest : public TempHomeTest
{
};

TEST_F(AccessDataSetTest, ReadsTheMacrosTableOfAnAccessFile)
{
    const QString path = CopyAccessFixture(Home());
    ASSERT_FALSE(path.isEmpty());
    CComDB db;
    ASSERT_TRUE(db.Connect(path, QString(), QString()));
    NDbDataSet set(&db);
    set.AddField(QStringLiteral("key_ch"), FT_String, 200);
    set.AddField(QStringLiteral("description"), FT_LongString, 0);
    set.SetTableName(QStringLiteral("Macros"));
    set.SetWhere(QStringLiteral("where key_en = 'Distribution'"), 1);
    ASSERT_EQ(set.RetrieveByXml(), 1) << set.GetError().toStdString();
    EXPECT_EQ(set.GetAsString(0, 1), QStringLiteral("板\\分布筋.js"));
    EXPECT_TRUE(set.IsNull(1, 1));
}

} // namespace
