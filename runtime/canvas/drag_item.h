#pragma once
// DragItem: what a drag carries and what a drop hands to DropObject.  An
// item holds one or more entries (several files dropped at once), each with
// a rectangle and flavours: text, a picture, a folder item, raw data under
// a four-character type.  `currentItem` picks the entry the accessors see.
#include "graphics/geometry.h"

#include "kelp/records.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelp {

struct ObjectDefinition;

// Four-character flavour types.
constexpr uint32_t FourCC(const char (&code)[5]) {
    return uint32_t(uint8_t(code[0])) << 24 | uint32_t(uint8_t(code[1])) << 16 |
           uint32_t(uint8_t(code[2])) << 8 | uint32_t(uint8_t(code[3]));
}
constexpr uint32_t kFlavorText = FourCC("TEXT");
constexpr uint32_t kFlavorPicture = FourCC("PICT");
constexpr uint32_t kFlavorFolderItem = FourCC("FOLD");
constexpr uint32_t kFlavorRawData = FourCC("MACD"); // text: type, then the data

struct Flavor {
    int32_t item;                    // the entry it belongs to
    uint32_t type;                   // one of the kFlavor codes
    KelpString text = nullptr;       // TEXT and MACD, counted
    RuntimeObject *object = nullptr; // PICT and FOLD, counted
};

struct DragContents {
    std::vector<Rect> itemRects; // one per entry that has one, window coordinates
    std::vector<Flavor> flavors;
    std::vector<Flavor> privateFlavors; // raw data seen only inside the process
};

struct DragItemRecord {
    RuntimeObject object;
    RuntimeObject *destination; // counted
    int32_t received;           // 1 for an item handed to DropObject
    int32_t currentItem;        // from 0
    int32_t itemCount;          // from 1
    int32_t offsetLeft, offsetTop;
    DragContents *contents; // owned
    RuntimeObject *mouseCursor;
};

inline DragItemRecord *DragRecord(RuntimeObject *o) {
    return reinterpret_cast<DragItemRecord *>(o);
}

ObjectDefinition *DragItemDefinition();

// A new item (the caller's reference) with one entry at `rect`.
RuntimeObject *NewDragItem(const Rect &rect);
// The flavour of the current entry, appended empty when `create`; null when
// absent.  Raw data matches on its four-character type.
Flavor *FindFlavor(RuntimeObject *item, uint32_t type, bool create,
                   const std::string &rawType = {});
// True when some entry has a flavour of the type (any raw type for MACD
// when `rawType` is empty).
bool HasFlavorAnywhere(RuntimeObject *item, uint32_t type, const std::string &rawType = {});

// The paths a text/uri-list names: its "file:" lines of this host,
// percent-decoded; every other line is left out.
std::vector<std::string> PathsOfUriList(std::string_view list);

} // namespace kelp
