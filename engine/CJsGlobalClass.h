#pragma once
#include <js/Class.h>
#include <js/Id.h>
#include <js/TypeDecls.h>

#include <memory>

class CJsLazyLibrary;

// The class of every global the engine makes here. The engine's own global
// hooks tell whether a missing name is a standard class (Math, JSON, ...) by
// walking the list of those names one by one, for every name a script
// declares or reads that is not there yet; with a library of hundreds of
// functions that walk was a third of a case. These hooks ask a set of the same
// names first, learned once per thread, and leave the rest to the engine.
// They also declare the functions of a library attached to the global when a
// script first looks one up (CJsLazyLibrary).
class CJsGlobalClass
{
public:
    static const JSClass* Get();
    // Learns this thread's standard names from a global of the thread, whose
    // realm the context is in. Until then the engine's hooks answer alone.
    static bool LearnNames(JSContext* cx, JS::HandleObject global);
    // Forgets them when the thread's engine goes: another one has other atoms.
    static void ForgetNames();
    static bool IsStandardName(jsid id);

    // Gives the global a library to declare on demand (null: none); it keeps
    // it until it dies. From then on the global notices a listing of its keys.
    static void Attach(JSObject* global, std::shared_ptr<const CJsLazyLibrary> library);
    // Whether a script listed the keys of a global since Attach. The order
    // of those keys is the order of declaration, which a split run changes.
    static bool WasListed(JSObject* global);
};
