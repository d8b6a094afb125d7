// A stand-in for libvelmora.so with the same exported names, for the loader
// tests: FAKE_PARTIAL leaves out CCeateDialog::Release and the test entry.
#define FAKE_EXPORT __attribute__((visibility("default")))

class FAKE_EXPORT CCeateDialog
{
public:
    static CCeateDialog* Instance();
    static void Release();
    void Domodle();
};

namespace {
CCeateDialog* g_instance = nullptr;
const void* g_lastDomodle = nullptr;
int g_domodleCalls = 0;
} // namespace

CCeateDialog* CCeateDialog::Instance() { return g_instance ? g_instance : (g_instance = new CCeateDialog); }

void CCeateDialog::Domodle()
{
    g_lastDomodle = this;
    ++g_domodleCalls;
}

#ifndef FAKE_PARTIAL
void CCeateDialog::Release()
{
    delete g_instance;
    g_instance = nullptr;
}

class FAKE_EXPORT CVelmoraExport
{
public:
    static int DoJaveScriptTest();
};
int CVelmoraExport::DoJaveScriptTest() { return 42; }
#endif

// What the tests read back.
extern "C" FAKE_EXPORT int FakeDomodleCalls() { return g_domodleCalls; }
extern "C" FAKE_EXPORT bool FakeDomodleOnInstance() { return g_instance && g_lastDomodle == g_instance; }
