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
    EXPECT_EQ(set.RetrieveByXml(), -1);
    EXPECT_FALSE(set.GetError().isEmpty());
    set.SetTableName(QStringLiteral("SC_MACRO_DEFINE"));
    ASSERT_TRUE(set.ParseSQL());
    EXPECT_EQ(set.GetSQL(), QStringLiteral("select id from SC_MACRO_DEFINE"));
    EXPECT_EQ(set.RetrieveByXml(), -1); // no service
    set.AddField(QStringLiteral("name"), FT_String, 200);
    set.SetWhere(QStringLiteral("where ID =3"), 1);
    ASSERT_TRUE(set.ParseSQL());
    EXPECT_EQ(set.GetSQL(), QStringLiteral("select id, name from SC_MACRO_DEFINE where ID =3"));
    set.SetWhere(QStringLiteral("AND TYPE=0"), 0);
    EXPECT_EQ(set.GetWhere(), QStringLiteral("where ID =3 AND TYPE=0"));
    set.SetWhere(QStringLiteral("where ID =4"), 1);
    EXPECT_EQ(set.GetWhere(), QStringLiteral("where ID =4"));
    EXPECT_TRUE(set.SetFieldPK(1, true));
    EXPECT_TRUE(set.IsFieldPK(1));
    EXPECT_FALSE(set.IsFieldPK(0));
    EXPECT_TRUE(set.SetFieldPK(1, false));
    EXPECT_FALSE(set.IsFieldPK(1));
    EXPECT_FALSE(set.SetFieldPK(2, true));
    EXPECT_FALSE(set.SetFieldPK(-1, true));
}

class DbDataSetTest : public DbBackendTest
{
protected:
    void Prepare() override
    {
        CComDB* db = SystemDb();
        for (const char* sql : {"create table d (k text, n integer, x double precision, big text)",
                                "insert into d values ('b', 2, 0.25, 'line1\r\nline2'), ('a', -7, NULL, NULL), "
                                "('钢', 2147483647, 1e300, '')",
                                "create table s (v text)", "insert into s values ('12'), ('abc')"})
            ASSERT_TRUE(db->ExecuteNonQuery(QString::fromUtf8(sql))) << sql;
        m_set.SetComDB(db);
        for (const auto& [name, type, size] :
             {std::tuple{"k", FT_String, 200}, {"n", FT_Integer, 32}, {"x", FT_Double, 0}, {"big", FT_LongString, 10000}})
            m_set.AddField(QString::fromUtf8(name), type, size);
        m_set.SetTableName(QStringLiteral("d"));
    }

    NDbDataSet m_set;
};

TEST_P(DbDataSetTest, FillsRowsByFieldType)
{
    ASSERT_EQ(m_set.RetrieveByXml(), 3) << m_set.GetError().toStdString();
    ASSERT_EQ(m_set.GetRowCount(), 3);
    EXPECT_EQ(m_set.GetAsString(0, 1), QStringLiteral("b"));
    EXPECT_EQ(m_set.GetAsInteger(1, 1), 2);
    EXPECT_DOUBLE_EQ(m_set.GetAsDouble(2, 1), 0.25);
    EXPECT_EQ(m_set.GetAsString(QStringLiteral("big"), 1), QStringLiteral("line1\r\nline2"));
    EXPECT_EQ(m_set.GetAsInteger(QStringLiteral("n"), 2), -7);
    EXPECT_TRUE(m_set.IsNull(2, 2));
    EXPECT_TRUE(m_set.IsNull(3, 2));
    EXPECT_EQ(m_set.GetAsString(0, 3), QStringLiteral("钢"));
    EXPECT_EQ(m_set.GetAsInteger(1, 3), 2147483647);
    EXPECT_DOUBLE_EQ(m_set.GetAsDouble(2, 3), 1e300);
    // Text in an integer field is kept only when it is a number.
    NDbDataSet text(SystemDb());
    text.AddField(QStringLiteral("v"), FT_Integer, 32);
    text.SetTableName(QStringLiteral("s"));
    ASSERT_EQ(text.RetrieveByXml(), 2);
    EXPECT_EQ(text.GetAsInteger(0, 1), 12);
    EXPECT_TRUE(text.IsNull(0, 2));
}

TEST_P(DbDataSetTest, ConditionSortAndRetrievingAgain)
{
    m_set.SetWhere(QStringLiteral("where n > 0"), 1);
    ASSERT_EQ(m_set.RetrieveByXml(), 2);
    ASSERT_TRUE(m_set.Sort(QStringLiteral("k"), false));
    EXPECT_EQ(m_set.GetAsString(0, 1), QStringLiteral("钢"));
    EXPECT_EQ(m_set.GetAsString(0, 2), QStringLiteral("b"));
    // A failed retrieval keeps the earlier rows; a good one replaces them.
    m_set.SetWhere(QStringLiteral("where nope = 1"), 1);
    EXPECT_EQ(m_set.RetrieveByXml(), -1);
    EXPECT_FALSE(m_set.GetError().isEmpty());
    EXPECT_EQ(m_set.GetRowCount(), 2);
    m_set.SetWhere(QStringLiteral("where n = 12345"), 1);
    EXPECT_EQ(m_set.RetrieveByXml(), 0);
    EXPECT_EQ(m_set.GetRowCount(), 0);
    m_set.SetTableName(QStringLiteral("no_such_table"));
    EXPECT_EQ(m_set.RetrieveByXml(), -1);
}

VELMORA_INSTANTIATE_DB_BACKENDS(DbDataSetTest);

} // namespace
