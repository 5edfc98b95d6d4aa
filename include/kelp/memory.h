/*
 * MemoryBlock and _Blowfish, as compiled code calls them.
 *
 * Failure channel: an access outside a sized block raises
 * OutOfBoundsException, a failed allocation OutOfMemoryException, and the
 * function returns 0 / nil / empty with nothing changed.  A null block raises
 * NilObjectException.  Strings returned are owned references; objects
 * returned carry a reference the caller owns.
 *
 * Offsets are bytes from the start of the block.  Multi-byte values are in
 * the block's LittleEndian order.  An address (Ptr) is pointer-sized on this
 * port: 8 bytes.
 */
#ifndef KELP_MEMORY_H
#define KELP_MEMORY_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------ life cycle */

/* LittleEndian true, no bytes. */
void MemoryBlockInitializer(RuntimeObject *self);
/* Frees an owned buffer. */
void MemoryBlockFinalizer(RuntimeObject *self);
/* Constructor(bytes): zeroed bytes; a negative size becomes 0. */
void memoryBlockNewConstructor(RuntimeObject *self, int32_t bytes);
/* A zeroed block, or nil for a negative size or when memory is short (no
 * exception). */
RuntimeObject *newMemoryBlock(int32_t bytes);
/* An unsized view on `address`, or nil for a null address. */
RuntimeObject *PtrToMemoryBlock(void *address);

/* ------------------------------------------------------ size and pointer */

/* mSize, or -1 for an unsized view. */
int32_t memoryBlockGetSize(RuntimeObject *self);
/* Resizes, keeping the common bytes and zeroing the new ones; negative
 * raises OutOfBoundsException. */
void memoryBlockSetSize(RuntimeObject *self, int32_t bytes);
void *memoryBlockGetPtr(RuntimeObject *self);

/* ------------------------------------------------------------ accessors */

int32_t memoryGetLong(RuntimeObject *self, int32_t offset);
void memorySetLong(RuntimeObject *self, int32_t offset, int32_t value);
int32_t memoryGetShort(RuntimeObject *self, int32_t offset); /* signed */
void memorySetShort(RuntimeObject *self, int32_t offset, int32_t value);
int32_t memoryGetUShort(RuntimeObject *self, int32_t offset);
int32_t memoryGetByte(RuntimeObject *self, int32_t offset); /* unsigned */
void memorySetByte(RuntimeObject *self, int32_t offset, int32_t value);
uint8_t memoryGetBoolean(RuntimeObject *self, int32_t offset);
void memorySetBoolean(RuntimeObject *self, int32_t offset, uint8_t value);
double memoryGetSingle(RuntimeObject *self, int32_t offset);
void memorySetSingle(RuntimeObject *self, int32_t offset, double value);
double memoryGetDouble(RuntimeObject *self, int32_t offset);
void memorySetDouble(RuntimeObject *self, int32_t offset, double value);
/* A new unsized view on the stored address, nil for 0. */
RuntimeObject *memoryGetPtr(RuntimeObject *self, int32_t offset);
/* Stores the mData of `block` (0 for nil). */
void memorySetPtr(RuntimeObject *self, int32_t offset, RuntimeObject *block);
/* 0xRRGGBB from 16, 24 or 32 bits; other bit counts read 0 and write nothing. */
uint32_t memoryGetColor(RuntimeObject *self, int32_t offset, int32_t bits);
void memorySetColor(RuntimeObject *self, int32_t offset, int32_t bits, uint32_t color);

/* Texts read from a block have no encoding (unknown). */
KelpString memoryGetPString(RuntimeObject *self, int32_t offset);
void memorySetPString(RuntimeObject *self, int32_t offset, KelpString value);
KelpString memoryGetCString(RuntimeObject *self, int32_t offset);
void memorySetCString(RuntimeObject *self, int32_t offset, KelpString value);
KelpString memoryGetString(RuntimeObject *self, int32_t offset, int32_t length);
void memorySetString(RuntimeObject *self, int32_t offset, int32_t length, KelpString value);
/* 32-bit characters to a 0 unit; the result is UTF-16. */
KelpString memoryGetWString(RuntimeObject *self, int32_t offset);
void memorySetWString(RuntimeObject *self, int32_t offset, KelpString value);

/* ------------------------------------------------------- new blocks */

RuntimeObject *MemoryBlockLeftB(RuntimeObject *self, int32_t bytes);
RuntimeObject *MemoryBlockRightB(RuntimeObject *self, int32_t bytes);
RuntimeObject *MemoryBlockMidB2(RuntimeObject *self, int32_t offset);
RuntimeObject *MemoryBlockMidB3(RuntimeObject *self, int32_t offset, int32_t length);

/* ------------------------------------------------------------ operators */

/* The bytes of both in a new block; nil counts as empty. */
RuntimeObject *MemoryBlockAddOperator(RuntimeObject *self, RuntimeObject *other);
/* Unsigned bytes up to the shorter size, then the shorter is less. */
int32_t MemoryBlockCompareOperator(RuntimeObject *self, RuntimeObject *other);
/* The mSize bytes as a string of unknown encoding. */
KelpString MemoryBlockToStringOperator(RuntimeObject *self);
/* Makes self an owned block holding the bytes of the string. */
void MemoryBlockFromStringOperator(RuntimeObject *self, KelpString value);
/* Makes self an unsized view on the address. */
void ConvertPtrToMemoryBlock(RuntimeObject *self, void *address);

/* ------------------------------------------------------------- Blowfish */

/* Constructor(key): the key schedule from the bytes of the key, cycling.  An
 * empty key raises UnsupportedFormatException "Cannot initialize blowfish
 * with an empty string", and the object then refuses to cipher. */
void BlowfishInitialize(RuntimeObject *self, KelpString key);
/* One 64-bit block in two halves, in place. */
void BlowfishEncipher(RuntimeObject *self, int32_t *xl, int32_t *xr);
void BlowfishDecipher(RuntimeObject *self, int32_t *xl, int32_t *xr);
/* Every 8 bytes of the block in place, halves read as Long in the block's
 * order.  Nil or empty does nothing; a size not a multiple of 8 raises
 * UnsupportedFormatException. */
void BlowfishEncipherByBlock(RuntimeObject *self, RuntimeObject *block);
void BlowfishDecipherByBlock(RuntimeObject *self, RuntimeObject *block);

#ifdef __cplusplus
}
#endif

#endif
