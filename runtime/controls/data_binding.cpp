// Data binding of the simple controls: the fields every data-aware record
// keeps, the binders that make a control follow a source, and the popup
// menu's row-tag part.  A binding is a hidden receiver object: the source's
// notifier list holds it, the table below holds it for its control, and it
// points back at the control without a reference, which the control's
// finalizer clears, so neither keeps the other alive.
#include "controls/data_binding.h"

#include "controls/captioned.h"
#include "controls/classes.h"

#include "exceptions/call_event.h"
#include "objects/data_interfaces.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

#include <array>
#include <map>

namespace kelp {
namespace {

RuntimeClass *Iface(ObjectDefinition *(*definition)()) { return ClassForDefinition(definition()); }
RuntimeClass *ReceiverIface() {
    static RuntimeClass *c = Iface(&DataNotificationReceiverInterfaceDefinition);
    return c;
}

// Method `slot` of the interface on the object, or null when the object
// doesn't implement it.
void *Method(RuntimeObject *object, ObjectDefinition *(*definition)(), int slot) {
    return InterfaceMethod(object, Iface(definition), slot);
}

// What a control follows: its Enabled state, or its text.
enum BindingKind { kEnabling, kString, kKinds };

struct BindingRecord {
    RuntimeObject object;
    RuntimeObject *control; // not counted; cleared when the control goes
    RuntimeObject *source;  // counted
    int32_t kind;
};
BindingRecord *Binding(RuntimeObject *o) { return reinterpret_cast<BindingRecord *>(o); }

// The bindings of each control, by kind; each entry holds a reference.
std::map<RuntimeObject *, std::array<RuntimeObject *, kKinds>> &Bindings() {
    static std::map<RuntimeObject *, std::array<RuntimeObject *, kKinds>> table;
    return table;
}

void Unbind(RuntimeObject *control, int kind) {
    auto it = Bindings().find(control);
    if (it == Bindings().end() || !it->second[size_t(kind)])
        return;
    RuntimeObject *binding = it->second[size_t(kind)];
    it->second[size_t(kind)] = nullptr;
    Binding(binding)->control = nullptr;
    if (void *remove = Method(Binding(binding)->source, &DataNotifierInterfaceDefinition, 1))
        CallHandlerCode(remove, Binding(binding)->source, binding);
    RuntimeUnlockObject(binding);
}

// A control's text, whichever of the text-showing classes it is.
void ShowText(RuntimeObject *control, KelpString text) {
    auto is = [control](ObjectDefinition *(*definition)()) {
        return RuntimeObjectIsa(control, ClassForDefinition(definition()));
    };
    if (is(&StaticTextDefinition))
        staticTextTextSetter(control, 0, text);
    else if (is(&PopupMenuDefinition) || is(&ComboBoxDefinition))
        RuntimeComboBoxTextSetter(control, 0, text);
    else if (is(&PushButtonDefinition) || is(&RadioButtonDefinition) || is(&CheckBoxDefinition) ||
             is(&GroupBoxDefinition))
        pushButtonCaptionSetter(control, 0, text); // one caption path for the four
}

void Reload(RuntimeObject *control, int kind) {
    auto it = Bindings().find(control);
    RuntimeObject *binding = it == Bindings().end() ? nullptr : it->second[size_t(kind)];
    RuntimeObject *source = binding ? Binding(binding)->source : nullptr;
    if (!source)
        return;
    RuntimeLockObject(control); // the source's code may close it
    if (kind == kEnabling) {
        if (void *get = Method(source, &BooleanProviderInterfaceDefinition, 0))
            controlEnabledSetter(control, 0, CallHandlerCode<uint8_t>(get, source));
    } else if (void *get = Method(source, &StringProviderInterfaceDefinition, 0)) {
        KelpString text = CallHandlerCode<KelpString>(get, source);
        ShowText(control, text);
        objtext::Release(text);
    }
    RuntimeUnlockObject(control);
}

void Bind(RuntimeObject *control, RuntimeObject *source, int kind) {
    if (!control || !IsControl(control))
        return;
    Unbind(control, kind);
    if (!source)
        return;
    RuntimeObject *binding = RuntimeNewObject(ClassForDefinition(BindingDefinition()));
    if (!binding)
        return;
    RuntimeLockObject(source);
    Binding(binding)->control = control;
    Binding(binding)->source = source;
    Binding(binding)->kind = kind;
    Bindings()[control][size_t(kind)] = binding;
    if (void *add = Method(source, &DataNotifierInterfaceDefinition, 0))
        CallHandlerCode(add, source, binding);
    Reload(control, kind);
}

struct RowTagRecord {
    RuntimeObject object;
    RuntimeObject *popup; // counted
};
RowTagRecord *RowTag(RuntimeObject *o) { return reinterpret_cast<RowTagRecord *>(o); }

} // namespace

void ReleaseDataLink(DataLink &link) {
    RuntimeUnlockObject(link.source);
    objtext::Release(link.field);
    link.source = nullptr;
    link.field = nullptr;
    ClearReceivers(link.receivers);
    ClearReceivers(link.rowTagReceivers);
}

void NotifyDataChanged(const DataLink &link) {
    TellEach(link.receivers, ReceiverIface());
    TellEach(link.rowTagReceivers, ReceiverIface());
}

void AddDataReceiver(ReceiverLink *&list, RuntimeObject *receiver) {
    AddReceiver(list, receiver, ReceiverIface());
}

void SetDataSource(DataLink &link, RuntimeObject *source) {
    RuntimeLockObject(source);
    RuntimeUnlockObject(link.source);
    link.source = source;
}

void ForgetBindings(RuntimeObject *control) {
    if (!Bindings().contains(control))
        return;
    for (int kind = 0; kind < kKinds; ++kind)
        Unbind(control, kind);
    Bindings().erase(control);
}

RuntimeObject *NewRowTagPart(RuntimeObject *popup) {
    RuntimeObject *part = RuntimeNewObject(ClassForDefinition(PopupRowTagDefinition()));
    if (part) {
        RuntimeLockObject(popup);
        RowTag(part)->popup = popup;
    }
    return part;
}

} // namespace kelp

