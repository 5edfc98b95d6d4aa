/* The edit field and styled text exports, as compiled code calls them.
 * All take the object first and tolerate nil; positions count characters
 * from 0. */
#ifndef KELP_EDIT_FIELDS_H
#define KELP_EDIT_FIELDS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- the edit field */
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
RuntimeObject *TextRangeGetter(RuntimeObject *self, int32_t);
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

/* ---- StyleRun, Range and StyledText; the field's StyledText */
void StyleRunKPConstructor(RuntimeObject *self, KelpString text);
void StyleRunFinalizer(RuntimeObject *self);
void styleRunStringSetter(RuntimeObject *self, int32_t offset, KelpString value);
int32_t RangeEndPosGetter(RuntimeObject *self, int32_t);
void StyledTextClassInitializer(RuntimeObject *self);
void StyledTextClassFinalizer(RuntimeObject *self);
void StyledTextDestructor(RuntimeObject *self);
KelpString StyledTextGetter(RuntimeObject *self, int32_t);
void StyledTextSetter(RuntimeObject *self, int32_t, KelpString value);
KelpString StyledTextGetFont(RuntimeObject *self, int32_t start, int32_t length);
void StyledTextSetFont(RuntimeObject *self, int32_t start, int32_t length, KelpString value);
int32_t StyledTextRunCountGetter(RuntimeObject *self, int32_t);
RuntimeObject *StyledTextRunGetter(RuntimeObject *self, int32_t index);
RuntimeObject *StyledTextRunRangeGetter(RuntimeObject *self, int32_t index);
void InsertStyledTextRun(RuntimeObject *self, RuntimeObject *run, int32_t index);
void AppendStyledTextRun(RuntimeObject *self, RuntimeObject *run);
void RemoveStyledTextRun(RuntimeObject *self, int32_t index);
int32_t StyledTextParagraphCountGetter(RuntimeObject *self, int32_t);
RuntimeObject *StyledTextParagraphGetter(RuntimeObject *self, int32_t index);
void StyledTextSetAlignment(RuntimeObject *self, int32_t index, int32_t align);
RuntimeObject *StyledTextObjectGetter(RuntimeObject *field, int32_t);
void StyledTextObjectSetter(RuntimeObject *field, int32_t, RuntimeObject *value);
uint8_t StyledTextGetBold(RuntimeObject *self, int32_t start, int32_t length);
void StyledTextSetBold(RuntimeObject *self, int32_t start, int32_t length, uint8_t value);
uint8_t StyledTextGetItalic(RuntimeObject *self, int32_t start, int32_t length);
void StyledTextSetItalic(RuntimeObject *self, int32_t start, int32_t length, uint8_t value);
uint8_t StyledTextGetUnderline(RuntimeObject *self, int32_t start, int32_t length);
void StyledTextSetUnderline(RuntimeObject *self, int32_t start, int32_t length, uint8_t value);
int32_t StyledTextGetSize(RuntimeObject *self, int32_t start, int32_t length);
void StyledTextSetSize(RuntimeObject *self, int32_t start, int32_t length, int32_t value);
int32_t StyledTextGetColor(RuntimeObject *self, int32_t start, int32_t length);
void StyledTextSetColor(RuntimeObject *self, int32_t start, int32_t length, int32_t value);

/* ---- StyledTextPrinter: a field's text drawn in blocks on a Graphics */
void StyledTextPrinterFinalizer(RuntimeObject *self);
RuntimeObject *editStyleTextPrinter(RuntimeObject *field, RuntimeObject *g, int32_t width);
void styledPrinterDrawBlock(RuntimeObject *self, int32_t x, int32_t y, int32_t height);
uint8_t styledPrinterEOF(RuntimeObject *self);
void styledPrinterWidthSetter(RuntimeObject *self, int32_t, int32_t value);

/* ---- FolderItem.OpenStyledEditField / SaveStyledEditField: a styled field
 * is saved as Rich Text with its runs, any other as UTF-8 text; opening reads
 * either.  1 when the item and the field's widget exist and the file was
 * read or written; a file error is kept in the item's LastErrorCode. */
uint8_t FolderItemOpenStyledEditField(RuntimeObject *item, RuntimeObject *field);
uint8_t FolderItemSaveStyledEditField(RuntimeObject *item, RuntimeObject *field);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
