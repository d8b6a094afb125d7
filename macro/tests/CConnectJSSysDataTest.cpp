#include "CComDB.h"
#include "CConnectJSSysData.h"
#include "CMacrosTable.h"
#include "CSysMacrosTable.h"
#include "DbBackendTest.h"
#include "HostContext.h"

namespace {

using Fields = CSysMacrosTable::CFieldInfo;
const QString kProvider = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"");

class ConnectJSSysDataTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        // The fixture as the user would pick it on drive D.
        m_native = CopyAccessFixture(HostContext::Instance().DriveRoot(QLatin1Char('D')) + "/数据");
        ASSERT_FALSE(m_native.isEmpty());
    }

    const QString m_windowsPath = QStringLiteral("D:\\数据\\macros.mdb");
    QString m_native;
};

TEST_F(ConnectJSSysDataTest, ConnectsToAnAccessFileAndSplitsItsPath)
{
    CConnectJSSysData connection;
    ASSERT_TRUE(connection.ConnectDatabase(m_windowsPath));
    EXPECT_TRUE(Ui().calls.isEmpty());
    EXPECT_EQ(connection.GetConnectionString(), kProvider + m_windowsPath + "\"");
    EXPECT_EQ(connection.GetDatabasePath(), m_windowsPath);
    EXPECT_EQ(connection.GetDatabaseFolder(), QStringLiteral("D:\\数据"));
    ASSERT_NE(connection.GetDatabase(), nullptr);
    EXPECT_TRUE(connection.GetDatabase()->IsConnected());
}

TEST_F(ConnectJSSysDataTest, MissingFileShowsBothMessagesAndFails)
{
    CConnectJSSysData connection;
    const QString missing = QStringLiteral("D:\\数据\\没有.mdb");
    EXPECT_FALSE(connection.ConnectDatabase(missing));
    ASSERT_EQ(Ui().calls.size(), 2);
    EXPECT_EQ(Ui().calls[0].kind, QStringLiteral("MessageBox"));
    EXPECT_EQ(Ui().calls[0].text, QStringLiteral("没有找到连接的数据库!"));
    EXPECT_EQ(Ui().calls[0].caption, QString());
    EXPECT_EQ(Ui().calls[0].style, 64u);
    EXPECT_EQ(Ui().calls[1].text, QStringLiteral("连接到D:\\数据\\没有.mdb失败"));
    EXPECT_EQ(Ui().calls[1].caption, QString());
    EXPECT_EQ(Ui().calls[1].style, 64u);
    EXPECT_EQ(connection.GetConnectionString(), kProvider + missing + "\"");
    EXPECT_EQ(connection.GetDatabasePath(), QStringLiteral("error"));
    EXPECT_EQ(connection.GetDatabaseFolder(), QStringLiteral("error"));
}

TEST_F(ConnectJSSysDataTest, FailedConnectKeepsTheEarlierPaths)
{
    CConnectJSSysData connection;
    ASSERT_TRUE(connection.ConnectDatabase(m_windowsPath));
    const QString notAccess = HomeFile(QStringLiteral("text.mdb"));
    ASSERT_TRUE(WriteBytes(notAccess, QByteArray(5000, 't')));
    EXPECT_FALSE(connection.ConnectDatabase(notAccess));
    ASSERT_EQ(Ui().calls.size(), 1);
    EXPECT_EQ(Ui().calls[0].text, QStringLiteral("连接到") + notAccess + QStringLiteral("失败"));
    EXPECT_EQ(connection.GetDatabasePath(), m_windowsPath);
    EXPECT_EQ(connection.GetDatabaseFolder(), QStringLiteral("D:\\数据"));
}

