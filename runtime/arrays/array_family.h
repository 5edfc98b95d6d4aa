// The array families: one set of operations per element type, written once
// and instantiated for the ten element kinds.  Tables of operations, creation
// and the reference count live in array_tables.cpp and array_references.cpp.
#pragma once
#include "base/ascii.h"
#include "base/fatal_report.h"
#include "exceptions/raise.h"
#include "kelp/arrays.h"
#include "kelp/objects.h"
#include "kelp/random.h"
#include "kelp/startup.h"
#include "kelp/strings.h"
#include "strings/encodings.h"
#include "strings/kstring.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace kelp::arrays {

constexpr const char *kFoundation = "Common/RuntimeArrayFoundation";
constexpr int32_t kInitialStep = 16;
constexpr int32_t kStepLimit = 0x20000;
// The buffer length is a 32-bit field: anything larger can't be described.
constexpr int64_t kMaxBufferBytes = INT32_MAX;

// What differs between the kinds: references and comparison.
template <typename T> struct Element {
    static constexpr bool kCounted = false;
    static void Lock(T) {}
    static void Unlock(T) {}
    static int Compare(T a, T b) { return a < b ? -1 : (b < a ? 1 : 0); }
    static bool Equal(T a, T b) { return a == b; }
};

template <> struct Element<stringStorage *> {
    static constexpr bool kCounted = true;
    static void Lock(stringStorage *s) { RuntimeLockString(s); }
    static void Unlock(stringStorage *s) { RuntimeUnlockString(s); }
    // Sorting ignores case, as the language's comparison does.  Two strings
    // of one word need no conversion, so they are compared in place with the
    // same folding; strings of different words take the full path.
    static int Compare(stringStorage *a, stringStorage *b) {
        if (a == b)
            return 0;
        const long la = a ? a->length : 0, lb = b ? b->length : 0;
        if (la == 0 || lb == 0)
            return la == lb ? 0 : (la == 0 ? -1 : 1);
        if (a->encoding != b->encoding)
            return RuntimeStringCompare(a, b);
        const uint8_t *pa = a->buffer + 1, *pb = b->buffer + 1;
        const uint32_t word = a->encoding;
        if (word == kEncodingUTF16)
            return UCS2StringCompare(pa, la / 2, pb, lb / 2, true);
        const long n = la < lb ? la : lb;
        if (word == kEncodingUTF8) {
            for (long i = 0; i < n; ++i) {
                const uint8_t ca = pa[i], cb = pb[i];
                if ((ca | cb) >= 0x80)
                    return UTF8StringCompare(pa + i, la - i, pb + i, lb - i, true);
                const uint8_t ua = AsciiUpper(ca), ub = AsciiUpper(cb);
                if (ua != ub)
                    return ua < ub ? -1 : 1;
            }
        } else {
            for (long i = 0; i < n; ++i) {
                const uint8_t ua = kUpperCaseTable[pa[i]], ub = kUpperCaseTable[pb[i]];
                if (ua != ub)
                    return ua < ub ? -1 : 1;
            }
        }
        return la < lb ? -1 : (la > lb ? 1 : 0);
    }
    static bool Equal(stringStorage *a, stringStorage *b) {
        return string::Wrap(a).Compare(string::Wrap(b)) == 0;
    }
};

template <> struct Element<RuntimeObject *> {
    static constexpr bool kCounted = true;
    static void Lock(RuntimeObject *o) { RuntimeLockObject(o); }
    static void Unlock(RuntimeObject *o) { RuntimeUnlockObject(o); }
    static int Compare(RuntimeObject *a, RuntimeObject *b) { return a < b ? -1 : (b < a ? 1 : 0); }
    static bool Equal(RuntimeObject *a, RuntimeObject *b) { return a == b; }
};

// The sort of every kind, in place over e[left..right] by compare (negative,
// 0 or positive, as Element::Compare).  Each pass splits a range into below,
// equal to and above the middle element.  The smaller side recurses and the
// larger one loops, so that no ordering of the input can run the stack out.
// Not stable: elements that compare equal come out in an order of the
// algorithm's own, so one algorithm serves every comparison of a kind.
template <typename T, typename Compare>
void ThreeWaySort(T *e, int64_t left, int64_t right, const Compare &compare) {
    while (left < right) {
        RuntimeStackCheck();
        const T pivot = e[(left + right) / 2];
        int64_t i = left, j = right, k = left;
        while (i <= j) {
            if (compare(e[j], pivot) > 0) {
                --j;
            } else {
                std::swap(e[i], e[j]);
                if (compare(pivot, e[i]) > 0) {
                    std::swap(e[k], e[i]);
                    ++k;
                }
                ++i;
            }
        }
        if (k - 1 - left < right - (j + 1)) {
            ThreeWaySort(e, left, k - 1, compare);
            left = j + 1;
        } else {
            ThreeWaySort(e, j + 1, right, compare);
            right = k - 1;
        }
    }
}

// Sorts count strings as ThreeWaySort with Element<stringStorage *>::Compare
// would, to the same order, but with each string's case-folded key made once
// instead of folding both sides at every comparison.  False, with nothing
// changed, when the strings need the full comparison (several words, UTF-16,
// UTF-8 beyond ASCII) or the keys find no memory.
bool SortStringsByKey(stringStorage **e, int64_t count);

inline int32_t *Bounds(RuntimeArray *a) { return a->upperBounds; }

