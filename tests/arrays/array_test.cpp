// Arrays through their tables of operations, called as compiled code calls
// them: creation, bounds, growth, insertion, removal, dimensions, sorting,
// searching, references of string elements and the cast wrapper.
#include "array_kit.h"
#include "arrays/array_family.h"
#include "base/fatal_report.h"
#include "kelp/random.h"
#include "strings/encodings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace arraytest;

namespace {

int gAssertions = 0;
std::string gLastCondition;
void CountAssertion(int, const char *, int, const char *condition, const char *) {
    ++gAssertions;
    gLastCondition = condition ? condition : "";
}

class Arrays : public ::testing::Test {
protected:
    void SetUp() override {
        gAssertions = 0;
        mPrevious = kelp::SetFatalReportHook(&CountAssertion);
    }
    void TearDown() override {
        kelp::SetFatalReportHook(mPrevious);
        EXPECT_EQ(RuntimePendingException(), nullptr);
    }
    kelp::FatalReportHook mPrevious = nullptr;
};

// The element kinds: size and whether they hold references.
struct KindRow {
    int32_t kind;
    int32_t size;
    bool counted;
};
const KindRow kKinds[] = {{kArrayInt32, 4, false},   {kArrayFloat32, 4, false},
                          {kArrayFloat64, 8, false}, {kArrayString, 8, true},
                          {kArrayObject, 8, true},   {kArrayUInt8, 1, false},
                          {kArrayInt8, 1, false},    {kArrayUInt16, 2, false},
                          {kArrayInt16, 2, false},   {kArrayUInt32, 4, false}};

TEST_F(Arrays, CreationSizesTheBufferByKindAndBoundsAndPicksTheTableByDimension) {
    for (const KindRow &row : kKinds) {
        SCOPED_TRACE(row.kind);
        RuntimeArray *one = CreateArray(1, row.kind, 5);
        ASSERT_NE(one, nullptr);
        EXPECT_EQ(one->referenceCount, 1u);
        EXPECT_EQ(one->dimensions, 1);
        EXPECT_EQ(one->growthStep, 16);
        EXPECT_EQ(one->upperBounds[0], 5);
        EXPECT_EQ(one->bufferLength, 6 * row.size);
        EXPECT_TRUE(std::all_of((char *)one->buffer, (char *)one->buffer + one->bufferLength,
                                [](char c) { return c == 0; }));
        EXPECT_EQ(one->operations[kArraySlotLockElement] != nullptr, row.counted);
        EXPECT_EQ(one->operations[kArraySlotSort] != nullptr, row.kind != kArrayObject);
        EXPECT_EQ(one->operations[14], nullptr);
        EXPECT_EQ(one->operations[15], nullptr);

        RuntimeArray *two = CreateArray(2, row.kind, 2, 3);
        ASSERT_NE(two, nullptr);
        EXPECT_EQ(two->bufferLength, 12 * row.size);
        EXPECT_NE(two->operations, one->operations);
        EXPECT_EQ(two->operations[kArraySlotInsert], nullptr);
        EXPECT_EQ(two->operations[kArraySlotSort], nullptr);

        RuntimeArray *three = CreateArray(3, row.kind, 1, 1, 1);
        ASSERT_NE(three, nullptr);
        EXPECT_EQ(three->bufferLength, 8 * row.size);
        EXPECT_NE(three->operations, two->operations);
        RuntimeUnlockArray(one);
        RuntimeUnlockArray(two);
        RuntimeUnlockArray(three);
    }
}

TEST_F(Arrays, BadCreationArgumentsGiveNullOrAnEmptyArrayNeverAHugeAllocation) {
    EXPECT_EQ(CreateArray(1, 10, 3), nullptr);
    EXPECT_EQ(gAssertions, 1);
    EXPECT_EQ(gLastCondition, "0");
    EXPECT_EQ(CreateArray(0, kArrayInt32, 3), nullptr);
    EXPECT_EQ(CreateArray(1, kArrayFloat64, INT32_MAX), nullptr);
    EXPECT_EQ(CreateArray(2, kArrayInt32, 100000, 100000), nullptr);

    RuntimeArray *empty = CreateArray(1, kArrayString, -1);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->buffer, nullptr);
    EXPECT_EQ(RuntimeUBound(empty), -1);
    RuntimeArray *negative = CreateArray(1, kArrayInt32, -50);
    ASSERT_NE(negative, nullptr);
    EXPECT_EQ(negative->buffer, nullptr);
    EXPECT_EQ(RuntimeUBound(negative), -1);
    RuntimeUnlockArray(empty);
    RuntimeUnlockArray(negative);
}

