#include "controls/wiring.h"

#include "controls/action_receivers.h"
#include "controls/classes.h"
#include "controls/control.h"
#include "controls/control_map.h"
#include "controls/data_binding.h"
#include "controls/embedded.h"

#include "objects/definitions.h"
#include "objects/object_model.h"

#include "kelp/controls.h"
#include "kelp/objects.h"

namespace kelp {
namespace {

RuntimeObject *WindowOfControl(RuntimeObject *object) { return controlWindowGetter(object, 0); }

// Up the container chain: the enclosing control, and the window last.
RuntimeObject *ContainerOf(RuntimeObject *object) {
    if (!IsControl(object))
        return nullptr;
    if (RuntimeObject *parent = ControlParentGetter(object, 0))
        return parent;
    return controlWindowGetter(object, 0);
}

} // namespace

void WireControls() {
    AddIntrinsicClassAccessor(&ControlDefinition);
    AddIntrinsicClassAccessor(&RectControlDefinition);
    AddIntrinsicClassAccessor(&StaticTextDefinition);
    AddIntrinsicClassAccessor(&PushButtonDefinition);
    AddIntrinsicClassAccessor(&RadioButtonDefinition);
    AddIntrinsicClassAccessor(&CheckBoxDefinition);
    AddIntrinsicClassAccessor(&GroupBoxDefinition);
    AddIntrinsicClassAccessor(&LineDefinition);
    AddIntrinsicClassAccessor(&OvalDefinition);
    AddIntrinsicClassAccessor(&RectangleDefinition);
    AddIntrinsicClassAccessor(&RoundRectangleDefinition);
    AddIntrinsicClassAccessor(&ProgressBarDefinition);
    AddIntrinsicClassAccessor(&ScrollBarDefinition);
    AddIntrinsicClassAccessor(&SliderDefinition);
    AddIntrinsicClassAccessor(&PagePanelDefinition);
    AddIntrinsicClassAccessor(&TabPanelDefinition);
    AddIntrinsicClassAccessor(&PopupMenuDefinition);
    AddIntrinsicClassAccessor(&ComboBoxDefinition);
    AddIntrinsicClassAccessor(&ContainerControlDefinition);
    AddIntrinsicClassAccessor(&RadioButtonActionDefinition);
    AddIntrinsicClassAccessor(&CheckBoxActionDefinition);
    AddIntrinsicClassAccessor(&BindingDefinition);
    AddIntrinsicClassAccessor(&PopupRowTagDefinition);
    ViewControlsClient client;
    client.bind = &BindViewControls;
    client.fireClose = &FireViewControlsClose;
    client.release = &ReleaseViewControls;
    client.embed = &MakeEmbeddedControl;
    client.containers = &ContainersOfView;
    client.closeContainer = &CloseContainer;
    client.layout = &LayOutLockedControls;
    SetViewControlsClient(client);
    SetControlRelations(&WindowOfControl, &ContainerOf);
    SetFocusMoveHook(&FollowContainerFocus);
}

} // namespace kelp
