/* The runtime's control exports, as compiled code calls them.  All take the
 * control (or the window, for the map) first and tolerate nil. */
#ifndef KELP_CONTROLS_H
#define KELP_CONTROLS_H

#include "kelp/control_accessors.h"
#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- the layout: mass property data, the control map */

/* Gives the object the properties of `data` (method _SetProperties):
 * records of a 16-bit big-endian property row and a value whose width the
 * row's type gives.  A bad row, a read-only row or an unknown type is a
 * failed assertion, and nothing after it is read. */
void RuntimeMassPropertySetter(RuntimeObject *object, KelpString data);
/* Registers a control of the window's layout under `name` (or
 * name$index for an element of a control array); takes a reference.  After
 * the window's controls are made, the control is bound and opened at once. */
void WindowAddControl(RuntimeObject *view, KelpString name, RuntimeObject *object);
/* The control named `name` ("name$2" for an element), or nil.  Fetch takes
 * no reference; Reference returns one the caller owns. */
RuntimeObject *RuntimeControlFetch(RuntimeObject *view, KelpString name);
RuntimeObject *RuntimeControlReference(RuntimeObject *view, KelpString name);
/* Fires Close on the control and the controls inside it, takes their panes
 * away and out of the window's map; an array closes up behind. */
void ControlClose(RuntimeObject *control);
void RuntimeControlMove(RuntimeObject *control, int32_t left, int32_t top, int32_t width,
                        int32_t height);
/* Stores a menu handler for the item's name; nil code does nothing. */
void ControlAddMenuHandler(RuntimeObject *control, KelpString name, void *code);

/* ---- Control and RectControl */

void RuntimeControlInitializer(RuntimeObject *control);
void RuntimeControlFinalizer(RuntimeObject *control);
int32_t ctlPosGetter(RuntimeObject *control,
                     int32_t selector); /* 0 Left, 1 Top, 2 Width, 3 Height */
void ctlPosSetter(RuntimeObject *control, int32_t selector, int32_t value);
uint8_t controlVisibleGetter(RuntimeObject *control, int32_t parameter);
void ControlVisibleSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
uint8_t controlEnabledGetter(RuntimeObject *control, int32_t parameter);
void controlEnabledSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
uint8_t controlActiveGetter(RuntimeObject *control, int32_t parameter);
void ControlTabPanelIndexSetter(RuntimeObject *control, int32_t parameter, int32_t value);
/* New references, or nil. */
RuntimeObject *ControlParentGetter(RuntimeObject *control, int32_t parameter);
void ControlParentSetter(RuntimeObject *control, int32_t parameter, RuntimeObject *parent);
void ControlInitialParentSetter(RuntimeObject *control, int32_t parameter, KelpString name);
RuntimeObject *controlWindowGetter(RuntimeObject *control, int32_t parameter);
int32_t controlMouseXGetter(RuntimeObject *control, int32_t parameter);
int32_t controlMouseYGetter(RuntimeObject *control, int32_t parameter);
void *controlMacControlHandleGetter(RuntimeObject *control, int32_t parameter);
void controlHelpTagSetter(RuntimeObject *control, int32_t parameter, KelpString value);
void controlBalloonHelpSetter(RuntimeObject *control, int32_t parameter, KelpString value);
void controlDisabledBalloonHelpSetter(RuntimeObject *control, int32_t parameter, KelpString value);
void controlAutoDeactivateSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
void RuntimeControlRefresh(RuntimeObject *control);
void RuntimeSetFocus(RuntimeObject *control);

/* ---- the simple controls: each class's CreatePane and its properties */

void StaticTextCreatePane(RuntimeObject *control);
void staticTextTextSetter(RuntimeObject *control, int32_t parameter, KelpString value);
KelpString staticTextTextGetter(RuntimeObject *control, int32_t parameter);
void staticTextAlignSetter(RuntimeObject *control, int32_t parameter, int32_t value);
void staticTextMultiLineSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
void staticTextColorSetter(RuntimeObject *control, int32_t parameter, int32_t value);
void staticAttributeSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
void staticTextFontSetter(RuntimeObject *control, int32_t parameter, KelpString value);
void staticTextSizeSetter(RuntimeObject *control, int32_t parameter, int32_t value);
void StaticTextFinalizer(RuntimeObject *control);

