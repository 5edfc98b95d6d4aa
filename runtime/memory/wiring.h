#pragma once
namespace kelp {
// The MemoryBlock and _Blowfish classes.
void WireMemory();
} // namespace kelp
