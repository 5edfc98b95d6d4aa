// Dictionary: construction, look-up, insertion, removal and the bin table.
#include "variants/dictionary.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/strings.h"
#include "kelp/variants.h"

#include "base/fatal_report.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "variants/variant_classes.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace kelp {
namespace {

constexpr const char *kFile = "Common/Dictionary";
constexpr uint32_t kFirstBins = 61;
// Past 65,521 the primes are the largest below each power of two: capped at
// 65,521 bins, a million string keys would walk bins of fifteen.  The last
// is 2^31 - 1, as BinCount is an Integer; a table that large fails to
// allocate long before, which leaves the old table in place.
constexpr uint32_t kPrimes[] = {
    61,       127,      251,      509,       1021,      2039,      4093,       8191,      16381,
    32749,    65521,    131071,   262139,    524287,    1048573,   2097143,    4194301,   8388593,
    16777213, 33554393, 67108859, 134217689, 268435399, 536870909, 1073741789, 2147483647};

DictionaryObject *Of(RuntimeObject *object) {
    if (!object) {
        RaiseNilObject();
        return nullptr;
    }
    return reinterpret_cast<DictionaryObject *>(object);
}

// Marks the dictionary busy for one operation.  An operation entered while
// another runs (a key's own hash method reaching back into the dictionary)
// is a failed assertion and does nothing.
class Busy {
public:
    explicit Busy(DictionaryObject *d) : mDictionary(d) {
        if (!d || !d->bins) { // nil, or its table could not be made
            mDictionary = nullptr;
            return;
        }
        if (d->busy) {
            KELP_ASSERT(false, kFile, "!fBusy", "the dictionary is in use by another operation");
            mDictionary = nullptr;
            return;
        }
        d->busy = 1;
    }
    ~Busy() {
        if (mDictionary)
            mDictionary->busy = 0;
    }
    Busy(const Busy &) = delete;
    Busy &operator=(const Busy &) = delete;
    explicit operator bool() const { return mDictionary != nullptr; }

private:
    DictionaryObject *mDictionary;
};

uint32_t GrowStep(uint32_t bins) { return bins / 4 > 1024 ? 1024 : bins / 4; }

// VariantEqual, answered at once for two boxes of one 32-bit kind: the
// specified hash of a 32-bit value depends only on its two halves XORed,
// so a large dictionary of integers holds many keys of one hash in a chain.
bool KeysEqual(RuntimeObject *a, RuntimeObject *b) {
    if (a == b)
        return true;
    if (a && b && a->klass == b->klass) {
        switch (BoxOf(a)) {
        case Box::kInteger:
        case Box::kUInteger:
        case Box::kColor:
            return reinterpret_cast<RuntimeVariantWord *>(a)->value ==
                   reinterpret_cast<RuntimeVariantWord *>(b)->value;
        case Box::kString:
            return RuntimeStringCompare(reinterpret_cast<RuntimeVariantString *>(a)->value,
                                        reinterpret_cast<RuntimeVariantString *>(b)->value) == 0;
        default: break;
        }
    }
    return VariantEqual(a, b);
}

// The bin of a hash.  A 32-bit value hashes to its two halves XORed, set
// in both halves of the hash; XORing the low half into the high one again
// leaves just that value, so neighbouring numbers sit in neighbouring bins
// as they would under a plain identity hash.  The fold is one-to-one, so
// string hashes spread as well as before.
uint32_t BinIndex(uint32_t hash, uint32_t count) { return (hash ^ (hash << 16)) % count; }

DictionaryBin &BinOf(DictionaryObject *d, uint32_t hash) {
    return d->bins[BinIndex(hash, d->binCount)];
}

// A key's value and kind when it is an Integer, UInteger or Color box.
DictionarySlot WordSlot(RuntimeObject *key, uint32_t hash, int32_t index) {
    const Box box = BoxOf(key);
    if (box != Box::kInteger && box != Box::kUInteger && box != Box::kColor)
        return {hash, 0, index, 0};
    return {hash, reinterpret_cast<RuntimeVariantWord *>(key)->value, index,
            static_cast<uint8_t>(box)};
}

DictionarySlot *SlotsOf(DictionaryBin &bin) { return bin.capacity > 1 ? bin.many : &bin.one; }

// Adds a slot to the bin; false when its array could not grow.
bool AddSlot(DictionaryBin &bin, const DictionarySlot &slot) {
    if (bin.capacity == 0) {
        bin.one = slot;
        bin.capacity = bin.count = 1;
        return true;
    }
    if (bin.count == bin.capacity) {
        const uint32_t capacity = bin.capacity * 2;
        auto *many = static_cast<DictionarySlot *>(std::malloc(capacity * sizeof(DictionarySlot)));
        if (!many)
            return false;
        const DictionarySlot *old = SlotsOf(bin);
        std::copy(old, old + bin.count, many);
        if (bin.capacity > 1)
            std::free(bin.many);
        bin.many = many;
        bin.capacity = capacity;
    }
    SlotsOf(bin)[bin.count++] = slot;
    return true;
}

void FreeBins(DictionaryBin *bins, uint32_t count) {
    if (!bins)
        return;
    for (uint32_t i = 0; i < count; ++i)
        if (bins[i].capacity > 1)
            std::free(bins[i].many);
    std::free(bins);
}

// The slot of the key in its bin, or null.  Two boxes of one word kind are
// equal exactly when their words are, which the slot answers by itself.
DictionarySlot *FindSlot(DictionaryObject *d, RuntimeObject *key, uint32_t hash) {
    DictionaryBin &bin = BinOf(d, hash);
    DictionarySlot *slots = SlotsOf(bin);
    const DictionarySlot probe = WordSlot(key, hash, 0);
    for (uint32_t i = 0; i < bin.count; ++i) {
        DictionarySlot &s = slots[i];
        if (s.hash != hash)
            continue;
        if (probe.wordKind && probe.wordKind == s.wordKind) {
            if (probe.word == s.word)
                return &s;
            continue;
        }
        if (KeysEqual(d->entries[static_cast<uint32_t>(s.index)].key, key))
            return &s;
    }
    return nullptr;
}

DictionaryEntry *Find(DictionaryObject *d, RuntimeObject *key, uint32_t hash) {
    DictionarySlot *s = FindSlot(d, key, hash);
    return s ? &d->entries[static_cast<uint32_t>(s->index)] : nullptr;
}

// The key's hash.  False when a key's own hash method raised: its
// exception stays pending and the operation stops.  An exception that was
// pending before (compiled code tests only where it has a handler) is not
// the key's doing.
bool HashKey(RuntimeObject *key, uint32_t *hash) {
    RuntimeObject *const before = RuntimePendingException();
    *hash = static_cast<uint32_t>(VariantHash(key));
    return RuntimePendingException() == before;
}

// The entry of the key, or null, also when the hash method raised.
DictionaryEntry *Lookup(DictionaryObject *d, RuntimeObject *key, bool *raised) {
    uint32_t hash = 0;
    *raised = !HashKey(key, &hash);
    return *raised ? nullptr : Find(d, key, hash);
}

// Rebuilds the bins for `count` bins from the vector, in index order.
bool Rehash(DictionaryObject *d, uint32_t count) {
    auto *bins = static_cast<DictionaryBin *>(std::calloc(count, sizeof(DictionaryBin)));
    bool made = bins != nullptr;
    for (uint32_t i = 0; made && i < d->entries.Count(); ++i) {
        const DictionaryEntry &e = d->entries[i];
        made = AddSlot(bins[BinIndex(e.hash, count)],
                       WordSlot(e.key, e.hash, static_cast<int32_t>(i)));
    }
    if (!made) {
        FreeBins(bins, count);
        RaiseWithMessage("OutOfMemoryException", "");
        return false;
    }
    FreeBins(d->bins, d->binCount);
    d->bins = bins;
    d->binCount = count;
    d->growStep = GrowStep(count);
    return true;
}

// BinCount: below 1 picks the prime for the count; a positive number is
// kept as it is and fixes the table.
void SetBins(DictionaryObject *d, int32_t count) {
    if (count < 1) {
        const uint64_t wanted = uint64_t(d->entries.Count()) * 4 / 3;
        uint32_t pick = kPrimes[std::size(kPrimes) - 1];
        for (uint32_t prime : kPrimes)
            if (prime >= wanted) {
                pick = prime;
                break;
            }
        d->fixedBins = 0;
        if (pick != d->binCount)
            Rehash(d, pick);
        return;
    }
    if (static_cast<uint32_t>(count) == d->binCount)
        return;
    if (Rehash(d, static_cast<uint32_t>(count)))
        d->fixedBins = 1;
}

void ReleaseEntries(DictionaryObject *d) {
    while (d->entries.Count() > 0) {
        const DictionaryEntry e = d->entries.Pop();
        RuntimeUnlockObject(e.key);
        RuntimeUnlockObject(e.value);
    }
}

bool IndexInRange(DictionaryObject *d, int32_t index) {
    if (index >= 0 && static_cast<uint32_t>(index) < d->entries.Count())
        return true;
    RaiseOutOfBounds();
    return false;
}

} // namespace

