#include "CComDB.h"
#include "CDBFactory.h"
#include "DbBackendTest.h"

#include <QFile>

namespace {

const QString kJet = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"");

class ComDBFileTest : public AccessFixtureTest
{
};

TEST_F(ComDBFileTest, BrokenConnectionFailsWithAReasonCreatesNothingAndStaysUsable)
{
    const QString absent = HomeFile(QStringLiteral("absent.db"));
    const QString notADatabase = HomeFile(QStringLiteral("notes.db"));
    const QByteArray text = QByteArray("this is not a database, just some text long enough for a header\n").repeated(20);
    ASSERT_TRUE(WriteBytes(notADatabase, text));
    const QString broken[] = {"", "   ", "postgresql://", "postgresql://u@h:bad/d",
                              "postgresql://postgres@/nodb?host=/nonexistent/socket/dir",
                              "postgresql://postgres@127.0.0.1:1/nodb", kJet + "/nowhere/x.mdb",
                              "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=", "/nonexistent/folder/system.db",
                              "Provider=Microsoft.Jet.OLEDB.4.0", absent, notADatabase, Home()};
    for (const QString& connection : broken) {
        SCOPED_TRACE(connection.toStdString());
        CComDB db;
        ASSERT_TRUE(db.Init());
        EXPECT_FALSE(db.Connect(connection, QString(), QString()));
        EXPECT_FALSE(db.IsConnected());
        EXPECT_FALSE(db.GetError().isEmpty());
        QString value;
        EXPECT_FALSE(db.Retrieve(QStringLiteral("select 1"), value));
        ASSERT_TRUE(CDBFactory::OpenSystemDatabase(db, HomeFile(QStringLiteral("good.db"))))
            << db.GetError().toStdString();
        EXPECT_TRUE(db.Retrieve(QStringLiteral("select count(*) from SC_MACRO_DEFINE"), value));
    }
    EXPECT_FALSE(QFile::exists(absent));
    EXPECT_EQ(ReadBytes(notADatabase), text);
}

TEST_F(ComDBFileTest, AccessFileAnswersSelectsAndRefusesEveryWrite)
{
    CComDB db;
    ASSERT_TRUE(db.Connect(kJet + m_path + "\"", QString(), QString())) << db.GetError().toStdString();
    EXPECT_EQ(db.GetBackend(), CConnectionString::Backend::Access);
    QString value;
    ASSERT_TRUE(db.Retrieve(QStringLiteral("select key_en from Macros where key_ch = '板\\分布筋.js'"), value));
    EXPECT_EQ(value, QStringLiteral("Distribution"));
    QList<QVariantList> rows;
    ASSERT_TRUE(db.Query(QStringLiteral("select key_ch from Macros where description = ?"),
                         {QStringLiteral("钢筋每米重量")}, rows));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][0].toString(), QStringLiteral("通用脚本\\钢筋重量.js"));

    const unsigned char bytes[] = {'x', 0};
    for (const char* sql : {"delete from Macros", "insert into Macros values ('a', 'b', 'c', 'd')",
                            "create table x (a integer)"}) {
        EXPECT_FALSE(db.ExecuteNonQuery(QString::fromUtf8(sql))) << sql;
        EXPECT_FALSE(db.GetError().isEmpty()) << sql;
    }
    EXPECT_FALSE(db.ExecuteBound(QStringLiteral("update Macros set content = ?"), {QStringLiteral("x")}));
    EXPECT_FALSE(db.UpdateBlob(QStringLiteral("update Macros set CONTENT = 'x' where ID=1"), bytes, 1));
    db.DisConnect();
    EXPECT_EQ(ReadBytes(m_path), m_original);
    ASSERT_TRUE(db.Connect(m_path, QString(), QString()));
    ASSERT_TRUE(db.Query(QStringLiteral("select * from Macros"), {}, rows));
    EXPECT_EQ(rows.size(), 4);
}

TEST_F(ComDBFileTest, TruncatedAccessFileFailsWithoutCrashing)
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
