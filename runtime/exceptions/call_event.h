#pragma once
// The one way runtime code calls an event handler of compiled code.  The
// object is locked for the call (a handler may drop the last reference to
// its own object), the call runs in a CompiledCallbackScope (it starts with
// no pending exception, and one it leaves pending stays for the caller's
// handler region), and the handler's result comes back.
//
//     CallEvent(view, gMoved);                              // a Sub
//     if (CallBooleanEvent(view, gMouseDown, x, y)) ...     // a Boolean result
//
// Arguments go to the handler as given, so pass them in the types the
// event's parameters have (int32_t, uint8_t, RuntimeObject *, KelpString).
#include "exceptions/callback_scope.h"
#include "objects/object_model.h"

#include "kelp/objects.h"

#include <cstdint>
#include <type_traits>

namespace kelp {

// Calls code already found for the object (a handler looked up once for
// several calls, a method of an interface the object implements).
template <typename R = void, typename... Args>
R CallHandlerCode(void *code, RuntimeObject *object, Args... args) {
    RuntimeLockObject(object);
    if constexpr (std::is_void_v<R>) {
        {
            CompiledCallbackScope scope;
            CallCompiledCode<void>(code, object, args...);
        }
        RuntimeUnlockObject(object);
    } else {
        R result;
        {
            CompiledCallbackScope scope;
            result = CallCompiledCode<R>(code, object, args...);
        }
        RuntimeUnlockObject(object);
        return result;
    }
}

// Calls the handler bound to `hook` for the object; without one nothing
// runs and the answer is R's zero.
template <typename R = void, typename... Args>
R CallEvent(RuntimeObject *object, const ObjectHook *hook, Args... args) {
    void *code = FindEventHandler(object, hook);
    if (!code)
        return R();
    return CallHandlerCode<R>(code, object, args...);
}

// An event whose handler answers a Boolean: compiled code returns it in a
// byte, and any value but 0 is true.  False without a handler.
template <typename... Args>
bool CallBooleanEvent(RuntimeObject *object, const ObjectHook *hook, Args... args) {
    return CallEvent<uint8_t>(object, hook, args...) != 0;
}

} // namespace kelp
