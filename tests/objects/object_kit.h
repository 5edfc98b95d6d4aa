// What the object tests share: reading what a call raised.
#pragma once
#include "support/class_kit.h"

#include <string>

namespace kelp::test {

// The class name of the pending exception, taken and released; "" for none.
inline std::string TakeRaised() {
    RuntimeObject *e = RuntimeTakeException();
    const std::string name = e ? Str(e->klass->name) : "";
    if (e)
        RuntimeUnlockObject(e);
    return name;
}

} // namespace kelp::test
