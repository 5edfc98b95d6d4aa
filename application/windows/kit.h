// What compiled code of an image does to make classes and windows, written
// once for the drill: long-lived string constants, subclasses of library
// classes with their handlers in the event rows, mass property data found by
// property name, and the self/me exchange of event code.
#pragma once

#include "drill/text.h"

#include "kelp/kelp.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace sumbrook::ui {

// A string constant with these bytes, made on first use and kept for the
// life of the process, as an image's data segment keeps its constants.
stringStorage *Constant(std::string_view bytes);

// A subclass `name` of the library class `base`, with `extraBytes` of
// fields behind the base's, or null when the library has no such class.
RuntimeClass *Subclass(const char *base, const char *name, uint32_t extraBytes = 0);
// Byte offset of the first field a subclass adds.
uint32_t OwnFieldsOffset(RuntimeClass *klass);
// Stores `code` in the class's event row of that name; false without one.
bool SetHandler(RuntimeClass *klass, const char *event, void *code);

template <typename F> void *Code(F *function) { return reinterpret_cast<void *>(function); }

// Mass property data for one object of `klass`: records of a big-endian
// 16-bit property row and a big-endian value.  A property the class lacks,
// or a value of the wrong type, is left out and reported on standard error,
// so a layout mistake shows at once and never reaches the runtime.
class MassData {
public:
    explicit MassData(const RuntimeClass *klass) : mClass(klass) {}
    MassData &Int(std::string_view name, int32_t value);
    MassData &Bool(std::string_view name, bool value);
    MassData &Color(std::string_view name, uint32_t rgb);
    MassData &Text(std::string_view name, std::string_view text);
    // The data as a string constant, ready for RuntimeMassPropertySetter.
    stringStorage *Constant() const { return ui::Constant(mBytes); }

private:
    bool Row(std::string_view name, char type);
    void Put(uint32_t value, int bytes);
    const RuntimeClass *mClass;
    std::string mBytes;
};

// The prologue and epilogue of event code in a window: `me` is the control
// the event came from, `self` its window.  Both hold a reference for the
// handler's run.
struct EventScope {
    explicit EventScope(RuntimeObject *control);
    ~EventScope();
    EventScope(const EventScope &) = delete;
    EventScope &operator=(const EventScope &) = delete;
    RuntimeObject *self = nullptr;
    RuntimeObject *me = nullptr;
};

// A control of the window by name (borrowed), or null.
RuntimeObject *ControlOf(RuntimeObject *view, const char *name);
// Text of a StaticText or an EditField.
sumbrook::Text LabelText(RuntimeObject *view, const char *name);
void SetLabelText(RuntimeObject *view, const char *name, const sumbrook::Text &text);
void SetRadioCaption(RuntimeObject *view, const char *name, const sumbrook::Text &text);
void SetRadioValue(RuntimeObject *view, const char *name, bool value);
void SetVisible(RuntimeObject *view, const char *name, bool visible);
void SetEnabled(RuntimeObject *view, const char *name, bool enabled);
void SetLabelColor(RuntimeObject *view, const char *name, uint32_t rgb);

} // namespace sumbrook::ui
