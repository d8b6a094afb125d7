#include "CJsRuntime.h"

#include "CJsEngine.h"
#include "CJsGlobalClass.h"
#include "CJsRealm.h"
#include "HostContext.h"

#include <js/GCAPI.h>
#include <js/GlobalObject.h>
#include <js/Interrupt.h>
#include <js/RealmOptions.h>
#include <js/Stack.h>
#include <jsapi.h>

#include <pthread.h>

#include <algorithm>

namespace
{
thread_local std::unique_ptr<CJsRuntime> t_runtime;
thread_local bool t_unavailable = false;

// The engine stops a script that recurses too deep once it has used this much
// of the thread's stack, measured from the stack's base. What is left stays
// for the host code and the native code the engine runs past its checks.
std::size_t NativeStackQuota()
{
    constexpr std::size_t kMiB = 1024 * 1024;
    std::size_t size = 0;
    pthread_attr_t attr;
    if (pthread_getattr_np(pthread_self(), &attr) == 0)
    {
        pthread_attr_getstacksize(&attr, &size);
        pthread_attr_destroy(&attr);
    }
    if (size == 0)
        size = kMiB;
    const std::size_t quota = size > 4 * kMiB ? size - 2 * kMiB : size / 2;
    return std::min<std::size_t>(quota, 16 * kMiB);
}

// Every global of a thread shares one compartment (and so one zone): a new
// realm there is cheaper than one with a compartment of its own, and realms
// never reach into each other, so no wrappers are ever needed.
//
// The zone keeps its JIT code over collections: otherwise every collection
// throws away the inline-cache stubs all later globals use, and writing them
// again flips code pages between writable and executable, which with two
// threads costs a TLB flush on the other CPU each time.
JSObject* NewGlobalObject(JSContext* cx, JSObject* compartmentOf)
{
    JS::RealmOptions options;
    options.creationOptions().setPreserveJitCode(true);
    if (compartmentOf)
        options.creationOptions().setExistingCompartment(compartmentOf);
    else
        options.creationOptions().setNewCompartmentAndZone();
    return JS_NewGlobalObject(cx, CJsGlobalClass::Get(), nullptr, JS::FireOnNewGlobalHook, options);
}
} // namespace

CJsRuntime* CJsRuntime::Current()
{
    if (!t_runtime && !t_unavailable)
    {
        t_runtime = Create();
        t_unavailable = !t_runtime;
    }
    return t_runtime.get();
}

CJsRuntime* CJsRuntime::CurrentIfAny()
{
    return t_runtime.get();
}

std::unique_ptr<CJsRuntime> CJsRuntime::Create()
{
    JSContext* cx = CJsEngine::Instance().CreateContext(kDefaultHeapLimitBytes);
    if (!cx)
        return nullptr;
    JS_SetNativeStackQuota(cx, NativeStackQuota());
    std::unique_ptr<CJsRuntime> runtime(new CJsRuntime(cx));
    JSObject* anchor = NewGlobalObject(cx, nullptr);
    if (!anchor)
        return nullptr;
    {
        JS::RootedObject global(cx, anchor);
        JSAutoRealm entered(cx, global);
        if (!CJsGlobalClass::LearnNames(cx, global))
            JS_ClearPendingException(cx);
    }
    runtime->m_compartmentAnchor = std::make_unique<JS::PersistentRooted<JSObject*>>(cx, anchor);
    runtime->m_meter = std::make_unique<CJsAllocationMeter>(cx, anchor);
    runtime->m_slot.checkMemory.store(true, std::memory_order_relaxed);
    return runtime;
}

CJsRuntime::CJsRuntime(JSContext* cx)
    : m_cx(cx), m_link(std::make_shared<Link>())
{
    m_link->runtime = this;
    JS_SetContextPrivate(cx, this);
    JS_AddInterruptCallback(cx, &CJsRuntime::OnInterrupt);
    JS_SetGCCallback(cx, &CJsRuntime::OnGarbageCollected, this);
    m_jobs = std::make_unique<CJsJobQueue>(cx);
    JS::SetJobQueue(cx, m_jobs.get());
    m_slot.cx = cx;
    CJsEngine::Instance().Watchdog().Register(&m_slot);
}

CJsRuntime::~CJsRuntime()
{
    DetachAll();
    m_pieces.Release();
    m_meter.reset();
    m_compartmentAnchor.reset();
    m_jobs.reset();
    m_stencils = CJsStencilCache();
    CJsEngine::Instance().Watchdog().Unregister(&m_slot);
    CJsEngine::Instance().DestroyContext(m_cx);
    CJsGlobalClass::ForgetNames();
}

