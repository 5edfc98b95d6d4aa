#pragma once
// The exceptions the object runtime raises itself: a nil object, a cast
// that fails, an index out of bounds.  Their classes are built on this
// runtime by the exception layer above it, which installs the raiser at
// bring-up; a raise before that is a failed assertion.
namespace kelp {

enum class StandardException { kNilObject, kIllegalCast, kOutOfBounds };

using StandardExceptionRaiser = void (*)(StandardException which);
void SetStandardExceptionRaiser(StandardExceptionRaiser raiser);

// Raises as exceptions/raise.h does: the exception becomes pending, and
// the caller finishes normally with a neutral result.
void RaiseStandardException(StandardException which);

} // namespace kelp
