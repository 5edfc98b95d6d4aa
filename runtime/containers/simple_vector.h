#pragma once
// SimpleVector<T>: the runtime's growable array.
//
// It grows by a fixed step, or when the step is 0 by its own capacity (at
// least 16 at a time): 16, 32, 64, and doubling from there.  It never
// shrinks.  Elements are copied member by member on growth, so T must be
// copy-assignable and default-constructible.
#include "base/fatal_report.h"

#include <cstdint>

namespace kelp {

template <typename T> class SimpleVector {
public:
    explicit SimpleVector(uint32_t growthStep = 0) : mGrowthStep(growthStep) {}
    SimpleVector(const SimpleVector &) = delete;
    SimpleVector &operator=(const SimpleVector &) = delete;
    virtual ~SimpleVector() { delete[] mData; }

    void Append(const T &value) {
        while (mCapacity <= mCount) {
            uint32_t step = mGrowthStep ? mGrowthStep : mCapacity;
            if (step < 16)
                step = 16;
            uint32_t newCapacity = mCapacity + step;
            T *data = new T[newCapacity];
            uint32_t keep = newCapacity < mCount ? newCapacity : mCount;
            for (uint32_t i = 0; i < keep; ++i)
                data[i] = mData[i];
            delete[] mData;
            mData = data;
            mCapacity = newCapacity;
        }
        mData[mCount++] = value;
    }

    // An index at or beyond the count is a failed assertion; the answer is
    // then a scratch element, so that the caller reads a neutral value and
    // writes nowhere that matters.
    T &operator[](uint32_t index) {
        if (index >= mCount) {
            FatalReport(kFatalFailedAssertion, "Universal/SimpleVector", __LINE__, "0", "");
            static thread_local T scratch;
            scratch = T();
            return scratch;
        }
        return mData[index];
    }
    const T &operator[](uint32_t index) const {
        return const_cast<SimpleVector *>(this)->operator[](index);
    }

    // The last element, removed.  An empty vector is a failed assertion and
    // answers a default value.
    T Pop() {
        if (mCount < 1 || mCount > mCapacity) {
            FatalReport(kFatalFailedAssertion, "Universal/SimpleVector", __LINE__,
                        "fCount >= 1 && fCount <= fCapacity", "");
            return T();
        }
        return mData[--mCount];
    }

    uint32_t Count() const { return mCount; }
    uint32_t Capacity() const { return mCapacity; }
    uint32_t GrowthStep() const { return mGrowthStep; }
    T *Data() { return mData; }
    const T *Data() const { return mData; }

private:
    uint32_t mGrowthStep = 0;
    T *mData = nullptr;
    uint32_t mCount = 0;
    uint32_t mCapacity = 0;
};

} // namespace kelp
