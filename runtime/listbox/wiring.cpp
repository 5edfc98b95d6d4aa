#include "listbox/wiring.h"

#include "listbox/listbox_classes.h"

#include "objects/definitions.h"

namespace kelp {

void WireListbox() {
    AddIntrinsicClassAccessor(&listbox::ListBoxDefinition);
    AddIntrinsicClassAccessor(&listbox::OldListBoxDefinition);
    AddIntrinsicClassAccessor(&listbox::ListColumnDefinition);
}

} // namespace kelp
