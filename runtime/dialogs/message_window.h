#pragma once
// The one builder of message windows: an icon, a message, an explanation
// below it in a smaller font, and a centred row of up to three buttons.
// The language's MessageDialog and MsgBox, and the runtime's own alerts,
// all show this window.
#include <cstdint>
#include <string>

namespace kelp {

enum MessageButton : int32_t {
    kButtonNone = -1,
    kButtonCancel = 0,
    kButtonAction = 1,
    kButtonAlternate = 2,
};

enum MessageIcon : int32_t {
    kIconNone = -1,
    kIconNote = 0,
    kIconCaution = 1,
    kIconStop = 2,
    kIconQuestion = 3,
};

struct MessageWindowSpec {
    std::string title, message, explanation;
    int32_t icon = kIconNote;
    // Empty captions take "OK", "Cancel", "Alternate Action".
    std::string actionCaption, cancelCaption, alternateCaption;
    bool cancelVisible = false, alternateVisible = false;
    int32_t defaultButton = kButtonAction;  // Return presses it; kButtonNone for none
    int32_t cancelButton = kButtonCancel;   // Escape presses it; kButtonNone for none
    int32_t closeBoxAnswer = kButtonCancel; // what closing the window answers
};

// How the window waits for its answer: through the run loop, so that timers
// and sockets go on (the language's dialogs), or through the toolkit alone
// (the runtime's reports, which may come from anywhere).
enum class MessageWait { kRunLoop, kToolkitOnly };

// The window's size and the places of its parts, in pixels.  Measured with
// the theme's font; the width is held to 80% of the screen's when the text
// would be wider, and the text wraps inside it.
struct MessageLayout {
    int32_t width, height;
    int32_t textLeft, textWidth, messageTop, messageHeight, explanationTop, explanationHeight;
    int32_t buttonTop, buttonHeight;
    int32_t buttonLeft[3], buttonWidth[3]; // by MessageButton; width 0 when hidden
};
MessageLayout LayOutMessage(const MessageWindowSpec &spec, int32_t screenWidth);

// Shows the window modally and answers the button pressed: its number, or
// the answer the description gives for the close box.  A default or cancel
// button that names a hidden button is reported as an assertion and
// dropped.  Needs a display.
int32_t RunMessageWindow(const MessageWindowSpec &spec, MessageWait wait);

} // namespace kelp
