#pragma once
// The EditField's events, in the class's table order; the definition fills
// the slots and the pane fires them.
namespace kelp {

struct ObjectHook;

struct EditHooks {
    ObjectHook *keyDown, *gotFocus, *lostFocus, *mouseDown, *mouseUp, *selChange, *textChange,
        *enableMenuItems, *validationError;
};
EditHooks &EditEvents();

} // namespace kelp
