/* The ListBox exports, as compiled code calls them.  Rows and columns count
 * from 0; a row or column outside the list raises OutOfBoundsException and
 * gives a neutral result.  All take the control (or the part, or the
 * ListColumn) first and tolerate nil.  Strings and objects returned are new
 * references. */
#ifndef KELP_LISTBOX_H
#define KELP_LISTBOX_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- life and pane */
void listboxConstructor(RuntimeObject *self);
void listboxDestructor(RuntimeObject *self);
void ListboxCreatePane(RuntimeObject *self);

/* ---- rows */
void RuntimeListAddRow(RuntimeObject *self, KelpString text);
void RuntimeListAddParent(RuntimeObject *self, KelpString text); /* AddFolder */
void RuntimeListInsertRow(RuntimeObject *self, int32_t row, KelpString text, int32_t indent);
void RuntimeListInsertParent(RuntimeObject *self, int32_t row, KelpString text, int32_t indent);
void RuntimeRemoveRow(RuntimeObject *self, int32_t row);
void RuntimeListEmpty(RuntimeObject *self);                 /* DeleteAllRows */
KelpString RuntimeGetRow(RuntimeObject *self, int32_t row); /* List(row) */
void RuntimeSetRow(RuntimeObject *self, int32_t row, KelpString text);
void RuntimeListResort(RuntimeObject *self); /* Sort */
void RuntimeListInitialValueSetter(RuntimeObject *self, int32_t unused, KelpString text);
int32_t listCountGetter(RuntimeObject *self, int32_t unused);
int32_t listLastIndexGetter(RuntimeObject *self, int32_t unused);
uint8_t listGetExpanded(RuntimeObject *self, int32_t row);
void listSetExpanded(RuntimeObject *self, int32_t row, uint8_t value);
uint8_t listGetSelected(RuntimeObject *self, int32_t row);
void listSetSelected(RuntimeObject *self, int32_t row, uint8_t value);
RuntimeObject *listGetRowPicture(RuntimeObject *self, int32_t row);
void listSetRowPicture(RuntimeObject *self, int32_t row, RuntimeObject *picture);

/* ---- cells: Cell takes -1 for row, column or both (tab and line text) */
KelpString listGetCell(RuntimeObject *self, int32_t row, int32_t column);
void listSetCell(RuntimeObject *self, int32_t row, int32_t column, KelpString text);
uint8_t listGetCellBold(RuntimeObject *self, int32_t row, int32_t column);
void listSetCellBold(RuntimeObject *self, int32_t row, int32_t column, uint8_t value);
uint8_t listGetCellItalic(RuntimeObject *self, int32_t row, int32_t column);
void listSetCellItalic(RuntimeObject *self, int32_t row, int32_t column, uint8_t value);
uint8_t listGetCellUnderline(RuntimeObject *self, int32_t row, int32_t column);
void listSetCellUnderline(RuntimeObject *self, int32_t row, int32_t column, uint8_t value);
int32_t listGetCellBorderTop(RuntimeObject *self, int32_t row, int32_t column);
void listSetCellBorderTop(RuntimeObject *self, int32_t row, int32_t column, int32_t value);
int32_t listGetCellBorderLeft(RuntimeObject *self, int32_t row, int32_t column);
void listSetCellBorderLeft(RuntimeObject *self, int32_t row, int32_t column, int32_t value);
int32_t listGetCellBorderBottom(RuntimeObject *self, int32_t row, int32_t column);
void listSetCellBorderBottom(RuntimeObject *self, int32_t row, int32_t column, int32_t value);
int32_t listGetCellBorderRight(RuntimeObject *self, int32_t row, int32_t column);
void listSetCellBorderRight(RuntimeObject *self, int32_t row, int32_t column, int32_t value);
RuntimeObject *listGetCellTag(RuntimeObject *self, int32_t row, int32_t column);
void listSetCellTag(RuntimeObject *self, int32_t row, int32_t column, RuntimeObject *tag);
uint8_t listCellCheckGetter(RuntimeObject *self, int32_t row, int32_t column);
void listCellCheckSetter(RuntimeObject *self, int32_t row, int32_t column, uint8_t value);
int32_t listCellTypeGetter(RuntimeObject *self, int32_t row, int32_t column);
void listCellTypeSetter(RuntimeObject *self, int32_t row, int32_t column, int32_t value);
int32_t listCellAlignmentGetter(RuntimeObject *self, int32_t row, int32_t column);
void listCellAlignmentSetter(RuntimeObject *self, int32_t row, int32_t column, int32_t value);
int32_t listCellAlignmentOffsetGetter(RuntimeObject *self, int32_t row, int32_t column);
void listCellAlignmentOffsetSetter(RuntimeObject *self, int32_t row, int32_t column, int32_t value);
void listInvalidateCell(RuntimeObject *self, int32_t row, int32_t column);
void listEditCell(RuntimeObject *self, int32_t row, int32_t column);
RuntimeObject *listActiveCellGetter(RuntimeObject *self, int32_t unused);