TEST_F(Arrays, GetAndSetTestEveryIndexAgainstItsOwnBound) {
    RuntimeArray *a = CreateArray(1, kArrayInt16, 3);
    auto set = Slot<kelp_array1_set_i16>(a, kArraySlotSet);
    auto get = Slot<kelp_array1_get_i16>(a, kArraySlotGet);
    set(a, -7, 0);
    set(a, 32767, 3);
    EXPECT_EQ(get(a, 0), -7);
    EXPECT_EQ(get(a, 3), 32767);
    int16_t got = 1;
    EXPECT_EQ(Raised([&] { got = get(a, 4); }), "OutOfBoundsException");
    EXPECT_EQ(got, 0);
    EXPECT_EQ(Raised([&] { got = get(a, -1); }), "OutOfBoundsException");
    EXPECT_EQ(Raised([&] { set(a, 5, 4); }), "OutOfBoundsException");
    RuntimeUnlockArray(a);

    // Two dimensions: first index fastest, each tested on its own.
    RuntimeArray *m = CreateArray(2, kArrayInt32, 2, 1);
    auto set2 = Slot<kelp_array2_set_i32>(m, kArraySlotSet);
    auto get2 = Slot<kelp_array2_get_i32>(m, kArraySlotGet);
    for (int j = 0; j <= 1; ++j)
        for (int i = 0; i <= 2; ++i)
            set2(m, 10 * i + j, i, j);
    const int32_t *raw = static_cast<int32_t *>(m->buffer);
    EXPECT_EQ(raw[1], 10); // (1, 0)
    EXPECT_EQ(raw[3], 1);  // (0, 1)
    EXPECT_EQ(get2(m, 2, 1), 21);
    EXPECT_EQ(Raised([&] { get2(m, 3, 0); }), "OutOfBoundsException");
    EXPECT_EQ(Raised([&] { get2(m, 0, 2); }), "OutOfBoundsException");
    RuntimeUnlockArray(m);

    // Three dimensions: the further indices follow as variadic arguments.
    RuntimeArray *c = CreateArray(3, kArrayFloat64, 1, 2, 3);
    auto setN = Slot<kelp_arrayN_set_f64>(c, kArraySlotSet);
    auto getN = Slot<kelp_arrayN_get_f64>(c, kArraySlotGet);
    setN(c, 2.5, 1, 2, 3);
    setN(c, -1.25, 0, 1, 2);
    EXPECT_EQ(getN(c, 1, 2, 3), 2.5);
    EXPECT_EQ(getN(c, 0, 1, 2), -1.25);
    EXPECT_EQ(static_cast<double *>(c->buffer)[1 + 2 * 2 + 3 * 6], 2.5);
    EXPECT_EQ(Raised([&] { getN(c, 0, 0, 4); }), "OutOfBoundsException");
    auto ubound = Slot<kelp_array_ubound>(c, kArraySlotUBoundOf);
    EXPECT_EQ(ubound(c, -1), 3);
    EXPECT_EQ(ubound(c, 3), 3);
    int32_t bound = 0;
    EXPECT_EQ(Raised([&] { bound = ubound(c, 0); }), "OutOfBoundsException");
    EXPECT_EQ(bound, -1);
    EXPECT_EQ(RuntimeUBound2Param(c, 2), 2);
    RuntimeUnlockArray(c);
}

