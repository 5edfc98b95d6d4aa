/* The runtime's array exports, as compiled code calls them.
 *
 * Compiled code makes an array with CreateArray and then calls its table of
 * operations directly: it loads `operations` (offset 8 of the record) and
 * calls slot N at byte offset 8 * N of the table, with no runtime function in
 * between.  Every slot is an ordinary System V x86_64 C function.
 *
 * Element types per kind (T below):
 *   0 int32_t   1 float   2 double   3 stringStorage *   4 RuntimeObject *
 *   5 uint8_t   6 int8_t  7 uint16_t 8 int16_t           9 uint32_t
 * A float or double element travels in an SSE register (xmm0) both as value
 * and as result; every other element in a general register.  Indices,
 * bounds and dimensions are int32_t.
 *
 * Slots for one dimension (types kelp_array1_*):
 *    0 Get            T    (RuntimeArray *a, int32_t i)
 *    1 Set            void (RuntimeArray *a, T value, int32_t i)
 *    2 GetUnchecked   as Get, no bounds test
 *    3 SetUnchecked   as Set, no bounds test
 *    4 Redim          void (RuntimeArray *a, int32_t newBound)
 *    5 Insert         void (RuntimeArray *a, int32_t i, T value)
 *    6 Remove         void (RuntimeArray *a, int32_t i)
 *    7 Sort           void (RuntimeArray *a)        null for kind 4
 *    8 IndexOf        int32_t (RuntimeArray *a, T value, int32_t start)
 *    9 Shuffle        void (RuntimeArray *a)
 *   10 UBoundOf       int32_t (RuntimeArray *a, int32_t dimension)
 *   11 LockElement    void (T element)               kinds 3 and 4 only
 *   12 UnlockElement  void (T element)               kinds 3 and 4 only
 *   13 ReleaseElements void (RuntimeArray *a)
 *   14, 15           null
 *
 * Two dimensions: Get (a, i, j); Set (a, value, i, j); Redim (a, ub0, ub1);
 * slots 5 to 8 are null; the others as above.
 *
 * More than two dimensions: the slots taking indices or bounds are C variadic
 * functions: Get (a, i0, ...), Set (a, value, i0, ...), Redim (a, ub0, ...).
 * The further indices are int32_t arguments in the ordinary argument order:
 * they fill the remaining general registers (rdi, rsi, rdx, rcx, r8, r9, after
 * the array and, for an integer or reference element, the value) and then
 * the stack, one 8-byte slot each, the first dimension first.  As for any
 * variadic call, the caller sets al to the number of vector registers it
 * passes: 1 for Set of a float or double element, 0 otherwise.  Exactly
 * `dimensions` indices are read.
 *
 * CreateArray itself is variadic in the same way: CreateArray(dimensions,
 * kind, ub0, ub1, ...), one int32_t bound per dimension.
 */
#ifndef KELP_ARRAYS_H
#define KELP_ARRAYS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Slot positions in an array's table of operations. */
enum {
    kArraySlotGet = 0,
    kArraySlotSet = 1,
    kArraySlotGetUnchecked = 2,
    kArraySlotSetUnchecked = 3,
    kArraySlotRedim = 4,
    kArraySlotInsert = 5,
    kArraySlotRemove = 6,
    kArraySlotSort = 7,
    kArraySlotIndexOf = 8,
    kArraySlotShuffle = 9,
    kArraySlotUBoundOf = 10,
    kArraySlotLockElement = 11,
    kArraySlotUnlockElement = 12,
    kArraySlotReleaseElements = 13
};

/* Function-pointer types of the slots.  KELP_ARRAY_SLOT_TYPES(suffix, T)
 * declares the element-typed ones for each kind (suffixes i32, f32, f64, str,
 * obj, u8, i8, u16, i16, u32):
 *   kelp_array1_get_<s>, kelp_array1_set_<s>     slots 0/2 and 1/3, one dimension
 *   kelp_array1_insert_<s>, kelp_array1_indexof_<s>   slots 5 and 8
 *   kelp_array_lock_<s>, kelp_array_unlock_<s>   slots 11 and 12
 *   kelp_array2_get_<s>, kelp_array2_set_<s>     slots 0/2 and 1/3, two dimensions
 *   kelp_arrayN_get_<s>, kelp_arrayN_set_<s>     slots 0/2 and 1/3, more (variadic)
 * and these are shared by every kind:
 *   kelp_array1_redim, kelp_array2_redim, kelp_arrayN_redim   slot 4
 *   kelp_array1_remove (6), kelp_array1_sort (7), kelp_array1_shuffle (9,
 *   any dimension count), kelp_array_ubound (10), kelp_array_release (13). */