/* ---- columns and headings */
int32_t listColumnCountGetter(RuntimeObject *self, int32_t unused);
void listColumnCountSetter(RuntimeObject *self, int32_t unused, int32_t value);
KelpString listColumnWidthsGetter(RuntimeObject *self, int32_t unused);
void listColumnWidthsSetter(RuntimeObject *self, int32_t unused, KelpString value);
int32_t listColumnTypeGetter(RuntimeObject *self, int32_t column);
void listColumnTypeSetter(RuntimeObject *self, int32_t column, int32_t value);
int32_t listColumnAlignmentGetter(RuntimeObject *self, int32_t column);
void listColumnAlignmentSetter(RuntimeObject *self, int32_t column, int32_t value);
int32_t listColumnAlignmentOffsetGetter(RuntimeObject *self, int32_t column);
void listColumnAlignmentOffsetSetter(RuntimeObject *self, int32_t column, int32_t value);
int32_t listColumnSortDirectionGetter(RuntimeObject *self, int32_t column);
void listColumnSortDirectionSetter(RuntimeObject *self, int32_t column, int32_t value);
void listColumnPressHeader(RuntimeObject *self, int32_t column);
KelpString listGetHeading(RuntimeObject *self, int32_t column);
void listSetHeading(RuntimeObject *self, int32_t column, KelpString text); /* -1: all, tabbed */
int32_t listSortedColumnGetter(RuntimeObject *self, int32_t unused);
void listSortedColumnSetter(RuntimeObject *self, int32_t unused, int32_t value);
void listHasHeadingSetter(RuntimeObject *self, int32_t unused, uint8_t value);
void listHeadingIndexSetter(RuntimeObject *self, int32_t unused, int32_t value);
/* Column(i): a ListColumn for column i (-1: all columns). */
RuntimeObject *listColumnGetter(RuntimeObject *self, int32_t column);
void listColumnSetter(RuntimeObject *self, int32_t column, RuntimeObject *from);
void RuntimeListColumnConstructor(RuntimeObject *column);
void RuntimeListColumnDestructor(RuntimeObject *column);
/* Selector 0 the width, 1 the minimum, 2 the maximum. */
KelpString listColWidthExpressionGetter(RuntimeObject *column, int32_t selector);
void listColWidthExpressionSetter(RuntimeObject *column, int32_t selector, KelpString value);
int32_t listColWidthActualGetter(RuntimeObject *column, int32_t selector);
void listColWidthActualSetter(RuntimeObject *column, int32_t selector, int32_t value);
uint8_t listColUserResizableGetter(RuntimeObject *column, int32_t unused);
void listColUserResizableSetter(RuntimeObject *column, int32_t unused, uint8_t value);

