// Helpers of the array tests: calling slots as compiled code does, taking
// the exception a call raised, and making strings.
#pragma once
#include "kelp/arrays.h"
#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/strings.h"
#include "strings/kstring.h"

#include <string>

namespace arraytest {

template <typename Fn> Fn Slot(RuntimeArray *a, int slot) {
    return reinterpret_cast<Fn>(a->operations[slot]);
}

// Runs `call` inside a handler region, as a compiled function with a
// try block would, and gives the class name of what it raised ("" for none).
template <typename Call> std::string Raised(Call call) {
    RuntimeEnterHandlerRegion();
    call();
    RuntimeObject *e = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    if (e == nullptr)
        return "";
    std::string name =
        e->klass && e->klass->name ? std::string(kelp::string::Wrap(e->klass->name).View()) : "?";
    RuntimeUnlockObject(e);
    return name;
}

inline stringStorage *NewString(const char *text) { return kelp::string::FromUTF8(text).Release(); }

inline std::string Text(stringStorage *s) { return std::string(kelp::string::Wrap(s).View()); }

} // namespace arraytest
