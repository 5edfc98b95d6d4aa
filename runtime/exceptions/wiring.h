#pragma once
namespace kelp {
// The exception layer's classes (RuntimeException and its subclasses) and
// the raiser of the object runtime's own exceptions.
void WireExceptions();
} // namespace kelp
