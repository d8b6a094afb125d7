#include "CComDB.h"
#include "CDBFactory.h"
#include "DbBackendTest.h"

#include <QFile>

namespace {

class ComDBFileTest : public TempHomeTest
{
};

struct BrokenCase
{
    const char* connection;
};

class ComDBBrokenConnectionTest : public TempHomeTest, public ::testing::WithParamInterface<BrokenCase>
{
};

TEST_P(ComDBBrokenConnectionTest, FailsWithAReasonAndStaysUsable)
{
    CComDB db;
    ASSERT_TRUE(db.Init());
    EXPECT_FALSE(db.Connect(QString::fromUtf8(GetParam().connection), QString(), QString()));
    EXPECT_FALSE(db.IsConnected());
    EXPECT_FALSE(db.GetError().isEmpty());
    QString value;
    EXPECT_FALSE(db.Retrieve(QStringLiteral("select 1"), value));
    const QString good = HomeFile(QStringLiteral("good.db"));
    ASSERT_TRUE(CDBFactory::OpenSystemDatabase(db, good)) << db.GetError().toStdString();
    EXPECT_TRUE(db.Retrieve(QStringLiteral("select count(*) from SC_MACRO_DEFINE"), value));
}

INSTANTIATE_TEST_SUITE_P(
    Strings, ComDBBrokenConnectionTest,
    ::testing::Values(BrokenCase{""}, BrokenCase{"   "}, BrokenCase{"postgresql://"},
                      BrokenCase{"postgresql://u@h:bad/d"},
                      BrokenCase{"postgresql://postgres@/nodb?host=/nonexistent/socket/dir"},
                      BrokenCase{"postgresql://postgres@127.0.0.1:1/nodb"},
                      BrokenCase{"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"/nowhere/x.mdb"},
                      BrokenCase{"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="},
                      BrokenCase{"/nonexistent/folder/system.db"}, BrokenCase{"Provider=Microsoft.Jet.OLEDB.4.0"}));

TEST_F(ComDBFileTest, MissingSqliteFileIsNotCreated)
{
    CComDB db;
    const QString path = HomeFile(QStringLiteral("absent.db"));
    EXPECT_FALSE(db.Connect(path, QString(), QString()));
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(ComDBFileTest, FileThatIsNotADatabaseIsRefused)
{
    const QString path = HomeFile(QStringLiteral("notes.db"));
    const QByteArray text("this is not a database, just some text that is long enough to have a header\n");
    ASSERT_TRUE(WriteBytes(path, text.repeated(20)));
    CComDB db;
    EXPECT_FALSE(db.Connect(path, QString(), QString()));
    EXPECT_FALSE(db.IsConnected());
    EXPECT_EQ(ReadBytes(path), text.repeated(20));
    EXPECT_FALSE(db.Connect(Home(), QString(), QString()));
}

class AccessFileTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        m_path = CopyAccessFixture(Home());
        ASSERT_FALSE(m_path.isEmpty());
        m_original = ReadBytes(m_path);
        ASSERT_TRUE(m_db.Connect(QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"") + m_path + "\"",
                                 QString(), QString()))
            << m_db.GetError().toStdString();
    }

    QString m_path;
    QByteArray m_original;
    CComDB m_db;
};

TEST_F(AccessFileTest, AnswersSelects)
{
    EXPECT_EQ(m_db.GetBackend(), CConnectionString::Backend::Access);
    QString value;
    ASSERT_TRUE(m_db.Retrieve(QStringLiteral("select key_en from Macros where key_ch = '板\\分布筋.js'"), value));
    EXPECT_EQ(value, QStringLiteral("Distribution"));
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db.Query(QStringLiteral("select key_ch from Macros where description = ?"),
                           {QStringLiteral("钢筋每米重量")}, rows));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][0].toString(), QStringLiteral("通用脚本\\钢筋重量.js"));
}

TEST_F(AccessFileTest, EveryWriteFailsAndLeavesTheFileUntouched)
{
    const unsigned char bytes[] = {'x', 0};
    EXPECT_FALSE(m_db.ExecuteNonQuery(QStringLiteral("delete from Macros")));
    EXPECT_FALSE(m_db.GetError().isEmpty());
    EXPECT_FALSE(m_db.ExecuteNonQuery(QStringLiteral("insert into Macros values ('a', 'b', 'c', 'd')")));
    EXPECT_FALSE(m_db.ExecuteBound(QStringLiteral("update Macros set content = ?"), {QStringLiteral("x")}));
    EXPECT_FALSE(m_db.UpdateBlob(QStringLiteral("update Macros set CONTENT = 'x' where ID=1"), bytes, 1));
    EXPECT_FALSE(m_db.ExecuteNonQuery(QStringLiteral("create table x (a integer)")));
    m_db.DisConnect();
    EXPECT_EQ(ReadBytes(m_path), m_original);
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db.Connect(m_path, QString(), QString()));
    ASSERT_TRUE(m_db.Query(QStringLiteral("select * from Macros"), {}, rows));
    EXPECT_EQ(rows.size(), 4);
}

TEST_F(AccessFileTest, TruncatedFileFailsWithoutCrashing)
{
    const QString cut = HomeFile(QStringLiteral("cut.mdb"));
    ASSERT_TRUE(WriteBytes(cut, m_original.left(4096)));
    CComDB db;
    if (db.Connect(cut, QString(), QString())) {
        QList<QVariantList> rows;
        EXPECT_FALSE(db.Query(QStringLiteral("select * from Macros"), {}, rows));
    }
    EXPECT_FALSE(db.GetError().isEmpty());
}

} // namespace