using namespace kelp;

extern "C" void enablingBinderBind(RuntimeObject *control, RuntimeObject *source) {
    Bind(control, source, kEnabling);
}
extern "C" void enablingBinderReload(RuntimeObject *control) { Reload(control, kEnabling); }
extern "C" void stringBinderBind(RuntimeObject *control, RuntimeObject *source) {
    Bind(control, source, kString);
}
extern "C" void stringBinderReload(RuntimeObject *control) { Reload(control, kString); }

// Only the captioned buttons act; their first receiver list is the one
// their Action (a check box's or radio button's turning on) tells.
extern "C" void actionBinderBind(RuntimeObject *control, RuntimeObject *receiver) {
    static RuntimeClass *classes[] = {ClassForDefinition(PushButtonDefinition()),
                                      ClassForDefinition(RadioButtonDefinition()),
                                      ClassForDefinition(CheckBoxDefinition())};
    for (RuntimeClass *klass : classes)
        if (control && RuntimeObjectIsa(control, klass)) {
            AddReceiver(Captioned(control)->receivers[0], receiver);
            return;
        }
}

extern "C" void BindingDataChanged(RuntimeObject *binding) {
    if (binding && Binding(binding)->control)
        Reload(Binding(binding)->control, Binding(binding)->kind);
}

extern "C" void BindingFinalizer(RuntimeObject *binding) {
    if (!binding)
        return;
    RuntimeUnlockObject(Binding(binding)->source);
    Binding(binding)->source = nullptr;
}

extern "C" void popupRowTagAddDNR(RuntimeObject *part, RuntimeObject *receiver) {
    if (DataLink *link = part ? PopupDataLink(RowTag(part)->popup) : nullptr)
        AddDataReceiver(link->rowTagReceivers, receiver);
}

extern "C" void popupRowTagRemoveDNR(RuntimeObject *part, RuntimeObject *receiver) {
    if (DataLink *link = part ? PopupDataLink(RowTag(part)->popup) : nullptr)
        RemoveReceiver(link->rowTagReceivers, receiver);
}

extern "C" void popupRowTagDataChanged(RuntimeObject *part) {
    if (DataLink *link = part ? PopupDataLink(RowTag(part)->popup) : nullptr)
        TellEach(link->rowTagReceivers, ReceiverIface());
}

extern "C" uint8_t popupRowTagDataAvailable(RuntimeObject *part) {
    return part && ChosenRowTag(RowTag(part)->popup) ? 1 : 0;
}

// The chosen row's tag as text: a tag that provides a string gives it;
// any other tag, or none, gives nil.
extern "C" KelpString popupRowTagGetString(RuntimeObject *part) {
    RuntimeObject *tag = part ? ChosenRowTag(RowTag(part)->popup) : nullptr;
    void *get = Method(tag, &StringProviderInterfaceDefinition, 0);
    return get ? CallHandlerCode<KelpString>(get, tag) : nullptr;
}

extern "C" void popupRowTagDestructor(RuntimeObject *part) {
    if (!part)
        return;
    RuntimeUnlockObject(RowTag(part)->popup);
    RowTag(part)->popup = nullptr;
}

namespace kelp {

ObjectDefinition *BindingDefinition() {
    static const MethodRow methods[] = {
        {"DataChanged", nullptr, nullptr, 0, KELP_ENTRY(BindingDataChanged)}};
    static const DefinitionAccessor interfaces[] = {&DataNotificationReceiverInterfaceDefinition};
    static const ClassDescription description = {
        .name = "Sys$Binding",
        .instanceSize = sizeof(BindingRecord),
        .finalizer = KELP_ENTRY(BindingFinalizer),
        .methods = methods,
        .interfaces = interfaces,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *PopupRowTagDefinition() {
    static const TypeRecord receiverType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &DataNotificationReceiverInterfaceDefinition};
    static const ParameterRow receiver[] = {{"receiver", &receiverType}};
    static const MethodRow methods[] = {
        {"addDataNotificationReceiver", nullptr, receiver, 1, KELP_ENTRY(popupRowTagAddDNR)},
        {"removeDataNotificationReceiver", nullptr, receiver, 1, KELP_ENTRY(popupRowTagRemoveDNR)},
        {"DataChanged", nullptr, nullptr, 0, KELP_ENTRY(popupRowTagDataChanged)},
        {"DataAvailable", &kTypeBoolean, nullptr, 0, KELP_ENTRY(popupRowTagDataAvailable)},
        {"getString", &kTypeString, nullptr, 0, KELP_ENTRY(popupRowTagGetString)},
    };
    static const DefinitionAccessor interfaces[] = {
        &DataNotifierInterfaceDefinition, &DataNotificationReceiverInterfaceDefinition,
        &DataAvailableProviderInterfaceDefinition, &StringProviderInterfaceDefinition};
    static const ClassDescription description = {
        .name = "Sys$PopupRowTag",
        .instanceSize = sizeof(RowTagRecord),
        .finalizer = KELP_ENTRY(popupRowTagDestructor),
        .methods = methods,
        .interfaces = interfaces,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
