/*
 * The runtime's exception exports, as compiled code calls them.
 *
 * Raising never leaves the raising function.  A raise makes the exception
 * the current thread's pending exception and returns; the runtime function
 * that raised finishes normally with a neutral result (0, null, empty).
 *
 * Handler regions.  A compiled function that has a handler brackets its
 * protected part:
 *
 *     RuntimeEnterHandlerRegion();
 *     r = SomeCall(...);
 *     if (RuntimePendingException()) goto handler;   after every call
 *     ...
 *     RuntimeLeaveHandlerRegion();
 *     return r;
 *   handler:
 *     slot = RuntimeTakeException();                  owned reference
 *     RuntimeLeaveHandlerRegion();                    after the take
 *     ... release locals; Catch: test slot's class, or
 *     RuntimeReraiseException(slot);                  hand it on
 *     RuntimeUnlockObject(slot);
 *     return neutral;
 *
 * A raise while no region is open on the thread, and an exception still
 * pending when the outermost region is left, go to the unhandled handler,
 * once.  That is why a handler takes the exception before it leaves its
 * region: a reraise then finds the caller's region still open.  A function without a region does not test: the exception stays
 * pending for the nearest caller that has one.
 */
#ifndef KELP_EXCEPTIONS_H
#define KELP_EXCEPTIONS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Calls the raise hook (if set), then RuntimeRaise.  Null does nothing. */
void RuntimeRaiseException(RuntimeObject *exception);
/* RuntimeRaise without the hook; compiled clean-up code hands an exception
 * on with it.  Null does nothing. */
void RuntimeReraiseException(RuntimeObject *exception);
/* Makes the exception pending for the nearest handler region (it takes its
 * own reference), or sends it to the unhandled handler when none is open. */
void RuntimeRaise(RuntimeObject *exception);
/* Calls the unhandled handler; without one, a failed assertion. */
void RuntimeUnhandledException(RuntimeObject *exception);
/* Raises FunctionNotFoundException, "Could not load <function> from <library>". */
void RuntimeRaiseFunctionNotFoundException(KelpString function, KelpString library);
/* Finalizer of RuntimeException: releases the message. */
void RuntimeExceptionFinalizer(RuntimeObject *exception);

/* Handler regions of compiled code, counted per thread. */
void RuntimeEnterHandlerRegion(void);
void RuntimeLeaveHandlerRegion(void);
/* The pending exception of this thread (borrowed), or null. */
RuntimeObject *RuntimePendingException(void);
/* The pending exception with its reference handed to the caller; clears it. */
RuntimeObject *RuntimeTakeException(void);

#ifdef __cplusplus
}
#endif

#endif
