#pragma once
// The objects of Screen and TrayItem.
#include "kelp/records.h"

namespace kelp {

struct ObjectDefinition;

struct ScreenObject {
    RuntimeObject object;
    int32_t left, top, width, height, depth;
    int32_t availableLeft, availableTop, availableWidth, availableHeight;
};

struct TrayItemObject {
    RuntimeObject object;
    RuntimeObject *icon;    // a Picture, counted
    stringStorage *helpTag; // counted
    int32_t mID;            // 0: not in a tray
};

ObjectDefinition *ScreenDefinition();
ObjectDefinition *TrayItemDefinition();

} // namespace kelp