TEST_F(Arrays, InsertGrowsByDoublingStepsAndRemoveShrinksExactly) {
    RuntimeArray *a = CreateArray(1, kArrayInt32, -1);
    auto insert = Slot<kelp_array1_insert_i32>(a, kArraySlotInsert);
    auto get = Slot<kelp_array1_get_i32>(a, kArraySlotGet);
    insert(a, 0, 1);
    EXPECT_EQ(RuntimeUBound(a), 0);
    EXPECT_EQ(a->bufferLength, 16 * 4);
    EXPECT_EQ(a->growthStep, 32);
    std::vector<int32_t> model = {1};
    for (int32_t v = 2; v <= 100; ++v) {
        const int32_t at = (v % 3 == 0) ? 0 : RuntimeUBound(a) + 1; // prepend or append
        insert(a, at, v);
        model.insert(model.begin() + at, v);
    }
    ASSERT_EQ(RuntimeUBound(a), 99);
    for (int32_t i = 0; i <= 99; ++i)
        ASSERT_EQ(get(a, i), model[(size_t)i]) << i;
    EXPECT_EQ(a->bufferLength, (16 + 32 + 64) * 4);
    EXPECT_EQ(Raised([&] { insert(a, 101, 0); }), "OutOfBoundsException");
    EXPECT_EQ(Raised([&] { insert(a, -1, 0); }), "OutOfBoundsException");
    EXPECT_EQ(RuntimeUBound(a), 99);

    auto remove = Slot<kelp_array1_remove>(a, kArraySlotRemove);
    remove(a, 50);
    model.erase(model.begin() + 50);
    EXPECT_EQ(a->bufferLength, 99 * 4);
    EXPECT_EQ(a->growthStep, 16);
    for (int32_t i = 0; i <= 98; ++i)
        ASSERT_EQ(get(a, i), model[(size_t)i]);
    EXPECT_EQ(Raised([&] { remove(a, 99); }), "OutOfBoundsException");
    RuntimeUnlockArray(a);

    RuntimeArray *one = CreateArray(1, kArrayUInt8, 0);
    Slot<kelp_array1_remove>(one, kArraySlotRemove)(one, 0);
    EXPECT_EQ(RuntimeUBound(one), -1);
    EXPECT_EQ(one->buffer, nullptr);
    RuntimeUnlockArray(one);
}

TEST_F(Arrays, RedimKeepsEveryElementAtItsCoordinates) {
    RuntimeArray *a = CreateArray(1, kArrayInt32, 4);
    auto set = Slot<kelp_array1_set_i32>(a, kArraySlotSet);
    auto get = Slot<kelp_array1_get_i32>(a, kArraySlotGet);
    for (int i = 0; i <= 4; ++i)
        set(a, i + 1, i);
    Slot<kelp_array1_redim>(a, kArraySlotRedim)(a, 7);
    EXPECT_EQ(RuntimeUBound(a), 7);
    EXPECT_EQ(get(a, 4), 5);
    EXPECT_EQ(get(a, 7), 0);
    Slot<kelp_array1_redim>(a, kArraySlotRedim)(a, 1);
    EXPECT_EQ(get(a, 1), 2);
    EXPECT_EQ(a->bufferLength, 8);
    EXPECT_EQ(Raised([&] { Slot<kelp_array1_redim>(a, kArraySlotRedim)(a, INT32_MAX); }),
              "OutOfMemoryException");
    EXPECT_EQ(RuntimeUBound(a), 1);
    RuntimeUnlockArray(a);

    RuntimeArray *m = CreateArray(2, kArrayInt32, 2, 2);
    auto set2 = Slot<kelp_array2_set_i32>(m, kArraySlotSet);
    auto get2 = Slot<kelp_array2_get_i32>(m, kArraySlotGet);
    for (int i = 0; i <= 2; ++i)
        for (int j = 0; j <= 2; ++j)
            set2(m, 10 * i + j + 1, i, j);
    Slot<kelp_array2_redim>(m, kArraySlotRedim)(m, 1, 4);
    EXPECT_EQ(RuntimeUBound2Param(m, 1), 1);
    EXPECT_EQ(RuntimeUBound2Param(m, 2), 4);
    for (int i = 0; i <= 1; ++i)
        for (int j = 0; j <= 4; ++j)
            EXPECT_EQ(get2(m, i, j), j <= 2 ? 10 * i + j + 1 : 0) << i << j;
    RuntimeUnlockArray(m);
}

