#include "CComDB.h"
#include "DbBackendTest.h"
#include "DataSetTestTables.h"
#include "NDbDataSet.h"

using namespace Qt::StringLiterals;

namespace {

TEST(NDbDataSetSqlTest, FormsTheSelectFromItsDeclaration)
{
    NDbDataSet set;
    set.AddField(u"id"_s, FT_Integer, 32);
    EXPECT_FALSE(set.ParseSQL()); // no table
    EXPECT_EQ(set.RetrieveByXml(), -1);
    EXPECT_FALSE(set.GetError().isEmpty());
    set.SetTableName(u"SC_MACRO_DEFINE"_s);
    EXPECT_EQ(set.RetrieveByXml(), -1); // no service
    set.AddField(u"name"_s, FT_String, 200);
    set.SetWhere(u"where ID =3"_s, 1);
    set.SetWhere(u"AND TYPE=0"_s, 0);
    ASSERT_TRUE(set.ParseSQL());
    EXPECT_EQ(set.GetSQL(), u"select id, name from SC_MACRO_DEFINE where ID =3 AND TYPE=0"_s);
}

class DbDataSetTest : public DbBackendTest
{
protected:
    void Prepare() override
    {
        for (const char* sql : {"create table d (k text, n integer, x double precision, big text)",
                                "insert into d values ('b', 2, 0.25, 'line1\r\nline2'), ('a', -7, NULL, NULL), "
                                "('钢', 2147483647, 1e300, '')",
                                "create table s (v text)", "insert into s values ('12'), ('abc')"})
            ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QString::fromUtf8(sql))) << sql;
        m_set.SetComDB(SystemDb());
        for (const auto& [name, type, size] :
             {std::tuple{"k", FT_String, 200}, {"n", FT_Integer, 32}, {"x", FT_Double, 0}, {"big", FT_LongString, 10000}})
            m_set.AddField(QString::fromUtf8(name), type, size);
        m_set.SetTableName(u"d"_s);
    }

    NDbDataSet m_set;
};

TEST_P(DbDataSetTest, FillsRowsByFieldType)
{
    ASSERT_EQ(m_set.RetrieveByXml(), 3) << m_set.GetError().toStdString();
    EXPECT_EQ(Column(m_set, u"k"_s), u"b a 钢"_s);
    EXPECT_EQ(Column(m_set, u"n"_s), u"2 -7 2147483647"_s);
    EXPECT_EQ(Column(m_set, u"x"_s), u"0.25 null 1e+300"_s);
    EXPECT_EQ(Column(m_set, u"big"_s), u"line1\r\nline2 null "_s);
    // Text in an integer field is kept only when it is a number.
    NDbDataSet text(SystemDb());
    text.AddField(u"v"_s, FT_Integer, 32);
    text.SetTableName(u"s"_s);
    ASSERT_EQ(text.RetrieveByXml(), 2);
    EXPECT_EQ(Column(text, u"v"_s), u"12 null"_s);
}

TEST_P(DbDataSetTest, ConditionSortAndRetrievingAgain)
{
    m_set.SetWhere(u"where n > 0"_s, 1);
    ASSERT_EQ(m_set.RetrieveByXml(), 2);
    ASSERT_TRUE(m_set.Sort(u"k"_s, false));
    EXPECT_EQ(Column(m_set, u"k"_s), u"钢 b"_s);
    // A failed retrieval keeps the earlier rows; a good one replaces them.
    m_set.SetWhere(u"where nope = 1"_s, 1);
    EXPECT_EQ(m_set.RetrieveByXml(), -1);
    EXPECT_FALSE(m_set.GetError().isEmpty());
    EXPECT_EQ(m_set.GetRowCount(), 2);
    m_set.SetWhere(u"where n = 12345"_s, 1);
    EXPECT_EQ(m_set.RetrieveByXml(), 0);
    EXPECT_EQ(m_set.GetRowCount(), 0);
}

VELMORA_INSTANTIATE_DB_BACKENDS(DbDataSetTest);

} // namespace
