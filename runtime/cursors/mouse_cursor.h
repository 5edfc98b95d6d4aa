#pragma once
// MouseCursor objects: each owns a holder of a toolkit cursor, where a null
// cursor means the toolkit's default.
#include "kelp/records.h"

#include <gdk/gdk.h>

#include <cstdint>

namespace kelp {

struct ObjectDefinition;

struct CursorHolder {
    GdkCursor *cursor = nullptr; // null: the toolkit's default
    int32_t id = 0;              // the resource id, for a cursor from a resource
    ~CursorHolder() {
        if (cursor)
            gdk_cursor_unref(cursor);
    }
};

struct MouseCursorObject {
    RuntimeObject object;
    CursorHolder *holder; // owned
};

ObjectDefinition *MouseCursorDefinition();
ObjectDefinition *CursorsDefinition();

// A new MouseCursor owning `holder`.
RuntimeObject *NewMouseCursor(CursorHolder *holder);
// The holder of a MouseCursor object, or null.
CursorHolder *HolderOf(RuntimeObject *mouseCursor);

// The global cursor of the pane tree.  A null holder, or one without a
// cursor, clears it.
void SetGlobalCursor(const CursorHolder *holder);
const CursorHolder *GetGlobalCursor();
void ResetGlobalCursor();

// The cursors the listbox uses at its column edges (6601 to 6603); null
// for any other id.
GdkCursor *NamedCursor(int32_t id);

} // namespace kelp
