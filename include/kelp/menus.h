/* The runtime's menu exports, as compiled code calls them.  A MenuItem's
 * accessors take the item first; a nil item raises NilObjectException and
 * returns 0, an index outside the children raises OutOfBoundsException and
 * returns 0.  Object results are new references the caller owns. */
#ifndef KELP_MENUS_H
#define KELP_MENUS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Life cycle: the initialiser makes the item's implementation, MenuBar's
 * makes a bar's instead; the finaliser frees it. */
void MenuItemInitializer(RuntimeObject *self);
void MenuItemFinalizer(RuntimeObject *self);
void MenuBarInitializer(RuntimeObject *self);
void RuntimeMenuItemDefaultConstructor(RuntimeObject *self);
/* MenuItem(text, tag = nil). */
void MenuItemConstructor(RuntimeObject *self, KelpString text, RuntimeObject *tag);

/* Properties (item, row parameter[, value]). */
KelpString RuntimeMenuItemNameGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemNameSetter(RuntimeObject *self, int32_t parameter, KelpString value);
int32_t RuntimeMenuItemIndexGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemIndexSetter(RuntimeObject *self, int32_t parameter, int32_t value);
RuntimeObject *RuntimeMenuItemTagGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemTagSetter(RuntimeObject *self, int32_t parameter, RuntimeObject *value);
KelpString RuntimeMenuItemBalloonHelpGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemBalloonHelpSetter(RuntimeObject *self, int32_t parameter, KelpString value);
KelpString RuntimeMenuItemDisabledHelpGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemDisabledHelpSetter(RuntimeObject *self, int32_t parameter, KelpString value);
/* Text "-" makes a separator; "&" marks the mnemonic and "&&" is a plain
 * "&". */
KelpString RuntimeMenuItemTextGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemTextSetter(RuntimeObject *self, int32_t parameter, KelpString value);
uint8_t RuntimeMenuItemCheckedGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemCheckedSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
/* Enabling an item enables the titles above it. */
uint8_t RuntimeMenuItemEnabledGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemEnabledSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
uint8_t RuntimeMenuItemVisibleGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemVisibleSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
/* CommandKey and KeyboardShortcut: "Ctrl+Q"; the last character is the key,
 * Control is always held, "Shift" and "Alt" (or "Option") add theirs. */
KelpString RuntimeMenuItemCommandKeyGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemCommandKeySetter(RuntimeObject *self, int32_t parameter, KelpString value);
uint8_t RuntimeMenuItemBoldGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemBoldSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
uint8_t RuntimeMenuItemItalicsGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemItalicsSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
uint8_t RuntimeMenuItemUnderlineGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemUnderlineSetter(RuntimeObject *self, int32_t parameter, uint8_t value);
uint8_t RuntimeMenuItemAutoEnableGetter(RuntimeObject *self, int32_t parameter);
void RuntimeMenuItemAutoEnableSetter(RuntimeObject *self, int32_t parameter, uint8_t value);

/* Methods. */
void RuntimeEnableMenu(RuntimeObject *self);
void RuntimeCloseMenuItem(RuntimeObject *self); /* does nothing */
RuntimeObject *RuntimeMenuItemItem(RuntimeObject *self, int32_t index);
int32_t RuntimeMenuItemCount(RuntimeObject *self);
/* The first direct child of that Name, or nil. */
RuntimeObject *RuntimeMenuItemChild(RuntimeObject *self, KelpString name);
void RuntimeMenuItemAppend(RuntimeObject *self, RuntimeObject *item);
/* index 0 to Count. */
void RuntimeMenuItemInsert(RuntimeObject *self, int32_t index, RuntimeObject *item);
void RuntimeMenuItemRemoveIndex(RuntimeObject *self, int32_t index);
/* Not a child: nothing happens. */
void RuntimeMenuItemRemoveItem(RuntimeObject *self, RuntimeObject *item);
void RuntimeMenuItemRemoveByName(RuntimeObject *self, KelpString name);
/* The first item of that Name (and Index) anywhere below, breadth first. */
RuntimeObject *RuntimeMenuItemLookup(RuntimeObject *self, KelpString name);
RuntimeObject *RuntimeMenuItemLookupArray(RuntimeObject *self, KelpString name, int32_t index);
/* Puts `swapWith` in place of the first child named `name`. */
void RuntimeMenuItemSwap(RuntimeObject *self, KelpString name, RuntimeObject *swapWith);
/* Pops the item's menu up at (x, y) on the screen, or at the pointer, and
 * waits for the choice: nil when nothing was chosen or a handler took the
 * chosen item, else that item. */
RuntimeObject *RuntimeMenuItemPopUp(RuntimeObject *self, int32_t x, int32_t y);
RuntimeObject *RuntimeMenuItemPopUpByCursor(RuntimeObject *self);
/* A new member of a control array of items, placed behind its group. */
void MenuBarInstallClone(RuntimeObject *self, RuntimeObject *item);
/* The item named `name` in the window's bar, or the application's. */
RuntimeObject *RuntimeMenuReference(RuntimeObject *window, KelpString name);

/* The default actions: QuitMenuItem's ends the application (after the
 * subclass's own Action, if it has one that returns True) and answers
 * True; PrefsMenuItem's has nothing to show and answers False. */
uint8_t QuitMenuAction(RuntimeObject *self);
uint8_t PrefsMenuAction(RuntimeObject *self);

/* The enable cycle for the front window. */
void enableMenuItems(void);
/* There is no such folder here: nil. */
RuntimeObject *getAppleMenuFolder(void);

/* ContextualMenu, a Control of text rows: Open pops them up at the pointer
 * and fires Action(item) with the chosen row's text. */
void contextualMenuAddRow(RuntimeObject *self, KelpString text);
void contextualMenuAddSeparator(RuntimeObject *self);
void contextualMenuResetContent(RuntimeObject *self);
void contextualMenuOpen(RuntimeObject *self);
void RuntimeContextualMenuDestructor(RuntimeObject *self);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* KELP_MENUS_H */
