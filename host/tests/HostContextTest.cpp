#include "HostContext.h"
#include "NativePath.h"
#include "TestEnvironment.h"

#include <QDir>

using HostContextTest = TempHomeTest;

TEST_F(HostContextTest, DefaultsLiveUnderHome)
{
    const HostContext& context = HostContext::Instance();
    EXPECT_EQ(context.SysDataPath(), Home() + "/sysdata");
    EXPECT_EQ(context.SystemDatabase(), Home() + "/sysdata/system.db");
    EXPECT_TRUE(context.TestCaseRoot().endsWith(QStringLiteral("脚本测试用例")));
    EXPECT_TRUE(QDir(context.TestCaseRoot()).exists());
    EXPECT_EQ(context.DriveRoot('c'), Home() + "/drives/c");
    EXPECT_EQ(context.DriveRoot('C'), context.DriveRoot('c'));
    EXPECT_EQ(context.CodePage(), QByteArray("GBK"));
    EXPECT_EQ(context.ScriptTimeBudgetMs(), 10000);
}

TEST_F(HostContextTest, EnvironmentOverridesEachValueAndABadBudgetFallsBack)
{
    qputenv("VELMORA_SYSTEM_DB", "/tmp/other.db");
    qputenv("VELMORA_DRIVE_D", "/mnt/dee");
    qputenv("VELMORA_CODEPAGE", "GB18030");
    HostContext& context = HostContext::Instance();
    const struct { const char* text; int budget; } budgets[] = {
        {"250", 250}, {"abc", 10000}, {"-5", 10000}, {"0", 10000}, {"", 10000}};
    for (const auto& b : budgets) {
        qputenv("VELMORA_SCRIPT_TIMEOUT_MS", b.text);
        context.LoadFromEnvironment();
        EXPECT_EQ(context.ScriptTimeBudgetMs(), b.budget) << b.text;
    }
    EXPECT_EQ(context.SystemDatabase(), QStringLiteral("/tmp/other.db"));
    EXPECT_EQ(context.DriveRoot('d'), QStringLiteral("/mnt/dee"));
    EXPECT_EQ(context.CodePage(), QByteArray("GB18030"));
    for (const char* name : {"VELMORA_SYSTEM_DB", "VELMORA_DRIVE_D", "VELMORA_SCRIPT_TIMEOUT_MS", "VELMORA_CODEPAGE"})
        qunsetenv(name);
}

TEST_F(HostContextTest, WindowsPathsMapToNativeOnes)
{
    const QString c = HostContext::Instance().DriveRoot('C');
    HostContext::Instance().SetDriveRoot('x', QStringLiteral("/xroot"));
    const struct { QString in, out; } cases[] = {
        {QStringLiteral("C:\\testJSCover\\"), c + "/testJSCover/"}, {QStringLiteral("c:\\result.xml"), c + "/result.xml"},
        {QStringLiteral("C:Velmora.log"), c + "/Velmora.log"}, {QStringLiteral("C:"), c},
        {QStringLiteral("/data/sys\\mac.log"), QStringLiteral("/data/sys/mac.log")},
        {QStringLiteral("relative\\脚本\\a.js"), QStringLiteral("relative/脚本/a.js")},
        {QStringLiteral("1:\\x"), QStringLiteral("1:/x")}, // not a drive letter
        {QString(), QString()}, {QStringLiteral("X:\\a\\b"), QStringLiteral("/xroot/a/b")},
    };
    for (const auto& t : cases)
        EXPECT_EQ(NativePath::Map(t.in), t.out) << t.in.toStdString();
}