void CJsRuntime::DetachAll()
{
    std::lock_guard<std::mutex> guard(m_link->lock);
    for (CJsRealm* realm : m_link->realms)
        realm->OnRuntimeGone();
    m_link->realms.clear();
    m_link->graveyard.clear();
    m_link->runtime = nullptr;
}

JSObject* CJsRuntime::NewGlobal()
{
    if (++m_globalsSinceCollection >= kGlobalsPerCollection)
        CollectGarbage();
    // Line counts are read by walking every script of the global's zone: with
    // counting on, each global gets a zone of its own so that walk stays short.
    const bool ownZone = CJsEngine::CoverageEnabled() || !m_compartmentAnchor;
    return NewGlobalObject(m_cx, ownZone ? nullptr : m_compartmentAnchor->get());
}

CJsStencilCache& CJsRuntime::Stencils()
{
    const bool counted = CJsEngine::CoverageEnabled();
    if (counted != m_stencilsCounted)
    {
        m_stencils = CJsStencilCache();
        m_stencilsCounted = counted;
    }
    return m_stencils;
}

void CJsRuntime::CollectGarbage()
{
    m_globalsSinceCollection = 0;
    JS_GC(m_cx);
}

void CJsRuntime::DrainGraveyard()
{
    if (!m_link->graveyardFilled.load(std::memory_order_acquire))
        return;
    std::vector<RootedGlobal> dead;
    {
        std::lock_guard<std::mutex> guard(m_link->lock);
        dead.swap(m_link->graveyard);
        m_link->graveyardFilled.store(false, std::memory_order_release);
    }
}

void CJsRuntime::SetHeapLimitBytes(std::uint32_t bytes)
{
    m_heapLimit = bytes;
    JS_SetGCParameter(m_cx, JSGC_MAX_BYTES, bytes);
}

void CJsRuntime::BeginRun()
{
    if (m_runDepth++ > 0)
        return;
    m_timedOut = false;
    m_outOfMemory = false;
    m_heapFull = false;
    m_stopFile.clear();
    m_stopLine = 0;
    // Jobs of an earlier run (left when it was stopped) never run in this one.
    m_jobs->Clear();
    m_budgetMs = HostContext::Instance().ScriptTimeBudgetMs();
    if (m_meter)
        m_meter->StartRun();
    m_run = CJsWatchdog::Arm(m_slot, m_budgetMs);
}

bool CJsRuntime::RunOutgrown()
{
    return m_meter && m_meter->Exceeds(std::uint64_t(m_heapLimit) * kRunGrowthInHeapLimits);
}

void CJsRuntime::EndRun()
{
    if (--m_runDepth > 0)
        return;
    CJsWatchdog::Disarm(m_slot);
}

void CJsRuntime::OnGarbageCollected(JSContext* cx, JSGCStatus status, JS::GCReason, void* data)
{
    auto* runtime = static_cast<CJsRuntime*>(data);
    if (status != JSGC_END || runtime->m_runDepth == 0 || runtime->m_heapFull)
        return;
    const double inUse = JS_GetGCParameter(cx, JSGC_BYTES);
    if (inUse > kFullHeapShare * runtime->m_heapLimit)
    {
        runtime->m_heapFull = true;
        JS_RequestInterruptCallback(cx);
    }
}

bool CJsRuntime::OnInterrupt(JSContext* cx)
{
    auto* runtime = static_cast<CJsRuntime*>(JS_GetContextPrivate(cx));
    if (!runtime || runtime->m_runDepth == 0)
        return true;
    runtime->m_outOfMemory = runtime->m_heapFull || runtime->RunOutgrown();
    runtime->m_timedOut = !runtime->m_outOfMemory && CJsWatchdog::HasExpired(runtime->m_slot, runtime->m_run);
    if (!runtime->m_outOfMemory && !runtime->m_timedOut)
        return true;
    JS::AutoFilename file;
    unsigned line = 0;
    if (JS::DescribeScriptedCaller(cx, &file, &line))
    {
        runtime->m_stopFile = file.get() ? file.get() : "";
        runtime->m_stopLine = line;
    }
    // Returning false ends the run with an uncatchable error: no script
    // handler gets a chance to keep it going.
    return false;
}
