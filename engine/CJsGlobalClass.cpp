#include "CJsGlobalClass.h"

#include <js/GlobalObject.h>
#include <js/Id.h>
#include <js/Object.h>
#include <js/Realm.h>
#include <jsapi.h>
#include <jsfriendapi.h>

#include <cstdint>
#include <memory>
#include <unordered_set>

// After the engine's headers: Qt's keywords clash with them.
#include "CJsLazyLibrary.h"

namespace
{
// Each thread has an engine of its own, and so atoms of its own. A plain
// pointer: the thread's engine forgets the names when it goes, which may be
// after a thread_local set would already be gone.
thread_local std::unordered_set<std::uintptr_t>* t_names = nullptr;

// What a global of a split run keeps, in its first reserved slot: the
// library it declares on demand, if any, and whether its keys were listed.
struct LibraryState
{
    std::shared_ptr<const CJsLazyLibrary> library;
    bool listed = false;
};
constexpr std::size_t kLibrarySlot = 0;

LibraryState* StateOf(JSObject* global)
{
    return JS::GetMaybePtrFromReservedSlot<LibraryState>(global, kLibrarySlot);
}

bool Resolve(JSContext* cx, JS::HandleObject global, JS::HandleId id, bool* resolved)
{
    if (LibraryState* state = StateOf(global); state && state->library && state->library->Has(id))
        return state->library->Declare(cx, id, resolved);
    if (!t_names || CJsGlobalClass::IsStandardName(id))
        return JS_ResolveStandardClass(cx, global, id, resolved);
    // What the engine does for any other name: the global's prototype chain
    // is made on first need.
    *resolved = false;
    return JS::GetRealmObjectPrototype(cx) != nullptr;
}

bool MayResolve(const JSAtomState& names, jsid id, JSObject* global)
{
    if (LibraryState* state = global ? StateOf(global) : nullptr; state && state->library && state->library->Has(id))
        return true;
    if (!t_names || !global || !js::GetStaticPrototype(global))
        return JS_MayResolveStandardClass(names, id, global);
    return CJsGlobalClass::IsStandardName(id);
}

bool Enumerate(JSContext* cx, JS::HandleObject global, JS::MutableHandleIdVector properties, bool enumerableOnly)
{
    if (LibraryState* state = StateOf(global))
    {
        state->listed = true;
        if (state->library && !state->library->DeclareAll(cx, global))
            return false;
    }
    return JS_NewEnumerateStandardClasses(cx, global, properties, enumerableOnly);
}

void Finalize(JS::GCContext*, JSObject* global)
{
    delete StateOf(global);
}

const JSClassOps kOps = {nullptr, nullptr, nullptr, Enumerate, Resolve, MayResolve,
                         Finalize, nullptr, nullptr, JS_GlobalObjectTraceHook};
const JSClass kClass = {"global", JSCLASS_GLOBAL_FLAGS_WITH_SLOTS(1) | JSCLASS_FOREGROUND_FINALIZE, &kOps,
                        nullptr, nullptr, nullptr};

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

bool CJsGlobalClass::IsStandardName(jsid id)
{
    return t_names && id.isAtom() && t_names->count(id.asRawBits()) != 0;
}

void CJsGlobalClass::Attach(JSObject* global, std::shared_ptr<const CJsLazyLibrary> library)
{
    delete StateOf(global);
    JS::SetReservedSlot(global, kLibrarySlot, JS::PrivateValue(new LibraryState{std::move(library), false}));
}

bool CJsGlobalClass::WasListed(JSObject* global)
{
    const LibraryState* state = StateOf(global);
    return state && state->listed;
}
