// Raising on this port.  There is no walk over machine frames: a raise makes
// the exception the thread's pending exception, the raising runtime function
// finishes normally, and the nearest compiled function that opened a handler
// region finds it pending after the call returns.  An exception that no
// region takes goes to the unhandled handler exactly once: at the raise when
// no region is open, or when the outermost region closes with it pending.
#include "exceptions/callback_scope.h"
#include "exceptions/unhandled.h"

#include "base/fatal_report.h"
#include "exceptions/raise.h"
#include "kelp/exceptions.h"
#include "kelp/objects.h"

namespace kelp {
namespace {

struct ThreadExceptionState {
    int32_t regionDepth = 0;
    RuntimeObject *pending = nullptr; // holds a reference
};

ThreadExceptionState &State() {
    thread_local ThreadExceptionState state;
    return state;
}

RaiseHook gRaiseHook = nullptr;

} // namespace

RaiseHook SetRaiseHook(RaiseHook hook) {
    RaiseHook old = gRaiseHook;
    gRaiseHook = hook;
    return old;
}

bool ExceptionPending() { return State().pending != nullptr; }

int32_t HandlerRegionDepth() { return State().regionDepth; }

} // namespace kelp

using namespace kelp;

extern "C" void RuntimeRaise(RuntimeObject *exception) {
    if (!exception)
        return;
    ThreadExceptionState &state = State();
    if (state.regionDepth <= 0) {
        RuntimeUnhandledException(exception);
        return;
    }
    // A second raise before a handler ran replaces the first, as the later
    // error is the one the handler would have met.
    RuntimeLockObject(exception);
    RuntimeObject *old = state.pending;
    state.pending = exception;
    RuntimeUnlockObject(old);
}

extern "C" void RuntimeRaiseException(RuntimeObject *exception) {
    if (!exception)
        return;
    if (gRaiseHook)
        gRaiseHook(exception);
    RuntimeRaise(exception);
}

extern "C" void RuntimeReraiseException(RuntimeObject *exception) { RuntimeRaise(exception); }

extern "C" void RuntimeEnterHandlerRegion(void) { ++State().regionDepth; }

extern "C" void RuntimeLeaveHandlerRegion(void) {
    ThreadExceptionState &state = State();
    if (state.regionDepth <= 0) {
        FatalReport(kFatalFailedAssertion, "runtime/exceptions/pending.cpp", __LINE__,
                    "regionDepth > 0", "Handler region closed more often than opened");
        state.regionDepth = 0;
        return;
    }
    if (--state.regionDepth == 0 && state.pending) {
        RuntimeObject *lost = state.pending;
        state.pending = nullptr;
        RuntimeUnhandledException(lost);
        RuntimeUnlockObject(lost);
    }
}

extern "C" RuntimeObject *RuntimePendingException(void) { return State().pending; }

extern "C" RuntimeObject *RuntimeTakeException(void) {
    ThreadExceptionState &state = State();
    RuntimeObject *taken = state.pending;
    state.pending = nullptr;
    return taken;
}

namespace kelp {

CompiledCallbackScope::CompiledCallbackScope() : mStashed(RuntimeTakeException()) {}

CompiledCallbackScope::~CompiledCallbackScope() {
    ThreadExceptionState &state = State();
    if (state.pending) {
        RuntimeUnlockObject(mStashed); // the callback's exception is the newer
        return;
    }
    state.pending = mStashed;
}

} // namespace kelp