TEST_F(Arrays, RedimOfThreeDimensionsReleasesTheStringsThatFallOutside) {
    RuntimeArray *c = CreateArray(3, kArrayString, 1, 1, 1);
    auto setN = Slot<kelp_arrayN_set_str>(c, kArraySlotSet);
    auto getN = Slot<kelp_arrayN_get_str>(c, kArraySlotGet);
    stringStorage *kept = NewString("kept"), *dropped = NewString("dropped");
    setN(c, kept, 0, 1, 0);
    setN(c, dropped, 1, 1, 1);
    EXPECT_EQ(dropped->referenceCount, 2);
    Slot<kelp_arrayN_redim>(c, kArraySlotRedim)(c, 0, 2, 0);
    EXPECT_EQ(dropped->referenceCount, 1);
    EXPECT_EQ(kept->referenceCount, 2);
    EXPECT_EQ(c->upperBounds[1], 2);
    EXPECT_EQ(c->bufferLength, 3 * 8);
    stringStorage *back = getN(c, 0, 1, 0);
    EXPECT_EQ(back, kept);
    RuntimeUnlockString(back);
    EXPECT_EQ(getN(c, 0, 2, 0), nullptr);
    EXPECT_EQ(Raised([&] { getN(c, 1, 1, 1); }), "OutOfBoundsException");
    EXPECT_EQ(Raised([&] { Slot<kelp_arrayN_redim>(c, kArraySlotRedim)(c, 5, -2, 0); }),
              "OutOfBoundsException");
    EXPECT_EQ(c->upperBounds[0], 0);
    RuntimeUnlockArray(c);
    EXPECT_EQ(kept->referenceCount, 1);
    RuntimeUnlockString(kept);
    RuntimeUnlockString(dropped);
}

TEST_F(Arrays, SortOrdersEveryKindByItsOwnComparison) {
    std::mt19937 gen(7);
    RuntimeArray *a = CreateArray(1, kArrayInt32, 999);
    RuntimeArray *u = CreateArray(1, kArrayUInt32, 999);
    std::vector<int32_t> model;
    std::vector<uint32_t> umodel;
    for (int i = 0; i <= 999; ++i) {
        int32_t v = (int32_t)(gen() % 200) - 100; // many repeats
        Slot<kelp_array1_set_i32>(a, kArraySlotSet)(a, v, i);
        Slot<kelp_array1_set_u32>(u, kArraySlotSet)(u, (uint32_t)v, i);
        model.push_back(v);
        umodel.push_back((uint32_t)v);
    }
    Slot<kelp_array1_sort>(a, kArraySlotSort)(a);
    Slot<kelp_array1_sort>(u, kArraySlotSort)(u);
    std::sort(model.begin(), model.end());
    std::sort(umodel.begin(), umodel.end());
    EXPECT_TRUE(std::equal(model.begin(), model.end(), static_cast<int32_t *>(a->buffer)));
    // Unsigned elements sort by unsigned value: the "negative" ones go last.
    EXPECT_TRUE(std::equal(umodel.begin(), umodel.end(), static_cast<uint32_t *>(u->buffer)));
    RuntimeUnlockArray(a);
    RuntimeUnlockArray(u);

    // Already sorted, reversed and constant runs must not run the stack out.
    RuntimeArray *big = CreateArray(1, kArrayInt8, 200000);
    for (int i = 0; i <= 200000; ++i)
        static_cast<int8_t *>(big->buffer)[i] = (int8_t)(i % 2 ? -1 : 1);
    Slot<kelp_array1_sort>(big, kArraySlotSort)(big);
    EXPECT_TRUE(std::is_sorted(static_cast<int8_t *>(big->buffer),
                               static_cast<int8_t *>(big->buffer) + 200001));
    RuntimeUnlockArray(big);

    RuntimeArray *f = CreateArray(1, kArrayFloat64, 3);
    const double values[] = {2.5, -1e300, 0.0, -0.5};
    for (int i = 0; i < 4; ++i)
        Slot<kelp_array1_set_f64>(f, kArraySlotSet)(f, values[i], i);
    Slot<kelp_array1_sort>(f, kArraySlotSort)(f);
    const double *sorted = static_cast<double *>(f->buffer);
    EXPECT_EQ(sorted[0], -1e300);
    EXPECT_EQ(sorted[1], -0.5);
    EXPECT_EQ(sorted[3], 2.5);
    RuntimeUnlockArray(f);

    // Strings compare without case, so "b" and "B" end up side by side.
    RuntimeArray *s = CreateArray(1, kArrayString, 4);
    const char *words[] = {"b", "a", "C", "B", "A"};
    for (int i = 0; i < 5; ++i) {
        stringStorage *w = NewString(words[i]);
        Slot<kelp_array1_set_str>(s, kArraySlotSet)(s, w, i);
        RuntimeUnlockString(w);
    }
    Slot<kelp_array1_sort>(s, kArraySlotSort)(s);
    auto *e = static_cast<stringStorage **>(s->buffer);
    std::string order;
    for (int i = 0; i < 5; ++i)
        order += (char)std::tolower(Text(e[i])[0]);
    EXPECT_EQ(order, "aabbc");
    RuntimeUnlockArray(s);
}

