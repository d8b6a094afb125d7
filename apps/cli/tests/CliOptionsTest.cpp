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
    EXPECT_TRUE(CCliOptions::VersionText().startsWith("velmora-test "));
    for (const char* option :
         {"--script", "--jobs", "--junit", "--home", "--system-db", "--cases", "--timeout", "--coverage", "--quiet", "--help",
          "--version"})
        EXPECT_TRUE(CCliOptions::HelpText().contains(option)) << option;
}

TEST(CliOptionsTest, BadCommandLinesGiveOneLineReasons)
{
    const struct { std::initializer_list<const char*> args; const char* reason; } cases[] = {
        {{"--bogus"}, "unknown option --bogus"}, {{"stray"}, "unexpected argument stray"},
        {{"--script"}, "needs a value"},         {{"--script="}, "non-empty"},
        {{"--jobs", "0"}, "whole number"},       {{"--jobs", "-2"}, "whole number"},
        {{"--jobs", "two"}, "whole number"},     {{"--jobs", "257"}, "whole number"},
        {{"--timeout", "0"}, "whole number"},    {{"--timeout", "1.5"}, "whole number"},
        {{"--quiet=yes"}, "unknown option --quiet"}, {{"-j", "2"}, "unknown option -j"},
    };
    for (const auto& c : cases) {
        CCliOptions options;
        EXPECT_EQ(options.Parse(Args(c.args)), CCliOptions::Action::Error) << c.reason;
        EXPECT_TRUE(options.Error().contains(c.reason)) << options.Error().toStdString();
        EXPECT_FALSE(options.Error().contains('\n'));
    }
}
