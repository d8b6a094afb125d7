#pragma once
#include <js/GCVector.h>
#include <js/Promise.h>
#include <js/TypeDecls.h>

// The promise jobs of one thread's engine. Jobs a run queues (promise
// reactions, async functions) run at the end of that run, within its time
// budget, as a browser runs them after a script. A new run starts with an
// empty queue, so nothing queued by an earlier global runs in a later one.
class CJsJobQueue : public JS::JobQueue
{
public:
    explicit CJsJobQueue(JSContext* cx);

    // Runs the queued jobs, and those they queue, in order. An exception of a
    // job is dropped, as an unhandled rejection; false when the engine
    // stopped a job (time or memory), and then the rest is dropped too.
    bool Drain(JSContext* cx);
    void Clear() { m_jobs.clear(); }

    JSObject* getIncumbentGlobal(JSContext* cx) override;
    bool enqueuePromiseJob(JSContext* cx, JS::HandleObject promise, JS::HandleObject job,
                           JS::HandleObject allocationSite, JS::HandleObject incumbentGlobal) override;
    void runJobs(JSContext* cx) override { Drain(cx); }
    bool empty() const override { return m_jobs.empty(); }

private:
    class NothingSaved;
    js::UniquePtr<SavedJobQueue> saveJobQueue(JSContext* cx) override;

    JS::PersistentRootedObjectVector m_jobs;
    bool m_draining = false;
};
