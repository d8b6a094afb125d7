#include "CSqlStatementCheck.h"

#include <gtest/gtest.h>

namespace {

TEST(SqlStatementCheckTest, CountsStatements)
{
    const struct { const char* sql; bool single; } cases[] = {
        {"", true}, {"select 1", true}, {"select 1;", true}, {"select 1 ; \r\n -- done\n", true},
        {"select 1; /* c */ ;", true}, {"select 'a;b' from t", true}, {"select 'it''s; ok'", true},
        {"select \"odd;name\" from t", true}, {"select $$a;b$$, $tag$x;$$;y$tag$", true}, {"select $1 from t", true},
        {"select 1 -- ; drop table t", true}, {"select /* ; */ 1", true}, {"select E'\\';' ", true},
        {"select E'\\'; drop table t; --'", true}, {"select 1; drop table t", false},
        {"insert into t values (1);insert into t values (2)", false}, {"select 'a'; select 'b'", false},
        {"select 1; -- c\n select 2", false}, {"select 'a\\'; drop table t; --'", false},
        {"select 'unterminated", false}, {"select $x$ open", false}, {"select /* open", false},
        {"select \"open", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CSqlStatementCheck::IsSingleStatement(QString::fromUtf8(c.sql)), c.single) << c.sql;
}

} // namespace
