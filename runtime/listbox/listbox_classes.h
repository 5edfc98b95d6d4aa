#pragma once
// The library classes of this folder, which its Wire function registers.
namespace kelp {
struct ObjectDefinition;
}

namespace kelp::listbox {

ObjectDefinition *ListBoxDefinition();
ObjectDefinition *OldListBoxDefinition();
ObjectDefinition *ListColumnDefinition();

} // namespace kelp::listbox
