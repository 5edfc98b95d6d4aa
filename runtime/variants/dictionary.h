#pragma once
// Dictionary: the language's hash map from variant to variant.
//
// Entries sit in a vector in insertion order (a removal moves the last
// entry into the hole) and in chains hanging from a table of bins; an
// entry's bin is its key's VariantHash modulo the bin count.  Keys are equal
// by VariantEqual, but a search compares the stored hash first, so 1 and
// "1" are two keys while "a" and "A" are one.  The workload is look-ups and
// insertions of numbers and short strings; the table grows through a list of
// primes when it is three quarters full, unless the program fixed BinCount.
#include "kelp/records.h"

#include "containers/simple_vector.h"

#include <cstdint>

namespace kelp {

struct DictionaryEntry {
    RuntimeObject *key;    // holds a reference; may be nil
    RuntimeObject *value;  // holds a reference; may be nil
    uint32_t hash;         // VariantHash of the key
    int32_t index;         // position in the entry vector
    DictionaryEntry *next; // chain of the bin
};

struct DictionaryObject {
    RuntimeObject object;
    uint8_t fixedBins; // BinCount was set to a positive number
    uint32_t growStep; // a quarter of the bins, at most 1024
    union {
        SimpleVector<DictionaryEntry *> entries; // made by the initializer
    };
    uint32_t binCount;      // 61 for a new dictionary
    DictionaryEntry **bins; // heads of the chains, binCount of them
    intptr_t busy;          // set while an operation runs
};

struct ObjectDefinition;
ObjectDefinition *DictionaryDefinition();

} // namespace kelp
