#include "CSqlStatementCheck.h"

#include <gtest/gtest.h>

namespace {

struct StatementCase
{
    const char* sql;
    bool single;
};

class SqlStatementCheckTest : public ::testing::TestWithParam<StatementCase>
{
};

TEST_P(SqlStatementCheckTest, CountsStatements)
{
    EXPECT_EQ(CSqlStatementCheck::IsSingleStatement(QString::fromUtf8(GetParam().sql)), GetParam().single)
        << GetParam().sql;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SqlStatementCheckTest,
    ::testing::Values(StatementCase{"", true}, StatementCase{"select 1", true}, StatementCase{"select 1;", true},
                      StatementCase{"select 1 ; \r\n -- done\n", true}, StatementCase{"select 1; /* c */ ;", true},
                      StatementCase{"select 'a;b' from t", true}, StatementCase{"select 'it''s; ok'", true},
                      StatementCase{"select \"odd;name\" from t", true},
                      StatementCase{"select $$a;b$$, $tag$x;$$;y$tag$", true},
                      StatementCase{"select $1 from t", true}, StatementCase{"select 1 -- ; drop table t", true},
                      StatementCase{"select /* ; */ 1", true}, StatementCase{"select E'\\';' ", true},
                      StatementCase{"select 1; drop table t", false},
                      StatementCase{"insert into t values (1);insert into t values (2)", false},
                      StatementCase{"select 'a'; select 'b'", false}, StatementCase{"select 1; -- c\n select 2", false},
                      StatementCase{"select E'\\'; drop table t; --'", true},
                      StatementCase{"select 'a\\'; drop table t; --'", false},
                      StatementCase{"select 'unterminated", false}, StatementCase{"select $x$ open", false},
                      StatementCase{"select /* open", false}, StatementCase{"select \"open", false}));

} // namespace
