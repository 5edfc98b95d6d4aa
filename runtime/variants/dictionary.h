#pragma once
// Dictionary: the language's hash map from variant to variant.
//
// Entries sit in a vector in insertion order (a removal moves the last
// entry into the hole), and each bin lists the entries whose key's
// VariantHash modulo the bin count is that bin.  Keys are equal by
// VariantEqual, but a search compares the stored hash first, so 1 and "1"
// are two keys while "a" and "A" are one.  The workload is look-ups and
// insertions of numbers and short strings; the table grows through a list of
// primes when it is three quarters full, unless the program fixed BinCount.
//
// A bin is a small array of slots rather than a chain of entries: the hash
// of a 32-bit value has only 65,536 values (its two halves XORed), so a
// million integer keys crowd about sixteen to a bin whatever the bin count.
// A slot keeps the hash and a copy of such a key's value, so a search reads
// one short array and touches no key object until it has its match.
#include "kelp/records.h"

#include "containers/simple_vector.h"

#include <cstdint>

namespace kelp {

struct DictionaryEntry {
    RuntimeObject *key;   // holds a reference; may be nil
    RuntimeObject *value; // holds a reference; may be nil
    uint32_t hash;        // VariantHash of the key
};

struct DictionarySlot {
    uint32_t hash;    // VariantHash of the entry's key
    uint32_t word;    // the value of an Integer, UInteger or Color key
    int32_t index;    // the entry's position in the vector
    uint8_t wordKind; // that key's Box kind, or 0 for any other key
};

struct DictionaryBin {
    uint32_t count;    // slots in use
    uint32_t capacity; // 1: the slot is `one`; above 1: `many` holds them
    union {
        DictionarySlot one;
        DictionarySlot *many;
    };
};

struct DictionaryObject {
    RuntimeObject object;
    uint8_t fixedBins; // BinCount was set to a positive number
    uint32_t growStep; // a quarter of the bins, at most 1024
    union {
        SimpleVector<DictionaryEntry> entries; // made by the initializer
    };
    uint32_t binCount;   // 61 for a new dictionary
    DictionaryBin *bins; // binCount of them
    intptr_t busy;       // set while an operation runs
};

struct ObjectDefinition;
ObjectDefinition *DictionaryDefinition();

} // namespace kelp