// Strings of mixed case, accents, shared prefixes and empty ones, in one of
// several words.
std::vector<kelp::string> MixedStrings(uint32_t seed, int count, bool oneWord) {
    const char *pieces[] = {"a", "A", "b", "_", "z", "\xC3\xA9", "\xC3\x89", "\xE2\x82\xAC",
                            "0", "["};
    std::mt19937 gen(seed);
    std::vector<kelp::string> out;
    for (int i = 0; i < count; ++i) {
        std::string text;
        const int n = (int)(gen() % 4);
        for (int k = 0; k < n; ++k)
            text += pieces[gen() % 10];
        kelp::string str = kelp::string::FromBytes(text.data(), (long)text.size(), kEncodingUTF8);
        const uint32_t pick = oneWord ? seed % 3 : gen() % 3;
        if (pick == 1)
            str = kelp::ConvertEncoding(str, kEncodingLatin1);
        if (pick == 2)
            str = kelp::ConvertEncoding(str, kEncodingUTF16);
        out.push_back(str);
    }
    return out;
}

TEST_F(Arrays, StringSortOrdersByTheLanguagesComparison) {
    // The sort compares strings of one word in place; it must agree with
    // RuntimeStringCompare on every pair, whatever their words.
    const std::vector<kelp::string> mixed = MixedStrings(3, 300, false);
    for (const kelp::string &a : mixed)
        for (const kelp::string &b : mixed) {
            const int ours =
                kelp::arrays::Element<stringStorage *>::Compare(a.Storage(), b.Storage());
            const int theirs = RuntimeStringCompare(a.Storage(), b.Storage());
            ASSERT_EQ((ours > 0) - (ours < 0), (theirs > 0) - (theirs < 0))
                << a.Encoding() << " " << b.Encoding();
        }
    // Within one word the comparison is a total order, and a sorted array
    // follows it.
    for (uint32_t seed = 0; seed < 3; ++seed) {
        const std::vector<kelp::string> words = MixedStrings(seed, 2000, true);
        RuntimeArray *s = CreateArray(1, kArrayString, 1999);
        auto **e = static_cast<stringStorage **>(s->buffer);
        for (int i = 0; i < 2000; ++i)
            e[i] = words[(size_t)i].ExtractStringStorage();
        Slot<kelp_array1_sort>(s, kArraySlotSort)(s);
        for (int i = 1; i < 2000; ++i)
            ASSERT_LE(RuntimeStringCompare(e[i - 1], e[i]), 0) << seed << " " << i;
        RuntimeUnlockArray(s);
    }
}

