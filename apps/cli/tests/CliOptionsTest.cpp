#include "CCliOptions.h"

#include <gtest/gtest.h>

namespace {

QStringList Args(std::initializer_list<const char*> list)
{
    QStringList args{QStringLiteral("velmora-test")};
    for (const char* a : list)
        args << QString::fromUtf8(a);
    return args;
}

} // namespace

TEST(CliOptionsTest, EveryValueOptionIsReadAndParsingAgainForgetsThem)
{
    CCliOptions options;
    ASSERT_EQ(options.Parse(Args({"--script=a=b.js", "--jobs", "256", "--junit", "out.xml", "--home", "/h",
                                  "--system-db=/h/s.db", "--cases", "/c", "--timeout=250", "--quiet"})),
              CCliOptions::Action::Run)
        << options.Error().toStdString();
    EXPECT_EQ(options.Script(), QStringLiteral("a=b.js"));
    EXPECT_EQ(options.Jobs(), 256);
    EXPECT_EQ(options.JUnitFile(), QStringLiteral("out.xml"));
    EXPECT_EQ(options.Home(), QStringLiteral("/h"));
    EXPECT_EQ(options.SystemDb(), QStringLiteral("/h/s.db"));
    EXPECT_EQ(options.CasesDir(), QStringLiteral("/c"));
    EXPECT_EQ(options.TimeoutMs(), 250);
    EXPECT_TRUE(options.Quiet());

    ASSERT_EQ(options.Parse(Args({"--jobs", "1"})), CCliOptions::Action::Run);
    EXPECT_EQ(options.Jobs(), 1);
    EXPECT_TRUE(options.Script().isEmpty());
    EXPECT_TRUE(options.JUnitFile().isEmpty());
    EXPECT_EQ(options.TimeoutMs(), 0);
    EXPECT_FALSE(options.Quiet());
}

TEST(CliOptionsTest, HelpAndVersionWinOverEverythingElse)
{
    CCliOptions options;
    EXPECT_EQ(options.Parse(Args({"--bogus", "--help"})), CCliOptions::Action::Help);
    EXPECT_EQ(options.Parse(Args({"-h"})), CCliOptions::Action::Help);
    EXPECT_EQ(options.Parse(Args({"--jobs", "x", "--version"})), CCliOptions::Action::Version);
    EXPECT_TRUE(CCliOptions::VersionText().startsWith(QStringLiteral("velmora-test ")));
    const QString help = CCliOptions::HelpText();
    for (const char* option : {"--script", "--jobs", "--junit", "--home", "--system-db", "--cases", "--timeout",
                               "--quiet", "--help", "--version"})
        EXPECT_TRUE(help.contains(QLatin1String(option))) << option;
}

TEST(CliOptionsTest, BadCommandLinesGiveOneLineReasons)
{
    const struct
    {
        std::initializer_list<const char*> args;
        const char* reason;
    } cases[] = {
        {{"--bogus"}, "unknown option --bogus"},
        {{"stray"}, "unexpected argument stray"},
        {{"--script"}, "needs a value"},
        {{"--script="}, "non-empty"},
        {{"--jobs", "0"}, "whole number"},
        {{"--jobs", "-2"}, "whole number"},
        {{"--jobs", "two"}, "whole number"},
        {{"--jobs", "257"}, "whole number"},
        {{"--timeout", "0"}, "whole number"},
        {{"--timeout", "1.5"}, "whole number"},
        {{"--quiet=yes"}, "unknown option --quiet"},
        {{"-j", "2"}, "unknown option -j"},
    };
    for (const auto& c : cases) {
        CCliOptions options;
        EXPECT_EQ(options.Parse(Args(c.args)), CCliOptions::Action::Error) << c.reason;
        EXPECT_TRUE(options.Error().contains(QLatin1String(c.reason))) << options.Error().toStdString();
        EXPECT_FALSE(options.Error().contains(QLatin1Char('\n')));
    }
}
