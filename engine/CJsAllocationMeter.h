#pragma once
#include <js/RootingAPI.h>
#include <js/TypeDecls.h>

#include <cstdint>
#include <memory>

// Weighs what one run on a thread's context allocates: its GC heap plus the
// memory its cells own outside that heap (array elements, string characters,
// buffers), both from the context's own counters, so a run is judged by what
// it did itself, whatever other threads of the process do meanwhile.
//
// The counters miss buffers of objects still in the nursery (an array that
// only grows allocates no GC things, so it is never tenured). The pages this
// thread itself touched tell when that may be happening: past the allowance
// since the last collection the meter made (or since the meter was made), a
// collection tenures such objects and the counters see them from then on.
// Use it on the context's own thread only.
class CJsAllocationMeter
{
public:
    // `global` gives the realm the counters are read in; it must outlive the meter.
    CJsAllocationMeter(JSContext* cx, JSObject* global);
    ~CJsAllocationMeter();
    CJsAllocationMeter(const CJsAllocationMeter&) = delete;
    CJsAllocationMeter& operator=(const CJsAllocationMeter&) = delete;

    void StartRun();
    // Whether the run has allocated more than `allowance` bytes since StartRun.
    bool Exceeds(std::uint64_t allowance);

private:
    std::uint64_t CountedBytes() const;
    static std::uint64_t TouchedBytes();

    JSContext* m_cx;
    std::unique_ptr<JS::PersistentRooted<JSObject*>> m_info;
    std::uint64_t m_startCounted = 0;
    std::uint64_t m_touchedAtLastLook = 0;
};