TEST_F(ConnectJSSysDataTest, DisconnectResetsPathsAndTheDatabaseObjectOutlivesTheConnection)
{
    CComDB* db = nullptr;
    {
        CConnectJSSysData connection;
        EXPECT_EQ(connection.GetDatabase(), nullptr);
        EXPECT_EQ(connection.GetConnectionString(), QString());
        EXPECT_EQ(connection.GetDatabasePath(), QStringLiteral("error"));
        EXPECT_EQ(connection.GetDatabaseFolder(), QStringLiteral("error"));
        ASSERT_TRUE(connection.ConnectDatabase(m_windowsPath));
        db = connection.GetDatabase();
        connection.Disconnect();
        EXPECT_EQ(connection.GetDatabase(), db);
        EXPECT_FALSE(db->IsConnected());
        EXPECT_EQ(connection.GetDatabasePath(), QStringLiteral("error"));
        EXPECT_EQ(connection.GetDatabaseFolder(), QStringLiteral("error"));
        ASSERT_TRUE(connection.ConnectDatabase(m_native));
        EXPECT_EQ(connection.GetDatabase(), db);
        EXPECT_TRUE(db->IsConnected());
        // A path without a backslash has an empty folder.
        EXPECT_EQ(connection.GetDatabasePath(), m_native);
        EXPECT_EQ(connection.GetDatabaseFolder(), QString());
    }
    EXPECT_FALSE(db->IsConnected());
    EXPECT_TRUE(db->Connect(m_native, QString(), QString()));
    db->DisConnect();
}

TEST_F(ConnectJSSysDataTest, MacrosTableReadsTheFixture)
{
    CConnectJSSysData connection;
    ASSERT_TRUE(connection.ConnectDatabase(m_windowsPath));
    CMacrosTable table;
    table.SetComDB(connection.GetDatabase());
    ASSERT_EQ(table.RetrieveByXml(), 4) << table.GetError().toStdString();
    EXPECT_EQ(table.GetSQL(), QStringLiteral("select key_ch, key_en, content, description from Macros"));
    const QStringList storage{QStringLiteral("通用脚本\\钢筋重量.js"), QStringLiteral("梁\\箍筋长度.js"),
                              QStringLiteral("板\\分布筋.js"), QStringLiteral("空")};
    for (int row = 1; row <= 4; ++row)
        EXPECT_EQ(table.GetAsString(Fields::key_ch, row), storage.at(row - 1));
    ASSERT_TRUE(table.Sort(Fields::key_ch, true));
    EXPECT_EQ(table.GetAsString(0, 1), QStringLiteral("板\\分布筋.js"));
    EXPECT_EQ(table.GetAsString(2, 1), QStringLiteral("// 空描述\r\nvar n = Math.ceil(span / s) + 1;"));
    EXPECT_TRUE(table.IsNull(3, 1));
    EXPECT_EQ(table.GetAsString(Fields::key_en, 3), QStringLiteral("Empty"));
    EXPECT_EQ(table.GetAsString(Fields::content, 3), QString());
    EXPECT_FALSE(table.IsNull(2, 3));
    EXPECT_EQ(table.GetAsString(Fields::content, 4), QStringLiteral("// 钢筋每米重量 (kg/m)\r\nvar W = 0.00617 * d * d;\r\n"));
}

class MacrosTableOnSystemDatabaseTest : public DbBackendTest
{
};

TEST_P(MacrosTableOnSystemDatabaseTest, ReadsTheSystemDatabasesMacros)
{
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(
        QStringLiteral("insert into Macros values ('b.js', 'B', 'var b;', NULL)")));
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QStringLiteral("insert into Macros values ('a.js', 'A', 'var a;', 'd')")));
    ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QStringLiteral("insert into MacrosV2 values ('c.js', 'C', 'x', 'y')")));
    CMacrosTable table(SystemDb());
    ASSERT_EQ(table.RetrieveByXml(), 2);
    table.Sort(Fields::key_ch);
    EXPECT_EQ(table.GetAsString(Fields::key_ch, 1), QStringLiteral("a.js"));
    EXPECT_EQ(table.GetAsString(Fields::content, 2), QStringLiteral("var b;"));
    EXPECT_TRUE(table.IsNull(3, 2));
}

VELMORA_INSTANTIATE_DB_BACKENDS(MacrosTableOnSystemDatabaseTest);

} // namespace
