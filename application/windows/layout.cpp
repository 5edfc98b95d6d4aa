#include "windows/layout.h"

#include "windows/kit.h"

#include <map>
#include <string>
#include <vector>

namespace sumbrook::ui {
namespace {

struct MadeControl {
    RuntimeClass *klass;
    stringStorage *name;
    stringStorage *data;
};

struct MadeWindow {
    const WindowDesign *design;
    RuntimeClass *klass;
    stringStorage *data;
    std::vector<MadeControl> controls;
};

std::map<const RuntimeClass *, MadeWindow> &Made() {
    static auto *made = new std::map<const RuntimeClass *, MadeWindow>; // for the process's life
    return *made;
}

MadeWindow *Find(RuntimeObject *self) {
    auto it = self ? Made().find(self->klass) : Made().end();
    return it == Made().end() ? nullptr : &it->second;
}

void OnLayout(RuntimeObject *self) {
    if (MadeWindow *w = Find(self))
        RuntimeMassPropertySetter(self, w->data);
}

void OnCreateControls(RuntimeObject *self) {
    MadeWindow *w = Find(self);
    if (!w)
        return;
    for (const MadeControl &c : w->controls) {
        RuntimeObject *control = RuntimeNewObject(c.klass);
        RuntimeMassPropertySetter(control, c.data);
        WindowAddControl(self, c.name, control);
        RuntimeUnlockObject(control); // the window holds it now
    }
}

stringStorage *WindowData(RuntimeClass *klass, const WindowDesign &design) {
    MassData m(klass);
    // Every window of the drill: a document frame centred on the main
    // screen, white, of a fixed size.
    m.Text("Title", design.title).Int("Placement", 2).Int("Frame", 0);
    m.Int("Width", design.width).Int("Height", design.height);
    m.Int("MinWidth", design.minWidth).Int("MinHeight", design.minHeight);
    m.Int("MaxWidth", design.maxWidth).Int("MaxHeight", design.maxHeight);
    m.Bool("HasBackColor", true).Color("BackColor", 0xffffff);
    m.Bool("CloseButton", design.closeButton).Bool("Resizeable", false);
    m.Bool("MaximizeButton", false);
    return m.Constant();
}

stringStorage *ControlData(RuntimeClass *klass, const ControlRow &row) {
    MassData m(klass);
    const std::string base = row.base;
    m.Int("Left", row.left).Int("Top", row.top).Int("Width", row.width).Int("Height", row.height);
    if (row.parent)
        m.Text("InitialParent", row.parent);
    if (base == "Placard" || base == "Canvas") // no text of their own
        return m.Constant();
    m.Text("TextFont", "Arial").Int("TextSize", row.textSize);
    if (base == "StaticText") {
        m.Text("Text", row.text).Bool("MultiLine", row.flags & kMultiLine);
        if (row.flags & kCentred)
            m.Int("TextAlign", 1);
        if (row.colour != kDefaultColour)
            m.Color("TextColor", uint32_t(row.colour));
    } else if (base == "EditField") {
        m.Text("Text", row.text).Bool("MultiLine", row.flags & kMultiLine);
        m.Bool("ReadOnly", row.flags & kReadOnly).Bool("Border", row.flags & kBorder);
        m.Bool("ScrollBarVertical", row.flags & kScrollBar).Bool("Styled", row.flags & kStyled);
    } else {
        m.Text("Caption", row.text);
    }
    if (row.flags & kDefaultButton)
        m.Bool("Default", true);
    if (row.flags & kHidden)
        m.Bool("Visible", false);
    if (row.flags & kUnderline)
        m.Bool("Underline", true);
    if (row.flags & kDisabled)
        m.Bool("Enabled", false);
    return m.Constant();
}

void *HandlerFor(const WindowDesign &design, const char *control, const char *event) {
    for (const HandlerRow &h : design.handlers)
        if (h.control && std::string(h.control) == control && std::string(h.event) == event)
            return h.code;
    return nullptr;
}

} // namespace

RuntimeClass *SetUpWindowClass(const WindowDesign &design) {
    for (auto &[klass, made] : Made())
        if (made.design == &design)
            return made.klass;
    RuntimeClass *klass = Subclass("Window", design.className, design.fieldBytes);
    if (!klass)
        return nullptr;
    SetHandler(klass, "Layout", Code(&OnLayout));
    SetHandler(klass, "CreateControls", Code(&OnCreateControls));
    for (const HandlerRow &h : design.handlers)
        if (!h.control)
            SetHandler(klass, h.event, h.code);
    MadeWindow made{&design, klass, WindowData(klass, design), {}};
    for (const ControlRow &row : design.controls) {
        RuntimeClass *control = Subclass(row.base, row.name);
        if (!control)
            return nullptr;
        for (const HandlerRow &h : design.handlers)
            if (h.control && std::string(h.control) == row.name)
                SetHandler(control, h.event, h.code);
        made.controls.push_back({control, Constant(row.name), ControlData(control, row)});
    }
    if (design.timerPeriod > 0) {
        RuntimeClass *timer = Subclass("Timer", "Timer1");
        if (!timer)
            return nullptr;
        if (void *code = HandlerFor(design, "Timer1", "Action"))
            SetHandler(timer, "Action", code);
        MassData m(timer);
        m.Int("Mode", 2).Int("Period", design.timerPeriod);
        made.controls.push_back({timer, Constant("Timer1"), m.Constant()});
    }
    Made().emplace(klass, std::move(made));
    return klass;
}

RuntimeObject *Implicit(const WindowDesign &design) {
    RuntimeObject *window = RuntimeGetImplicitWindow(Constant(design.className));
    if (window)
        return window;
    RuntimeClass *klass = SetUpWindowClass(design);
    return klass ? RuntimeNewObject(klass) : nullptr;
}

void Show(const WindowDesign &design) {
    RuntimeObject *window = Implicit(design);
    RuntimeShowWindow(window);
    RuntimeUnlockObject(window);
}

uint32_t FieldsOf(const WindowDesign &design) { return OwnFieldsOffset(SetUpWindowClass(design)); }

} // namespace sumbrook::ui
