#pragma once
// The small-block allocator behind every string record and text buffer.
//
// Requests are served from 64 free lists, one per 4-byte size class: the
// class of n bytes is (n + 3) / 4.  A free block's first word links it to the
// next free block of its class; an empty list is refilled from the front of
// the current 8,192-byte chunk (each block takes its class's bytes rounded up
// to 8, so that a free block holds its link and records stay aligned).
// Blocks carry no header, so the caller must
// give back the same size that it asked for.  Requests above 252 bytes go to
// malloc.  Threads run one at a time under the run lock, so nothing here
// locks.
#include <cstddef>
#include <cstdint>

namespace kelp {

// What an allocation does when memory runs out: hard ends the process with
// the out-of-memory notice, soft answers null and lets the caller cope.
enum MemFullHandling { kMemFullHard = 0, kMemFullSoft = 1 };

// `size` bytes, or null for a size of 0 or less (and for a soft failure).
void *OSalloclen(long size, MemFullHandling handling = kMemFullHard);

// Gives back a block of `size` bytes; `size` must be what was asked for.
// A null block is accepted and ignored.
void OSfreelen(void *block, long size);

// Bytes currently handed out by OSalloclen (what RuntimeDebugMemoryUsed
// reports).
extern int64_t gTotalAllocLen;
inline int64_t TotalAllocLen() { return gTotalAllocLen; }

// The process's end when memory runs out: the notice "This application has
// run out of memory and must quit now." goes to the last-resort channel
// (which shows nothing here) and the process exits with status 0.
[[noreturn]] void OutOfMemoryEnd();

// Tests and the start-up may swap the out-of-memory end (for instance to
// observe it); null restores the default.  Returns the previous handler.  A
// handler that returns makes the hard allocation answer null.
using OutOfMemoryHandler = void (*)();
OutOfMemoryHandler SetOutOfMemoryHandler(OutOfMemoryHandler handler);

} // namespace kelp
