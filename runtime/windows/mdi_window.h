#pragma once
// MDIWindow: this platform has no frame that holds other windows, so the
// class keeps its state for programs that set and read it, and makes no
// window.
#include "kelp/records.h"

#include <cstdint>

namespace kelp {

struct ObjectDefinition;

struct MDIWindowRecord {
    RuntimeObject object;
    int32_t left, top, width, height;
    int32_t minWidth, minHeight, maxWidth, maxHeight;
    int32_t visible; // Boolean in a word, starts true
};

ObjectDefinition *MDIWindowDefinition();

} // namespace kelp