// Strings of one word whose case folds byte by byte are sorted by keys made
// once.  The order must be the very one the per-pair comparison gave through
// the same algorithm, equal strings of different case included.
TEST_F(Arrays, KeyedStringSortKeepsTheOrderOfThePerPairComparison) {
    std::mt19937 gen(20261125);
    for (uint32_t word : {kEncodingUTF8, kEncodingLatin1, kEncodingASCII}) {
        for (int round = 0; round < 4; ++round) {
            const int count = 50 + 700 * round;
            RuntimeArray *s = CreateArray(1, kArrayString, count - 1);
            auto **e = static_cast<stringStorage **>(s->buffer);
            for (int i = 0; i < count; ++i) {
                // Shared prefixes longer than a key's first word, both cases,
                // and for byte words high bytes and zeros too.
                std::string text = gen() % 3 ? "Prefix_of_nine" : "";
                text.resize(gen() % (text.size() + 1));
                const int n = (int)(gen() % 6);
                for (int k = 0; k < n; ++k) {
                    const char c = "aAbBzZ_0"[gen() % 8];
                    text +=
                        word == kEncodingUTF8 || gen() % 4 ? c : (char)("\xe9\xc9\0"[gen() % 3]);
                }
                e[i] =
                    text.empty() && gen() % 2
                        ? nullptr
                        : kelp::string::FromBytes(text.data(), (long)text.size(), word).Release();
            }
            std::vector<stringStorage *> reference(e, e + count);
            kelp::arrays::ThreeWaySort(reference.data(), 0, count - 1,
                                       kelp::arrays::Element<stringStorage *>::Compare);
            Slot<kelp_array1_sort>(s, kArraySlotSort)(s);
            ASSERT_EQ(std::vector<stringStorage *>(e, e + count), reference)
                << "word " << word << " round " << round;
            RuntimeUnlockArray(s);
        }
    }
}

TEST_F(Arrays, IndexOfScansFromTheStartAndChecksIt) {
    RuntimeArray *a = CreateArray(1, kArrayString, 3);
    auto set = Slot<kelp_array1_set_str>(a, kArraySlotSet);
    const char *words[] = {"one", "Two", "three", "two"};
    for (int i = 0; i < 4; ++i) {
        stringStorage *w = NewString(words[i]);
        set(a, w, i);
        RuntimeUnlockString(w);
    }
    auto indexOf = Slot<kelp_array1_indexof_str>(a, kArraySlotIndexOf);
    stringStorage *two = NewString("TWO");
    EXPECT_EQ(indexOf(a, two, -1), 1);
    EXPECT_EQ(indexOf(a, two, 2), 3);
    int32_t r = 0;
    EXPECT_EQ(Raised([&] { r = indexOf(a, two, 4); }), "OutOfBoundsException");
    EXPECT_EQ(r, -1);
    EXPECT_EQ(Raised([&] { r = indexOf(a, two, -2); }), "OutOfBoundsException");
    stringStorage *none = NewString("four");
    EXPECT_EQ(indexOf(a, none, 0), -1);
    RuntimeUnlockString(two);
    RuntimeUnlockString(none);
    RuntimeUnlockArray(a);
}

TEST_F(Arrays, StringElementsHoldTheirOwnReferences) {
    RuntimeArray *a = CreateArray(1, kArrayString, 1);
    auto set = Slot<kelp_array1_set_str>(a, kArraySlotSet);
    auto get = Slot<kelp_array1_get_str>(a, kArraySlotGet);
    stringStorage *w = NewString("kept");
    set(a, w, 0);
    EXPECT_EQ(w->referenceCount, 2);
    // Storing an element over itself keeps it alive.
    stringStorage *same = get(a, 0);
    EXPECT_EQ(w->referenceCount, 3);
    RuntimeUnlockString(same);
    set(a, w, 0);
    EXPECT_EQ(w->referenceCount, 2);
    set(a, w, 1);
    EXPECT_EQ(w->referenceCount, 3);
    Slot<kelp_array1_redim>(a, kArraySlotRedim)(a, 0);
    EXPECT_EQ(w->referenceCount, 2);
    Slot<kelp_array1_insert_str>(a, kArraySlotInsert)(a, 0, w);
    EXPECT_EQ(w->referenceCount, 3);
    Slot<kelp_array1_remove>(a, kArraySlotRemove)(a, 1);
    EXPECT_EQ(w->referenceCount, 2);
    RuntimeLockArray(a);
    RuntimeUnlockArray(a);
    EXPECT_EQ(w->referenceCount, 2);
    RuntimeLockUnlockArrays(a, a);
    EXPECT_EQ(a->referenceCount, 1u);
    RuntimeUnlockArray(a);
    EXPECT_EQ(w->referenceCount, 1);
    EXPECT_EQ(Text(w), "kept");
    RuntimeUnlockString(w);
}

