#pragma once
// What the captioned controls share: push button, radio button, check box
// and group box keep a caption, a font and a value in one record, and their
// panes show the caption through one label.
#include "controls/action_receivers.h"
#include "controls/caption.h"
#include "controls/control.h"
#include "controls/data_binding.h"

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
    // Told of the action: [0] a push button's clicks or a toggle's turning
    // on, [1] a toggle's turning off.
    ReceiverLink *receivers[2];
    DataLink data; // check box: its DataSource, DataField and data receivers
};

inline CaptionedControl *Captioned(RuntimeObject *object) {
    return reinterpret_cast<CaptionedControl *>(object);
}

// A pane whose widget shows the control's caption in its font.
class CaptionedPane : public ControlPane {
public:
    using ControlPane::ControlPane;
    virtual void SetCaption(KelpString caption);
    void SetFont(const ControlFont &font) override;

    // Radio button and check box: whether the toggle is on.
    bool GetValue() const {
        return mWidget && GTK_IS_TOGGLE_BUTTON(mWidget) &&
               gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(mWidget));
    }
    virtual void SetValue(bool flag) { (void)flag; }

protected:
    // The label that shows the caption: the widget's own child.
    virtual GtkWidget *CaptionLabel();
};

// Value of a radio button or check box: the toggle while bound, else the
// record.
inline uint8_t CaptionedValue(RuntimeObject *self) {
    return ShownOrStored(self, &CaptionedControl::value, &CaptionedPane::GetValue);
}
inline void SetCaptionedValue(RuntimeObject *self, uint8_t value) {
    StoreAndShow(self, &CaptionedControl::value, value != 0, &CaptionedPane::SetValue);
}

} // namespace kelp
