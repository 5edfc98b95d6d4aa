#pragma once
// What the captioned controls share: push button, radio button, check box
// and group box keep a caption, a font and a value in one record, and their
// panes show the caption through one label.
#include "controls/caption.h"
#include "controls/control.h"

namespace kelp {

// The record of the captioned controls, behind the control's own fields.
struct CaptionedControl {
    RuntimeControl control;
    KelpString caption; // counted
    ControlFont font;
    uint8_t value;     // radio and check box: checked
    uint8_t busy;      // set while Action runs
    uint8_t isDefault; // push button: Return presses it
    uint8_t isCancel;  // push button: Escape presses it
};

inline CaptionedControl *Captioned(RuntimeObject *object) {
    return reinterpret_cast<CaptionedControl *>(object);
}

// A pane whose widget shows the control's caption in its font.
class CaptionedPane : public ControlPane {
public:
    using ControlPane::ControlPane;
    virtual void SetCaption(KelpString caption);
    virtual void SetFont(const ControlFont &font);

protected:
    // The label that shows the caption: the widget's own child.
    virtual GtkWidget *CaptionLabel();
};

// The pane of a captioned control, or null before binding and after close.
CaptionedPane *CaptionedPaneOf(RuntimeObject *object);

} // namespace kelp
