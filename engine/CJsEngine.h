#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

struct JSContext;
class CJsWatchdog;

// SpiderMonkey itself: initialised once per process on first use and shut down
// at exit, after the last thread's context is gone. Contexts are made one at a
// time (the engine wants the first one made while nobody else touches it),
// and every context after the first decodes the self-hosted code from a cache
// the first one wrote, which saves most of the start-up cost per thread.
class CJsEngine
{
public:
    static CJsEngine& Instance();

    // A new context for the calling thread with the engine's standard
    // settings, or null if the engine could not give one. Destroy it with
    // DestroyContext on the same thread.
    JSContext* CreateContext(std::uint32_t heapLimitBytes);
    void DestroyContext(JSContext* cx);

    CJsWatchdog& Watchdog() { return *m_watchdog; }
    // Turns the engine's line coverage on for the rest of the process. Code
    // then runs with counters, so only coverage runs ask for it, and before
    // their first context: scripts compiled earlier are not counted.
    // False when a context existed already (coverage is on all the same).
    static bool EnableCoverage();
    static bool CoverageEnabled();
    bool IsUsable() const { return m_initialized; }

    CJsEngine(const CJsEngine&) = delete;
    CJsEngine& operator=(const CJsEngine&) = delete;

private:
    CJsEngine();
    ~CJsEngine();

    bool InitSelfHosted(JSContext* cx, const std::shared_ptr<const std::vector<std::uint8_t>>& cache);

    bool m_initialized = false;
    bool m_ownsInit = false;
    std::mutex m_lock;
    int m_liveContexts = 0;
    // The self-hosted code as the first context that read it wrote it out;
    // later contexts start from it. Never changed once set.
    std::shared_ptr<const std::vector<std::uint8_t>> m_selfHostedCache;
    CJsWatchdog* m_watchdog = nullptr;
};