void PushButtonCreatePane(RuntimeObject *control);
void pushButtonCaptionSetter(RuntimeObject *control, int32_t parameter, KelpString value);
void pushButtonDefaultSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
void pushButtonCancelSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
void RuntimePushButtonPush(RuntimeObject *control);

void RadioCreatePane(RuntimeObject *control);
void radioCaptionSetter(RuntimeObject *control, int32_t parameter, KelpString value);
uint8_t radioValueGetter(RuntimeObject *control, int32_t parameter);
void radioValueSetter(RuntimeObject *control, int32_t parameter, uint8_t value);

void CheckBoxCreatePane(RuntimeObject *control);
void checkBoxCaptionSetter(RuntimeObject *control, int32_t parameter, KelpString value);
uint8_t checkBoxValueGetter(RuntimeObject *control, int32_t parameter);
void checkBoxValueSetter(RuntimeObject *control, int32_t parameter, uint8_t value);

void GroupBoxCreatePane(RuntimeObject *control);
void groupBoxCaptionSetter(RuntimeObject *control, int32_t parameter, KelpString value);

/* Releases the caption and font of a captioned control. */
void CaptionedControlFinalizer(RuntimeObject *control);
/* The shapes: one pane for the four; colour and size rows share a setter
 * that stores at the row's offset and repaints; a Line's ends also move it. */
void ShapeCreatePane(RuntimeObject *control);
void shapeAttributeSetter(RuntimeObject *control, int32_t offset, int32_t value);
void linePosSetter(RuntimeObject *control, int32_t offset, int32_t value);
void LineInitializer(RuntimeObject *control);
void OvalInitializer(RuntimeObject *control);
void RectangleInitializer(RuntimeObject *control);
void RoundRectangleInitializer(RuntimeObject *control);

void ProgressBarCreatePane(RuntimeObject *control);
void progressBarValueSetter(RuntimeObject *control, int32_t parameter, int32_t value);
void progressBarMaximumSetter(RuntimeObject *control, int32_t parameter, int32_t value);

/* ScrollBar and Slider.  Selectors 0 Minimum, 1 Value, 2 Maximum,
 * 3 LineStep, 4 PageStep. */
void ScrollBarCreatePane(RuntimeObject *control);
void SliderCreatePane(RuntimeObject *control);
int32_t scrollerPropGetter(RuntimeObject *control, int32_t selector);
void scrollerPropSetter(RuntimeObject *control, int32_t selector, int32_t value);
void ScrollerLiveScrollSetter(RuntimeObject *control, int32_t parameter, uint8_t value);
void ScrollerInitializer(RuntimeObject *control);

/* PagePanel and TabPanel: the functions serve both classes.  Value is the
 * 0-based page; a page past the last raises OutOfBoundsException, and so
 * do Insert (which allows the count), Remove and Caption outside. */
void PagePanelCreatePane(RuntimeObject *control);
int32_t PagePanelCountGetter(RuntimeObject *control, int32_t parameter);
int32_t PagePanelValueGetter(RuntimeObject *control, int32_t parameter);
void PagePanelValueSetter(RuntimeObject *control, int32_t parameter, int32_t value);
void PagePanelInsertPage(RuntimeObject *control, int32_t index, KelpString text);
void PagePanelAppendPage(RuntimeObject *control, KelpString text);
void PagePanelRemovePage(RuntimeObject *control, int32_t index);
void PagePanelFinalizer(RuntimeObject *control);
KelpString TabPanelCaptionGetter(RuntimeObject *control, int32_t index); /* owned */
void TabPanelCaptionSetter(RuntimeObject *control, int32_t index, KelpString text);
void TabPanelFacingSetter(RuntimeObject *control, int32_t parameter, int32_t value);
/* The tab under a point in window coordinates, or -1. */
int32_t TabPanelTabClickedOn(RuntimeObject *control, int32_t x, int32_t y);

/* PopupMenu and ComboBox: the rows live in the control.  An index outside
 * the rows raises OutOfBoundsException (InsertRow allows the count, and
 * ListIndex allows -1 for none). */
