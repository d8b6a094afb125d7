#include "CJsAllocationMeter.h"

#include <js/GCAPI.h>
#include <js/PropertyAndElement.h>
#include <jsapi.h>

#include <sys/resource.h>
#include <unistd.h>

CJsAllocationMeter::CJsAllocationMeter(JSContext* cx, JSObject* global)
    : m_cx(cx), m_touchedAtLastLook(TouchedBytes())
{
    if (!global)
        return;
    JSAutoRealm realm(cx, global);
    if (JSObject* info = js::gc::NewMemoryInfoObject(cx))
        m_info = std::make_unique<JS::PersistentRooted<JSObject*>>(cx, info);
    else
        JS_ClearPendingException(cx);
}

CJsAllocationMeter::~CJsAllocationMeter() = default;

std::uint64_t CJsAllocationMeter::CountedBytes() const
{
    std::uint64_t bytes = JS_GetGCParameter(m_cx, JSGC_BYTES);
    if (!m_info)
        return bytes;
    JSAutoRealm realm(m_cx, m_info->get());
    JS::RootedValue malloced(m_cx);
    if (JS_GetProperty(m_cx, *m_info, "mallocBytes", &malloced) && malloced.isNumber())
        bytes += static_cast<std::uint64_t>(malloced.toNumber());
    else
        JS_ClearPendingException(m_cx);
    return bytes;
}

// Pages this thread faulted in, as bytes: new memory it wrote to, freed or not.
std::uint64_t CJsAllocationMeter::TouchedBytes()
{
    rusage usage{};
    if (getrusage(RUSAGE_THREAD, &usage) != 0)
        return 0;
    return static_cast<std::uint64_t>(usage.ru_minflt) * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

// The pages are not counted from here: pages touched before the run can only
// bring a collection on sooner, after which the counters, taken here, judge.
// That saves a system call on every run.
void CJsAllocationMeter::StartRun()
{
    m_startCounted = CountedBytes();
}

bool CJsAllocationMeter::Exceeds(std::uint64_t allowance)
{
    const std::uint64_t touched = TouchedBytes();
    if (touched - m_touchedAtLastLook > allowance) {
        m_touchedAtLastLook = touched;
        JS_GC(m_cx);
    }
    const std::uint64_t counted = CountedBytes();
    return counted > m_startCounted && counted - m_startCounted > allowance;
}
