#include "listbox/cell_renderer.h"

#include "listbox/list_pane.h"

namespace kelp::listbox {
namespace {

struct CellRenderer {
    GtkCellRendererText parent;
    ListPane *pane;
    Row *row;
    gboolean background;
};

struct CellRendererClass {
    GtkCellRendererTextClass parent;
};

GType CellRendererType();
CellRenderer *AsCell(gpointer p) {
    return G_TYPE_CHECK_INSTANCE_CAST(p, CellRendererType(), CellRenderer);
}

GtkCellRendererClass *gTextClass = nullptr;

void Render(GtkCellRenderer *renderer, GdkDrawable *window, GtkWidget *widget,
            GdkRectangle *background, GdkRectangle *cellArea, GdkRectangle *expose,
            GtkCellRendererState flags) {
    CellRenderer *self = AsCell(renderer);
    if (!self->pane || !self->row || !GDK_IS_WINDOW(window))
        return;
    if (self->background) {
        self->pane->OfferBackground(GDK_WINDOW(window), self->row, renderer);
        return;
    }
    // The text starts at the left padding and sits on the middle of the row.
    const int textX = cellArea->x + int(renderer->xpad);
    if (self->pane->OfferText(GDK_WINDOW(window), self->row, renderer, textX))
        return;
    gTextClass->render(renderer, window, widget, background, cellArea, expose, flags);
}

void GetSize(GtkCellRenderer *renderer, GtkWidget *widget, GdkRectangle *area, gint *x, gint *y,
             gint *width, gint *height) {
    if (!AsCell(renderer)->background) {
        gTextClass->get_size(renderer, widget, area, x, y, width, height);
        return;
    }
    // Takes no room: the background spans the cell whatever its size.
    for (gint *v : {x, y, width, height})
        if (v)
            *v = 0;
}

void ClassInit(gpointer klass, gpointer) {
    gTextClass = GTK_CELL_RENDERER_CLASS(g_type_class_peek_parent(klass));
    GtkCellRendererClass *cell = GTK_CELL_RENDERER_CLASS(klass);
    cell->render = Render;
    cell->get_size = GetSize;
}

GType CellRendererType() {
    static GType type = 0;
    if (!type) {
        static const GTypeInfo info = {
            sizeof(CellRendererClass), nullptr, nullptr, ClassInit, nullptr, nullptr,
            sizeof(CellRenderer),      0,       nullptr, nullptr};
        type = g_type_register_static(GTK_TYPE_CELL_RENDERER_TEXT, "KelpListCellRenderer", &info,
                                      GTypeFlags(0));
    }
    return type;
}

GtkCellRenderer *NewRenderer(ListPane *pane, bool background) {
    auto *r = static_cast<CellRenderer *>(g_object_new(CellRendererType(), nullptr));
    r->pane = pane;
    r->background = background;
    return GTK_CELL_RENDERER(r);
}

} // namespace

GtkCellRenderer *NewCellTextRenderer(ListPane *pane) { return NewRenderer(pane, false); }

GtkCellRenderer *NewCellBackgroundRenderer(ListPane *pane) {
    GtkCellRenderer *r = NewRenderer(pane, true);
    g_object_set(r, "xpad", 0, "ypad", 0, nullptr);
    return r;
}

bool IsCellBackgroundRenderer(GtkCellRenderer *renderer) {
    return G_TYPE_CHECK_INSTANCE_TYPE(renderer, CellRendererType()) && AsCell(renderer)->background;
}

void SetRendererRow(GtkCellRenderer *renderer, Row *row) {
    if (G_TYPE_CHECK_INSTANCE_TYPE(renderer, CellRendererType()))
        AsCell(renderer)->row = row;
}

void DetachRenderer(GtkCellRenderer *renderer) {
    if (G_TYPE_CHECK_INSTANCE_TYPE(renderer, CellRendererType()))
        AsCell(renderer)->pane = nullptr;
}

} // namespace kelp::listbox
