#pragma once
// The Canvas control: the pane compiled code paints on.  Each expose draws
// the backdrop picture at the pane's corner and fires Paint with a Graphics
// on the widget's window; nothing is kept between exposes.  The canvas also
// takes raw mouse and key events and holds the controls that lie on it.
#include "controls/control.h"

namespace kelp {

struct CanvasRecord {
    RuntimeControl control;
    RuntimeObject *backdrop;       // Picture or nil, counted
    RuntimeObject *graphicsObject; // the Graphics property's object, counted
    int32_t backdropSerial;        // the store's size when last drawn
    uint8_t acceptFocus, acceptTabs, useFocusRing, eraseBackground;
    RuntimeObject *templateWindow; // the view an embedded control shows; not counted
};

ObjectDefinition *CanvasDefinition();
// The Canvas that stands for a ContainerControl in the window it lies in.
ObjectDefinition *EmbeddedWindowControlDefinition();
// Names that class to the controls layer, which makes one per container.
void WireEmbeddedWindowControl();
// A window's Backdrop picture drawn whole at the top left of `g`, cut off by
// the window's size (the windows layer calls it through its drawer slot).
void DrawWindowBackdrop(Graphics &g, RuntimeObject *picture, int32_t width, int32_t height);

class CanvasPane : public ControlPane {
public:
    explicit CanvasPane(CanvasRecord *record);
    ~CanvasPane() override;

    void Draw(Graphics *g) override;
    // Draws the canvas into another Graphics with its corner at (x, y) of
    // that Graphics' pane: backdrop, Paint, then the controls on it.
    void DrawInto(Graphics &g, int32_t x, int32_t y);

    bool HoldsControls() const override { return true; }
    bool PassesClicksThrough() override { return true; }
    bool MouseDown(int32_t x, int32_t y, int32_t modifiers) override;
    void MouseDrag(int32_t x, int32_t y) override;
    void MouseUp(int32_t x, int32_t y) override;

    bool CanFocus() override;
    void GainFocus() override;
    void LoseFocus() override;
    bool KeyDown(int32_t character, int32_t code, int32_t modifiers) override;
    // The canvas's handler runs before its holders' and the window's.
    void EnableMenuItems() override;

    // Copies the pixels of the rectangle (window coordinates) by (dx, dy);
    // the toolkit exposes the band left uncovered.
    void ScrollPixels(int32_t dx, int32_t dy, const Rect &area);

private:
    void DrawBackColor(Graphics &g, const Rect &at);
    // Backdrop and Paint into `g`, whose language coordinates start at the
    // pane's corner.
    void DrawBackdrop(Graphics &g, const Rect &at);
    void FirePaint(Graphics *g);

    CanvasRecord *mRecord;          // the control's record, alive while bound
    SubPane *mChildPress = nullptr; // a control on the canvas that took the press
    bool mPressTaken = false;       // MouseDown said true for this press
};

// A drag ran to its end: the press that started it is over.
void NoteDragEnded();

// The canvas pane of a control; null for anything else.
CanvasPane *CanvasPaneOf(RuntimeObject *control);

} // namespace kelp
