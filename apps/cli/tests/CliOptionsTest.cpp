#include "CCliOptions.h"

#include <gtest/gtest.h>

namespace {

QStringList Args(std::initializer_list<const char*> list)
{
    QStringList args{"velmora-test"};
    for (const char* a : list)
        args << QString::fromUtf8(a);
    return args;
}

// Every value option as text: script, junit, home, system db, cases, jobs, timeout, quiet, coverage.
QStringList Values(const CCliOptions& o)
{
    return {o.Script(), o.JUnitFile(), o.Home(), o.SystemDb(), o.CasesDir(), QString::number(o.Jobs()),
            QString::number(o.TimeoutMs()), o.Quiet() ? "quiet" : "", o.CoverageDir()};
}

} // namespace

TEST(CliOptionsTest, EveryValueOptionIsReadAndParsingAgainForgetsThem)
{
    CCliOptions options;
    ASSERT_EQ(options.Parse(Args({"--script=a=b.js", "--jobs", "256", "--junit", "out.xml", "--home", "/h",
                                  "--system-db=/h/s.db", "--cases", "/c", "--timeout=250", "--quiet", "--coverage", "/cov"})),
              CCliOptions::Action::Run)
        << options.Error().toStdString();
    EXPECT_EQ(Values(options), QStringList({"a=b.js", "out.xml", "/h", "/h/s.db", "/c", "256", "250", "quiet", "/cov"}));
    ASSERT_EQ(options.Parse(Args({"--jobs", "1"})), CCliOptions::Action::Run);
    const QStringList again = Values(options);
    EXPECT_EQ(again.mid(0, 2), QStringList({"", ""}));
    EXPECT_EQ(again.mid(5), QStringList({"1", "0", "", ""}));
}

TEST(CliOptionsTest, HelpAndVersionWinOverEverythingElse)
{
    CCliOptions options;
    EXPECT_EQ(options.Parse(Args({"--bogus", "--help"})), CCliOptions::Action::Help);
    EXPECT_EQ(options.Parse(Args({"-h"})), CCliOptions::Action::Help);
    EXPECT_EQ(options.Parse(Args({"--jobs", "x", "--version"})), CCliOptions::Action::Version);
}

TEST(CliOptionsTest, BadCommandLinesGiveOneLineReasons)
{
    const struct { std::initializer_list<const char*> args; const char* reason; } cases[] = {
        {{"--bogus"}, "unknown option --bogus"}, {{"stray"}, "unexpected argument stray"},
        {{"--script"}, "missing value after '--script'"}, {{"--script="}, "non-empty"}, {{"-bogus"}, "unknown option -bogus"},
        {{"--jobs", "0"}, "whole number"},       {{"--jobs", "two"}, "whole number"},
        {{"--jobs", "257"}, "whole number"},     {{"--timeout", "1.5"}, "whole number"}, {{"--timeout", "0"}, "whole number"},
        {{"--quiet=yes"}, "unexpected value after '--quiet'"}, {{"-j", "2"}, "unknown option -j"},
        {{"--", "--jobs"}, "unexpected argument --jobs"},
    };
    for (const auto& c : cases) {
        CCliOptions options;
        EXPECT_EQ(options.Parse(Args(c.args)), CCliOptions::Action::Error) << c.reason;
        EXPECT_TRUE(options.Error().contains(c.reason)) << options.Error().toStdString();
    }
}

TEST(CliOptionsTest, ShardComesFromTheOptionThenVelmoraShardThenTheCiNodeVariables)
{
    // The shard taken, or a piece of the one-line reason when the line is refused.
    const struct { std::initializer_list<const char*> args, env; bool ok; const char* want; } cases[] = {
        {{}, {}, true, "1/1"},
        {{"--shard", "2/4"}, {"VELMORA_SHARD=bad", "CI_NODE_INDEX=9"}, true, "2/4"},
        {{}, {"VELMORA_SHARD=3/5", "CI_NODE_INDEX=1", "CI_NODE_TOTAL=2"}, true, "3/5"},
        {{}, {"VELMORA_SHARD=", "CI_NODE_INDEX=1", "CI_NODE_TOTAL=3"}, true, "1/3"},
        {{"--shard=5/4"}, {}, false, "option --shard wants K/N"},
        {{}, {"VELMORA_SHARD=2"}, false, "VELMORA_SHARD wants K/N"},
        {{}, {"CI_NODE_INDEX=x", "CI_NODE_TOTAL=4"}, false, "CI_NODE_INDEX/CI_NODE_TOTAL wants K/N"},
        {{}, {"CI_NODE_INDEX=2"}, false, "CI_NODE_INDEX is set but CI_NODE_TOTAL is not"},
        {{}, {"CI_NODE_TOTAL=2"}, false, "CI_NODE_TOTAL is set but CI_NODE_INDEX is not"},
    };
    for (const auto& c : cases) {
        QProcessEnvironment env;
        for (const char* pair : c.env)
            env.insert(QString::fromUtf8(pair).section('=', 0, 0), QString::fromUtf8(pair).section('=', 1));
        CCliOptions options;
        const CCliOptions::Action action = options.Parse(Args(c.args), env);
        EXPECT_EQ(action, c.ok ? CCliOptions::Action::Run : CCliOptions::Action::Error) << c.want;
        if (c.ok)
            EXPECT_EQ(options.Shard().Text(), c.want);
        else
            EXPECT_TRUE(options.Error().contains(QString::fromUtf8(c.want))) << options.Error().toStdString();
    }
}