TEST_F(Arrays, ShuffleKeepsTheElementsOfEveryDimension) {
    RuntimeRandomSeed(12345);
    RuntimeArray *m = CreateArray(2, kArrayInt32, 9, 9);
    for (int i = 0; i < 100; ++i)
        static_cast<int32_t *>(m->buffer)[i] = i;
    Slot<kelp_array1_shuffle>(m, kArraySlotShuffle)(m);
    std::vector<int32_t> got(static_cast<int32_t *>(m->buffer),
                             static_cast<int32_t *>(m->buffer) + 100);
    int moved = 0;
    for (int i = 0; i < 100; ++i)
        moved += got[(size_t)i] != i;
    EXPECT_GT(moved, 50);
    std::sort(got.begin(), got.end());
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(got[(size_t)i], i);
    RuntimeUnlockArray(m);
}

std::vector<RuntimeArray *> gFreed;
void NoteFreed(RuntimeArray *a) { gFreed.push_back(a); }

TEST_F(Arrays, TheFreedHookHearsOfEachArrayOnceWhenItsLastReferenceGoes) {
    gFreed.clear();
    auto previous = kelp::arrays::SetArrayFreedHook(&NoteFreed);
    RuntimeArray *a = CreateArray(1, kArrayObject, 0);
    RuntimeArray *view = RuntimeCreateArrayCastWrapper(
        a, RuntimeLookupClass(kelp::string("NilObjectException").Storage()));
    RuntimeUnlockArray(a);
    EXPECT_TRUE(gFreed.empty());
    RuntimeUnlockArray(view);
    ASSERT_EQ(gFreed.size(), 2u); // the view lets go of the array it held first
    EXPECT_EQ(gFreed[0], a);
    EXPECT_EQ(gFreed[1], view);
    kelp::arrays::SetArrayFreedHook(previous);
}

TEST_F(Arrays, NullArraysRaiseTheNamedExceptions) {
    int32_t r = 5;
    EXPECT_EQ(Raised([&] { r = RuntimeUBound(nullptr); }), "NilObjectException");
    EXPECT_EQ(r, 0);
    EXPECT_EQ(Raised([&] { r = RuntimeUBound2Param(nullptr, 1); }), "NilObjectException");
    EXPECT_EQ(r, -1);
    RuntimeLockArray(nullptr);
    RuntimeUnlockArray(nullptr);
    RuntimeLockUnlockArrays(nullptr, nullptr);
    EXPECT_EQ(RuntimeCreateArrayCastWrapper(nullptr, nullptr), nullptr);
}

