#include "CMdbDatabase.h"
#include "CMdbQuery.h"
#include "DbBackendTest.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

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

TEST_F(MdbFixtureTest, ReadsTablesWithTheirColumnsAndNumbers)
{
    EXPECT_EQ(m_db.GetTableNames().join(u' '), u"Users Macros"_s); // catalog order
    QStringList columns;
    QList<QVariantList> rows;
    ASSERT_TRUE(m_db.ReadTable(u"macros"_s, columns, rows)) << m_db.GetError().toStdString();
    EXPECT_EQ(columns, QStringList({"key_ch", "key_en", "content", "description"}));
    ASSERT_EQ(rows.size(), 4); // contents, nulls and storage order: the script table tests read the same file
    EXPECT_EQ(rows[1][3].toString(), u"矩形箍筋下料长度"_s);
    ASSERT_TRUE(m_db.ReadTable(u"Users"_s, columns, rows));
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0][0].typeId(), QMetaType::LongLong);
    EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [](const QVariantList& row) {
        return row[1].toString() == u"张三"_s && row[2].toString() == u"男"_s;
    }));
    EXPECT_FALSE(m_db.ReadTable(u"Nope"_s, columns, rows));
    EXPECT_FALSE(m_db.GetError().isEmpty());
}

TEST_F(MdbFixtureTest, SelectsColumnsWithConditionsAndOrder)
{
    QList<QVariantList> ids;
    ASSERT_TRUE(Run(u"select UserId from Users"_s, ids));
    const QString firstId = ids[0][0].toString();
    const struct { QString sql; QVariantList params; QStringList firstColumn; int columns; } cases[] = {
        {"select [key_en], content from Macros where key_ch = ?", {u"梁\\箍筋长度.js"_s}, {"StirrupLength"}, 2},
        {"SELECT key_en FROM macros ORDER BY key_en DESC;", {}, {"StirrupLength", "RebarWeight", "Empty", "Distribution"}, 1},
        {"select * from Macros where key_en = 'Empty' and description = ''", {}, {"空"}, 4},
        {"select key_ch from Macros where description = 'x''y'", {}, {}, 1},
        // A null description never equals a value, not even the empty text.
        {"select key_en from Macros where description = ?", {u""_s}, {"Empty"}, 1},
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

TEST_F(MdbFixtureTest, RefusesWhatItCannotOpenOrAnswerWithAReason)
{
    auto refused = [this](const char* sql, int params) {
        QList<QVariantList> rows{{1}};
        EXPECT_FALSE(Run(QString::fromUtf8(sql), rows, QVariantList(params, u"x"_s))) << sql;
        EXPECT_FALSE(m_error.isEmpty()) << sql;
    };
    for (const char* sql : {"insert into Macros values ('a','b','c','d')", "update Macros set content = 'x'",
                            "drop table Macros", "select from Macros", "select key_ch Macros", "select key_ch from",
                            "select key_ch from Macros where key_ch", "select key_ch from Macros where key_ch > 'a'",
                            "select key_ch from Macros where key_ch = 'a' or key_en = 'b'",
                            "select key_ch from Macros where key_ch = 'unterminated", "select [key_ch from Macros",
                            "select key_ch from Macros; delete from Macros", "select max(id) from Macros",
                            "select nope from Macros", "select key_ch from Macros where nope = 1",
                            "select key_ch from Macros order by nope", "select * from Users2", ""})
        refused(sql, 0);
    refused("select key_ch from Macros where key_ch = ?", 0);
    refused("select key_ch from Macros", 1);
    const QString text = HomeFile(u"text.mdb"_s);
    ASSERT_TRUE(WriteBytes(text, QByteArray(4096, 'x')));
    CMdbDatabase db;
    for (const QString& path : {HomeFile(u"missing.mdb"_s), text, Home()}) {
        EXPECT_FALSE(db.Open(path)) << path.toStdString();
        EXPECT_FALSE(db.IsOpen());
        EXPECT_FALSE(db.GetError().isEmpty());
    }
    QStringList columns;
    QList<QVariantList> rows;
    EXPECT_FALSE(db.ReadTable(u"Macros"_s, columns, rows));
}

} // namespace
