#pragma once
// The controls of each window by name, in the order they were added: what
// WindowAddControl fills, RuntimeControlFetch reads and ControlClose empties.
// A window's map lives from its first control until the window is released.
#include "kelp/records.h"

#include <string>
#include <vector>

namespace kelp {

struct ViewRecord;

// Every control of the view, in the order added (borrowed).
std::vector<RuntimeObject *> ControlsOfView(RuntimeObject *view);

// The key of a control in its window's map: the name, or name$index.
std::string ControlKey(const std::string &name, int32_t index);

// The control of the view whose pane holds this control's pane most
// closely, or null (borrowed).
RuntimeObject *EnclosingControl(RuntimeControl *control);

// The window's controls take part in its life: wired into the windows layer.
void BindViewControls(ViewRecord *view);
void FireViewControlsClose(ViewRecord *view);
void ReleaseViewControls(ViewRecord *view);
void ContainersOfView(ViewRecord *view, std::vector<ViewRecord *> &out);
void CloseContainer(ViewRecord *view);

} // namespace kelp