TEST_F(Arrays, ACastWrapperAdmitsOnlyObjectsOfItsClassAndNil) {
    RuntimeClass *nilClass = RuntimeLookupClass(kelp::string("NilObjectException").Storage());
    RuntimeClass *boundsClass = RuntimeLookupClass(kelp::string("OutOfBoundsException").Storage());
    ASSERT_NE(nilClass, nullptr);
    ASSERT_NE(boundsClass, nullptr);
    RuntimeArray *inner = CreateArray(1, kArrayObject, 1);
    RuntimeArray *view = RuntimeCreateArrayCastWrapper(inner, nilClass);
    ASSERT_NE(view, inner);
    EXPECT_EQ(inner->referenceCount, 2u);
    EXPECT_EQ(RuntimeCreateArrayCastWrapper(view, boundsClass),
              view); // a view is not wrapped again
    RuntimeUnlockArray(view);
    EXPECT_EQ(RuntimeCreateArrayCastWrapper(inner, nullptr), inner);
    RuntimeUnlockArray(inner);
    RuntimeUnlockArray(inner); // from here on the view holds the inner array alone
    EXPECT_EQ(inner->referenceCount, 1u);

    RuntimeObject *right = RuntimeNewObject(nilClass);
    RuntimeObject *wrong = RuntimeNewObject(boundsClass);
    auto set = Slot<kelp_array1_set_obj>(view, kArraySlotSet);
    auto insert = Slot<kelp_array1_insert_obj>(view, kArraySlotInsert);
    EXPECT_EQ(Raised([&] { set(view, right, 0); }), "");
    EXPECT_EQ(Raised([&] { set(view, wrong, 1); }), "IllegalCastException");
    EXPECT_EQ(Raised([&] { set(view, nullptr, 1); }), "");
    EXPECT_EQ(Raised([&] { insert(view, 2, wrong); }), "IllegalCastException");
    EXPECT_EQ(RuntimeUBound(view), 1);
    EXPECT_EQ(Raised([&] { insert(view, 2, right); }), "");
    EXPECT_EQ(RuntimeUBound(view), 2);
    EXPECT_EQ(RuntimeUBound(inner), 2);
    EXPECT_EQ(reinterpret_cast<RuntimeCastArray *>(view)->buffer, inner->buffer);
    RuntimeObject *back = Slot<kelp_array1_get_obj>(view, kArraySlotGet)(view, 2);
    EXPECT_EQ(back, right);
    RuntimeUnlockObject(back);
    EXPECT_EQ(right->referenceCount, 3);
    RuntimeUnlockArray(view); // lets go of the inner array and its elements
    EXPECT_EQ(right->referenceCount, 1);
    RuntimeUnlockObject(right);
    RuntimeUnlockObject(wrong);
}

} // namespace

// Arrays in object fields and the direct reads plug-ins use.
TEST(ArrayFields, AccessorsKeepCountsAndDirectReadsCheckBounds) {
    struct Holder {
        RuntimeObject object;
        RuntimeArray *field;
    } holder = {};
    // The accessors check the offset against the object's class.
    holder.object.klass = RuntimeNewClass(nullptr, 0, 0, 0, 0, 0);
    holder.object.klass->instanceSize = sizeof(Holder);
    RuntimeArray *numbers = CreateArray(1, kArrayInt32, 2);
    arraytest::Slot<kelp_array1_set_i32>(numbers, kArraySlotSet)(numbers, 42, 1);
    arraySetter(&holder.object, offsetof(Holder, field), numbers);
    EXPECT_EQ(numbers->referenceCount, 2u);
    RuntimeArray *got = arrayGetter(&holder.object, offsetof(Holder, field));
    EXPECT_EQ(got, numbers);
    EXPECT_EQ(numbers->referenceCount, 3u);
    RuntimeUnlockArray(got);
    EXPECT_EQ(RuntimeDirectReadIntArray(numbers, 1), 42);
    EXPECT_EQ(arraytest::Raised([&] { RuntimeDirectReadIntArray(numbers, 3); }),
              "OutOfBoundsException");
    EXPECT_EQ(arraytest::Raised([] { RuntimeDirectReadIntArray(nullptr, 0); }),
              "NilObjectException");
    EXPECT_EQ(arraytest::Raised([] { arrayGetter(nullptr, 8); }), "NilObjectException");
    arraySetter(&holder.object, offsetof(Holder, field), nullptr);
    EXPECT_EQ(numbers->referenceCount, 1u);

    RuntimeArray *texts = CreateArray(1, kArrayString, 0);
    stringStorage *hello = arraytest::NewString("hello");
    arraytest::Slot<kelp_array1_set_str>(texts, kArraySlotSet)(texts, hello, 0);
    stringStorage *read = RuntimeDirectReadStringArray(texts, 0);
    EXPECT_EQ(arraytest::Text(read), "hello");
    EXPECT_EQ(read->referenceCount, 3); // ours, the array's, the reader's
    RuntimeUnlockString(read);
    RuntimeUnlockString(hello);
    RuntimeUnlockArray(texts);
    RuntimeUnlockArray(numbers);
    EXPECT_EQ(RuntimeDirectReadObjectArray(nullptr, 0), nullptr);
}
