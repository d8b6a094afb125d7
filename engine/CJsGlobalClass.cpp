#include "CJsGlobalClass.h"

#include <js/GlobalObject.h>
#include <js/Id.h>
#include <js/Realm.h>
#include <jsapi.h>
#include <jsfriendapi.h>

#include <cstdint>
#include <memory>
#include <unordered_set>

namespace
{
// Each thread has an engine of its own, and so atoms of its own. A plain
// pointer: the thread's engine forgets the names when it goes, which may be
// after a thread_local set would already be gone.
thread_local std::unordered_set<std::uintptr_t>* t_names = nullptr;

bool IsStandardName(jsid id)
{
    return id.isAtom() && t_names->count(id.asRawBits()) != 0;
}

bool Resolve(JSContext* cx, JS::HandleObject global, JS::HandleId id, bool* resolved)
{
    if (!t_names || IsStandardName(id))
        return JS_ResolveStandardClass(cx, global, id, resolved);
    // What the engine does for any other name: the global's prototype chain
    // is made on first need.
    *resolved = false;
    return JS::GetRealmObjectPrototype(cx) != nullptr;
}

bool MayResolve(const JSAtomState& names, jsid id, JSObject* global)
{
    if (!t_names || !global || !js::GetStaticPrototype(global))
        return JS_MayResolveStandardClass(names, id, global);
    return IsStandardName(id);
}

const JSClassOps kOps = {nullptr, nullptr, nullptr, JS_NewEnumerateStandardClasses, Resolve, MayResolve,
                         nullptr, nullptr, nullptr, JS_GlobalObjectTraceHook};
const JSClass kClass = {"global", JSCLASS_GLOBAL_FLAGS, &kOps, nullptr, nullptr, nullptr};

bool AddPinned(JSContext* cx, const char* name, std::unordered_set<std::uintptr_t>& names)
{
    JSString* atom = JS_AtomizeAndPinString(cx, name);
    if (!atom)
        return false;
    names.insert(JS::PropertyKey::fromPinnedString(atom).asRawBits());
    return true;
}
} // namespace

const JSClass* CJsGlobalClass::Get()
{
    return &kClass;
}

bool CJsGlobalClass::LearnNames(JSContext* cx, JS::HandleObject global)
{
    ForgetNames();
    JS::RootedIdVector ids(cx);
    if (!JS_NewEnumerateStandardClassesIncludingResolved(cx, global, &ids, false))
        return false;
    // Standard names are atoms the engine keeps for its whole life.
    auto names = std::make_unique<std::unordered_set<std::uintptr_t>>();
    for (jsid id : ids)
        if (id.isAtom())
            names->insert(id.asRawBits());
    if (!AddPinned(cx, "undefined", *names) || !AddPinned(cx, "globalThis", *names))
        return false;
    t_names = names.release();
    return true;
}

void CJsGlobalClass::ForgetNames()
{
    delete t_names;
    t_names = nullptr;
}
