/*
 * Dialogs and the keyboard, as compiled code calls them: MessageDialog and
 * its buttons, MsgBox, the file dialogs, ShowURL and the Keyboard object.
 *
 * Failure channels: a nil object raises NilObjectException; an icon out of
 * range raises OutOfBoundsException; a default or cancel button naming a
 * hidden button is an assertion report, after which the dialog shows
 * without it.  A cancelled dialog answers nil.  A returned object or string
 * is the caller's reference.
 */
#ifndef KELP_DIALOGS_H
#define KELP_DIALOGS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

void MessageDialogInitializer(RuntimeObject *self);
void MessageDialogFinalizer(RuntimeObject *self);
void MDIconSetter(RuntimeObject *self, int32_t unused, int32_t value);
/* Selector 0 cancel, 1 action, 2 alternate. */
RuntimeObject *MDButtonGetter(RuntimeObject *self, int32_t number);
/* Selector 0 Visible, 1 Default, 2 Cancel. */
uint8_t MDBBooleanGetter(RuntimeObject *button, int32_t selector);
void MDBBooleanSetter(RuntimeObject *button, int32_t selector, uint8_t value);
KelpString MDBCaptionGetter(RuntimeObject *button, int32_t unused);
void MDBCaptionSetter(RuntimeObject *button, int32_t unused, KelpString value);
/* The button pressed (the close box: CancelButton), or nil. */
RuntimeObject *MessageDialogShowModal(RuntimeObject *self);
RuntimeObject *MessageDialogShowModalWithin(RuntimeObject *self, RuntimeObject *parent);
/* The text up to its first line end is the message, the rest the explanation. */
void RuntimeMsgBox(KelpString text);
/* Buttons, default and icon from `flags`; the result number of the button. */
int32_t VB_RuntimeMsgBox(KelpString text, int32_t flags, KelpString title);

/* FolderItemDialog and its kinds; the dialogs answer a FolderItem or nil. */
void FolderItemDialogInitializer(RuntimeObject *self);
void FolderItemDialogFinalizer(RuntimeObject *self);
void OpenDialogInitializer(RuntimeObject *self);
void SaveAsDialogInitializer(RuntimeObject *self);
void SelectFolderDialogInitializer(RuntimeObject *self);
RuntimeObject *FolderItemDialogShowModal(RuntimeObject *self);
RuntimeObject *FolderItemDialogShowWithin(RuntimeObject *self, RuntimeObject *parent);
/* Opens the address with the desktop's opener (xdg-open), without a shell. */
void GlobalShowURL(KelpString url);

/* GetOpenFolderItem(filter), GetSaveFolderItem(filter, defaultName) and
 * SelectFolder: the file dialogs shown over the front window; the chosen
 * item (the caller's reference) or nil when cancelled or without a display.
 * The filter names registered file types, ";"-separated. */
RuntimeObject *RuntimeGetOpenFolderItem(KelpString filter);
RuntimeObject *RuntimeGetSaveFolderItem(KelpString filter, KelpString defaultName);
RuntimeObject *RuntimeSelectFolder(void);
/* SelectColor(ByRef color, prompt): the colour dialog; 1 and `color` set
 * (0xRRGGBB) when the person pressed OK, else 0 and `color` unchanged. */
uint8_t selectColor(uint32_t *color, KelpString prompt);
/* ExportPicture: asks where, then saves as SaveAsPicture does; 1 when the
 * file was written.  A nil picture raises NilObjectException. */
uint8_t exportPicture(RuntimeObject *picture);
/* Does nothing: text is drawn by Pango on cairo here. */
void EnableCoreGraphicsTextOnOSX(void);

/* The Keyboard object (one for the process) and its members.  Masks: Shift
 * 0x200, Command 0x100, Option 0x800, Control 0x1000, -1 the menu shortcut
 * key (Control), -2 the alternate one (Shift). */
RuntimeObject *getKeyboardObject(void);
uint8_t modifierKeyGetter(RuntimeObject *keyboard, int32_t mask);
uint8_t asyncModifierKeyGetter(RuntimeObject *keyboard, int32_t mask);
/* Below 128 a Macintosh virtual key number, from 128 on an X keyval. */
uint8_t keyboardAsyncKeyDown(RuntimeObject *keyboard, int32_t code);
KelpString keyboardKeyName(RuntimeObject *keyboard, int32_t code);

#ifdef __cplusplus
}
#endif

#endif
