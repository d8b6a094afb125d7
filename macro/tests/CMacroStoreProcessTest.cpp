#include "CComDB.h"
#include "CDBFactory.h"
#include "HostContext.h"
#include "TestEnvironment.h"

#include <QProcess>

namespace {

using MacroStoreProcessTest = TempHomeTest;

// Two processes saving into one SQLite system database wait for each other's
// locks instead of failing with "database is locked"; every row arrives.
TEST_F(MacroStoreProcessTest, TwoProcessesSaveIntoOneSqliteDatabase)
{
    ASSERT_TRUE(CDBFactory::GetSingle(CDBFactory::kSystemDatabase)->IsConnected()); // made with its tables
    CDBFactory::ReleaseThread();
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("VELMORA_HOME"), Home());
    QProcess writers[2];
    for (int i = 0; i < 2; ++i) {
        writers[i].setProcessEnvironment(env);
        writers[i].start(QStringLiteral(VELMORA_STORE_WRITER), {QStringLiteral("w%1-").arg(i), QStringLiteral("500")});
    }
    for (QProcess& writer : writers) {
        ASSERT_TRUE(writer.waitForFinished(240000));
        EXPECT_EQ(writer.exitCode(), 0) << writer.readAllStandardError().toStdString();
    }
    CComDB db;
    ASSERT_TRUE(db.Connect(HostContext::Instance().SystemDatabase(), QString(), QString()));
    QString rows, names;
    ASSERT_TRUE(db.Retrieve(QStringLiteral("select count(*) from SC_MACRO_DEFINE"), rows));
    ASSERT_TRUE(db.Retrieve(QStringLiteral("select count(distinct NAME) from SC_MACRO_DEFINE"), names));
    EXPECT_EQ(rows, QStringLiteral("1000"));
    EXPECT_EQ(names, QStringLiteral("1000"));
}

} // namespace
