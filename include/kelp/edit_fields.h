/* The edit field exports, as compiled code calls them.  All take the field
 * first and tolerate nil; positions count characters from 0. */
#ifndef KELP_EDIT_FIELDS_H
#define KELP_EDIT_FIELDS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

void EditCreatePane(RuntimeObject *self);
void EditFieldInitializer(RuntimeObject *self);
void RuntimeEditDestructor(RuntimeObject *self);
KelpString editTextGetter(RuntimeObject *self, int32_t);
void editTextSetter(RuntimeObject *self, int32_t, KelpString value);
void editSetString(RuntimeObject *self, KelpString value);
KelpString editTextStyleDataGetter(RuntimeObject *self, int32_t);
void editSetTextAndStyle(RuntimeObject *self, KelpString text, KelpString style);
int32_t editSelStartGetter(RuntimeObject *self, int32_t);
void editSelStartSetter(RuntimeObject *self, int32_t, int32_t value);
int32_t editSelLengthGetter(RuntimeObject *self, int32_t);
void editSelLengthSetter(RuntimeObject *self, int32_t, int32_t value);
KelpString editSelTextGetter(RuntimeObject *self, int32_t);
void editSelTextSetter(RuntimeObject *self, int32_t, KelpString value);
void editSelectAll(RuntimeObject *self);
void editCopyToClipboard(RuntimeObject *self);
void editPasteFromClipboard(RuntimeObject *self);
void editTextColorSetter(RuntimeObject *self, int32_t, int32_t value);
void editBackColorSetter(RuntimeObject *self, int32_t, int32_t value);
KelpString editTextFontGetter(RuntimeObject *self, int32_t);
void editTextFontSetter(RuntimeObject *self, int32_t, KelpString value);
int32_t editTextSizeGetter(RuntimeObject *self, int32_t);
void editTextSizeSetter(RuntimeObject *self, int32_t, int32_t value);
int32_t editLimitTextGetter(RuntimeObject *self, int32_t);
void editLimitTextSetter(RuntimeObject *self, int32_t, int32_t value);
void EditAlignmentSetter(RuntimeObject *self, int32_t, int32_t value);
int32_t EditSelAlignmentGetter(RuntimeObject *self, int32_t);
void EditSelAlignmentSetter(RuntimeObject *self, int32_t, int32_t value);
void EditMaskSetter(RuntimeObject *self, int32_t, KelpString value);
void EditFormatSetter(RuntimeObject *self, int32_t, KelpString value);
RuntimeObject *EditDataSourceGetter(RuntimeObject *self, int32_t);
void EditDataSourceSetter(RuntimeObject *self, int32_t, RuntimeObject *value);
void EditDataFieldSetter(RuntimeObject *self, int32_t, KelpString value);
int32_t editScrollPositionGetter(RuntimeObject *self, int32_t);
void editScrollPositionSetter(RuntimeObject *self, int32_t, int32_t value);
int32_t EditScrollPositionXGetter(RuntimeObject *self, int32_t);
void EditScrollPositionXSetter(RuntimeObject *self, int32_t, int32_t value);
int32_t editLineNumAtCharPos(RuntimeObject *self, int32_t pos);
int32_t editCharPosAtLineNum(RuntimeObject *self, int32_t line);
int32_t editCharPosAtXY(RuntimeObject *self, int32_t x, int32_t y);
int32_t editInsertionPosAtXY(RuntimeObject *self, int32_t x, int32_t y);
void editToggleSelectionBold(RuntimeObject *self);
void editToggleSelectionItalic(RuntimeObject *self);
void editToggleSelectionUnderline(RuntimeObject *self);
void editToggleSelectionShadow(RuntimeObject *);
void editToggleSelectionOutline(RuntimeObject *);
void editToggleSelectionCondense(RuntimeObject *);
void editToggleSelectionExtend(RuntimeObject *);
uint8_t editSelBoldGetter(RuntimeObject *self, int32_t);
void editSelBoldSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editSelItalicGetter(RuntimeObject *self, int32_t);
void editSelItalicSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editSelUnderlineGetter(RuntimeObject *self, int32_t);
void editSelUnderlineSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editSelNoStyleGetter(RuntimeObject *, int32_t);
void editSelNoStyleSetter(RuntimeObject *, int32_t, uint8_t);
uint8_t editSelOutlineGetter(RuntimeObject *, int32_t);
void editSelOutlineSetter(RuntimeObject *, int32_t, uint8_t);
uint8_t editSelShadowGetter(RuntimeObject *, int32_t);
void editSelShadowSetter(RuntimeObject *, int32_t, uint8_t);
uint8_t editSelCondenseGetter(RuntimeObject *, int32_t);
void editSelCondenseSetter(RuntimeObject *, int32_t, uint8_t);
uint8_t editSelExtendGetter(RuntimeObject *, int32_t);
void editSelExtendSetter(RuntimeObject *, int32_t, uint8_t);
uint8_t editSelPlainGetter(RuntimeObject *, int32_t);
void editSelPlainSetter(RuntimeObject *self, int32_t, uint8_t value);
KelpString editSelTextFontGetter(RuntimeObject *self, int32_t);
void editSelTextFontSetter(RuntimeObject *self, int32_t, KelpString value);
int32_t editSelTextSizeGetter(RuntimeObject *self, int32_t);
void editSelTextSizeSetter(RuntimeObject *self, int32_t, int32_t value);
int32_t editSelTextColorGetter(RuntimeObject *self, int32_t);
void editSelTextColorSetter(RuntimeObject *self, int32_t, int32_t value);
uint8_t editBorderGetter(RuntimeObject *self, int32_t);
void editBorderSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editMultiLineGetter(RuntimeObject *self, int32_t);
void editMultiLineSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editReadOnlyGetter(RuntimeObject *self, int32_t);
void editReadOnlySetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editPasswordGetter(RuntimeObject *self, int32_t);
void editPasswordSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editScrollBarGetter(RuntimeObject *self, int32_t);
void editScrollBarSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editHScrollBarGetter(RuntimeObject *self, int32_t);
void editHScrollBarSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editBoldGetter(RuntimeObject *self, int32_t);
void editBoldSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editItalicGetter(RuntimeObject *self, int32_t);
void editItalicSetter(RuntimeObject *self, int32_t, uint8_t value);
uint8_t editUnderlineGetter(RuntimeObject *self, int32_t);
void editUnderlineSetter(RuntimeObject *self, int32_t, uint8_t value);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
