// A loadable library with its own copy of the script engine, as libvelmora.so
// carries one: the host process then holds two.
#include "CScriptHost.h"

extern "C" __attribute__((visibility("default"))) int FakeEngineAnswer()
{
    CScriptHost host;
    if (!host.ExecuteStatement("var answer = 6 * 7;"))
        return -1;
    return host.Evaluate("answer").toString().toInt();
}