/* ---- selection, position, look */
int32_t listSelectionGetter(RuntimeObject *self, int32_t unused); /* ListIndex */
void listSelectionSetter(RuntimeObject *self, int32_t unused, int32_t row);
int32_t listSelCountGetter(RuntimeObject *self, int32_t unused);
KelpString listTextGetter(RuntimeObject *self, int32_t unused);
void listTextSetter(RuntimeObject *self, int32_t unused, KelpString value);
void listRequiresSelectionSetter(RuntimeObject *self, int32_t unused, uint8_t value);
void listHierarchicalSetter(RuntimeObject *self, int32_t unused, uint8_t value);
void listEnableDragSetter(RuntimeObject *self, int32_t unused, uint8_t value);
void ListEnableDragReorderSetter(RuntimeObject *self, int32_t unused, uint8_t value);
int32_t listScrollPositionGetter(RuntimeObject *self, int32_t unused);
void listScrollPositionSetter(RuntimeObject *self, int32_t unused, int32_t row);
int32_t listScrollPositionXGetter(RuntimeObject *self, int32_t unused);
void listScrollPositionXSetter(RuntimeObject *self, int32_t unused, int32_t x);
void listHScrollBarSetter(RuntimeObject *self, int32_t unused, uint8_t value);
void listVScrollBarSetter(RuntimeObject *self, int32_t unused, uint8_t value);
void listAutoHideScrollbarSetter(RuntimeObject *self, int32_t unused, uint8_t value);
void listHGridLinesSetter(RuntimeObject *self, int32_t unused, int32_t value);
void listVGridLinesSetter(RuntimeObject *self, int32_t unused, int32_t value);
void listDefaultRowHeightSetter(RuntimeObject *self, int32_t unused, int32_t value);
int32_t listRowFromXY(RuntimeObject *self, int32_t x, int32_t y);
int32_t listColFromXY(RuntimeObject *self, int32_t x, int32_t y);
KelpString listTextFontGetter(RuntimeObject *self, int32_t unused);
void listTextFontSetter(RuntimeObject *self, int32_t unused, KelpString value);
int32_t listTextSizeGetter(RuntimeObject *self, int32_t unused);
void listTextSizeSetter(RuntimeObject *self, int32_t unused, int32_t value);
uint8_t listBoldGetter(RuntimeObject *self, int32_t unused);
void listBoldSetter(RuntimeObject *self, int32_t unused, uint8_t value);
uint8_t listItalicGetter(RuntimeObject *self, int32_t unused);
void listItalicSetter(RuntimeObject *self, int32_t unused, uint8_t value);
uint8_t listUnderlineGetter(RuntimeObject *self, int32_t unused);
void listUnderlineSetter(RuntimeObject *self, int32_t unused, uint8_t value);

/* ---- binding: notification receivers, a bound data provider, parts */
void listAddLSNR(RuntimeObject *self, RuntimeObject *receiver);
void listRemoveLSNR(RuntimeObject *self, RuntimeObject *receiver);
void listBind(RuntimeObject *self, RuntimeObject *provider);
void listBinderBind(RuntimeObject *self, RuntimeObject *provider);
void listListDataInsertedRow(RuntimeObject *self, int32_t row);
void listListDataRemovedRow(RuntimeObject *self, int32_t row);
void listListDataReload(RuntimeObject *self);
RuntimeObject *listGetBoundPart(RuntimeObject *self, KelpString name);
RuntimeObject *ListboxDataSourceGetter(RuntimeObject *self, int32_t unused);
void ListboxDataSourceSetter(RuntimeObject *self, int32_t unused, RuntimeObject *source);
void ListboxDataFieldSetter(RuntimeObject *self, int32_t unused, KelpString field);
/* The part for "getSelectionProvider". */
uint8_t listSelectionGetBoolean(RuntimeObject *part);
void listSelectionSetBoolean(RuntimeObject *part, uint8_t value);
void listSelectionAddDataNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void listSelectionRemoveDataNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void listSelectionChanging(RuntimeObject *part, RuntimeObject *list);
void listSelectionChanged(RuntimeObject *part, RuntimeObject *list);
void listSelectionProviderDestructor(RuntimeObject *part);
/* The part for "columnValueProvider_<n>": the selected row's cell n. */
KelpString lcvpGetString(RuntimeObject *part);
void lcvpSetString(RuntimeObject *part, KelpString value);
uint8_t lcvpDataAvailable(RuntimeObject *part);
void lcvpAddDataNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void lcvpRemoveDataNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void lcvpSelectionChanging(RuntimeObject *part, RuntimeObject *list);
void lcvpSelectionChanged(RuntimeObject *part, RuntimeObject *list);
void listColumnValueProviderDestructor(RuntimeObject *part);
/* The parts for "gotFocusAction" and "lostFocusAction". */
void lbaAddActionNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void lbaRemoveActionNotificationReceiver(RuntimeObject *part, RuntimeObject *receiver);
void listboxActionDestructor(RuntimeObject *part);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
