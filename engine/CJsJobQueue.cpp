#include "CJsJobQueue.h"

#include <js/CallAndConstruct.h>
#include <js/Exception.h>
#include <js/GlobalObject.h>
#include <jsapi.h>

// Only a debugger saves the queue aside; this engine has none, so there is
// nothing to keep.
class CJsJobQueue::NothingSaved : public JS::JobQueue::SavedJobQueue
{
};

CJsJobQueue::CJsJobQueue(JSContext* cx) : m_jobs(cx) {}

JSObject* CJsJobQueue::getIncumbentGlobal(JSContext* cx)
{
    return JS::CurrentGlobalOrNull(cx);
}

bool CJsJobQueue::enqueuePromiseJob(JSContext* cx, JS::HandleObject, JS::HandleObject job, JS::HandleObject,
                                    JS::HandleObject)
{
    if (!m_jobs.append(job))
    {
        JS_ReportOutOfMemory(cx);
        return false;
    }
    return true;
}

bool CJsJobQueue::Drain(JSContext* cx)
{
    if (m_draining)
        return true;
    m_draining = true;
    bool stopped = false;
    JS::RootedObject job(cx);
    JS::RootedValue function(cx);
    JS::RootedValue ignored(cx);
    // Jobs queued while draining are appended and run in this same loop.
    for (std::size_t i = 0; i < m_jobs.length() && !stopped; ++i)
    {
        job = m_jobs[i];
        JSAutoRealm entered(cx, job);
        function.setObject(*job);
        if (!JS::Call(cx, JS::UndefinedHandleValue, function, JS::HandleValueArray::empty(), &ignored))
        {
            stopped = !JS_IsExceptionPending(cx);
            JS_ClearPendingException(cx);
        }
    }
    m_jobs.clear();
    m_draining = false;
    return !stopped;
}

js::UniquePtr<JS::JobQueue::SavedJobQueue> CJsJobQueue::saveJobQueue(JSContext*)
{
    return js::UniquePtr<SavedJobQueue>(js_new<NothingSaved>());
}
