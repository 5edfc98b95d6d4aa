#include "variants/collection.h"

#include "kelp/objects.h"
#include "kelp/strings.h"
#include "kelp/variants.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "variants/variant_classes.h"

#include <vector>

namespace kelp {
namespace {

struct CollectionEntry {
    RuntimeObject *value; // holds a reference; may be nil
    KelpString key;       // holds a reference; nil or empty for none
};

struct CollectionObject {
    RuntimeObject object;
    std::vector<CollectionEntry> *entries; // made on the first Add
};

std::vector<CollectionEntry> *EntriesOf(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    return reinterpret_cast<CollectionObject *>(self)->entries;
}

// The position of a 1-based index, or -1 after raising OutOfBoundsException.
long PositionOf(const std::vector<CollectionEntry> *entries, int32_t index) {
    if (entries && index >= 1 && static_cast<size_t>(index) <= entries->size())
        return index - 1;
    RaiseOutOfBounds();
    return -1;
}

long PositionOfKey(const std::vector<CollectionEntry> *entries, KelpString key) {
    if (!entries || !key || key->length == 0)
        return -1;
    for (size_t i = 0; i < entries->size(); ++i)
        if ((*entries)[i].key && RuntimeStringCompare((*entries)[i].key, key) == 0)
            return static_cast<long>(i);
    return -1;
}

void Release(const CollectionEntry &e) {
    RuntimeUnlockObject(e.value);
    RuntimeUnlockString(e.key);
}

} // namespace

ObjectDefinition *CollectionDefinition() {
    static const TypeRecord &variant = VariantType();
    static const ParameterRow add[] = {{"value", &variant}, {"key", &kTypeString, "\"\""}};
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const ParameterRow key[] = {{"key", &kTypeString}};
    static const MethodRow methods[] = {
        {"Add", nullptr, add, 2, KELP_ENTRY(collectionAdd)},
        {"Count", &kTypeInteger, nullptr, 0, KELP_ENTRY(collectionCount)},
        {"Item", &variant, index, 1, KELP_ENTRY(collectionIdxItem)},
        {"Item", &variant, key, 1, KELP_ENTRY(collectionItem)},
        {"Remove", nullptr, index, 1, KELP_ENTRY(collectionIdxRemove)},
        {"Remove", nullptr, key, 1, KELP_ENTRY(collectionKeyRemove)},
    };
    static const ClassDescription description = {
        .name = "Collection",
        .instanceSize = sizeof(CollectionObject),
        .finalizer = KELP_ENTRY(collectionDestructor),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void collectionDestructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *c = reinterpret_cast<CollectionObject *>(self);
    if (!c->entries)
        return;
    for (const CollectionEntry &e : *c->entries)
        Release(e);
    delete c->entries;
    c->entries = nullptr;
}

extern "C" void collectionAdd(RuntimeObject *self, RuntimeObject *value, KelpString key) {
    if (!self) {
        RaiseNilObject();
        return;
    }
    auto *c = reinterpret_cast<CollectionObject *>(self);
    if (!c->entries)
        c->entries = new std::vector<CollectionEntry>();
    RuntimeLockObject(value);
    RuntimeLockString(key);
    c->entries->push_back({value, key});
}

extern "C" int32_t collectionCount(RuntimeObject *self) {
    const std::vector<CollectionEntry> *entries = EntriesOf(self);
    return entries ? static_cast<int32_t>(entries->size()) : 0;
}

extern "C" RuntimeObject *collectionIdxItem(RuntimeObject *self, int32_t index) {
    const std::vector<CollectionEntry> *entries = EntriesOf(self);
    if (!self)
        return nullptr;
    const long at = PositionOf(entries, index);
    if (at < 0)
        return nullptr;
    RuntimeObject *value = (*entries)[size_t(at)].value;
    RuntimeLockObject(value);
    return value;
}

// A key that no entry has reads nil, as a missing item does in the language.
extern "C" RuntimeObject *collectionItem(RuntimeObject *self, KelpString key) {
    const std::vector<CollectionEntry> *entries = EntriesOf(self);
    const long at = PositionOfKey(entries, key);
    if (at < 0)
        return nullptr;
    RuntimeObject *value = (*entries)[size_t(at)].value;
    RuntimeLockObject(value);
    return value;
}

extern "C" void collectionIdxRemove(RuntimeObject *self, int32_t index) {
    std::vector<CollectionEntry> *entries = EntriesOf(self);
    if (!self)
        return;
    const long at = PositionOf(entries, index);
    if (at < 0)
        return;
    const CollectionEntry gone = (*entries)[size_t(at)];
    entries->erase(entries->begin() + at);
    Release(gone); // last: a finalizer it runs may look at the collection
}

// Removing a key that no entry has does nothing.
extern "C" void collectionKeyRemove(RuntimeObject *self, KelpString key) {
    std::vector<CollectionEntry> *entries = EntriesOf(self);
    const long at = PositionOfKey(entries, key);
    if (at < 0)
        return;
    const CollectionEntry gone = (*entries)[size_t(at)];
    entries->erase(entries->begin() + at);
    Release(gone);
}