ObjectDefinition *DictionaryDefinition() {
    static const TypeRecord &variant = VariantType();
    static const ParameterRow keyParameter[] = {{"key", &variant}};
    static const ParameterRow indexParameter[] = {{"index", &kTypeInteger}};
    static const ParameterRow lookupParameters[] = {{"key", &variant}, {"defaultValue", &variant}};
    static const PropertyRow properties[] = {
        {0, "BinCount", &kTypeInteger, KELP_ENTRY(dictionaryGetBins),
         KELP_ENTRY(dictionarySetBins)},
    };
    static const MethodRow methods[] = {
        {"Count", &kTypeInteger, nullptr, 0, KELP_ENTRY(dictionaryCount)},
        {"Key", &variant, indexParameter, 1, KELP_ENTRY(dictionaryKey)},
        {"Value", &variant, keyParameter, 1, KELP_ENTRY(dictionaryValueGetter),
         KELP_ENTRY(dictionaryValueSetter)},
        {"HasKey", &kTypeBoolean, keyParameter, 1, KELP_ENTRY(dictionaryHasKey)},
        {"Lookup", &variant, lookupParameters, 2, KELP_ENTRY(DictionaryLookup)},
        {"Remove", nullptr, keyParameter, 1, KELP_ENTRY(dictionaryRemove)},
        {"Clear", nullptr, nullptr, 0, KELP_ENTRY(dictionaryRemoveAll)},
    };
    static const ClassDescription description = {
        .name = "Dictionary",
        .instanceSize = sizeof(DictionaryObject),
        .targetFlags = {1, 0, 0},
        .initializer = KELP_ENTRY(dictionaryConstructor),
        .finalizer = KELP_ENTRY(dictionaryDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void dictionaryConstructor(RuntimeObject *object) {
    DictionaryObject *d = Of(object);
    if (!d)
        return;
    // The entry vector doubles as it grows: a fixed step of at most 1,024
    // would copy a large dictionary's whole vector again every 1,024 keys.
    new (&d->entries) SimpleVector<DictionaryEntry>(0);
    d->fixedBins = 0;
    d->busy = 0;
    d->bins = static_cast<DictionaryBin *>(std::calloc(kFirstBins, sizeof(DictionaryBin)));
    d->binCount = d->bins ? kFirstBins : 0;
    d->growStep = GrowStep(kFirstBins);
    if (!d->bins)
        RaiseWithMessage("OutOfMemoryException", "");
}

extern "C" void dictionaryDestructor(RuntimeObject *object) {
    DictionaryObject *d = Of(object);
    if (!d)
        return;
    ReleaseEntries(d);
    d->entries.~SimpleVector();
    FreeBins(d->bins, d->binCount);
    d->bins = nullptr;
    d->binCount = 0;
}

extern "C" int32_t dictionaryCount(RuntimeObject *object) {
    DictionaryObject *d = Of(object);
    return d ? static_cast<int32_t>(d->entries.Count()) : 0;
}

extern "C" int32_t dictionaryGetBins(RuntimeObject *object, int32_t) {
    DictionaryObject *d = Of(object);
    return d ? static_cast<int32_t>(d->binCount) : 0;
}

extern "C" void dictionarySetBins(RuntimeObject *object, int32_t, int32_t count) {
    DictionaryObject *d = Of(object);
    if (Busy busy{d})
        SetBins(d, count);
}

extern "C" RuntimeObject *dictionaryKey(RuntimeObject *object, int32_t index) {
    DictionaryObject *d = Of(object);
    if (!d || !IndexInRange(d, index))
        return nullptr;
    RuntimeObject *key = d->entries[static_cast<uint32_t>(index)].key;
    RuntimeLockObject(key);
    return key;
}

extern "C" RuntimeObject *dictionaryValueByIndex(RuntimeObject *object, int32_t index) {
    DictionaryObject *d = Of(object);
    if (!d || !IndexInRange(d, index))
        return nullptr;
    RuntimeObject *value = d->entries[static_cast<uint32_t>(index)].value;
    RuntimeLockObject(value);
    return value;
}

extern "C" RuntimeObject *dictionaryValueGetter(RuntimeObject *object, RuntimeObject *key) {
    DictionaryObject *d = Of(object);
    Busy busy{d};
    if (!busy)
        return nullptr;
    bool raised = false;
    DictionaryEntry *e = Lookup(d, key, &raised);
    if (!e) {
        if (!raised)
            RaiseWithMessage("KeyNotFoundException", "");
        return nullptr;
    }
    RuntimeLockObject(e->value);
    return e->value;
}

extern "C" void dictionaryValueSetter(RuntimeObject *object, RuntimeObject *key,
                                      RuntimeObject *value) {
    DictionaryObject *d = Of(object);
    Busy busy{d};
    if (!busy)
        return;
    uint32_t hash = 0;
    if (!HashKey(key, &hash))
        return;
    if (DictionaryEntry *e = Find(d, key, hash)) {
        // The old key stays; only the value changes.
        RuntimeLockUnlockObjects(value, e->value);
        e->value = value;
        return;
    }
    const auto index = static_cast<int32_t>(d->entries.Count());
    if (!AddSlot(BinOf(d, hash), WordSlot(key, hash, index))) {
        RaiseWithMessage("OutOfMemoryException", "");
        return;
    }
    RuntimeLockObject(key);
    RuntimeLockObject(value);
    d->entries.Append({key, value, hash});
    if (!d->fixedBins && d->entries.Count() > uint64_t(d->binCount) * 3 / 4)
        SetBins(d, 0);
}

extern "C" uint8_t dictionaryHasKey(RuntimeObject *object, RuntimeObject *key) {
    DictionaryObject *d = Of(object);
    Busy busy{d};
    bool raised = false;
    return busy && Lookup(d, key, &raised) != nullptr;
}

extern "C" RuntimeObject *DictionaryLookup(RuntimeObject *object, RuntimeObject *key,
                                           RuntimeObject *defaultValue) {
    DictionaryObject *d = Of(object);
    Busy busy{d};
    bool raised = false;
    DictionaryEntry *e = busy ? Lookup(d, key, &raised) : nullptr;
    RuntimeObject *result = e ? e->value : raised ? nullptr : defaultValue;
    RuntimeLockObject(result);
    return result;
}

extern "C" void dictionaryRemove(RuntimeObject *object, RuntimeObject *key) {
    DictionaryObject *d = Of(object);
    Busy busy{d};
    if (!busy)
        return;
    uint32_t hash = 0;
    if (!HashKey(key, &hash))
        return;
    DictionarySlot *slot = FindSlot(d, key, hash);
    if (!slot) {
        RaiseWithMessage("KeyNotFoundException", "");
        return;
    }
    const int32_t index = slot->index;
    const int32_t lastIndex = static_cast<int32_t>(d->entries.Count()) - 1;
    KELP_ASSERT(index >= 0 && index <= lastIndex, kFile, "index >= 0 and index <= lastIndex");
    if (index < 0 || index > lastIndex)
        return;
    DictionaryBin &bin = BinOf(d, hash);
    *slot = SlotsOf(bin)[--bin.count];
    const DictionaryEntry gone = d->entries[static_cast<uint32_t>(index)];
    // The last entry fills the hole, so Key(index) changes order here.
    const DictionaryEntry last = d->entries.Pop();
    if (index != lastIndex) {
        d->entries[static_cast<uint32_t>(index)] = last;
        DictionaryBin &lastBin = BinOf(d, last.hash);
        DictionarySlot *slots = SlotsOf(lastBin);
        for (uint32_t i = 0; i < lastBin.count; ++i)
            if (slots[i].index == lastIndex)
                slots[i].index = index;
    }
    RuntimeUnlockObject(gone.key);
    RuntimeUnlockObject(gone.value);
}

extern "C" void dictionaryRemoveAll(RuntimeObject *object) {
    DictionaryObject *d = Of(object);
    Busy busy{d};
    if (!busy)
        return;
    ReleaseEntries(d);
    d->fixedBins = 0;
    Rehash(d, kFirstBins);
}
