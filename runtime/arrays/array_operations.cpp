// The operations that change an array's shape or order: Insert, Remove,
// Redim, Sort, IndexOf, Shuffle, and the release of all elements.
#include "arrays/array_family.h"

#include <type_traits>
#include <vector>

namespace kelp::arrays {

bool CheckedBytes(int64_t elements, int64_t size, int64_t *bytes) {
    if (elements < 0)
        elements = 0;
    if (elements > kMaxBufferBytes / size)
        return false;
    *bytes = elements * size;
    return true;
}

void RaiseOutOfMemory() {
    RaiseWithMessage("OutOfMemoryException", "The array can't grow that large.");
}

int32_t UBoundOf(RuntimeArray *a, int32_t dimension) {
    if (dimension == -1)
        return a->dimensions;
    if (dimension < 1 || dimension > a->dimensions) {
        RaiseOutOfBounds();
        return -1;
    }
    return a->upperBounds[dimension - 1];
}

template <typename T> void Family<T>::Insert(RuntimeArray *a, int32_t index, T value) {
    if (a == nullptr) {
        RaiseNilObject();
        return;
    }
    if (a->dimensions != 1) {
        FatalReport(kFatalFailedAssertion, kFoundation, __LINE__, "1 == array->dimensions", "");
        return;
    }
    const int32_t ub = a->upperBounds[0];
    if (index < 0 || index > ub + 1) {
        RaiseOutOfBounds();
        return;
    }
    constexpr int64_t size = sizeof(T);
    int64_t needed;
    if (!CheckedBytes(static_cast<int64_t>(ub) + 2, size, &needed)) {
        RaiseOutOfMemory();
        return;
    }
    if (needed > a->bufferLength) {
        int64_t length =
            static_cast<int64_t>(a->bufferLength) + static_cast<int64_t>(a->growthStep) * size;
        if (length > kMaxBufferBytes)
            length = needed; // the last steps may not fit in full
        if (length < needed) {
            FatalReport(kFatalFailedAssertion, kFoundation, __LINE__,
                        "array->bufferLength >= minimumBufferSize", "");
            length = needed;
        }
        T *fresh = static_cast<T *>(std::malloc(static_cast<size_t>(length)));
        if (fresh == nullptr) {
            // The bound must not change when the storage can't be had.
            RaiseOutOfMemory();
            return;
        }
        if (a->growthStep < kStepLimit)
            a->growthStep *= 2;
        T *old = Data(a);
        if (old != nullptr) {
            std::memcpy(fresh, old, static_cast<size_t>(index) * size);
            std::memcpy(fresh + index + 1, old + index, static_cast<size_t>(ub + 1 - index) * size);
        }
        std::free(old);
        a->buffer = fresh;
        a->bufferLength = static_cast<int32_t>(length);
    } else {
        T *data = Data(a);
        std::memmove(data + index + 1, data + index, static_cast<size_t>(ub + 1 - index) * size);
    }
    a->upperBounds[0] = ub + 1;
    E::Lock(value);
    Data(a)[index] = value;
}

template <typename T> void Family<T>::Remove(RuntimeArray *a, int32_t index) {
    if (a == nullptr) {
        RaiseOutOfBounds();
        return;
    }
    if (a->dimensions != 1) {
        FatalReport(kFatalFailedAssertion, kFoundation, __LINE__, "1 == array->dimensions", "");
        return;
    }
    const int32_t ub = a->upperBounds[0];
    if (index < 0 || index > ub) {
        RaiseOutOfBounds();
        return;
    }
    constexpr int64_t size = sizeof(T);
    const int64_t length = static_cast<int64_t>(ub) * size;
    T *fresh = nullptr;
    if (length > 0) {
        fresh = static_cast<T *>(std::malloc(static_cast<size_t>(length)));
        if (fresh == nullptr) {
            RaiseOutOfMemory();
            return;
        }
    }
    T *old = Data(a);
    T gone = old[index];
    if (fresh != nullptr) {
        std::memcpy(fresh, old, static_cast<size_t>(index) * size);
        std::memcpy(fresh + index, old + index + 1, static_cast<size_t>(ub - index) * size);
    }
    std::free(old);
    a->buffer = fresh;
    a->bufferLength = static_cast<int32_t>(length);
    a->growthStep = kInitialStep;
    a->upperBounds[0] = ub - 1;
    // Released last: an element's finaliser may look at the array.
    E::Unlock(gone);
}

template <typename T> void Family<T>::Redim1(RuntimeArray *a, int32_t newBound) {
    if (a == nullptr || a->dimensions != 1) {
        FatalReport(kFatalFailedAssertion, kFoundation, __LINE__, "1 == array->dimensions", "");
        return;
    }
    RedimAt(a, &newBound);
}

template <typename T> void Family<T>::RedimAt(RuntimeArray *a, const int32_t *newBounds) {
    const int32_t dims = a->dimensions;
    int64_t count = 1;
    bool same = true;
    for (int32_t d = 0; d < dims; ++d) {
        if (newBounds[d] < -1) {
            RaiseOutOfBounds();
            return;
        }
        same = same && newBounds[d] == a->upperBounds[d];
        count *= static_cast<int64_t>(newBounds[d]) + 1;
        if (count > kMaxBufferBytes) {
            RaiseOutOfMemory();
            return;
        }
    }
    if (same)
        return;
    constexpr int64_t size = sizeof(T);
    int64_t length;
    if (!CheckedBytes(count, size, &length)) {
        RaiseOutOfMemory();
        return;
    }
    T *fresh = nullptr;
    if (length > 0) {
        fresh = static_cast<T *>(std::calloc(static_cast<size_t>(count), size));
        if (fresh == nullptr) {
            RaiseOutOfMemory();
            return;
        }
    }
    T *old = Data(a);
    std::vector<T> dropped;
    if (dims == 1) {
        const int64_t keep = std::min<int64_t>(static_cast<int64_t>(a->upperBounds[0]) + 1, count);
        if (keep > 0)
            std::memcpy(fresh, old, static_cast<size_t>(keep * size));
        for (int64_t i = keep; i <= a->upperBounds[0]; ++i)
            dropped.push_back(old[i]);
    } else if (old != nullptr) {
        // Every element keeps its coordinates: walk the old ones with a
        // counter of one digit per dimension, first digit fastest.
        std::vector<int32_t> at(static_cast<size_t>(dims), 0);
        const int64_t oldCount = ElementCount(a);
        for (int64_t pos = 0; pos < oldCount; ++pos) {
            int64_t target = 0, scale = 1;
            bool fits = true;
            for (int32_t d = 0; d < dims; ++d) {
                if (at[static_cast<size_t>(d)] > newBounds[d])
                    fits = false;
                target += at[static_cast<size_t>(d)] * scale;
                scale *= static_cast<int64_t>(newBounds[d]) + 1;
            }
            if (fits)
                fresh[target] = old[pos];
            else
                dropped.push_back(old[pos]);
            for (int32_t d = 0; d < dims; ++d) {
                if (++at[static_cast<size_t>(d)] <= a->upperBounds[d])
                    break;
                at[static_cast<size_t>(d)] = 0;
            }
        }
    }
    std::free(old);
    a->buffer = fresh;
    a->bufferLength = static_cast<int32_t>(length);
    a->growthStep = kInitialStep;
    for (int32_t d = 0; d < dims; ++d)
        a->upperBounds[d] = newBounds[d];
    for (T v : dropped)
        E::Unlock(v);
}

template <typename T> void Family<T>::Sort(RuntimeArray *a) {
    if (a == nullptr || a->buffer == nullptr)
        return;
    if (a->dimensions != 1) {
        FatalReport(kFatalFailedAssertion, kFoundation, __LINE__, "1 == array->dimensions", "");
        return;
    }
    if (a->upperBounds[0] < 0)
        return;
    T *e = Data(a);
    const int64_t last = a->upperBounds[0];
    if constexpr (std::is_same_v<T, stringStorage *>) {
        if (SortStringsByKey(e, last + 1))
            return;
    }
    ThreeWaySort(e, 0, last, [](T x, T y) { return E::Compare(x, y); });
}

template <typename T> int32_t Family<T>::IndexOf(RuntimeArray *a, T value, int32_t start) {
    if (a == nullptr || a->buffer == nullptr || a->upperBounds[0] < 0)
        return -1;
    const int32_t ub = a->upperBounds[0];
    if (start < -1 || start > ub) {
        RaiseOutOfBounds();
        return -1;
    }
    if (start == -1)
        start = 0;
    const T *e = Data(a);
    for (int32_t i = start; i <= ub; ++i)
        if (E::Equal(e[i], value))
            return i;
    return -1;
}

template <typename T> void Family<T>::Shuffle(RuntimeArray *a) {
    if (a == nullptr || a->buffer == nullptr || a->upperBounds[0] <= 0)
        return;
    T *e = Data(a);
    const int64_t count = ElementCount(a);
    for (int64_t n = count - 1; n >= 1; --n) {
        int64_t j = static_cast<int64_t>(rnd() * static_cast<double>(n + 1));
        if (j > n)
            j = n; // a generator that could return 1 must not step outside
        std::swap(e[n], e[j]);
    }
}

template <typename T> void Family<T>::ReleaseElements(RuntimeArray *a) {
    if (a == nullptr)
        return;
    if constexpr (E::kCounted) {
        T *e = Data(a);
        if (e != nullptr) {
            const int64_t count = ElementCount(a);
            for (int64_t i = 0; i < count; ++i)
                E::Unlock(e[i]);
        }
    }
    std::free(a->buffer);
    a->buffer = nullptr;
    a->bufferLength = 0;
}

template struct Family<int32_t>;
template struct Family<float>;
template struct Family<double>;
template struct Family<stringStorage *>;
template struct Family<RuntimeObject *>;
template struct Family<uint8_t>;
template struct Family<int8_t>;
template struct Family<uint16_t>;
template struct Family<int16_t>;
template struct Family<uint32_t>;

} // namespace kelp::arrays
