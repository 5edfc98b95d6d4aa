#pragma once
// The menu handlers of a control, a window or the application: a map from a
// menu item's Name to the code of `Boolean handler(object, index)`.  The
// owner keeps it in one pointer field, made on first use and freed with the
// owner.  Names are compared as the language compares them, without case.
#include "kelp/records.h"

#include <string_view>

namespace kelp {

// Stores (or replaces) the handler of `name`; null code does nothing.
void AddMenuHandler(void *&map, KelpString name, void *code);
// The handler of `name`, or null.
void *FindMenuHandler(const void *map, std::string_view name);
// Frees the map and clears the field.
void FreeMenuHandlers(void *&map);

} // namespace kelp
