#pragma once
// Data binding of the simple controls.  A data-aware control (static text,
// check box, popup menu) keeps the name of a field and the object it binds
// to; the database classes that fill such fields live above this layer and
// talk to the control through setString and the notifications.  A control
// that is a source (a check box's value, a popup's choice) tells its
// dataNotificationReceivers each time its data changes; a control can also
// follow a source, its Enabled state or its text reloaded from a
// BooleanProvider or StringProvider whenever that source notifies.
#include "controls/action_receivers.h"

#include "kelp/records.h"

namespace kelp {

// The binding fields of a data-aware control's record.
struct DataLink {
    RuntimeObject *source;         // DataSource; counted
    KelpString field;              // DataField; counted
    ReceiverLink *receivers;       // told when the control's data changes
    ReceiverLink *rowTagReceivers; // popup menu: told through its row-tag part
};

// DataSource takes a new object (counted); a receiver joins a list if it
// is a dataNotificationReceiver.
void SetDataSource(DataLink &link, RuntimeObject *source);
void AddDataReceiver(ReceiverLink *&list, RuntimeObject *receiver);
// Lets go of everything the link holds (the record's finalizer).
void ReleaseDataLink(DataLink &link);
// Tells the link's receivers (and those of its row-tag part) DataChanged.
void NotifyDataChanged(const DataLink &link);
// Ends the bindings that make the control follow a source; its finalizer
// calls this.
void ForgetBindings(RuntimeObject *control);

// The popup menu's side (popup_and_combo.cpp): its link, the tag of the
// chosen row (borrowed; null with none), and a new row-tag part.
DataLink *PopupDataLink(RuntimeObject *popup);
RuntimeObject *ChosenRowTag(RuntimeObject *popup);
RuntimeObject *NewRowTagPart(RuntimeObject *popup);

ObjectDefinition *BindingDefinition();
ObjectDefinition *PopupRowTagDefinition();

} // namespace kelp
