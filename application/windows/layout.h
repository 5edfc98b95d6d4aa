// Window classes of the drill made from layout tables, as a compiler lays
// out a window: the window's own properties and each control's are mass
// property data made once at class set-up; Layout gives the window its data,
// CreateControls makes one object per row of the control's own subclass,
// gives it its data and registers it with the window.
#pragma once

#include "kelp/kelp.h"

#include <cstdint>
#include <span>

namespace sumbrook::ui {

enum ControlFlags : uint32_t {
    kMultiLine = 1,
    kDefaultButton = 2,
    kHidden = 4,
    kDisabled = 8,
    kCentred = 16,
    kUnderline = 32,
    // Edit fields only.
    kReadOnly = 64,
    kScrollBar = 128, // the vertical one
    kBorder = 256,
    kStyled = 512,
};

inline constexpr int32_t kDefaultColour = -1;

struct ControlRow {
    const char *base; // class: "StaticText", "EditField", "PushButton", "Placard", ...
    const char *name;
    int16_t left, top, width, height;
    const char *text;                // Text of a label or field, Caption of the others
    int16_t textSize = 14;           // in Arial
    uint32_t flags = 0;              // ControlFlags
    int32_t colour = kDefaultColour; // text colour 0xRRGGBB of a label
    const char *parent = nullptr;    // a control it stands in, made before it
};

// An event of the window (control null) or of one of its controls.
struct HandlerRow {
    const char *control;
    const char *event;
    void *code;
};

struct WindowDesign {
    const char *className;
    const char *title;
    int16_t width, height;
    int16_t minWidth, minHeight, maxWidth, maxHeight;
    bool closeButton;
    uint32_t fieldBytes; // the class's own fields, behind Window's
    std::span<const ControlRow> controls;
    std::span<const HandlerRow> handlers;
    int32_t timerPeriod = 0; // a multiple-mode "Timer1" in the window when not 0
};

// Makes the window class and its controls' classes; runs once per design at
// the image's class set-up.  Null when the library lacks a class.
RuntimeClass *SetUpWindowClass(const WindowDesign &design);

// The one instance of the window class, made (and so opened) when none is
// open.  The caller owns the reference returned.
RuntimeObject *Implicit(const WindowDesign &design);
// Shows the implicit instance, making it first when needed.
void Show(const WindowDesign &design);

// Offset of the first field the window class adds to Window.
uint32_t FieldsOf(const WindowDesign &design);

} // namespace sumbrook::ui
