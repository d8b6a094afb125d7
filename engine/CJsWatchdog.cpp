#include "CJsWatchdog.h"

#include <js/Interrupt.h>

#include <algorithm>
#include <chrono>
#include <limits>

CJsWatchdog::~CJsWatchdog()
{
    {
        std::lock_guard<std::mutex> guard(m_lock);
        m_stop = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void CJsWatchdog::Register(Slot* slot)
{
    std::lock_guard<std::mutex> guard(m_lock);
    m_slots.push_back(slot);
    if (!m_thread.joinable())
        m_thread = std::thread([this] { Loop(); });
    m_wake.notify_all();
}

void CJsWatchdog::Unregister(Slot* slot)
{
    std::lock_guard<std::mutex> guard(m_lock);
    m_slots.erase(std::remove(m_slots.begin(), m_slots.end(), slot), m_slots.end());
}

std::uint64_t CJsWatchdog::Arm(Slot& slot, int budgetMs)
{
    const std::uint64_t run = slot.run.fetch_add(1, std::memory_order_acq_rel) + 1;
    const std::int64_t noLimit = std::numeric_limits<std::int64_t>::max();
    slot.deadlineMs.store(budgetMs > 0 ? NowMs() + budgetMs : noLimit, std::memory_order_release);
    return run;
}

bool CJsWatchdog::HasExpired(const Slot& slot, std::uint64_t run)
{
    return run != 0 && slot.expiredRun.load(std::memory_order_acquire) == run;
}

std::int64_t CJsWatchdog::NowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count() + 1;
}

void CJsWatchdog::Loop()
{
    std::unique_lock<std::mutex> lock(m_lock);
    while (!m_stop)
    {
        if (m_slots.empty())
            m_wake.wait(lock);
        else
            m_wake.wait_for(lock, std::chrono::milliseconds(kTickMs));
        if (!m_stop)
            CheckSlots();
    }
}

// Called with the lock held, so no slot can be unregistered (and its context
// destroyed) while we request an interrupt on it.
void CJsWatchdog::CheckSlots()
{
    const std::int64_t now = NowMs();
    for (Slot* slot : m_slots)
    {
        const std::uint64_t run = slot->run.load(std::memory_order_acquire);
        const std::int64_t deadline = slot->deadlineMs.load(std::memory_order_acquire);
        // The deadline must belong to the run we read, not to a newer one.
        if (deadline == 0 || slot->run.load(std::memory_order_acquire) != run)
            continue;
        if (now < deadline || slot->expiredRun.load() == run)
        {
            if (slot->checkMemory.load(std::memory_order_relaxed))
                JS_RequestInterruptCallback(slot->cx);
            continue;
        }
        slot->expiredRun.store(run, std::memory_order_release);
        JS_RequestInterruptCallback(slot->cx);
    }
}
