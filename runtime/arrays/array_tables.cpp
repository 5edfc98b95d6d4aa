// The 30 tables of operations (ten kinds, by one, two or more dimensions),
// and CreateArray, which picks one of them for each new array.
#include "arrays/array_family.h"

#include <cstdarg>

namespace kelp::arrays {
namespace {

constexpr int32_t kMaxDimensions = 64;

template <typename T> struct Slots {
    using F = Family<T>;
    static constexpr bool kCounted = Element<T>::kCounted;
    static constexpr bool kSortable = !std::is_same_v<T, RuntimeObject *>;

    static void ReadIndices(RuntimeArray *a, int32_t first, va_list ap, int32_t *idx) {
        idx[0] = first;
        for (int32_t d = 1; d < a->dimensions; ++d)
            idx[d] = va_arg(ap, int32_t);
    }
    static T GetN(RuntimeArray *a, int32_t i0, ...) {
        int32_t idx[kMaxDimensions];
        va_list ap;
        va_start(ap, i0);
        ReadIndices(a, i0, ap, idx);
        va_end(ap);
        return F::GetAt(a, idx);
    }
    static void SetN(RuntimeArray *a, T value, int32_t i0, ...) {
        int32_t idx[kMaxDimensions];
        va_list ap;
        va_start(ap, i0);
        ReadIndices(a, i0, ap, idx);
        va_end(ap);
        F::SetAt(a, value, idx);
    }
    static T GetUncheckedN(RuntimeArray *a, int32_t i0, ...) {
        int32_t idx[kMaxDimensions];
        va_list ap;
        va_start(ap, i0);
        ReadIndices(a, i0, ap, idx);
        va_end(ap);
        return F::Fetch(a, LinearIndexUnchecked(a, idx));
    }
    static void SetUncheckedN(RuntimeArray *a, T value, int32_t i0, ...) {
        int32_t idx[kMaxDimensions];
        va_list ap;
        va_start(ap, i0);
        ReadIndices(a, i0, ap, idx);
        va_end(ap);
        F::Store(a, LinearIndexUnchecked(a, idx), value);
    }
    static void Redim2(RuntimeArray *a, int32_t ub0, int32_t ub1) {
        const int32_t b[2] = {ub0, ub1};
        F::RedimAt(a, b);
    }
    static void RedimN(RuntimeArray *a, int32_t ub0, ...) {
        int32_t b[kMaxDimensions];
        va_list ap;
        va_start(ap, ub0);
        ReadIndices(a, ub0, ap, b);
        va_end(ap);
        F::RedimAt(a, b);
    }

    static void *P(auto fn) { return reinterpret_cast<void *>(fn); }

    static inline void *const kOne[KELP_ARRAY_SLOT_COUNT] = {
        P(&F::Get1),
        P(&F::Set1),
        P(&F::GetUnchecked1),
        P(&F::SetUnchecked1),
        P(&F::Redim1),
        P(&F::Insert),
        P(&F::Remove),
        kSortable ? P(&F::Sort) : nullptr,
        P(&F::IndexOf),
        P(&F::Shuffle),
        P(&UBoundOf),
        kCounted ? P(&F::LockElement) : nullptr,
        kCounted ? P(&F::UnlockElement) : nullptr,
        P(&F::ReleaseElements),
        nullptr,
        nullptr,
    };
    static inline void *const kTwo[KELP_ARRAY_SLOT_COUNT] = {
        P(&F::Get2),
        P(&F::Set2),
        P(&F::GetUnchecked2),
        P(&F::SetUnchecked2),
        P(&Redim2),
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        P(&F::Shuffle),
        P(&UBoundOf),
        kCounted ? P(&F::LockElement) : nullptr,
        kCounted ? P(&F::UnlockElement) : nullptr,
        P(&F::ReleaseElements),
        nullptr,
        nullptr,
    };
    static inline void *const kMany[KELP_ARRAY_SLOT_COUNT] = {
        P(&GetN),
        P(&SetN),
        P(&GetUncheckedN),
        P(&SetUncheckedN),
        P(&RedimN),
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        P(&F::Shuffle),
        P(&UBoundOf),
        kCounted ? P(&F::LockElement) : nullptr,
        kCounted ? P(&F::UnlockElement) : nullptr,
        P(&F::ReleaseElements),
        nullptr,
        nullptr,
    };
    static void *const *Table(int32_t dimensions) {
        return dimensions == 1 ? kOne : dimensions == 2 ? kTwo : kMany;
    }
    static bool Owns(void *const *t) { return t == kOne || t == kTwo || t == kMany; }
};

template <typename F> auto ForKind(int32_t kind, F &&f) {
    switch (kind) {
    case kArrayInt32: return f(static_cast<int32_t *>(nullptr));
    case kArrayFloat32: return f(static_cast<float *>(nullptr));
    case kArrayFloat64: return f(static_cast<double *>(nullptr));
    case kArrayString: return f(static_cast<stringStorage **>(nullptr));
    case kArrayObject: return f(static_cast<RuntimeObject **>(nullptr));
    case kArrayUInt8: return f(static_cast<uint8_t *>(nullptr));
    case kArrayInt8: return f(static_cast<int8_t *>(nullptr));
    case kArrayUInt16: return f(static_cast<uint16_t *>(nullptr));
    case kArrayInt16: return f(static_cast<int16_t *>(nullptr));
    case kArrayUInt32: return f(static_cast<uint32_t *>(nullptr));
    default: return f(static_cast<void *>(nullptr));
    }
}

} // namespace

size_t KindSize(int32_t kind) {
    return ForKind(kind, []<typename P>(P *) -> size_t {
        if constexpr (std::is_void_v<P>)
            return 0;
        else
            return sizeof(std::remove_pointer_t<P *>);
    });
}

void *const *TableFor(int32_t kind, int32_t dimensions) {
    return ForKind(kind, [dimensions]<typename P>(P *) -> void *const * {
        if constexpr (std::is_void_v<P>)
            return nullptr;
        else
            return Slots<P>::Table(dimensions);
    });
}

int32_t KindOfTable(void *const *operations) {
    for (int32_t kind = 0; kind <= kArrayUInt32; ++kind) {
        const bool owns = ForKind(kind, [operations]<typename P>(P *) -> bool {
            if constexpr (std::is_void_v<P>)
                return false;
            else
                return Slots<P>::Owns(operations);
        });
        if (owns)
            return kind;
    }
    return -1;
}

} // namespace kelp::arrays