// Number of elements of all dimensions (0 when any dimension is empty).
inline int64_t ElementCount(const RuntimeArray *a) {
    int64_t n = 1;
    for (int32_t d = 0; d < a->dimensions; ++d)
        n *= static_cast<int64_t>(a->upperBounds[d]) + 1;
    return n < 0 ? 0 : n;
}

// Linear position of the coordinates, first index fastest; -1 when one of
// them lies outside its own bound.
inline int64_t LinearIndex(const RuntimeArray *a, const int32_t *idx) {
    int64_t pos = 0, scale = 1;
    for (int32_t d = 0; d < a->dimensions; ++d) {
        if (idx[d] < 0 || idx[d] > a->upperBounds[d])
            return -1;
        pos += idx[d] * scale;
        scale *= static_cast<int64_t>(a->upperBounds[d]) + 1;
    }
    return pos;
}

inline int64_t LinearIndexUnchecked(const RuntimeArray *a, const int32_t *idx) {
    int64_t pos = 0, scale = 1;
    for (int32_t d = 0; d < a->dimensions; ++d) {
        pos += idx[d] * scale;
        scale *= static_cast<int64_t>(a->upperBounds[d]) + 1;
    }
    return pos;
}

template <typename T> struct Family {
    using E = Element<T>;
    static T *Data(RuntimeArray *a) { return static_cast<T *>(a->buffer); }

    static T Fetch(RuntimeArray *a, int64_t pos) {
        T v = Data(a)[pos];
        E::Lock(v); // the caller owns what Get hands out
        return v;
    }
    static void Store(RuntimeArray *a, int64_t pos, T value) {
        // Lock first: storing an element over itself must keep it alive.
        E::Lock(value);
        T old = Data(a)[pos];
        Data(a)[pos] = value;
        E::Unlock(old);
    }

    // ---- one dimension
    static T Get1(RuntimeArray *a, int32_t i) {
        if (i < 0 || i > a->upperBounds[0]) {
            RaiseOutOfBounds();
            return T{};
        }
        return Fetch(a, i);
    }
    static void Set1(RuntimeArray *a, T value, int32_t i) {
        if (i < 0 || i > a->upperBounds[0]) {
            RaiseOutOfBounds();
            return;
        }
        Store(a, i, value);
    }
    static T GetUnchecked1(RuntimeArray *a, int32_t i) { return Fetch(a, i); }
    static void SetUnchecked1(RuntimeArray *a, T value, int32_t i) { Store(a, i, value); }

    // ---- two dimensions
    static T Get2(RuntimeArray *a, int32_t i, int32_t j) {
        const int32_t idx[2] = {i, j};
        return GetAt(a, idx);
    }
    static void Set2(RuntimeArray *a, T value, int32_t i, int32_t j) {
        const int32_t idx[2] = {i, j};
        SetAt(a, value, idx);
    }
    static T GetUnchecked2(RuntimeArray *a, int32_t i, int32_t j) {
        const int32_t idx[2] = {i, j};
        return Fetch(a, LinearIndexUnchecked(a, idx));
    }
    static void SetUnchecked2(RuntimeArray *a, T value, int32_t i, int32_t j) {
        const int32_t idx[2] = {i, j};
        Store(a, LinearIndexUnchecked(a, idx), value);
    }

    // ---- any number of dimensions, coordinates in an array
    static T GetAt(RuntimeArray *a, const int32_t *idx) {
        const int64_t pos = LinearIndex(a, idx);
        if (pos < 0) {
            RaiseOutOfBounds();
            return T{};
        }
        return Fetch(a, pos);
    }
    static void SetAt(RuntimeArray *a, T value, const int32_t *idx) {
        const int64_t pos = LinearIndex(a, idx);
        if (pos < 0) {
            RaiseOutOfBounds();
            return;
        }
        Store(a, pos, value);
    }

    static void Insert(RuntimeArray *a, int32_t index, T value);
    static void Remove(RuntimeArray *a, int32_t index);
    static void Redim1(RuntimeArray *a, int32_t newBound);
    static void RedimAt(RuntimeArray *a, const int32_t *newBounds);
    static void Sort(RuntimeArray *a);
    static int32_t IndexOf(RuntimeArray *a, T value, int32_t start);
    static void Shuffle(RuntimeArray *a);
    static void ReleaseElements(RuntimeArray *a);
    static void LockElement(T v) { E::Lock(v); }
    static void UnlockElement(T v) { E::Unlock(v); }
};

// Shared by every family.
int32_t UBoundOf(RuntimeArray *a, int32_t dimension);
bool CheckedBytes(int64_t elements, int64_t size, int64_t *bytes);
void RaiseOutOfMemory();
size_t KindSize(int32_t kind);

// The table for a kind and dimension count, null for an unknown kind.
void *const *TableFor(int32_t kind, int32_t dimensions);
// The kind behind a table, or -1 for a cast wrapper's or an unknown table.
int32_t KindOfTable(void *const *operations);
bool IsCastWrapper(const RuntimeArray *a);

// Called with each array record about to be freed, its elements released (a debugger keeps its list of
// live arrays by it); null for none.  Returns the hook it replaces.
using ArrayFreedHook = void (*)(RuntimeArray *freed);
ArrayFreedHook SetArrayFreedHook(ArrayFreedHook hook);

} // namespace kelp::arrays
