// Reference counting of arrays, their bounds as seen from the language, and
// the cast wrapper that lets an object array stand for an array of a class.
#include "arrays/array_family.h"

#include <cstdarg>

using namespace kelp;
using namespace kelp::arrays;

namespace {
ArrayFreedHook gFreedHook = nullptr;
} // namespace

ArrayFreedHook kelp::arrays::SetArrayFreedHook(ArrayFreedHook hook) {
    ArrayFreedHook previous = gFreedHook;
    gFreedHook = hook;
    return previous;
}

extern "C" void RuntimeLockArray(RuntimeArray *array) {
    if (array != nullptr)
        ++array->referenceCount;
}

extern "C" void RuntimeUnlockArray(RuntimeArray *array) {
    if (array == nullptr || --array->referenceCount != 0)
        return;
    // Slot 13 lets go of the elements (or, for a wrapper, of the inner array).
    auto release =
        reinterpret_cast<kelp_array_release>(array->operations[kArraySlotReleaseElements]);
    if (release != nullptr)
        release(array);
    // The hook hears of it with the elements gone but the record still
    // readable, so that it may look at the address safely.
    if (gFreedHook != nullptr)
        gFreedHook(array);
    std::free(array);
}

extern "C" void RuntimeLockUnlockArrays(RuntimeArray *newValue, RuntimeArray *oldValue) {
    if (newValue == oldValue)
        return;
    RuntimeLockArray(newValue);
    RuntimeUnlockArray(oldValue);
}

namespace {
// A wrapper answers bound questions through its inner array.
RuntimeArray *Shape(RuntimeArray *a) {
    return IsCastWrapper(a) ? reinterpret_cast<RuntimeCastArray *>(a)->inner : a;
}
} // namespace

extern "C" int32_t RuntimeUBound(RuntimeArray *array) {
    if (array == nullptr) {
        RaiseNilObject();
        return 0;
    }
    return Shape(array)->upperBounds[0];
}

extern "C" int32_t RuntimeUBound2Param(RuntimeArray *array, int32_t dimension) {
    if (array == nullptr) {
        RaiseNilObject();
        return -1;
    }
    return UBoundOf(Shape(array), dimension);
}

// ------------------------------------------------------------ cast wrapper

