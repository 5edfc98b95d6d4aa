#pragma once
// The MemoryBlock class and what the accessors share.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

struct ObjectDefinition;
ObjectDefinition *MemoryBlockDefinition();

// The block behind an object, or null (NilObjectException raised) for null.
MemoryBlockObject *BlockOf(RuntimeObject *object);

// A new sized block of `size` zeroed bytes (copied from `bytes` when given),
// or null when memory is short.  Its LittleEndian is true.
MemoryBlockObject *NewSizedBlock(long size, const void *bytes = nullptr);
// A new unsized view on `address`.
MemoryBlockObject *NewView(void *address);

// Whether `width` bytes at `offset` may be accessed; raises
// OutOfBoundsException when not.  Sized blocks are checked against their
// size; unsized views are not checked, except that a read of a null
// pointer is refused.
bool CheckAccess(const MemoryBlockObject *block, int64_t offset, int64_t width, bool isRead);

} // namespace kelp