void PopupMenuInitializer(RuntimeObject *control);
void ComboBoxInitializer(RuntimeObject *control);
void PopupMenuFinalizer(RuntimeObject *control);
void PopupMenuCreatePane(RuntimeObject *control);
void RuntimeComboBoxAddRow(RuntimeObject *control, KelpString text);
void RuntimeComboBoxAddSeparator(RuntimeObject *control);
void RuntimeComboBoxInsertRow(RuntimeObject *control, int32_t index, KelpString text);
void RuntimeComboBoxRemoveRow(RuntimeObject *control, int32_t index);
void RuntimeComboBoxDeleteAllRows(RuntimeObject *control);
KelpString RuntimeComboBoxList(RuntimeObject *control, int32_t index);       /* owned */
RuntimeObject *RuntimeComboBoxRowTag(RuntimeObject *control, int32_t index); /* owned */
void RuntimeComboBoxRowTagSetter(RuntimeObject *control, int32_t index, RuntimeObject *tag);
int32_t RuntimeComboBoxListCount(RuntimeObject *control, int32_t parameter);
int32_t RuntimeComboBoxListIndexGetter(RuntimeObject *control, int32_t parameter);
void RuntimeComboBoxListIndexSetter(RuntimeObject *control, int32_t parameter, int32_t index);
KelpString RuntimeComboBoxTextGetter(RuntimeObject *control, int32_t parameter); /* owned */
void RuntimeComboBoxTextSetter(RuntimeObject *control, int32_t parameter, KelpString text);
void RuntimeComboBoxInitialValueSetter(RuntimeObject *control, int32_t parameter, KelpString text);

/* Fonts of the tab panel's captions and of the popup menu's and combo
 * box's text; the style setters take 0 Bold, 1 Italic, 2 Underline. */
void tabPanelTextFontSetter(RuntimeObject *control, int32_t parameter, KelpString value);
void tabPanelTextSizeSetter(RuntimeObject *control, int32_t parameter, int32_t value);
void tabPanelStyleSetter(RuntimeObject *control, int32_t selector, uint8_t value);
void RuntimeComboBoxTextFontSetter(RuntimeObject *control, int32_t parameter, KelpString value);
void RuntimeComboBoxTextSizeSetter(RuntimeObject *control, int32_t parameter, int32_t value);
void RuntimeComboBoxStyleSetter(RuntimeObject *control, int32_t selector, uint8_t value);

/* ---- the receivers of a control's action (actionSource) */

void pbAddActionNotificationReceiver(RuntimeObject *control, RuntimeObject *receiver);
void pbRemoveActionNotificationReceiver(RuntimeObject *control, RuntimeObject *receiver);
/* getBoundPart("getCheckedAction") or ("getUncheckedAction"): a new
 * actionSource for that side of the button's changes, or nil. */
RuntimeObject *radioGetBoundPart(RuntimeObject *control, KelpString name);
RuntimeObject *checkBoxGetBoundPart(RuntimeObject *control, KelpString name);
void rbaAddActionNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void rbaRemoveActionNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void cbaAddActionNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void cbaRemoveActionNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void BoundPartFinalizer(RuntimeObject *part);

/* ---- ContainerControl: a window class laid out inside another window */

void EmbeddedWindowControlInitializer(RuntimeObject *control);
void EmbeddedWindowControlFinalizer(RuntimeObject *control);
void EmbeddedWindowControlCreatePane(RuntimeObject *control);
void ContainerControlFinalizer(RuntimeObject *view);
/* Places the container at run time in a window, in a control (the place
 * relative to the control) or on a 0-based page of a panel; a view that
 * isn't a container, or one placed already, is left as it is. */
void EmbedWithin(RuntimeObject *view, RuntimeObject *parentWindow, int32_t left, int32_t top,
                 int32_t width, int32_t height);
void EmbedWithinControl(RuntimeObject *view, RuntimeObject *containingControl, int32_t left,
                        int32_t top, int32_t width, int32_t height);
void EmbedWithinPanel(RuntimeObject *view, RuntimeObject *containingPanel, int32_t page,
                      int32_t left, int32_t top, int32_t width, int32_t height);

/* Font setters shared by the captioned buttons and the group box. */
void captionFontSetter(RuntimeObject *control, int32_t parameter, KelpString value);
void captionSizeSetter(RuntimeObject *control, int32_t parameter, int32_t value);
void captionStyleSetter(RuntimeObject *control, int32_t parameter, uint8_t value);

/* The MouseCursor shown while the pointer is over the control (counted);
 * nil gives the window's. */
void controlMouseCursorSetter(RuntimeObject *control, int32_t parameter, RuntimeObject *cursor);

#ifdef __cplusplus
}
#endif

#endif
