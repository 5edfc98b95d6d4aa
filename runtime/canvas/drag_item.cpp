// The DragItem class: entries, their rectangles and their flavours.
#include "canvas/drag_item.h"

#include "objects/definitions.h"
#include "objects/text.h"
#include "strings/kstring.h"

#include "kelp/canvas.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace kelp {
namespace {

DragContents *Contents(RuntimeObject *item) {
    DragItemRecord *r = DragRecord(item);
    if (!r->contents)
        r->contents = new DragContents();
    return r->contents;
}

bool RawTypeMatches(const Flavor &f, const std::string &rawType) {
    if (rawType.empty())
        return true;
    std::string_view text = objtext::View(f.text);
    return text.size() >= 4 && text.compare(0, 4, rawType) == 0;
}

// The four characters a raw type names, padded with blanks.
std::string RawType(KelpString type) {
    std::string t(objtext::View(type).substr(0, 4));
    t.resize(4, ' ');
    return t;
}

Flavor *Find(std::vector<Flavor> &list, int32_t item, uint32_t type, const std::string &rawType) {
    for (Flavor &f : list)
        if (f.item == item && f.type == type &&
            (type != kFlavorRawData || RawTypeMatches(f, rawType)))
            return &f;
    return nullptr;
}

void ReleaseFlavor(Flavor &f) {
    RuntimeUnlockString(f.text);
    RuntimeUnlockObject(f.object);
    f.text = nullptr;
    f.object = nullptr;
}

void SetText(Flavor *f, KelpString text) {
    RuntimeLockString(text);
    RuntimeUnlockString(f->text);
    f->text = text;
}

void SetObject(Flavor *f, RuntimeObject *object) {
    RuntimeLockObject(object);
    RuntimeUnlockObject(f->object);
    f->object = object;
}

// Raw data is kept as the type's four bytes followed by the data.
KelpString RawRecord(KelpString type, KelpString data) {
    std::string bytes = RawType(type);
    bytes.append(objtext::View(data));
    return kelp::string::FromBytes(bytes.data(), long(bytes.size()), kEncodingUnknown)
        .ExtractStringStorage();
}

KelpString RawPayload(const Flavor *f) {
    std::string_view text = objtext::View(f->text);
    if (text.size() <= 4)
        return nullptr;
    text.remove_prefix(4);
    return kelp::string::FromBytes(text.data(), long(text.size()), kEncodingUnknown)
        .ExtractStringStorage();
}

const Rect *CurrentRect(RuntimeObject *self) {
    DragItemRecord *r = DragRecord(self);
    if (!r->received || !r->contents || r->currentItem < 0 ||
        size_t(r->currentItem) >= r->contents->itemRects.size())
        return nullptr;
    return &r->contents->itemRects[size_t(r->currentItem)];
}

} // namespace

RuntimeObject *NewDragItem(const Rect &rect) {
    RuntimeObject *item = NewObjectOfDefinition(DragItemDefinition());
    if (item)
        Contents(item)->itemRects.push_back(rect);
    return item;
}

Flavor *FindFlavor(RuntimeObject *item, uint32_t type, bool create, const std::string &rawType) {
    if (!item)
        return nullptr;
    DragItemRecord *r = DragRecord(item);
    std::vector<Flavor> &list = Contents(item)->flavors;
    if (Flavor *f = Find(list, r->currentItem, type, rawType))
        return f;
    if (type == kFlavorRawData)
        if (Flavor *f = Find(Contents(item)->privateFlavors, r->currentItem, type, rawType))
            return f;
    if (!create)
        return nullptr;
    list.push_back(Flavor{r->currentItem, type});
    return &list.back();
}

bool HasFlavorAnywhere(RuntimeObject *item, uint32_t type, const std::string &rawType) {
    if (!item)
        return false;
    for (const std::vector<Flavor> *list :
         {&Contents(item)->flavors, &Contents(item)->privateFlavors})
        for (const Flavor &f : *list)
            if (f.type == type && (type != kFlavorRawData || RawTypeMatches(f, rawType)))
                return true;
    return false;
}

} // namespace kelp

using namespace kelp;

extern "C" void DragItemInitializer(RuntimeObject *self) {
    if (self)
        DragRecord(self)->itemCount = 1;
}

extern "C" void DragItemFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    DragItemRecord *r = DragRecord(self);
    if (DragContents *c = r->contents) {
        for (Flavor &f : c->flavors)
            ReleaseFlavor(f);
        for (Flavor &f : c->privateFlavors)
            ReleaseFlavor(f);
        delete c;
    }
    r->contents = nullptr;
    RuntimeUnlockObject(r->destination);
    RuntimeUnlockObject(r->mouseCursor);
    r->destination = r->mouseCursor = nullptr;
}

