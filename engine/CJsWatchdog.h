#pragma once
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

struct JSContext;

// One thread per process that stops runs which overstay their time budget.
// Each context owns a Slot; a run writes its deadline there (no lock, no
// wake-up, so arming costs next to nothing) and the watchdog, waking every
// few milliseconds while any context exists, marks an expired run and asks
// the context for an interrupt. The context's interrupt callback then ends
// the run if the mark is for the run still going.
//
// Memory outside the GC heap (array elements, string characters) has no
// limit of the engine's own. Only the context's own thread can read its
// counters, so for a slot that asks for memory checks the watchdog requests
// an interrupt on every tick of a run, and the callback weighs what the run
// has allocated.
class CJsWatchdog
{
public:
    struct Slot
    {
        JSContext* cx = nullptr;
        std::atomic<std::uint64_t> run{0};
        std::atomic<std::int64_t> deadlineMs{0}; // 0: no run going
        std::atomic<std::uint64_t> expiredRun{0};
        std::atomic<bool> checkMemory{false};
    };

    CJsWatchdog() = default;
    ~CJsWatchdog();

    void Register(Slot* slot);
    // After this returns the watchdog no longer touches the slot or its context.
    void Unregister(Slot* slot);

    // Starts a run in the slot; budgetMs <= 0 means no limit. Returns the run id.
    static std::uint64_t Arm(Slot& slot, int budgetMs);
    static void Disarm(Slot& slot) { slot.deadlineMs.store(0, std::memory_order_release); }
    static bool HasExpired(const Slot& slot, std::uint64_t run);

    static std::int64_t NowMs();

    CJsWatchdog(const CJsWatchdog&) = delete;
    CJsWatchdog& operator=(const CJsWatchdog&) = delete;

private:
    void Loop();
    void CheckSlots();

    static constexpr int kTickMs = 20;

    std::mutex m_lock;
    std::condition_variable m_wake;
    std::vector<Slot*> m_slots;
    std::thread m_thread;
    bool m_stop = false;
};
