/* The per-class accessors of the controls, as images bind them by name: each
 * class reads and writes its caption and font through its own entry points,
 * where the library's own rows share one setter per property kind.  All
 * tolerate nil; a getter of a string or object returns a new reference. */
#ifndef KELP_CONTROL_ACCESSORS_H
#define KELP_CONTROL_ACCESSORS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- captions and fonts of the captioned controls */

#define KELP_CAPTIONED_ACCESSORS(prefix)                                                           \
    KelpString prefix##TitleGetter(RuntimeObject *control, int32_t parameter);                     \
    KelpString prefix##TextFontGetter(RuntimeObject *control, int32_t parameter);                  \
    void prefix##TextFontSetter(RuntimeObject *control, int32_t parameter, KelpString value);      \
    int32_t prefix##TextSizeGetter(RuntimeObject *control, int32_t parameter);                     \
    void prefix##TextSizeSetter(RuntimeObject *control, int32_t parameter, int32_t value);         \
    uint8_t prefix##BoldGetter(RuntimeObject *control, int32_t parameter);                         \
    void prefix##BoldSetter(RuntimeObject *control, int32_t parameter, uint8_t value);             \
    uint8_t prefix##ItalicGetter(RuntimeObject *control, int32_t parameter);                       \
    void prefix##ItalicSetter(RuntimeObject *control, int32_t parameter, uint8_t value);           \
    uint8_t prefix##UnderlineGetter(RuntimeObject *control, int32_t parameter);                    \
    void prefix##UnderlineSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
KELP_CAPTIONED_ACCESSORS(pushButton)
KELP_CAPTIONED_ACCESSORS(radio)
KELP_CAPTIONED_ACCESSORS(checkBox)
KELP_CAPTIONED_ACCESSORS(group)
#undef KELP_CAPTIONED_ACCESSORS

uint8_t pushButtonDefaultGetter(RuntimeObject *control, int32_t parameter);
uint8_t pushButtonCancelGetter(RuntimeObject *control, int32_t parameter);

/* The font of a popup menu's or combo box's text, as last set. */
KelpString RuntimeComboBoxTextFontGetter(RuntimeObject *control, int32_t parameter);
int32_t RuntimeComboBoxTextSizeGetter(RuntimeObject *control, int32_t parameter);
uint8_t RuntimeComboBoxBoldGetter(RuntimeObject *control, int32_t parameter);
uint8_t RuntimeComboBoxItalicGetter(RuntimeObject *control, int32_t parameter);
uint8_t RuntimeComboBoxUnderlineGetter(RuntimeObject *control, int32_t parameter);
/* The combo box as a provider of its text: what the entry shows. */
KelpString RuntimeComboBoxGetString(RuntimeObject *control);

/* StaticText.setString: the text that a bound data source sends. */
void StaticTextSetString(RuntimeObject *control, KelpString value);

int32_t progressValueGetter(RuntimeObject *control, int32_t parameter);
int32_t progressMaximumGetter(RuntimeObject *control, int32_t parameter);

/* A control class with no fields of its own lets its pane go; the record
 * itself is freed by the object runtime. */
void ControlPaneDestructor(RuntimeObject *control);

/* ---- every control */

uint8_t controlAutoDeactivateGetter(RuntimeObject *control, int32_t parameter);
/* The Lock flags: read when the window changes size. */
uint8_t controlLockLeftGetter(RuntimeObject *control, int32_t parameter);
void controlLockLeftSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
uint8_t controlLockTopGetter(RuntimeObject *control, int32_t parameter);
void controlLockTopSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
uint8_t controlLockRightGetter(RuntimeObject *control, int32_t parameter);
void controlLockRightSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
uint8_t controlLockBottomGetter(RuntimeObject *control, int32_t parameter);
void controlLockBottomSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
/* PanelIndex: the 0-based page of the panel the control lies on; the
 * control shows only while that page is up. */
int32_t ControlPanelIndexGetter(RuntimeObject *control, int32_t parameter);
void ControlPanelIndexSetter(RuntimeObject *control, int32_t parameter, int32_t value);
/* Repaints a part of the control, in its own coordinates. */
void RuntimeControlRefreshRect(RuntimeObject *control, int32_t left, int32_t top, int32_t width,
                               int32_t height);
void RectControlDefaultConstructor(RuntimeObject *control);
/* CreatePane of a class that has no pane: the control stays unbound. */
void NilCreatePane(RuntimeObject *control);
/* ClearFocus: no control of the front window keeps the keyboard. */
void clearFocus(void);

/* ---- controls by window */

/* Element `index` of the window's control array `name`, with a reference,
 * or nil. */
RuntimeObject *RuntimeControlArrayItemReference(RuntimeObject *view, KelpString name,
                                                int32_t index);
/* Window.Control(index): the window's index-th control (0-based, in the
 * order they were added), with a reference; outside the count it raises
 * OutOfBoundsException. */
RuntimeObject *windowControl(RuntimeObject *view, int32_t index);
int32_t windowControlCountGetter(RuntimeObject *view, int32_t parameter);
/* Window._Move: all four edges at once. */
void WindowMove(RuntimeObject *view, int32_t left, int32_t top, int32_t width, int32_t height);
void WindowDefaultConstructor(RuntimeObject *view);
/* A new object of `klass` that belongs to the window's layout. */
RuntimeObject *WindowAllocateObject(RuntimeObject *view, RuntimeClass *klass);

/* ---- generic field accessors that repaint what they change; the
 * parameter is the field's offset in the object */