// A further entry, which becomes the current one.
extern "C" void DragItemAddItem(RuntimeObject *self, int32_t left, int32_t top, int32_t width,
                                int32_t height) {
    if (!self)
        return;
    DragItemRecord *r = DragRecord(self);
    std::vector<Rect> &rects = Contents(self)->itemRects;
    rects.resize(size_t(r->itemCount)); // an entry made without a rectangle has an empty one
    rects.push_back(RectFromXYWH(left, top, width, height));
    r->currentItem = r->itemCount++;
}

extern "C" uint8_t DragItemNextItem(RuntimeObject *self) {
    if (!self || DragRecord(self)->currentItem + 1 >= DragRecord(self)->itemCount)
        return 0;
    ++DragRecord(self)->currentItem;
    return 1;
}

extern "C" int32_t dragItemDropLeft(RuntimeObject *self, int32_t) {
    const Rect *r = self ? CurrentRect(self) : nullptr;
    return r ? std::min(r->left, r->right) + DragRecord(self)->offsetLeft : 0;
}
extern "C" int32_t dragItemDropTop(RuntimeObject *self, int32_t) {
    const Rect *r = self ? CurrentRect(self) : nullptr;
    return r ? std::min(r->top, r->bottom) + DragRecord(self)->offsetTop : 0;
}
extern "C" int32_t dragItemDropWidth(RuntimeObject *self, int32_t) {
    const Rect *r = self ? CurrentRect(self) : nullptr;
    return r ? std::abs(r->right - r->left) : 0;
}
extern "C" int32_t dragItemDropHeight(RuntimeObject *self, int32_t) {
    const Rect *r = self ? CurrentRect(self) : nullptr;
    return r ? std::abs(r->bottom - r->top) : 0;
}

extern "C" intptr_t dragItemGetHandle(RuntimeObject *self, int32_t) {
    return reinterpret_cast<intptr_t>(self);
}

extern "C" uint8_t DragItemTextAvailable(RuntimeObject *self) {
    return FindFlavor(self, kFlavorText, false) ? 1 : 0;
}
extern "C" KelpString dragItemTextGetter(RuntimeObject *self, int32_t) {
    Flavor *f = FindFlavor(self, kFlavorText, false);
    if (!f)
        return nullptr;
    RuntimeLockString(f->text);
    return f->text;
}
extern "C" void dragItemTextSetter(RuntimeObject *self, int32_t, KelpString text) {
    if (Flavor *f = FindFlavor(self, kFlavorText, true))
        SetText(f, text);
}

namespace {
// The object of the current item's flavor, counted for the caller; nil
// when the item has none of that kind.
RuntimeObject *LockedObjectOf(RuntimeObject *self, uint32_t type) {
    Flavor *f = FindFlavor(self, type, false);
    if (!f)
        return nullptr;
    RuntimeLockObject(f->object);
    return f->object;
}
} // namespace

extern "C" uint8_t DragItemPictureAvailable(RuntimeObject *self) {
    return FindFlavor(self, kFlavorPicture, false) ? 1 : 0;
}
extern "C" RuntimeObject *dragItemPictureGetter(RuntimeObject *self, int32_t) {
    return LockedObjectOf(self, kFlavorPicture);
}
extern "C" void dragItemPictureSetter(RuntimeObject *self, int32_t, RuntimeObject *picture) {
    if (Flavor *f = FindFlavor(self, kFlavorPicture, true))
        SetObject(f, picture);
}

extern "C" uint8_t DragItemFolderItemAvailable(RuntimeObject *self) {
    return FindFlavor(self, kFlavorFolderItem, false) ? 1 : 0;
}
extern "C" RuntimeObject *dragItemFolderItemGetter(RuntimeObject *self, int32_t) {
    return LockedObjectOf(self, kFlavorFolderItem);
}
extern "C" void dragItemFolderItemSetter(RuntimeObject *self, int32_t, RuntimeObject *item) {
    if (Flavor *f = FindFlavor(self, kFlavorFolderItem, true))
        SetObject(f, item);
}