using namespace kelp::arrays;

extern "C" RuntimeArray *CreateArray(int32_t dimensions, int32_t kind, ...) {
    void *const *table = TableFor(kind, dimensions);
    if (table == nullptr) {
        FatalReport(kFatalFailedAssertion, kFoundation, __LINE__, "0", "");
        return nullptr;
    }
    if (dimensions < 1 || dimensions > kMaxDimensions) {
        FatalReport(kFatalFailedAssertion, kFoundation, __LINE__, "dimensions >= 1", "");
        return nullptr;
    }
    int32_t bounds[kMaxDimensions];
    int64_t count = 1;
    va_list ap;
    va_start(ap, kind);
    for (int32_t d = 0; d < dimensions; ++d) {
        int32_t ub = va_arg(ap, int32_t);
        // A bound below -1 describes no elements either; keep it readable.
        if (ub < -1)
            ub = -1;
        bounds[d] = ub;
        if (count > 0)
            count *= static_cast<int64_t>(ub) + 1;
        if (count > kMaxBufferBytes)
            count = kMaxBufferBytes + 1;
    }
    va_end(ap);
    int64_t length;
    if (!CheckedBytes(count, static_cast<int64_t>(KindSize(kind)), &length))
        return nullptr;
    auto *a = static_cast<RuntimeArray *>(
        std::malloc(sizeof(RuntimeArray) + sizeof(int32_t) * static_cast<size_t>(dimensions)));
    if (a == nullptr)
        return nullptr;
    a->referenceCount = 1;
    a->operations = table;
    a->buffer = nullptr;
    a->dimensions = dimensions;
    a->bufferLength = static_cast<int32_t>(length);
    a->growthStep = kInitialStep;
    for (int32_t d = 0; d < dimensions; ++d)
        a->upperBounds[d] = bounds[d];
    if (length >= 1) {
        a->buffer = std::calloc(1, static_cast<size_t>(length));
        if (a->buffer == nullptr) {
            std::free(a);
            return nullptr;
        }
    }
    return a;
}
