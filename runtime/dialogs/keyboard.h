#pragma once
// The language's Keyboard object: modifier keys as the last input event
// had them, keys held now as the toolkit's key events showed them, and the
// names of keys.
#include "kelp/records.h"

#include <gtk/gtk.h>

#include <string>

namespace kelp {

struct ObjectDefinition;

ObjectDefinition *KeyboardDefinition();

// The X keyval of a key number: below 128 a number of the Macintosh
// virtual key set (letters as upper-case keyvals), from 128 on a keyval
// itself; 0 for a number with no key.
guint KeyvalOfCode(int32_t code);
// "Esc", "F1", ...; "key" and the number for a key with no name.
std::string KeyNameOfCode(int32_t code);

} // namespace kelp
