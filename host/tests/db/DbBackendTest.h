#pragma once
#include "TestEnvironment.h"

#include <QString>
#include <memory>
#include <string>

class CComDB;

enum class DbBackend { SQLite, PostgreSQL };

// Runs a test on a fresh system database of each backend (a SQLite file in the temporary home or a new
// database on the private PostgreSQL server), named by the host context's system database.
class DbBackendTest : public TempHomeTest, public ::testing::WithParamInterface<DbBackend>
{
protected:
    void SetUp() override;
    void TearDown() override;
    virtual void Prepare() {} // at the end of SetUp, once the system database is connected

    const QString& Target() const { return m_target; }
    CComDB* SystemDb(); // the calling thread's system-database service
    std::unique_ptr<CComDB> SecondConnection();
    // Counts the rows of a table through a second connection (-1 on error).
    int CountRows(const QString& table, const QString& where = QString());

private:
    QString m_target;
};

std::string DbBackendName(const ::testing::TestParamInfo<DbBackend>& info);
// Locks `table` in an open transaction of `holder`, which keeps it until COMMIT or ROLLBACK.
bool LockTable(CComDB& holder, DbBackend backend, const char* table);

#define VELMORA_INSTANTIATE_DB_BACKENDS(suite)                                                          \
    INSTANTIATE_TEST_SUITE_P(Backends, suite, ::testing::Values(DbBackend::SQLite, DbBackend::PostgreSQL), \
                             DbBackendName)

// Copies the repository's Access fixture into `folder`; the copy's native path, empty on failure.
QString CopyAccessFixture(const QString& folder, const QString& name = QStringLiteral("macros.mdb"));

// A private copy of the Access fixture in the temporary home.
class AccessFixtureTest : public TempHomeTest
{
protected:
    void SetUp() override;

    QString m_path;
    QByteArray m_original;
};
