#pragma once
// For runtime code that calls back into compiled code (event handlers,
// delegates): the callback starts with no pending exception of the thread,
// so that compiled code testing after its own calls never mistakes an
// exception raised before the callback for one of its own.  An exception the
// callback leaves pending stays pending for the caller's handler region, as
// the newer error; otherwise the one from before is pending again.
#include "kelp/records.h"

namespace kelp {

class CompiledCallbackScope {
public:
    CompiledCallbackScope();
    ~CompiledCallbackScope();
    CompiledCallbackScope(const CompiledCallbackScope &) = delete;
    CompiledCallbackScope &operator=(const CompiledCallbackScope &) = delete;

private:
    RuntimeObject *mStashed; // holds the reference the pending slot held
};

} // namespace kelp
