#include "CComDB.h"
#include "CConnectJSSysData.h"
#include "CMacrosTable.h"
#include "CSysMacrosTable.h"
#include "DbBackendTest.h"
#include "HostContext.h"

namespace {

using Fields = CSysMacrosTable::CFieldInfo;
const QString kProvider = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"");
const QString kError = QStringLiteral("error");

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

    static void ExpectPaths(const CConnectJSSysData& connection, const QString& path, const QString& folder)
    {
        EXPECT_EQ(connection.GetDatabasePath(), path);
        EXPECT_EQ(connection.GetDatabaseFolder(), folder);
    }

    const QString m_windowsPath = QStringLiteral("D:\\数据\\macros.mdb");
    QString m_native;
};

// A failed connect keeps the paths of the last good one; a disconnect resets them and keeps the
// database object, which outlives the connection.
TEST_F(ConnectJSSysDataTest, ConnectFailedConnectDisconnectAndMissingFile)
{
    CComDB* db = nullptr;
    {
        CConnectJSSysData connection;
        ASSERT_TRUE(connection.ConnectDatabase(m_windowsPath));
        EXPECT_TRUE(Ui().calls.isEmpty());
        EXPECT_EQ(connection.GetConnectionString(), kProvider + m_windowsPath + "\"");
        ExpectPaths(connection, m_windowsPath, QStringLiteral("D:\\数据"));
        db = connection.GetDatabase();
        ASSERT_NE(db, nullptr);
        EXPECT_TRUE(db->IsConnected());
        const QString notAccess = HomeFile(QStringLiteral("text.mdb"));
        ASSERT_TRUE(WriteBytes(notAccess, QByteArray(5000, 't')));
        EXPECT_FALSE(connection.ConnectDatabase(notAccess));
        EXPECT_EQ(UiCalls(), QStringList{"MessageBox|连接到" + notAccess + "失败||64"});
        ExpectPaths(connection, m_windowsPath, QStringLiteral("D:\\数据"));
        connection.Disconnect();
        EXPECT_EQ(connection.GetDatabase(), db);
        EXPECT_FALSE(db->IsConnected());
        ExpectPaths(connection, kError, kError);
        ASSERT_TRUE(connection.ConnectDatabase(m_native));
        EXPECT_EQ(connection.GetDatabase(), db);
        EXPECT_TRUE(db->IsConnected());
        ExpectPaths(connection, m_native, QString()); // a path without a backslash has an empty folder
    }
    EXPECT_FALSE(db->IsConnected());
    EXPECT_TRUE(db->Connect(m_native, QString(), QString()));
    db->DisConnect();

    // A missing file shows both messages.
    Ui().Clear();
    CConnectJSSysData connection;
    const QString missing = QStringLiteral("D:\\数据\\没有.mdb");
    EXPECT_FALSE(connection.ConnectDatabase(missing));
    EXPECT_EQ(UiCalls(), QStringList({"MessageBox|没有找到连接的数据库!||64", "MessageBox|连接到" + missing + "失败||64"}));
    EXPECT_EQ(connection.GetConnectionString(), kProvider + missing + "\"");
    ExpectPaths(connection, kError, kError);
}

using MacrosTableOnSystemDatabaseTest = DbBackendTest;

TEST_P(MacrosTableOnSystemDatabaseTest, ReadsTheSystemDatabasesMacros)
{
    for (const char* sql : {"insert into Macros values ('b.js', 'B', 'var b;', NULL), ('a.js', 'A', 'var a;', 'd')",
                            "insert into MacrosV2 values ('c.js', 'C', 'x', 'y')"})
        ASSERT_TRUE(SystemDb()->ExecuteNonQuery(QString::fromUtf8(sql))) << sql;
    CMacrosTable table(SystemDb());
    ASSERT_EQ(table.RetrieveByXml(), 2);
    table.Sort(Fields::key_ch);
    EXPECT_EQ(table.GetAsString(Fields::key_ch, 1) + "|" + table.GetAsString(Fields::content, 2), "a.js|var b;");
    EXPECT_TRUE(table.IsNull(3, 2));
}

VELMORA_INSTANTIATE_DB_BACKENDS(MacrosTableOnSystemDatabaseTest);

} // namespace