uint8_t paneBoolGetter(RuntimeObject *object, int32_t offset);
void paneBoolSetter(RuntimeObject *object, int32_t offset, uint8_t value);
RuntimeObject *paneObjGetter(RuntimeObject *object, int32_t offset);
void paneObjSetter(RuntimeObject *object, int32_t offset, RuntimeObject *value);
KelpString paneStringGetter(RuntimeObject *object, int32_t offset);
void paneStringSetter(RuntimeObject *object, int32_t offset, KelpString value);

/* ---- a ContainerControl's properties, which its embedded control holds;
 * selectors as for ctlPosGetter (0 to 3), 4 TabPanelIndex; Boolean fields
 * by their offset in the control record */

int32_t eWindowIntPassThroughGetter(RuntimeObject *view, int32_t selector);
uint8_t eWindowBoolPassThroughGetter(RuntimeObject *view, int32_t offset);
void eWindowBoolPassThroughSetter(RuntimeObject *view, int32_t offset, uint8_t value);
KelpString eWindowStringPassThroughGetter(RuntimeObject *view, int32_t offset);
RuntimeObject *eWindowControlGetter(RuntimeObject *view, int32_t parameter);
RuntimeObject *eWindowContainingWindowGettter(RuntimeObject *view, int32_t parameter);
RuntimeObject *eWindowParentGetter(RuntimeObject *view, int32_t parameter);
void eWindowParentSetter(RuntimeObject *view, int32_t parameter, RuntimeObject *parent);
void eWindowInitialParentSetter(RuntimeObject *view, int32_t parameter, KelpString name);
void eWindowEnabledSetter(RuntimeObject *view, int32_t parameter, uint8_t value);
void eWindowAutoDeactivateSetter(RuntimeObject *view, int32_t parameter, uint8_t value);
void eWindowHelpTagSetter(RuntimeObject *view, int32_t parameter, KelpString value);
void eWindowDisabledBalloonHelpSetter(RuntimeObject *view, int32_t parameter, KelpString value);
void eWindowTabPanelIndexSetter(RuntimeObject *view, int32_t parameter, int32_t value);

/* ---- data binding: a data-aware control keeps its DataSource (an object)
 * and DataField; a control that is a source tells its
 * dataNotificationReceivers when its data changes */

RuntimeObject *StaticTextDataSourceGetter(RuntimeObject *control, int32_t parameter);
void StaticTextDataSourceSetter(RuntimeObject *control, int32_t parameter, RuntimeObject *source);
void StaticTextDataFieldSetter(RuntimeObject *control, int32_t parameter, KelpString field);
RuntimeObject *CheckBoxDataSourceGetter(RuntimeObject *control, int32_t parameter);
void CheckBoxDataSourceSetter(RuntimeObject *control, int32_t parameter, RuntimeObject *source);
void CheckBoxDataFieldSetter(RuntimeObject *control, int32_t parameter, KelpString field);
RuntimeObject *PopupDataSourceGetter(RuntimeObject *control, int32_t parameter);
void PopupDataSourceSetter(RuntimeObject *control, int32_t parameter, RuntimeObject *source);
void PopupDataFieldSetter(RuntimeObject *control, int32_t parameter, KelpString field);

/* The check box as a BooleanProvider and dataNotifier: setBoolean turns
 * the box, which tells the receivers as a click would. */
uint8_t checkBoxGetBoolean(RuntimeObject *control);
void checkBoxSetBoolean(RuntimeObject *control, uint8_t value);
void checkBoxAddDataNotificationReceiver(RuntimeObject *control, RuntimeObject *receiver);
void checkBoxRemoveDataNotificationReceiver(RuntimeObject *control, RuntimeObject *receiver);

/* The popup menu as a dataNotifier (told at each Change) and a
 * DataAvailableProvider (a row is chosen).  getBoundPart("rowTag") gives a
 * part that provides the chosen row's tag as a string. */
void popupAddDNR(RuntimeObject *control, RuntimeObject *receiver);
void popupBindList(RuntimeObject *control, RuntimeObject *provider);
void popupRemoveDNR(RuntimeObject *control, RuntimeObject *receiver);
uint8_t popupDataAvailable(RuntimeObject *control);
RuntimeObject *popupGetBoundPart(RuntimeObject *control, KelpString name);
void popupRowTagAddDNR(RuntimeObject *part, RuntimeObject *receiver);
void popupRowTagRemoveDNR(RuntimeObject *part, RuntimeObject *receiver);
void popupRowTagDataChanged(RuntimeObject *part);
uint8_t popupRowTagDataAvailable(RuntimeObject *part);
KelpString popupRowTagGetString(RuntimeObject *part);
void popupRowTagDestructor(RuntimeObject *part);

/* A control follows a source: Enabled from a BooleanProvider, the text
 * (caption) from a StringProvider, each reloaded now and whenever the
 * source, if a dataNotifier, says its data changed.  Nil ends the
 * binding.  actionBinderBind makes a button's Action tell the receiver. */
void enablingBinderBind(RuntimeObject *control, RuntimeObject *source);
void enablingBinderReload(RuntimeObject *control);
void stringBinderBind(RuntimeObject *control, RuntimeObject *source);
void stringBinderReload(RuntimeObject *control);
void actionBinderBind(RuntimeObject *control, RuntimeObject *receiver);
void BindingDataChanged(RuntimeObject *binding);
void BindingFinalizer(RuntimeObject *binding);

#ifdef __cplusplus
}
#endif

#endif
