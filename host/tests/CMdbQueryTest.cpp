#include "CMdbDatabase.h"
#include "CMdbQuery.h"
#include "DbBackendTest.h"

namespace {

const QString kCrLf = QStringLiteral("\r\n");

class MdbFixtureTest : public TempHomeTest
{
protected:
    void SetUp() override
    {
        TempHomeTest::SetUp();
        m_path = CopyAccessFixture(Home());
        ASSERT_FALSE(m_path.isEmpty());
        ASSERT_TRUE(m_db.Open(m_path)) << m_db.GetError().toStdString();
    }

    bool Run(const QString& sql, QList<QVariantList>& rows, const QVariantList& params = {})
    {
        CMdbQuery query;
        const bool ok = query.Parse(sql) && query.Run(m_db, params, rows);
        m_error = query.GetError();
        return ok;
    }

    QString m_path;
    CMdbDatabase m_db;
    QString m_error;
};

TEST_F(MdbFixtureTest, ListsUserTables)
{
    const QStringList tables = m_db.GetTableNames();
    EXPECT_TRUE(tables.contains(QStringLiteral("Macros")));
    EXPECT_TRUE(tables.contains(QStringLiteral("Users")));
    EXPECT_EQ(tables.size(), 2);
}

TEST_F(MdbFixtureTest, ReadsTheMacrosTableInStorageOrder)
{
    QStringList columns;
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db.ReadTable(QStringLiteral("macros"), columns, rows)) << m_db.GetError().toStdString();
    EXPECT_EQ(columns, QStringList({"key_ch", "key_en", "content", "description"}));
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[0][0].toString(), QStringLiteral("通用脚本\\钢筋重量.js"));
    EXPECT_EQ(rows[0][2].toString(), "// 钢筋每米重量 (kg/m)" + kCrLf + "var W = 0.00617 * d * d;" + kCrLf);
    EXPECT_EQ(rows[1][1].toString(), QStringLiteral("StirrupLength"));
    EXPECT_EQ(rows[1][3].toString(), QStringLiteral("矩形箍筋下料长度"));
    EXPECT_EQ(rows[2][2].toString(), "// 空描述" + kCrLf + "var n = Math.ceil(span / s) + 1;");
    EXPECT_TRUE(rows[2][3].isNull());
    EXPECT_EQ(rows[3][0].toString(), QStringLiteral("空"));
    EXPECT_FALSE(rows[3][2].isNull());
    EXPECT_EQ(rows[3][2].toString(), QString());
    EXPECT_FALSE(rows[3][3].isNull());
}

TEST_F(MdbFixtureTest, ReadsNumbersAsNumbers)
{
    QStringList columns;
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db.ReadTable(QStringLiteral("Users"), columns, rows));
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0][0].typeId(), QMetaType::LongLong);
    bool chinese = false;
    for (const QVariantList& row : rows)
        chinese = chinese || (row[1].toString() == QStringLiteral("张三") && row[2].toString() == QStringLiteral("男"));
    EXPECT_TRUE(chinese);
}

TEST_F(MdbFixtureTest, UnknownTableFails)
{
    QStringList columns;
    QList<QVariantList> rows;
    EXPECT_FALSE(m_db.ReadTable(QStringLiteral("Nope"), columns, rows));
    EXPECT_FALSE(m_db.GetError().isEmpty());
}

TEST_F(MdbFixtureTest, SelectsColumnsWithConditionsAndOrder)
{
    QList<QVariantList> rows;
    ASSERT_TRUE(Run(QStringLiteral("select [key_en], content from Macros where key_ch = ?"), rows,
                    {QStringLiteral("梁\\箍筋长度.js")}))
        << m_error.toStdString();
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].size(), 2);
    EXPECT_EQ(rows[0][0].toString(), QStringLiteral("StirrupLength"));

    ASSERT_TRUE(Run(QStringLiteral("SELECT key_en FROM macros ORDER BY key_en DESC;"), rows));
    QStringList order;
    for (const QVariantList& row : rows)
        order << row[0].toString();
    EXPECT_EQ(order, QStringList({"StirrupLength", "RebarWeight", "Empty", "Distribution"}));

    ASSERT_TRUE(Run(QStringLiteral("select * from Macros where key_en = 'Empty' and description = ''"), rows));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].size(), 4);
    ASSERT_TRUE(Run(QStringLiteral("select key_ch from Macros where description = 'x''y'"), rows));
    EXPECT_TRUE(rows.isEmpty());
}

