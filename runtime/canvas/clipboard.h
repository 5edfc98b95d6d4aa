#pragma once
// The Clipboard class: text, raw data of a type, and pictures within the
// process, on the toolkit's clipboards.

namespace kelp {

struct ObjectDefinition;

ObjectDefinition *ClipboardDefinition();

} // namespace kelp
