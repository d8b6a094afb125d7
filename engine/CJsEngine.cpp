#include "CJsEngine.h"

#include "CJsWatchdog.h"

#include <js/BuildId.h>
#include <js/ContextOptions.h>
#include <js/Initialization.h>
#include <js/experimental/CodeCoverage.h>
#include <jsapi.h>

#include <atomic>
#include <cstring>

namespace
{
// Filled by the writer callback of a context that parses the self-hosted code;
// the callback has no user data pointer, and each thread parses its own.
thread_local std::vector<std::uint8_t>* t_cacheBeingWritten = nullptr;

std::atomic<bool> g_coverage{false};
std::atomic<bool> g_contextMade{false};

// The self-hosted cache never leaves the process, so one fixed id does.
bool BuildId(JS::BuildIdCharVector* id)
{
    static const char kId[] = "velmora-mozjs-102";
    return id->append(kId, sizeof(kId) - 1);
}

bool WriteSelfHostedCache(JSContext*, JS::SelfHostedCache cache)
{
    if (t_cacheBeingWritten)
        t_cacheBeingWritten->assign(cache.begin(), cache.end());
    return true;
}
} // namespace

CJsEngine& CJsEngine::Instance()
{
    // Made on first use and destroyed at exit; thread-local contexts of the
    // main thread are gone by then (they are destroyed before statics).
    static CJsEngine engine;
    return engine;
}

CJsEngine::CJsEngine()
{
    JS::SetProcessBuildIdOp(BuildId);
    // A host may hold a second copy of this engine (its own, and the one in
    // the library it loads): SpiderMonkey is set up once per process, and
    // shut down only by the copy that set it up.
    m_ownsInit = !JS_IsInitialized();
    m_initialized = m_ownsInit ? JS_Init() : true;
    m_watchdog = new CJsWatchdog;
}

CJsEngine::~CJsEngine()
{
    delete m_watchdog;
    m_watchdog = nullptr;
    std::lock_guard<std::mutex> guard(m_lock);
    // A thread still holding a context at exit keeps the engine up; the
    // process ends anyway and shutting down under it would be worse.
    if (m_initialized && m_ownsInit && m_liveContexts == 0)
        JS_ShutDown();
    m_initialized = false;
}

bool CJsEngine::EnableCoverage()
{
    if (!g_coverage.exchange(true))
        js::EnableCodeCoverage();
    return !g_contextMade.load();
}

bool CJsEngine::CoverageEnabled()
{
    return g_coverage.load();
}

// The lock is not held while the context starts: the first contexts of
// several threads read the engine's self-hosted code side by side instead of
// one after the other.
JSContext* CJsEngine::CreateContext(std::uint32_t heapLimitBytes)
{
    std::shared_ptr<const std::vector<std::uint8_t>> cache;
    {
        std::lock_guard<std::mutex> guard(m_lock);
        if (!m_initialized)
            return nullptr;
        g_contextMade.store(true);
        ++m_liveContexts; // from here on the engine stays up
        cache = m_selfHostedCache;
    }
    JSContext* cx = JS_NewContext(heapLimitBytes);
    if (cx)
    {
        // Standard JavaScript only: no WebAssembly or asm.js machinery.
        JS::ContextOptionsRef(cx).setWasm(false).setAsmJS(false);
        if (!InitSelfHosted(cx, cache))
        {
            JS_DestroyContext(cx);
            cx = nullptr;
        }
    }
    if (!cx)
    {
        std::lock_guard<std::mutex> guard(m_lock);
        --m_liveContexts;
    }
    return cx;
}

bool CJsEngine::InitSelfHosted(JSContext* cx, const std::shared_ptr<const std::vector<std::uint8_t>>& cache)
{
    if (cache)
        return JS::InitSelfHostedCode(cx, JS::SelfHostedCache(cache->data(), cache->size()));
    auto written = std::make_shared<std::vector<std::uint8_t>>();
    t_cacheBeingWritten = written.get();
    const bool ok = JS::InitSelfHostedCode(cx, nullptr, WriteSelfHostedCache);
    t_cacheBeingWritten = nullptr;
    if (ok && !written->empty())
    {
        std::lock_guard<std::mutex> guard(m_lock);
        if (!m_selfHostedCache)
            m_selfHostedCache = std::move(written);
    }
    return ok;
}

void CJsEngine::DestroyContext(JSContext* cx)
{
    if (!cx)
        return;
    std::lock_guard<std::mutex> guard(m_lock);
    JS_DestroyContext(cx);
    --m_liveContexts;
}
