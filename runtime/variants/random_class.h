#pragma once
// The Random class of the language, on the generator of the random folder.

namespace kelp {
struct ObjectDefinition;
ObjectDefinition *RandomDefinition();
} // namespace kelp
