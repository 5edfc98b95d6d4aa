#include "controls/action_receivers.h"

#include "controls/captioned.h"

#include "exceptions/call_event.h"
#include "objects/action_interfaces.h"
#include "objects/definitions.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cstddef>
#include <vector>

namespace kelp {
namespace {

RuntimeClass *ReceiverInterface() {
    static RuntimeClass *iface =
        ClassForDefinition(ActionNotificationReceiverInterfaceDefinition());
    return iface;
}

// The bound part: the control (counted) and which of its lists it stands for.
struct BoundPartRecord {
    RuntimeObject object;
    RuntimeObject *control;
    uint8_t checked;
};

BoundPartRecord *Part(RuntimeObject *o) { return reinterpret_cast<BoundPartRecord *>(o); }

ReceiverLink **ListOf(RuntimeObject *part) {
    RuntimeObject *control = part ? Part(part)->control : nullptr;
    return control ? &Captioned(control)->receivers[Part(part)->checked ? 0 : 1] : nullptr;
}

} // namespace

void AddReceiver(ReceiverLink *&list, RuntimeObject *receiver, RuntimeClass *iface) {
    if (!receiver || !RuntimeObjectIsa(receiver, iface ? iface : ReceiverInterface()))
        return;
    RuntimeLockObject(receiver);
    list = new ReceiverLink{list, receiver};
}

void RemoveReceiver(ReceiverLink *&list, RuntimeObject *receiver) {
    for (ReceiverLink **at = &list; *at; at = &(*at)->next)
        if ((*at)->receiver == receiver) {
            ReceiverLink *gone = *at;
            *at = gone->next;
            RuntimeUnlockObject(gone->receiver);
            delete gone;
            return;
        }
}

void ClearReceivers(ReceiverLink *&list) {
    while (ReceiverLink *link = list) {
        list = link->next;
        RuntimeUnlockObject(link->receiver);
        delete link;
    }
}

void *InterfaceMethod(RuntimeObject *object, RuntimeClass *iface, int index) {
    if (!object || !iface || !RuntimeObjectIsa(object, iface))
        return nullptr;
    RuntimeMethodRow *table = RuntimeLookupInterfaceVtable(object, iface);
    if (!table)
        return nullptr;
    return table[0].code ? table[index].code : table[index + 1].code;
}

void PerformActions(const ReceiverLink *list) { TellEach(list, ReceiverInterface()); }

void TellEach(const ReceiverLink *list, RuntimeClass *iface) {
    std::vector<RuntimeObject *> receivers;
    for (const ReceiverLink *link = list; link; link = link->next) {
        RuntimeLockObject(link->receiver);
        receivers.push_back(link->receiver);
    }
    for (RuntimeObject *receiver : receivers) {
        if (void *code = InterfaceMethod(receiver, iface, 0))
            CallHandlerCode(code, receiver);
        RuntimeUnlockObject(receiver);
    }
}

RuntimeObject *NewBoundPart(RuntimeObject *control, bool checked, bool radio) {
    RuntimeObject *part = RuntimeNewObject(
        ClassForDefinition(radio ? RadioButtonActionDefinition() : CheckBoxActionDefinition()));
    if (!part)
        return nullptr;
    RuntimeLockObject(control);
    Part(part)->control = control;
    Part(part)->checked = checked;
    return part;
}

} // namespace kelp

using namespace kelp;

extern "C" void BoundPartFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    RuntimeUnlockObject(Part(self)->control);
    Part(self)->control = nullptr;
}

extern "C" void rbaAddActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    if (ReceiverLink **list = ListOf(self))
        AddReceiver(*list, receiver);
}
extern "C" void rbaRemoveActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    if (ReceiverLink **list = ListOf(self))
        RemoveReceiver(*list, receiver);
}
extern "C" void cbaAddActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    rbaAddActionNotificationReceiver(self, receiver);
}
extern "C" void cbaRemoveActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    rbaRemoveActionNotificationReceiver(self, receiver);
}

namespace kelp {
namespace {

const TypeRecord kReceiverType{kTypeObjectOf, nullptr, nullptr, 0,
                               &ActionNotificationReceiverInterfaceDefinition};
const ParameterRow kReceiverParams[] = {{"receiver", &kReceiverType}};
const DefinitionAccessor kSource[] = {&ActionSourceInterfaceDefinition};

template <bool radio> ObjectDefinition *BoundPartDefinition(const char *name) {
    static const MethodRow methods[] = {
        {"addActionNotificationReceiver", nullptr, kReceiverParams, 1,
         radio ? KELP_ENTRY(rbaAddActionNotificationReceiver)
               : KELP_ENTRY(cbaAddActionNotificationReceiver)},
        {"removeActionNotificationReceiver", nullptr, kReceiverParams, 1,
         radio ? KELP_ENTRY(rbaRemoveActionNotificationReceiver)
               : KELP_ENTRY(cbaRemoveActionNotificationReceiver)},
    };
    static const ClassDescription description = {
        .name = name,
        .instanceSize = sizeof(BoundPartRecord),
        .finalizer = KELP_ENTRY(BoundPartFinalizer),
        .methods = methods,
        .interfaces = kSource,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace

ObjectDefinition *RadioButtonActionDefinition() {
    return BoundPartDefinition<true>("Sys$RadioButtonAction");
}
ObjectDefinition *CheckBoxActionDefinition() {
    return BoundPartDefinition<false>("Sys$CheckBoxAction");
}

} // namespace kelp