typedef void (*kelp_array1_redim)(RuntimeArray *a, int32_t newBound);
typedef void (*kelp_array1_remove)(RuntimeArray *a, int32_t index);
typedef void (*kelp_array1_sort)(RuntimeArray *a);
typedef void (*kelp_array1_shuffle)(RuntimeArray *a);
typedef int32_t (*kelp_array_ubound)(RuntimeArray *a, int32_t dimension);
typedef void (*kelp_array_release)(RuntimeArray *a);
typedef void (*kelp_array2_redim)(RuntimeArray *a, int32_t ub0, int32_t ub1);
typedef void (*kelp_arrayN_redim)(RuntimeArray *a, int32_t ub0, ...);

#define KELP_ARRAY_SLOT_TYPES(suffix, T)                                                           \
    typedef T (*kelp_array1_get_##suffix)(RuntimeArray * a, int32_t i);                            \
    typedef void (*kelp_array1_set_##suffix)(RuntimeArray * a, T value, int32_t i);                \
    typedef void (*kelp_array1_insert_##suffix)(RuntimeArray * a, int32_t i, T value);             \
    typedef int32_t (*kelp_array1_indexof_##suffix)(RuntimeArray * a, T value, int32_t start);     \
    typedef void (*kelp_array_lock_##suffix)(T element);                                           \
    typedef void (*kelp_array_unlock_##suffix)(T element);                                         \
    typedef T (*kelp_array2_get_##suffix)(RuntimeArray * a, int32_t i, int32_t j);                 \
    typedef void (*kelp_array2_set_##suffix)(RuntimeArray * a, T value, int32_t i, int32_t j);     \
    typedef T (*kelp_arrayN_get_##suffix)(RuntimeArray * a, int32_t i0, ...);                      \
    typedef void (*kelp_arrayN_set_##suffix)(RuntimeArray * a, T value, int32_t i0, ...);

KELP_ARRAY_SLOT_TYPES(i32, int32_t)
KELP_ARRAY_SLOT_TYPES(f32, float)
KELP_ARRAY_SLOT_TYPES(f64, double)
KELP_ARRAY_SLOT_TYPES(str, stringStorage *)
KELP_ARRAY_SLOT_TYPES(obj, RuntimeObject *)
KELP_ARRAY_SLOT_TYPES(u8, uint8_t)
KELP_ARRAY_SLOT_TYPES(i8, int8_t)
KELP_ARRAY_SLOT_TYPES(u16, uint16_t)
KELP_ARRAY_SLOT_TYPES(i16, int16_t)
KELP_ARRAY_SLOT_TYPES(u32, uint32_t)

/* A new array of `dimensions` dimensions and element `kind`, followed by one
 * int32_t upper bound per dimension (-1: empty).  Elements start cleared
 * (0, empty string, Nil).  Null when the storage can't be had. */
RuntimeArray *CreateArray(int32_t dimensions, int32_t kind, ...);

/* Reference counting; null is accepted.  A cast wrapper counts alike. */
void RuntimeLockArray(RuntimeArray *array);
void RuntimeUnlockArray(RuntimeArray *array);
/* Locks `newValue`, unlocks `oldValue`; nothing when both are the same. */
void RuntimeLockUnlockArrays(RuntimeArray *newValue, RuntimeArray *oldValue);

/* Generic accessors of an array field at byte `offset` of an object: the
 * getter returns it with a new reference; the setter stores a counted
 * reference.  A null object raises NilObjectException, an offset outside it
 * OutOfBoundsException. */
RuntimeArray *arrayGetter(RuntimeObject *object, int32_t offset);
void arraySetter(RuntimeObject *object, int32_t offset, RuntimeArray *value);

/* Upper bound of the first dimension; a null array raises NilObjectException
 * and gives 0. */
int32_t RuntimeUBound(RuntimeArray *array);
/* Upper bound of `dimension`, counted from 1; a null array raises
 * NilObjectException and gives -1. */
int32_t RuntimeUBound2Param(RuntimeArray *array, int32_t dimension);

/* Locks `array` and returns a view that checks stored objects against
 * `klass` (IllegalCastException otherwise).  With a null class, or when the
 * array is a view already, the array itself is returned. */
RuntimeArray *RuntimeCreateArrayCastWrapper(RuntimeArray *array, RuntimeClass *klass);

/* An array in an object's field at a byte offset: the getter returns it with
 * a new reference; the setter locks the new array and unlocks the old.  A
 * null object raises NilObjectException. */
RuntimeArray *arrayGetter(RuntimeObject *object, int32_t offset);
void arraySetter(RuntimeObject *object, int32_t offset, RuntimeArray *value);

/* Element `index` of a one-dimensional array of Integer, String or objects,
 * through its Get slot: OutOfBoundsException outside it, NilObjectException
 * for null.  Strings and objects come with a reference for the caller. */
int32_t RuntimeDirectReadIntArray(RuntimeArray *array, int32_t index);
stringStorage *RuntimeDirectReadStringArray(RuntimeArray *array, int32_t index);
RuntimeObject *RuntimeDirectReadObjectArray(RuntimeArray *array, int32_t index);

#ifdef __cplusplus
}
#endif

#endif