namespace {

using Obj = RuntimeObject *;
using F = Family<Obj>;

RuntimeCastArray *W(RuntimeArray *a) { return reinterpret_cast<RuntimeCastArray *>(a); }

bool Admits(RuntimeCastArray *w, Obj value) {
    if (value == nullptr || RuntimeObjectIsa(value, w->klass))
        return true;
    RaiseIllegalCast();
    return false;
}

// The wrapper's buffer field mirrors the inner one for code that reads it.
void Sync(RuntimeCastArray *w) { w->buffer = w->inner->buffer; }

Obj Get1(RuntimeArray *a, int32_t i) { return F::Get1(W(a)->inner, i); }
void Set1(RuntimeArray *a, Obj v, int32_t i) {
    if (Admits(W(a), v))
        F::Set1(W(a)->inner, v, i);
}
Obj GetUnchecked1(RuntimeArray *a, int32_t i) { return F::GetUnchecked1(W(a)->inner, i); }
void SetUnchecked1(RuntimeArray *a, Obj v, int32_t i) {
    if (Admits(W(a), v))
        F::SetUnchecked1(W(a)->inner, v, i);
}
void Redim1(RuntimeArray *a, int32_t ub) {
    F::Redim1(W(a)->inner, ub);
    Sync(W(a));
}
void Insert(RuntimeArray *a, int32_t i, Obj v) {
    if (Admits(W(a), v))
        F::Insert(W(a)->inner, i, v);
    Sync(W(a));
}
void Remove(RuntimeArray *a, int32_t i) {
    F::Remove(W(a)->inner, i);
    Sync(W(a));
}
int32_t IndexOf(RuntimeArray *a, Obj v, int32_t start) { return F::IndexOf(W(a)->inner, v, start); }
void Shuffle(RuntimeArray *a) { F::Shuffle(W(a)->inner); }
int32_t UBound(RuntimeArray *a, int32_t d) { return UBoundOf(W(a)->inner, d); }
void Release(RuntimeArray *a) { RuntimeUnlockArray(W(a)->inner); }

Obj Get2(RuntimeArray *a, int32_t i, int32_t j) { return F::Get2(W(a)->inner, i, j); }
void Set2(RuntimeArray *a, Obj v, int32_t i, int32_t j) {
    if (Admits(W(a), v))
        F::Set2(W(a)->inner, v, i, j);
}
Obj GetUnchecked2(RuntimeArray *a, int32_t i, int32_t j) {
    return F::GetUnchecked2(W(a)->inner, i, j);
}
void SetUnchecked2(RuntimeArray *a, Obj v, int32_t i, int32_t j) {
    if (Admits(W(a), v))
        F::SetUnchecked2(W(a)->inner, v, i, j);
}
void Redim2(RuntimeArray *a, int32_t ub0, int32_t ub1) {
    const int32_t b[2] = {ub0, ub1};
    F::RedimAt(W(a)->inner, b);
    Sync(W(a));
}

constexpr int32_t kMaxDimensions = 64;
void Read(RuntimeArray *inner, int32_t first, va_list ap, int32_t *idx) {
    idx[0] = first;
    for (int32_t d = 1; d < inner->dimensions && d < kMaxDimensions; ++d)
        idx[d] = va_arg(ap, int32_t);
}
Obj GetN(RuntimeArray *a, int32_t i0, ...) {
    int32_t idx[kMaxDimensions];
    va_list ap;
    va_start(ap, i0);
    Read(W(a)->inner, i0, ap, idx);
    va_end(ap);
    return F::GetAt(W(a)->inner, idx);
}
void SetN(RuntimeArray *a, Obj v, int32_t i0, ...) {
    int32_t idx[kMaxDimensions];
    va_list ap;
    va_start(ap, i0);
    Read(W(a)->inner, i0, ap, idx);
    va_end(ap);
    if (Admits(W(a), v))
        F::SetAt(W(a)->inner, v, idx);
}
void RedimN(RuntimeArray *a, int32_t ub0, ...) {
    int32_t b[kMaxDimensions];
    va_list ap;
    va_start(ap, ub0);
    Read(W(a)->inner, ub0, ap, b);
    va_end(ap);
    F::RedimAt(W(a)->inner, b);
    Sync(W(a));
}

void *P(auto fn) { return reinterpret_cast<void *>(fn); }

void *const kWrapOne[KELP_ARRAY_SLOT_COUNT] = {
    P(&Get1),
    P(&Set1),
    P(&GetUnchecked1),
    P(&SetUnchecked1),
    P(&Redim1),
    P(&Insert),
    P(&Remove),
    nullptr,
    P(&IndexOf),
    P(&Shuffle),
    P(&UBound),
    P(&F::LockElement),
    P(&F::UnlockElement),
    P(&Release),
    nullptr,
    nullptr,
};
// Unchecked access of more dimensions goes through the checked path: the
// wrapper is rare enough there that the test costs nothing worth saving.
void *const kWrapTwo[KELP_ARRAY_SLOT_COUNT] = {
    P(&Get2),
    P(&Set2),
    P(&GetUnchecked2),
    P(&SetUnchecked2),
    P(&Redim2),
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    P(&Shuffle),
    P(&UBound),
    P(&F::LockElement),
    P(&F::UnlockElement),
    P(&Release),
    nullptr,
    nullptr,
};
void *const kWrapMany[KELP_ARRAY_SLOT_COUNT] = {
    P(&GetN),
    P(&SetN),
    P(&GetN),
    P(&SetN),
    P(&RedimN),
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    P(&Shuffle),
    P(&UBound),
    P(&F::LockElement),
    P(&F::UnlockElement),
    P(&Release),
    nullptr,
    nullptr,
};

} // namespace

bool kelp::arrays::IsCastWrapper(const RuntimeArray *a) {
    return a != nullptr &&
           (a->operations == kWrapOne || a->operations == kWrapTwo || a->operations == kWrapMany);
}

extern "C" RuntimeArray *RuntimeCreateArrayCastWrapper(RuntimeArray *array, RuntimeClass *klass) {
    RuntimeLockArray(array);
    if (array == nullptr || klass == nullptr || IsCastWrapper(array))
        return array;
    // Only object arrays hold values a class can check.
    if (KindOfTable(array->operations) != kArrayObject)
        return array;
    auto *w = static_cast<RuntimeCastArray *>(std::malloc(sizeof(RuntimeCastArray)));
    if (w == nullptr)
        return array;
    w->referenceCount = 1;
    w->operations = array->dimensions == 1   ? kWrapOne
                    : array->dimensions == 2 ? kWrapTwo
                                             : kWrapMany;
    w->buffer = array->buffer;
    w->inner = array; // the reference taken above
    w->klass = klass;
    return reinterpret_cast<RuntimeArray *>(w);
}
