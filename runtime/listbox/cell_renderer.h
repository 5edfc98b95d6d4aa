#pragma once
// The text renderer of a list column.  It draws as the toolkit's own text
// renderer does, but the program is asked first: a CellTextPaint handler that
// answers true has drawn the text itself.  A second kind, of no width and
// packed first in each column, asks CellBackgroundPaint for the whole cell
// before the picture, check box and text are drawn over it.
#include <gtk/gtk.h>

namespace kelp::listbox {

class ListPane;
struct Row;

GtkCellRenderer *NewCellTextRenderer(ListPane *pane);
GtkCellRenderer *NewCellBackgroundRenderer(ListPane *pane);
bool IsCellBackgroundRenderer(GtkCellRenderer *renderer);
// The row whose cell the renderer draws next; the column's data function
// tells it, for the toolkit renders each cell right after setting it up.
void SetRendererRow(GtkCellRenderer *renderer, Row *row);
// A closing pane: the view may draw once more, and must not reach it.
void DetachRenderer(GtkCellRenderer *renderer);

} // namespace kelp::listbox
