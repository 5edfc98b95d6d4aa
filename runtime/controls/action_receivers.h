#pragma once
// The receivers of a control's action: objects of the language that
// implement actionNotificationReceiver and are told, through PerformAction,
// each time the control acts.  A list is linked, newest first, and holds a
// reference on each receiver.
#include "kelp/records.h"

namespace kelp {

struct ObjectDefinition;

struct ReceiverLink {
    ReceiverLink *next;
    RuntimeObject *receiver; // counted
};

// Adds the receiver in front; nil, or an object that doesn't implement
// `iface` (by default actionNotificationReceiver), is left out.  A receiver
// added twice is told twice, as it asked.
void AddReceiver(ReceiverLink *&list, RuntimeObject *receiver, RuntimeClass *iface = nullptr);
// Takes the receiver's newest entry out; one not in the list is ignored.
void RemoveReceiver(ReceiverLink *&list, RuntimeObject *receiver);
void ClearReceivers(ReceiverLink *&list);
// Calls PerformAction on every receiver, newest first.  The walk is over a
// copy, so a receiver may add or remove receivers, or close the control.
void PerformActions(const ReceiverLink *list);
// Method `index` (from 0, in the interface's order) of `iface` on the
// object, or null when it doesn't implement it.  Tables the library builds
// leave slot 0 free; an image may fill its own from slot 0: a table whose
// slot 0 holds code counts from there.
void *InterfaceMethod(RuntimeObject *object, RuntimeClass *iface, int index);
// The same walk calling the first method of `iface` on each receiver.
void TellEach(const ReceiverLink *list, RuntimeClass *iface);

// The object getBoundPart gives for "getCheckedAction" (checked true) and
// "getUncheckedAction" of a radio button or check box: an actionSource
// whose receivers hear that side of the control's changes.
RuntimeObject *NewBoundPart(RuntimeObject *control, bool checked, bool radio);
ObjectDefinition *RadioButtonActionDefinition();
ObjectDefinition *CheckBoxActionDefinition();

} // namespace kelp
