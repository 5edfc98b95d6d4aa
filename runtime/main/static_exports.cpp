// The static rows of the export table: every function that an image may bind
// by name.  Each subsystem lists its own in its exports.inc; a name listed
// here must be declared in a public header, so headers and table can't drift.
#include "main/static_exports.h"

#include "kelp/kelp.h"

#define KELP_EXPORT(fn) {#fn, reinterpret_cast<void *>(&fn), nullptr, nullptr},
#define KELP_EXPORT_AS(name, fn) {name, reinterpret_cast<void *>(&fn), nullptr, nullptr},

namespace kelp {
namespace {
const RelocEntry kRows[] = {
#include "app/exports.inc"
#include "arrays/exports.inc"
#include "cursors/exports.inc"
#include "exceptions/exports.inc"
#include "graphics/exports.inc"
#include "numbers/exports.inc"
#include "objects/exports.inc"
#include "process/exports.inc"
#include "random/exports.inc"
#include "resources/exports.inc"
#include "runloop/exports.inc"
#include "sound/exports.inc"
#include "string_functions/exports.inc"
#include "strings/exports.inc"
#include "system/exports.inc"
#include "threads/exports.inc"
#include "timers/exports.inc"
#include "windows/exports.inc"
// Core values
#include "encodings/exports.inc"
#include "memory/exports.inc"
// Dates and variants
#include "dates/exports.inc"
#include "variants/exports.inc"
// Streams, folder items and pictures.
#include "folder_items/exports.inc"
#include "pictures/exports.inc"
#include "stream_classes/exports.inc"
// Controls
#include "controls/exports.inc"
// Edit fields and styled text
#include "edit_fields/exports.inc"
// Canvas, drag and clipboard
#include "canvas/exports.inc"
// Plug-ins
#include "plugins/exports.inc"
// Menus
#include "menus/exports.inc"
// Print, dialogs and the keyboard
#include "dialogs/exports.inc"
#include "print/exports.inc"
// The ListBox
#include "listbox/exports.inc"
// 2D shapes
#include "shapes/exports.inc"
// Virtual volumes
#include "volumes/exports.inc"
// Serial ports
#include "serial/exports.inc"
// Sockets
#include "sockets/exports.inc"
// The database classes
#include "database_classes/exports.inc"
// The debugger link
#include "debugger/exports.inc"
// Platform stubs
#include "stubs/exports.inc"
    {nullptr, nullptr, nullptr, nullptr},
};
} // namespace

const RelocEntry *StaticExportRows() { return kRows; }
size_t StaticExportCount() { return sizeof(kRows) / sizeof(kRows[0]) - 1; }

} // namespace kelp
