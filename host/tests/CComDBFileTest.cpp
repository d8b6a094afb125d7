#include "CComDB.h"
#include "CDBFactory.h"
#include "DbBackendTest.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

const QString kJet = u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\""_s;

using ComDBFileTest = AccessFixtureTest;

TEST_F(ComDBFileTest, BrokenConnectionFailsWithAReasonCreatesNothingAndStaysUsable)
{
    const QString absent = HomeFile(u"absent.db"_s), notADatabase = HomeFile(u"notes.db"_s);
    const QByteArray text = QByteArray("this is not a database, just some text long enough for a header\n").repeated(20);
    ASSERT_TRUE(WriteBytes(notADatabase, text));
    // Texts that do not parse are the connection-string tests' part; "" stands for them.
    const QString broken[] = {"", "postgresql://postgres@/nodb?host=/nonexistent/socket/dir",
                              "postgresql://postgres@127.0.0.1:1/nodb", kJet + "/nowhere/x.mdb",
                              "/nonexistent/folder/system.db", absent, notADatabase, Home()};
    for (const QString& connection : broken) {
        SCOPED_TRACE(connection.toStdString());
        CComDB db;
        ASSERT_TRUE(db.Init());
        EXPECT_FALSE(db.Connect(connection, QString(), QString()));
        EXPECT_FALSE(db.IsConnected());
        EXPECT_FALSE(db.GetError().isEmpty());
        QString value;
        EXPECT_FALSE(db.Retrieve(u"select 1"_s, value));
        ASSERT_TRUE(CDBFactory::OpenSystemDatabase(db, HomeFile(u"good.db"_s))) << db.GetError().toStdString();
        EXPECT_TRUE(db.Retrieve(u"select count(*) from SC_MACRO_DEFINE"_s, value));
    }
    EXPECT_FALSE(QFile::exists(absent));
    EXPECT_EQ(ReadBytes(notADatabase), text);
}

TEST_F(ComDBFileTest, AccessFileAnswersSelectsRefusesEveryWriteAndATruncatedOneFailsWithoutCrashing)
{
    CComDB db;
    ASSERT_TRUE(db.Connect(kJet + m_path + "\"", QString(), QString())) << db.GetError().toStdString();
    EXPECT_EQ(db.GetBackend(), CConnectionString::Backend::Access);
    QString value;
    ASSERT_TRUE(db.Retrieve(u"select key_en from Macros where key_ch = '板\\分布筋.js'"_s, value));
    EXPECT_EQ(value, u"Distribution"_s);
    QList<QVariantList> rows;
    ASSERT_TRUE(db.Query(u"select key_ch from Macros where description = ?"_s, {u"钢筋每米重量"_s}, rows));
    EXPECT_EQ(rows, QList<QVariantList>{{u"通用脚本\\钢筋重量.js"_s}});
    const unsigned char bytes[] = {'x', 0};
    for (const char* sql : {"delete from Macros", "create table x (a integer)"}) {
        EXPECT_FALSE(db.ExecuteNonQuery(QString::fromUtf8(sql))) << sql;
        EXPECT_FALSE(db.GetError().isEmpty()) << sql;
    }
    EXPECT_FALSE(db.ExecuteBound(u"update Macros set content = ?"_s, {u"x"_s}));
    EXPECT_FALSE(db.UpdateBlob(u"update Macros set CONTENT = 'x' where ID=1"_s, bytes, 1));
    db.DisConnect();
    EXPECT_EQ(ReadBytes(m_path), m_original);
    const QString cut = HomeFile(u"cut.mdb"_s);
    ASSERT_TRUE(WriteBytes(cut, m_original.left(4096)));
    CComDB cutDb;
    if (cutDb.Connect(cut, QString(), QString())) {
        EXPECT_FALSE(cutDb.Query(u"select * from Macros"_s, {}, rows));
    }
    EXPECT_FALSE(cutDb.GetError().isEmpty());
}

} // namespace
