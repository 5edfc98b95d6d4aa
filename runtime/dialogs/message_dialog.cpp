// MessageDialog, its three buttons, and the MsgBox functions, all shown as
// the one message window.
#include "dialogs/message_dialog.h"

#include "kelp/dialogs.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include "dialogs/message_window.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "strings/kstring.h"
#include "windows/runtime_view.h"

#include <cstddef>
#include <string>

namespace kelp {

namespace {

MessageDialogRecord *Dialog(RuntimeObject *o) { return reinterpret_cast<MessageDialogRecord *>(o); }
MessageButtonRecord *Button(RuntimeObject *o) { return reinterpret_cast<MessageButtonRecord *>(o); }

std::string Text(KelpString s) {
    return s && s->length > 0 ? std::string(GetUTF8String(string::Wrap(s)).View()) : "";
}

MessageWindowSpec SpecOf(const MessageDialogRecord &d) {
    MessageWindowSpec spec;
    spec.title = Text(d.title);
    spec.message = Text(d.message);
    spec.explanation = Text(d.explanation);
    spec.icon = d.icon;
    spec.actionCaption = Text(d.actionCaption);
    spec.cancelCaption = Text(d.cancelCaption);
    spec.alternateCaption = Text(d.alternateCaption);
    spec.cancelVisible = d.cancelVisible;
    spec.alternateVisible = d.alternateVisible;
    spec.defaultButton = d.defaultIndex;
    spec.cancelButton = d.cancelIndex;
    return spec;
}

// The caption field of a button's dialog, by the button's number.
KelpString &CaptionField(MessageDialogRecord &d, int32_t number) {
    return number == kButtonAction   ? d.actionCaption
           : number == kButtonCancel ? d.cancelCaption
                                     : d.alternateCaption;
}

ObjectDefinition *ButtonBaseDefinition() {
    static const PropertyRow properties[] = {
        {0, "Visible", &kTypeBoolean, KELP_ENTRY(MDBBooleanGetter), KELP_ENTRY(MDBBooleanSetter),
         0},
        {0, "Default", &kTypeBoolean, KELP_ENTRY(MDBBooleanGetter), KELP_ENTRY(MDBBooleanSetter),
         1},
        {0, "Cancel", &kTypeBoolean, KELP_ENTRY(MDBBooleanGetter), KELP_ENTRY(MDBBooleanSetter), 2},
        {0, "Caption", &kTypeString, KELP_ENTRY(MDBCaptionGetter), KELP_ENTRY(MDBCaptionSetter)},
    };
    static const ClassDescription description = {
        .name = "MessageDialogButton",
        .instanceSize = sizeof(MessageButtonRecord),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

// The three buttons are subclasses by name only: each knows its number.
template <const char *Name> ObjectDefinition *NamedButtonDefinition() {
    static const ClassDescription description = {
        .name = Name,
        .super = ButtonBaseDefinition,
        .instanceSize = sizeof(MessageButtonRecord),
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}
constexpr char kActionName[] = "_ActionButton", kCancelName[] = "_CancelButton",
               kAlternateName[] = "_AlternateActionButton";
ObjectDefinition *ActionButtonDefinition() { return NamedButtonDefinition<kActionName>(); }
ObjectDefinition *CancelButtonDefinition() { return NamedButtonDefinition<kCancelName>(); }
ObjectDefinition *AlternateButtonDefinition() { return NamedButtonDefinition<kAlternateName>(); }

RuntimeObject *NewButton(ObjectDefinition *definition, RuntimeObject *dialog, int32_t number) {
    RuntimeObject *b = NewObjectOfDefinition(definition);
    if (b) {
        Button(b)->dialog = dialog; // not counted: the dialog owns its buttons
        Button(b)->number = number;
    }
    return b;
}

// The part of `text` before its first end of line, and the part after it;
// an end of line at the very start doesn't count.  Text from elsewhere may
// carry any of the three line ends.
void SplitText(const std::string &text, std::string &message, std::string &explanation) {
    size_t at = std::string::npos, length = 0;
    for (const char *other : {"\r\n", "\n", "\r"}) {
        const size_t found = text.find(other, 1);
        if (found != std::string::npos && (at == std::string::npos || found < at))
            at = found, length = std::char_traits<char>::length(other);
    }
    message = text.substr(0, at);
    explanation = at == std::string::npos ? "" : text.substr(at + length);
}

} // namespace

ObjectDefinition *MessageDialogDefinition() {
    static const TypeRecord buttonType{kTypeObjectOf, nullptr, nullptr, 0, &ButtonBaseDefinition};
    static const TypeRecord windowType{kTypeObjectOf, nullptr, nullptr, 0, &WindowDefinition};
    using R = MessageDialogRecord;
    static const PropertyRow properties[] = {
        {0, "Message", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(R, message)},
        {0, "Explanation", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(R, explanation)},
        {0, "Title", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD, offsetof(R, title)},
        {0, "Icon", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(MDIconSetter),
         offsetof(R, icon)},
        {0, "ActionButton", &buttonType, KELP_ENTRY(MDButtonGetter), {}, kButtonAction},
        {0, "CancelButton", &buttonType, KELP_ENTRY(MDButtonGetter), {}, kButtonCancel},
        {0, "AlternateActionButton", &buttonType, KELP_ENTRY(MDButtonGetter), {}, kButtonAlternate},
    };
    static const ParameterRow withinParams[] = {{"parent", &windowType}};
    static const MethodRow methods[] = {
        {"ShowModal", &buttonType, nullptr, 0, KELP_ENTRY(MessageDialogShowModal)},
        {"ShowModalWithin", &buttonType, withinParams, 1, KELP_ENTRY(MessageDialogShowModalWithin)},
    };
    static const ClassDescription description = {
        .name = "MessageDialog",
        .instanceSize = sizeof(MessageDialogRecord),
        .initializer = KELP_ENTRY(MessageDialogInitializer),
        .finalizer = KELP_ENTRY(MessageDialogFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

std::span<ObjectDefinition *(*const)()> MessageButtonDefinitions() {
    static const DefinitionAccessor all[] = {&ButtonBaseDefinition, &ActionButtonDefinition,
                                             &CancelButtonDefinition, &AlternateButtonDefinition};
    return all;
}

int32_t VBMsgBoxResult(int32_t flags, int32_t button) {
    // Bits 0 to 3: the buttons; the result numbers of action, cancel, alternate.
    static const int32_t kResults[6][3] = {{1, 2, 5}, {1, 2, 5}, {4, 3, 5},
                                           {6, 2, 7}, {6, 2, 7}, {4, 2, 5}};
    int32_t set = flags & 0xF;
    if (set >= 6)
        set = 0;
    if (button == kButtonNone)
        button = kButtonAction; // a showing that ended with no button pressed
    return kResults[set][button == kButtonAction ? 0 : button == kButtonCancel ? 1 : 2];
}

void ApplyVBFlags(MessageWindowSpec &spec, int32_t flags) {
    struct Buttons {
        const char *action, *cancel, *alternate; // null: hidden; "": the default caption
        int32_t defaults[3];                     // for 0, 0x100, 0x200
    };
    static const Buttons kSets[6] = {
        {"", nullptr, nullptr, {kButtonAction, kButtonNone, kButtonNone}},
        {"", "", nullptr, {kButtonAction, kButtonCancel, kButtonNone}},
        {"Retry", "Abort", "Ignore", {kButtonCancel, kButtonAction, kButtonAlternate}},
        {"Yes", "Cancel", "No", {kButtonAction, kButtonAlternate, kButtonCancel}},
        {"Yes", nullptr, "No", {kButtonAction, kButtonAlternate, kButtonNone}},
        {"Retry", "Cancel", nullptr, {kButtonAction, kButtonCancel, kButtonNone}},
    };
    int32_t set = flags & 0xF;
    if (set >= 6)
        set = 0;
    const Buttons &b = kSets[set];
    spec.actionCaption = b.action;
    spec.cancelVisible = b.cancel != nullptr;
    spec.cancelCaption = b.cancel ? b.cancel : "";
    spec.alternateVisible = b.alternate != nullptr;
    spec.alternateCaption = b.alternate ? b.alternate : "";
    const int32_t defaultField = (flags >> 8) & 3;
    spec.defaultButton = defaultField == 3 ? kButtonNone : b.defaults[defaultField];
    switch (flags & 0x70) {
    case 0x00: spec.icon = kIconNone; break;
    case 0x10: spec.icon = kIconStop; break;
    case 0x20: spec.icon = kIconQuestion; break;
    case 0x30: spec.icon = kIconCaution; break;
    default: spec.icon = kIconNote; break; // 0x40, and what has no meaning
    }
}

} // namespace kelp

using namespace kelp;

extern "C" void MessageDialogInitializer(RuntimeObject *self) {
    MessageDialogRecord *d = Dialog(self);
    d->actionButton = NewButton(ActionButtonDefinition(), self, kButtonAction);
    d->cancelButton = NewButton(CancelButtonDefinition(), self, kButtonCancel);
    d->alternateButton = NewButton(AlternateButtonDefinition(), self, kButtonAlternate);
    d->icon = kIconNote;
    d->cancelVisible = d->alternateVisible = 0;
    d->defaultIndex = kButtonAction;
    d->cancelIndex = kButtonCancel;
}

extern "C" void MessageDialogFinalizer(RuntimeObject *self) {
    MessageDialogRecord *d = Dialog(self);
    for (RuntimeObject **b : {&d->actionButton, &d->cancelButton, &d->alternateButton}) {
        if (*b)
            Button(*b)->dialog = nullptr; // a button the program still holds outlives us
        RuntimeUnlockObject(*b);
        *b = nullptr;
    }
    for (KelpString *s : {&d->title, &d->message, &d->explanation, &d->actionCaption,
                          &d->cancelCaption, &d->alternateCaption}) {
        RuntimeUnlockString(*s);
        *s = nullptr;
    }
}

extern "C" void MDIconSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (!self) {
        RaiseNilObject();
        return;
    }
    if (value < kIconNone || value > kIconQuestion) {
        const std::string message = "The integer value " + std::to_string(value) +
                                    " is not in the range of enumerated icons for the "
                                    "MessageDialog class.";
        RaiseWithMessage("OutOfBoundsException", message.c_str());
        return;
    }
    Dialog(self)->icon = value;
}

extern "C" RuntimeObject *MDButtonGetter(RuntimeObject *self, int32_t number) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    MessageDialogRecord *d = Dialog(self);
    RuntimeObject *b = number == kButtonAction   ? d->actionButton
                       : number == kButtonCancel ? d->cancelButton
                                                 : d->alternateButton;
    RuntimeLockObject(b);
    return b;
}

extern "C" uint8_t MDBBooleanGetter(RuntimeObject *self, int32_t selector) {
    if (!self || !Button(self)->dialog)
        return 0;
    const MessageDialogRecord *d = Dialog(Button(self)->dialog);
    const int32_t n = Button(self)->number;
    switch (selector) {
    case 0:
        return n == kButtonAction || (n == kButtonCancel ? d->cancelVisible : d->alternateVisible);
    case 1: return d->defaultIndex == n;
    case 2: return d->cancelIndex == n;
    default: return 0;
    }
}

extern "C" void MDBBooleanSetter(RuntimeObject *self, int32_t selector, uint8_t value) {
    if (!self || !Button(self)->dialog)
        return;
    MessageDialogRecord *d = Dialog(Button(self)->dialog);
    const int32_t n = Button(self)->number;
    switch (selector) {
    case 0: // the action button is always there
        if (n == kButtonCancel)
            d->cancelVisible = value != 0;
        else if (n == kButtonAlternate)
            d->alternateVisible = value != 0;
        break;
    case 1: d->defaultIndex = value ? n : kButtonNone; break;
    case 2: d->cancelIndex = value ? n : kButtonNone; break;
    default: break;
    }
}

extern "C" KelpString MDBCaptionGetter(RuntimeObject *self, int32_t) {
    if (!self || !Button(self)->dialog)
        return nullptr;
    KelpString s = CaptionField(*Dialog(Button(self)->dialog), Button(self)->number);
    RuntimeLockString(s);
    return s;
}

extern "C" void MDBCaptionSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (!self || !Button(self)->dialog)
        return;
    KelpString &field = CaptionField(*Dialog(Button(self)->dialog), Button(self)->number);
    RuntimeLockString(value);
    RuntimeUnlockString(field);
    field = value;
}

extern "C" RuntimeObject *MessageDialogShowModal(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    const int32_t pressed = RunMessageWindow(SpecOf(*Dialog(self)), MessageWait::kRunLoop);
    return pressed == kButtonNone ? nullptr : MDButtonGetter(self, pressed);
}

extern "C" RuntimeObject *MessageDialogShowModalWithin(RuntimeObject *self, RuntimeObject *parent) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    Dialog(self)->parent = parent;
    RuntimeObject *answer = MessageDialogShowModal(self);
    Dialog(self)->parent = nullptr;
    return answer;
}

extern "C" void RuntimeMsgBox(KelpString text) {
    MessageWindowSpec spec;
    SplitText(Text(text), spec.message, spec.explanation);
    RunMessageWindow(spec, MessageWait::kRunLoop);
}

extern "C" int32_t VB_RuntimeMsgBox(KelpString text, int32_t flags, KelpString title) {
    MessageWindowSpec spec;
    SplitText(Text(text), spec.message, spec.explanation);
    spec.title = Text(title);
    ApplyVBFlags(spec, flags);
    // The close box and Escape count as the cancel button, shown or not.
    return VBMsgBoxResult(flags, RunMessageWindow(spec, MessageWait::kRunLoop));
}
