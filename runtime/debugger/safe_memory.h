#pragma once
// Reads and writes of memory at addresses the IDE names.  The kernel makes
// the copy, so an unmapped or protected address gives false instead of a
// fault in the program.
#include <cstddef>
#include <cstdint>

namespace kelp::debugger {

bool ReadMemory(uintptr_t address, void *out, size_t count);
bool WriteMemory(uintptr_t address, const void *in, size_t count);

template <typename T> bool ReadValue(uintptr_t address, T &out) {
    return ReadMemory(address, &out, sizeof(T));
}

} // namespace kelp::debugger
