#pragma once
// Raising language exceptions from runtime code.
//
// Raising does not leave the raising function: the exception becomes the
// current thread's pending exception, the runtime function goes on to its end
// and returns a neutral result (0, null, empty), and the handler runs in the
// nearest compiled function that declared one.  Runtime code therefore tests
// nothing after a raise except what it needs to finish safely.
#include "kelp/records.h"

namespace kelp {

void RaiseNilObject();   // NilObjectException
void RaiseIllegalCast(); // IllegalCastException
void RaiseOutOfBounds(); // OutOfBoundsException

// Raises a new instance of the named library exception class (for instance
// "UnsupportedFormatException"), with Message and ErrorNumber set.
void RaiseWithMessage(const char *className, const char *message, int errorNumber = 0);

// Creates an instance of the class, raises it and drops the creator's reference.
void RaiseOfClass(RuntimeClass *exceptionClass);

// True while the current thread has an exception that no handler took yet.
bool ExceptionPending();

} // namespace kelp
