#include "CTestShard.h"

#include <QSet>
#include <QStringList>
#include <gtest/gtest.h>

TEST(TestShardTest, EveryScriptIsInExactlyOneShardAndNoShardIsLeftEmpty)
{
    QStringList names;
    for (int i = 0; i < 400; ++i)
        names << QStringLiteral("梁\\箍筋%1.js").arg(i) << QStringLiteral("lib/s%1.js").arg(i);
    for (int total : {1, 2, 3, 4, 7, 16}) {
        QSet<QString> seen;
        for (int index = 1; index <= total; ++index) {
            CTestShard shard;
            QString error;
            ASSERT_TRUE(CTestShard::Parse(QStringLiteral("%1/%2").arg(index).arg(total), shard, error));
            int mine = 0;
            for (const QString& name : names) {
                if (!shard.Contains(name))
                    continue;
                ++mine;
                EXPECT_FALSE(seen.contains(name)) << name.toStdString() << " in two shards of " << total;
                seen.insert(name);
            }
            // 800 names: a hash that spreads them at all gives every shard a fair share.
            EXPECT_GT(mine, int(names.size()) / total / 2) << index << "/" << total;
        }
        EXPECT_EQ(seen.size(), names.size()) << total;
    }
}

TEST(TestShardTest, ParseTakesOnlyKOfNWithinRange)
{
    // Expected shard, or "" where the text is refused (the shard stays the whole run).
    const struct { const char* text; const char* shard; } cases[] = {
        {"4/4", "4/4"}, {"03/4", "3/4"}, {"1/10000", "1/10000"}, {"0/4", ""}, {"5/4", ""}, {"1/0", ""},
        {"-1/4", ""},   {"1/10001", ""}, {"1/99999999999", ""}, {"a/b", ""}, {"1/", ""}, {"1/4/2", ""}, {" 1/4", ""},
    };
    for (const auto& c : cases) {
        CTestShard shard;
        QString error;
        const bool ok = CTestShard::Parse(QString::fromUtf8(c.text), shard, error);
        EXPECT_EQ(ok ? shard.Text() : error.isEmpty() ? "no reason" : "", QString::fromUtf8(c.shard)) << c.text;
        EXPECT_EQ(shard.Text(), ok ? QString::fromUtf8(c.shard) : QStringLiteral("1/1"));
    }
}