extern "C" uint8_t DragItemMacDataAvailable(RuntimeObject *self, KelpString type) {
    return FindFlavor(self, kFlavorRawData, false, RawType(type)) ? 1 : 0;
}
extern "C" KelpString DragItemGetMacData(RuntimeObject *self, KelpString type) {
    Flavor *f = FindFlavor(self, kFlavorRawData, false, RawType(type));
    return f ? RawPayload(f) : nullptr;
}
extern "C" void DragItemSetMacData(RuntimeObject *self, KelpString type, KelpString data) {
    if (!self)
        return;
    DragItemRecord *r = DragRecord(self);
    std::vector<Flavor> &list = Contents(self)->flavors;
    Flavor *f = Find(list, r->currentItem, kFlavorRawData, RawType(type));
    if (!f) {
        list.push_back(Flavor{r->currentItem, kFlavorRawData});
        f = &list.back();
    }
    KelpString record = RawRecord(type, data);
    SetText(f, record);
    RuntimeUnlockString(record);
}
extern "C" void DragItemSetPrivateMacData(RuntimeObject *self, KelpString type, KelpString data) {
    if (!self)
        return;
    DragItemRecord *r = DragRecord(self);
    std::vector<Flavor> &list = Contents(self)->privateFlavors;
    Flavor *f = Find(list, r->currentItem, kFlavorRawData, RawType(type));
    if (!f) {
        list.push_back(Flavor{r->currentItem, kFlavorRawData});
        f = &list.back();
    }
    KelpString record = RawRecord(type, data);
    SetText(f, record);
    RuntimeUnlockString(record);
}

namespace kelp {

ObjectDefinition *DragItemDefinition() {
    static const PropertyRow properties[] = {
        {0, "Text", &kTypeString, KELP_ENTRY(dragItemTextGetter), KELP_ENTRY(dragItemTextSetter),
         -9},
        {0, "Picture", &kTypePtr, KELP_ENTRY(dragItemPictureGetter),
         KELP_ENTRY(dragItemPictureSetter), -9},
        {0, "FolderItem", &kTypePtr, KELP_ENTRY(dragItemFolderItemGetter),
         KELP_ENTRY(dragItemFolderItemSetter), -9},
        {0, "MouseCursor", &kTypePtr, KELP_ENTRY(objGetter), KELP_ENTRY(objSetter),
         offsetof(DragItemRecord, mouseCursor)},
        {0, "DropLeft", &kTypeInteger, KELP_ENTRY(dragItemDropLeft), {}, -9},
        {0, "DropTop", &kTypeInteger, KELP_ENTRY(dragItemDropTop), {}, -9},
        {0, "DropWidth", &kTypeInteger, KELP_ENTRY(dragItemDropWidth), {}, -9},
        {0, "DropHeight", &kTypeInteger, KELP_ENTRY(dragItemDropHeight), {}, -9},
        {0, "Destination", &kTypePtr, KELP_ENTRY(objGetter), KELP_ENTRY(objSetter),
         offsetof(DragItemRecord, destination)},
        {0, "Handle", &kTypeInteger, KELP_ENTRY(dragItemGetHandle), {}, -9},
    };
    static const ParameterRow typeParam[] = {{"type", &kTypeString}};
    static const ParameterRow dataParams[] = {{"type", &kTypeString}, {"data", &kTypeString}};
    static const ParameterRow rectParams[] = {{"left", &kTypeInteger},
                                              {"top", &kTypeInteger},
                                              {"width", &kTypeInteger},
                                              {"height", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"Drag", nullptr, nullptr, 0, KELP_ENTRY(DragItemDrag)},
        {"FolderItemAvailable", &kTypeBoolean, nullptr, 0, KELP_ENTRY(DragItemFolderItemAvailable)},
        {"TextAvailable", &kTypeBoolean, nullptr, 0, KELP_ENTRY(DragItemTextAvailable)},
        {"PictureAvailable", &kTypeBoolean, nullptr, 0, KELP_ENTRY(DragItemPictureAvailable)},
        {"MacDataAvailable", &kTypeBoolean, typeParam, 1, KELP_ENTRY(DragItemMacDataAvailable)},
        {"RawDataAvailable", &kTypeBoolean, typeParam, 1, KELP_ENTRY(DragItemMacDataAvailable)},
        {"MacData", &kTypeString, typeParam, 1, KELP_ENTRY(DragItemGetMacData)},
        {"MacData", nullptr, dataParams, 2, KELP_ENTRY(DragItemSetMacData)},
        {"RawData", &kTypeString, typeParam, 1, KELP_ENTRY(DragItemGetMacData)},
        {"RawData", nullptr, dataParams, 2, KELP_ENTRY(DragItemSetMacData)},
        {"PrivateMacData", nullptr, dataParams, 2, KELP_ENTRY(DragItemSetPrivateMacData)},
        {"PrivateRawData", nullptr, dataParams, 2, KELP_ENTRY(DragItemSetPrivateMacData)},
        {"NextItem", &kTypeBoolean, nullptr, 0, KELP_ENTRY(DragItemNextItem)},
        {"AddItem", nullptr, rectParams, 4, KELP_ENTRY(DragItemAddItem)},
    };
    static const ClassDescription description = {
        .name = "DragItem",
        .instanceSize = sizeof(DragItemRecord),
        .initializer = KELP_ENTRY(DragItemInitializer),
        .finalizer = KELP_ENTRY(DragItemFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
