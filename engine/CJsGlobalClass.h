#pragma once
#include <js/Class.h>
#include <js/TypeDecls.h>

// The class of every global the engine makes here. The engine's own global
// hooks tell whether a missing name is a standard class (Math, JSON, ...) by
// walking the list of those names one by one, for every name a script
// declares or reads that is not there yet; with a library of hundreds of
// functions that walk was a third of a case. These hooks ask a set of the same
// names first, learned once per thread, and leave the rest to the engine.
class CJsGlobalClass
{
public:
    static const JSClass* Get();
    // Learns this thread's standard names from a global of the thread, whose
    // realm the context is in. Until then the engine's hooks answer alone.
    static bool LearnNames(JSContext* cx, JS::HandleObject global);
    // Forgets them when the thread's engine goes: another one has other atoms.
    static void ForgetNames();
};
