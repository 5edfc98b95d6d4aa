// Scripts for the system's script engine: there is none here.  Starting a
// script raises, once; the calls that would fill in and finish it do nothing,
// as the program's handler has taken over by then.
#include "stubs/absent.h"

#include "kelp/stubs.h"

extern "C" void RuntimeScriptExecute(KelpString, KelpString) {
    kelp::RaiseServiceAbsent("Running a script");
}

extern "C" KelpString RuntimeScriptFunction(KelpString, KelpString) {
    kelp::RaiseServiceAbsent("Running a script");
    return nullptr;
}

extern "C" void RuntimeStartParamScript(KelpString, KelpString) {
    kelp::RaiseServiceAbsent("Running a script");
}

KELP_ABSENT(void, RuntimeAddStringScriptParam, KelpString)
KELP_ABSENT(void, RuntimeAddIntegerScriptParam, int32_t)
KELP_ABSENT(void, RuntimeCompleteParamScriptExecute)
KELP_ABSENT(KelpString, RuntimeCompleteParamScriptFunction)
