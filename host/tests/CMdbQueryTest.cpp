#include "CMdbDatabase.h"
#include "CMdbQuery.h"
#include "DbBackendTest.h"

#include <algorithm>

namespace {

const QString kCrLf = QStringLiteral("\r\n");

class MdbFixtureTest : public AccessFixtureTest
{
protected:
    void SetUp() override
    {
        AccessFixtureTest::SetUp();
        ASSERT_TRUE(m_db.Open(m_path)) << m_db.GetError().toStdString();
    }

    bool Run(const QString& sql, QList<QVariantList>& rows, const QVariantList& params = {})
    {
        CMdbQuery query;
        const bool ok = query.Parse(sql) && query.Run(m_db, params, rows);
        m_error = query.GetError();
        return ok;
    }

    CMdbDatabase m_db;
    QString m_error;
};

TEST_F(MdbFixtureTest, ReadsTablesInStorageOrderWithNullsAndNumbers)
{
    EXPECT_EQ(m_db.GetTableNames().size(), 2);
    EXPECT_TRUE(m_db.GetTableNames().contains(QStringLiteral("Users")));
    QStringList columns;
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db.ReadTable(QStringLiteral("macros"), columns, rows)) << m_db.GetError().toStdString();
    EXPECT_EQ(columns, QStringList({"key_ch", "key_en", "content", "description"}));
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[0][0].toString(), QStringLiteral("通用脚本\\钢筋重量.js"));
    EXPECT_EQ(rows[0][2].toString(), "// 钢筋每米重量 (kg/m)" + kCrLf + "var W = 0.00617 * d * d;" + kCrLf);
    EXPECT_EQ(rows[1][3].toString(), QStringLiteral("矩形箍筋下料长度"));
    EXPECT_TRUE(rows[2][3].isNull());
    EXPECT_FALSE(rows[3][2].isNull());
    EXPECT_EQ(rows[3][2].toString(), QString());
    EXPECT_FALSE(rows[3][3].isNull());
    ASSERT_TRUE(m_db.ReadTable(QStringLiteral("Users"), columns, rows));
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0][0].typeId(), QMetaType::LongLong);
    EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [](const QVariantList& row) {
        return row[1].toString() == QStringLiteral("张三") && row[2].toString() == QStringLiteral("男");
    }));
    EXPECT_FALSE(m_db.ReadTable(QStringLiteral("Nope"), columns, rows));
    EXPECT_FALSE(m_db.GetError().isEmpty());
}

TEST_F(MdbFixtureTest, SelectsColumnsWithConditionsAndOrder)
{
    QList<QVariantList> ids;
    ASSERT_TRUE(Run(QStringLiteral("select UserId from Users"), ids));
    const QString firstId = ids[0][0].toString();
    const struct { QString sql; QVariantList params; QStringList firstColumn; int columns; } cases[] = {
        {"select [key_en], content from Macros where key_ch = ?", {QStringLiteral("梁\\箍筋长度.js")}, {"StirrupLength"}, 2},
        {"SELECT key_en FROM macros ORDER BY key_en DESC;", {}, {"StirrupLength", "RebarWeight", "Empty", "Distribution"}, 1},
        {"select * from Macros where key_en = 'Empty' and description = ''", {}, {"空"}, 4},
        {"select key_ch from Macros where description = 'x''y'", {}, {}, 1},
        // A null description never equals a value, not even the empty text.
        {"select key_en from Macros where description = ?", {QString("")}, {"Empty"}, 1},
        // Numbers compare as numbers.
        {"select UserId from Users where UserId = " + firstId + ".0", {}, {firstId}, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sql.toStdString());
        QList<QVariantList> rows;
        ASSERT_TRUE(Run(c.sql, rows, c.params)) << m_error.toStdString();
        QStringList first;
        for (const QVariantList& row : rows) {
            EXPECT_EQ(row.size(), c.columns);
            first << row[0].toString();
        }
        EXPECT_EQ(first, c.firstColumn);
    }
}

TEST_F(MdbFixtureTest, RefusesWhatItCannotAnswerWithAReason)
{
    // params: how many parameters the call passes.
    const struct { const char* sql; int params; } cases[] = {
        {"insert into Macros values ('a','b','c','d')", 0}, {"update Macros set content = 'x'", 0},
        {"delete from Macros", 0}, {"drop table Macros", 0}, {"select from Macros", 0}, {"select key_ch Macros", 0},
        {"select key_ch from", 0}, {"select key_ch from Macros where key_ch", 0},
        {"select key_ch from Macros where key_ch > 'a'", 0},
        {"select key_ch from Macros where key_ch = 'a' or key_en = 'b'", 0},
        {"select key_ch from Macros where key_ch = 'unterminated", 0}, {"select [key_ch from Macros", 0},
        {"select key_ch from Macros; delete from Macros", 0}, {"select max(id) from Macros", 0},
        {"select nope from Macros", 0}, {"select key_ch from Macros where nope = 1", 0},
        {"select key_ch from Macros order by nope", 0}, {"select key_ch from Macros where key_ch = ?", 0},
        {"select key_ch from Macros", 1}, {"select * from Users2", 0}, {"", 0}};
    for (const auto& c : cases) {
        QList<QVariantList> rows{{1}};
        EXPECT_FALSE(Run(QString::fromUtf8(c.sql), rows, QVariantList(c.params, QStringLiteral("x")))) << c.sql;
        EXPECT_FALSE(m_error.isEmpty()) << c.sql;
    }
}

TEST_F(MdbFixtureTest, OpenRefusesWhatIsNotAnAccessFile)
{
    const QString text = HomeFile(QStringLiteral("text.mdb"));
    ASSERT_TRUE(WriteBytes(text, QByteArray(4096, 'x')));
    CMdbDatabase db;
    for (const QString& path : {HomeFile(QStringLiteral("missing.mdb")), text, Home()}) {
        EXPECT_FALSE(db.Open(path)) << path.toStdString();
        EXPECT_FALSE(db.IsOpen());
        EXPECT_FALSE(db.GetError().isEmpty());
    }
    QStringList columns;
    QList<QVariantList> rows;
    EXPECT_FALSE(db.ReadTable(QStringLiteral("Macros"), columns, rows));
}

} // namespace
