#pragma once
#include "CJsAllocationMeter.h"
#include "CJsJobQueue.h"
#include "CJsPieceAnalyzer.h"
#include "CJsStencilCache.h"
#include "CJsWatchdog.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <mutex>
#include <vector>

#include <js/GCAPI.h>
#include <js/RootingAPI.h>
#include <js/TypeDecls.h>

class CJsRealm;

// The JavaScript engine of one thread: its context (made on first use,
// destroyed when the thread ends), the compartment every global of the
// thread lives in, the watchdog slot that enforces the host's time budget
// per run, the heap limit, and the garbage collection that keeps many
// short-lived globals from piling up.
//
// Globals live in CJsRealm objects. A realm is bound to the runtime of the
// thread that used it last; the runtime's Link lets a realm that moved to
// another thread, or a runtime whose thread ends, let go of the other's
// engine objects safely (a rooted global may only be dropped on its own
// thread, so a realm leaving from elsewhere hands it over to be dropped there).
class CJsRuntime
{
public:
    using RootedGlobal = std::unique_ptr<JS::PersistentRooted<JSObject*>>;

    struct Link
    {
        std::mutex lock;
        CJsRuntime* runtime = nullptr; // null once the thread's engine is gone
        std::vector<CJsRealm*> realms;
        std::vector<RootedGlobal> graveyard;
        std::atomic<bool> graveyardFilled{false};
    };

    // This thread's runtime, made on first use; null if the engine cannot run.
    static CJsRuntime* Current();
    // This thread's runtime if it has one already.
    static CJsRuntime* CurrentIfAny();

    JSContext* Context() const { return m_cx; }
    const std::shared_ptr<Link>& GetLink() const { return m_link; }

    // A fresh global with the standard classes, in a realm of its own.
    // Counts towards the next scheduled collection.
    JSObject* NewGlobal();

    // Runs are the stretches the time budget applies to.
    void BeginRun();
    void EndRun();
    // Whether the run just ended was stopped by the watchdog (for its time or
    // for its memory), and where.
    bool LastRunTimedOut() const { return m_timedOut; }
    // Whether the run just ended was stopped for what it allocated.
    bool LastRunOutOfMemory() const { return m_outOfMemory; }
    const std::string& StopFile() const { return m_stopFile; }
    unsigned StopLine() const { return m_stopLine; }
    int LastRunBudgetMs() const { return m_budgetMs; }

    // Compiled texts, dropped when line counting is switched on: a text
    // compiled without counters crashes the engine when run with them.
    CJsStencilCache& Stencils();
    CJsPieceAnalyzer& Pieces() { return m_pieces; }
    // Runs the promise jobs the current run queued; false when one was stopped.
    bool DrainJobs() { return !m_jobs || m_jobs->Drain(m_cx); }

    // Drops globals that realms handed over from other threads.
    void DrainGraveyard();

    // The GC heap limit of this thread's context; a script allocating past it
    // fails with an out-of-memory error.
    void SetHeapLimitBytes(std::uint32_t bytes);
    std::uint32_t HeapLimitBytes() const { return m_heapLimit; }
    void CollectGarbage();

    static constexpr std::uint32_t kDefaultHeapLimitBytes = 256u * 1024u * 1024u;
    // Old globals are only reclaimed by a collection; one every so many
    // resets keeps memory flat at little cost per reset. Fewer dead globals
    // per collection also means fewer freed pages handed back to the system.
    static constexpr int kGlobalsPerCollection = 16;
    // How much a run may allocate (GC heap and owned malloc memory), in heap
    // limits, before it is stopped (memory outside the GC heap has no other limit).
    static constexpr int kRunGrowthInHeapLimits = 2;
    // A collection that leaves more than this share of the heap limit in use
    // means the script holds on to nearly everything: rather than collect
    // again and again for ever less room, the run is stopped there.
    static constexpr double kFullHeapShare = 0.9;

    ~CJsRuntime();
    CJsRuntime(const CJsRuntime&) = delete;
    CJsRuntime& operator=(const CJsRuntime&) = delete;

private:
    explicit CJsRuntime(JSContext* cx);
    static std::unique_ptr<CJsRuntime> Create();
    static bool OnInterrupt(JSContext* cx);
    static void OnGarbageCollected(JSContext* cx, JSGCStatus status, JS::GCReason reason, void* data);

    void DetachAll();
    bool RunOutgrown();

    JSContext* m_cx = nullptr;
    std::shared_ptr<Link> m_link;
    std::unique_ptr<JS::PersistentRooted<JSObject*>> m_compartmentAnchor;
    CJsStencilCache m_stencils;
    bool m_stencilsCounted = false;
    CJsPieceAnalyzer m_pieces{*this};
    std::unique_ptr<CJsJobQueue> m_jobs;
    std::unique_ptr<CJsAllocationMeter> m_meter;
    CJsWatchdog::Slot m_slot;
    std::uint64_t m_run = 0;
    int m_runDepth = 0;
    int m_budgetMs = 0;
    bool m_timedOut = false;
    bool m_outOfMemory = false;
    bool m_heapFull = false;
    std::string m_stopFile;
    unsigned m_stopLine = 0;
    int m_globalsSinceCollection = 0;
    std::uint32_t m_heapLimit = kDefaultHeapLimitBytes;
};
