#include "HostContext.h"
#include "NativePath.h"
#include "TestEnvironment.h"

using namespace Qt::StringLiterals;
using HostContextTest = TempHomeTest;

TEST_F(HostContextTest, EnvironmentOverridesEachValueAndABadBudgetFallsBack)
{
    HostContext& context = HostContext::Instance();
    qputenv("VELMORA_SYSTEM_DB", "/tmp/other.db");
    qputenv("VELMORA_DRIVE_D", "/mnt/dee");
    qputenv("VELMORA_CODEPAGE", "GB18030");
    for (const auto& [text, budget] : {std::pair{"250", 250}, {"abc", 10000}, {"-5", 10000}, {"0", 10000}, {"", 10000}}) {
        qputenv("VELMORA_SCRIPT_TIMEOUT_MS", text);
        context.LoadFromEnvironment();
        EXPECT_EQ(context.ScriptTimeBudgetMs(), budget) << text;
    }
    EXPECT_EQ(context.SystemDatabase(), u"/tmp/other.db"_s);
    EXPECT_EQ(context.DriveRoot('d'), u"/mnt/dee"_s);
    EXPECT_EQ(context.CodePage(), QByteArray("GB18030"));
    for (const char* name : {"VELMORA_SYSTEM_DB", "VELMORA_DRIVE_D", "VELMORA_SCRIPT_TIMEOUT_MS", "VELMORA_CODEPAGE"})
        qunsetenv(name);
}

TEST_F(HostContextTest, WindowsPathsMapToNativeOnes)
{
    const QString c = HostContext::Instance().DriveRoot('C');
    HostContext::Instance().SetDriveRoot('x', u"/xroot"_s);
    const struct { QString in, out; } cases[] = {
        {u"c:\\testJSCover\\"_s, c + "/testJSCover/"}, {u"C:Velmora.log"_s, c + "/Velmora.log"}, {u"C:"_s, c},
        {u"/data/sys\\mac.log"_s, u"/data/sys/mac.log"_s}, {u"relative\\脚本\\a.js"_s, u"relative/脚本/a.js"_s},
        {u"1:\\x"_s, u"1:/x"_s}, {QString(), QString()}, {u"X:\\a\\b"_s, u"/xroot/a/b"_s}};
    for (const auto& t : cases)
        EXPECT_EQ(NativePath::Map(t.in), t.out) << t.in.toStdString();
}
