// The string sort's fast path: a case-folded key per element, made once, so
// that a comparison is a word compare and at most one memcmp.  The order is
// the one the per-pair comparison gives through the same algorithm, element
// for element, because the key comparison answers every pair alike.
#include "arrays/array_family.h"

#include <new>

namespace kelp::arrays {
namespace {

struct SortKey {
    uint64_t prefix;       // the first 8 folded bytes, first most significant, 0-padded
    const uint8_t *folded; // all folded bytes
    int64_t length;
    stringStorage *s;
};

// The folded bytes compared as unsigned bytes, then the shorter first: what
// Element<stringStorage *>::Compare gives for two strings of one word.
int CompareKeys(const SortKey &a, const SortKey &b) {
    if (a.prefix != b.prefix)
        return a.prefix < b.prefix ? -1 : 1;
    // Equal prefixes: the first min(8, n) bytes agree.
    const int64_t n = a.length < b.length ? a.length : b.length;
    if (n > 8) {
        const int r = std::memcmp(a.folded + 8, b.folded + 8, static_cast<size_t>(n - 8));
        if (r != 0)
            return r < 0 ? -1 : 1;
    }
    return a.length < b.length ? -1 : (a.length > b.length ? 1 : 0);
}

// The word every non-empty string has, or false when they differ or when one
// of them needs more than a byte-wise fold.
bool OneFoldableWord(stringStorage *const *e, int64_t count, uint32_t &word, int64_t &bytes) {
    bool seen = false;
    bytes = 0;
    for (int64_t i = 0; i < count; ++i) {
        const stringStorage *s = e[i];
        if (s == nullptr || s->length == 0)
            continue;
        if (s->length < 0)
            return false; // a damaged record: the full comparison copes with it
        if (!seen) {
            word = s->encoding;
            seen = true;
            if (word == kEncodingUTF16)
                return false;
        } else if (s->encoding != word) {
            return false;
        }
        if (word == kEncodingUTF8)
            for (int32_t k = 1; k <= s->length; ++k)
                if (s->buffer[k] >= 0x80)
                    return false;
        bytes += s->length;
    }
    return true;
}

} // namespace

bool SortStringsByKey(stringStorage **e, int64_t count) {
    uint32_t word = kEncodingUTF8;
    int64_t bytes = 0;
    if (count < 2 || !OneFoldableWord(e, count, word, bytes))
        return false;
    auto *keys = new (std::nothrow) SortKey[static_cast<size_t>(count)];
    auto *folded = new (std::nothrow) uint8_t[static_cast<size_t>(bytes) + 1];
    if (keys == nullptr || folded == nullptr) {
        delete[] keys;
        delete[] folded;
        return false;
    }
    // UTF-8 text here is ASCII and folds as ASCII; a byte word folds through
    // the runtime's table, as the per-pair comparison does.
    const bool ascii = word == kEncodingUTF8;
    uint8_t *out = folded;
    for (int64_t i = 0; i < count; ++i) {
        stringStorage *s = e[i];
        const int64_t length = s ? s->length : 0;
        SortKey &key = keys[i];
        key.folded = out;
        key.length = length;
        key.s = s;
        key.prefix = 0;
        for (int64_t k = 0; k < length; ++k) {
            const uint8_t c = s->buffer[k + 1];
            out[k] = ascii ? AsciiUpper(c) : kUpperCaseTable[c];
            if (k < 8)
                key.prefix |= uint64_t(out[k]) << (56 - 8 * k);
        }
        out += length;
    }
    ThreeWaySort(keys, 0, count - 1, CompareKeys);
    for (int64_t i = 0; i < count; ++i)
        e[i] = keys[i].s;
    delete[] keys;
    delete[] folded;
    return true;
}

} // namespace kelp::arrays