TEST_F(MdbFixtureTest, NullNeverEqualsAValue)
{
    QList<QVariantList> rows;
    ASSERT_TRUE(Run(QStringLiteral("select key_en from Macros where description = ?"), rows, {QString("")}));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][0].toString(), QStringLiteral("Empty"));
}

TEST_F(MdbFixtureTest, NumbersCompareAsNumbers)
{
    QList<QVariantList> rows;
    QList<QVariantList> again;
    ASSERT_TRUE(Run(QStringLiteral("select UserId from Users"), again));
    const QString firstId = again[0][0].toString();
    ASSERT_TRUE(Run(QStringLiteral("select UserId from Users where UserId = ") + firstId + ".0", rows));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][0].toString(), firstId);
}

struct RefusedCase
{
    const char* sql;
    int params;
};

class MdbRefusedTest : public MdbFixtureTest, public ::testing::WithParamInterface<RefusedCase>
{
};

TEST_P(MdbRefusedTest, IsRefusedWithAReason)
{
    QList<QVariantList> rows{{1}};
    QVariantList params;
    for (int i = 0; i < GetParam().params; ++i)
        params << QStringLiteral("x");
    EXPECT_FALSE(Run(QString::fromUtf8(GetParam().sql), rows, params));
    EXPECT_FALSE(m_error.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Statements, MdbRefusedTest,
    ::testing::Values(RefusedCase{"insert into Macros values ('a','b','c','d')", 0},
                      RefusedCase{"update Macros set content = 'x'", 0}, RefusedCase{"delete from Macros", 0},
                      RefusedCase{"drop table Macros", 0}, RefusedCase{"select from Macros", 0},
                      RefusedCase{"select key_ch Macros", 0}, RefusedCase{"select key_ch from", 0},
                      RefusedCase{"select key_ch from Macros where key_ch", 0},
                      RefusedCase{"select key_ch from Macros where key_ch > 'a'", 0},
                      RefusedCase{"select key_ch from Macros where key_ch = 'a' or key_en = 'b'", 0},
                      RefusedCase{"select key_ch from Macros where key_ch = 'unterminated", 0},
                      RefusedCase{"select [key_ch from Macros", 0},
                      RefusedCase{"select key_ch from Macros; delete from Macros", 0},
                      RefusedCase{"select max(id) from Macros", 0}, RefusedCase{"select nope from Macros", 0},
                      RefusedCase{"select key_ch from Macros where nope = 1", 0},
                      RefusedCase{"select key_ch from Macros order by nope", 0},
                      RefusedCase{"select key_ch from Macros where key_ch = ?", 0},
                      RefusedCase{"select key_ch from Macros", 1}, RefusedCase{"select * from Users2", 0},
                      RefusedCase{"", 0}));

class MdbOpenTest : public TempHomeTest
{
};

TEST_F(MdbOpenTest, RefusesWhatIsNotAnAccessFile)
{
    CMdbDatabase db;
    EXPECT_FALSE(db.Open(HomeFile(QStringLiteral("missing.mdb"))));
    EXPECT_FALSE(db.IsOpen());
    ASSERT_TRUE(WriteBytes(HomeFile(QStringLiteral("text.mdb")), QByteArray(4096, 'x')));
    EXPECT_FALSE(db.Open(HomeFile(QStringLiteral("text.mdb"))));
    EXPECT_FALSE(db.Open(Home()));
    EXPECT_FALSE(db.GetError().isEmpty());
    QStringList columns;
    QList<QVariantList> rows;
    EXPECT_FALSE(db.ReadTable(QStringLiteral("Macros"), columns, rows));
}

} // namespace
