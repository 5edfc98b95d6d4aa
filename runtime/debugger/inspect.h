#pragma once
// The program's values as the IDE reads them.  Every pointer comes from the
// IDE, so each is read through the kernel copy (safe_memory.h); code of the
// program (getters, conversions) runs only on objects found alive in the
// all-objects list.  Each returns false when the value can't be read.
#include <cstdint>
#include <string>

namespace kelp::debugger {

// The class name of the object at `object`.
bool ClassNameAt(uintptr_t object, std::string &name);
// The string record at `record` in the wire form (null: the empty string).
bool StringTextAt(uintptr_t record, std::string &wire);
// "reference" or "reference class", as VALO writes an object.
bool ObjectText(uintptr_t object, std::string &wire);
// A variant: an object as ObjectText, a boxed value as a wire string.
bool VariantText(uintptr_t variant, std::string &wire);
// The element kind and the upper bounds, as VALABB writes them.
bool ArrayBoundsText(uintptr_t array, std::string &wire);
bool IsLiveObject(uintptr_t object);
// Reads the property `name` of a live object by its getter (or its field)
// as one of the kinds of the DPV commands: 'B', 'I', 'F', 'D', 'O', 'V', 'S'.
// `klass`, when not 0, must be the object's class or one it derives from.
bool PropertyText(uintptr_t object, uintptr_t klass, const std::string &name, char kind,
                  std::string &wire);
// The SFR lines of the walk from the stop frame, then SC.
void SendStackWalk(uintptr_t stopFrame, uintptr_t stopReturn);

} // namespace kelp::debugger
