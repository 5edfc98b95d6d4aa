#pragma once
// The pictures of the ready-made bitmap cursors: 16 by 16, one bit with a
// mask, as a "CURS" resource holds them once its bits are in the toolkit's
// order (leftmost pixel in the lowest bit).
#include <cstdint>

namespace kelp {

struct CursorPicture {
    uint8_t image[32]; // set bits show black
    uint8_t mask[32];  // set bits without an image bit show white
    int hotRow, hotColumn;
};

enum CursorKind : int32_t {
    kCursorHandOpen = 0,
    kCursorHandClosed = 1,
    kCursorArrowEastWest = 2,
    kCursorArrowNorthSouth = 3,
    kCursorArrowNortheastSouthwest = 4,
    kCursorArrowNorthwestSoutheast = 5,
    kCursorArrowAllDirections = 6,
    kCursorIBeam = 7,
    kCursorStandardPointer = 8,
    kCursorWait = 9,
    kCursorSplitterEastWest = 10,
    kCursorSplitterNorthSouth = 11,
    kCursorFingerPointer = 12,
};

// The picture of a bitmap kind; false for the kinds the toolkit draws.
bool BuiltInCursorPicture(CursorKind kind, CursorPicture &out);

} // namespace kelp
