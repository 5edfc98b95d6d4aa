#pragma once
namespace kelp {
// The Dictionary class and the Variant functions of the language.
void WireVariants();
} // namespace kelp
