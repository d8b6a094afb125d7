#include "CVelmoraLibrary.h"
#include "TestEnvironment.h"

#include <dlfcn.h>

namespace {

template <typename T>
T FakeFunction(const char* path, const char* name)
{
    return reinterpret_cast<T>(dlsym(dlopen(path, RTLD_NOW | RTLD_NOLOAD), name));
}

} // namespace

using CVelmoraLibraryTest = TempHomeTest;

TEST_F(CVelmoraLibraryTest, SaysWhatIsMissing)
{
    const QString notElf = HomeFile("libvelmora.so"), absent = HomeFile("absent/libvelmora.so");
    ASSERT_TRUE(WriteBytes(notElf, "not a library"));
    const QString partial = QStringLiteral(VELMORA_FAKE_PARTIAL);
    const struct { QString path, errorStart; QStringList missing; bool workbench; } cases[] = {
        {absent, "不存在文件:" + absent, {}, false},
        {notElf, "无法加载脚本工作台库:" + notElf + QLatin1Char('\n'), {}, false},
        {partial, QStringLiteral("脚本工作台库%1中缺少入口:\n").arg(partial),
         {"CCeateDialog::Release (_ZN12CCeateDialog7ReleaseEv)",
          "CVelmoraExport::DoJaveScriptTest (_ZN14CVelmoraExport16DoJaveScriptTestEv)"},
         true},
    };
    for (const auto& c : cases) {
        CVelmoraLibrary library;
        EXPECT_FALSE(library.Load(c.path));
        EXPECT_TRUE(library.Error().startsWith(c.errorStart)) << library.Error().toStdString();
        EXPECT_EQ(library.Missing(), c.missing);
        EXPECT_TRUE(library.Error().endsWith(c.missing.join(QLatin1Char('\n'))));
        // Whichever entry points are missing, calling them fails instead of crashing.
        EXPECT_EQ(std::tuple(library.HasWorkbench(), library.HasScriptTest(), library.RunScriptTest(),
                             library.ReleaseWorkbench()),
                  std::tuple(c.workbench, false, -1, false));
    }
}

TEST_F(CVelmoraLibraryTest, CallsTheEntryPointsOfAFullLibrary)
{
    EXPECT_EQ(CVelmoraLibrary::Locate("/opt/app", QString()), "/opt/app/libvelmora.so");
    EXPECT_EQ(CVelmoraLibrary::Locate("/opt/app", "/x/lib.so"), "/x/lib.so");

    CVelmoraLibrary library;
    ASSERT_TRUE(library.Load(QStringLiteral(VELMORA_FAKE_FULL))) << library.Error().toStdString();
    EXPECT_TRUE(library.Error().isEmpty());
    auto calls = FakeFunction<int (*)()>(VELMORA_FAKE_FULL, "FakeDomodleCalls");
    auto onInstance = FakeFunction<bool (*)()>(VELMORA_FAKE_FULL, "FakeDomodleOnInstance");
    ASSERT_TRUE(calls && onInstance);
    const int before = calls();
    EXPECT_TRUE(library.OpenWorkbench());
    EXPECT_EQ(calls(), before + 1);
    EXPECT_TRUE(onInstance()); // Domodle ran on the object Instance gave
    EXPECT_EQ(library.RunScriptTest(), 42);
    EXPECT_TRUE(library.ReleaseWorkbench());
    EXPECT_FALSE(onInstance());
}
