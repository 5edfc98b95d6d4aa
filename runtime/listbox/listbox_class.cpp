// The ListBox class of the language: its properties, methods and the 24
// events in their table's order.
#include "listbox/list_pane.h"
#include "listbox/listbox_classes.h"

#include "objects/definitions.h"

#include "kelp/controls.h"
#include "kelp/listbox.h"
#include "kelp/objects.h"

#include <cstddef>

namespace kelp::listbox {
namespace {

const TypeRecord kColumnType{kTypeObjectOf, nullptr, nullptr, 0, &ListColumnDefinition};

} // namespace

ObjectDefinition *ListBoxDefinition() {
    static const PropertyRow properties[] = {
        {0, "TextFont", &kTypeString, KELP_ENTRY(listTextFontGetter),
         KELP_ENTRY(listTextFontSetter)},
        {0, "TextSize", &kTypeInteger, KELP_ENTRY(listTextSizeGetter),
         KELP_ENTRY(listTextSizeSetter)},
        {0, "Bold", &kTypeBoolean, KELP_ENTRY(listBoldGetter), KELP_ENTRY(listBoldSetter)},
        {0, "Italic", &kTypeBoolean, KELP_ENTRY(listItalicGetter), KELP_ENTRY(listItalicSetter)},
        {0, "Underline", &kTypeBoolean, KELP_ENTRY(listUnderlineGetter),
         KELP_ENTRY(listUnderlineSetter)},
        {0, "ListCount", &kTypeInteger, KELP_ENTRY(listCountGetter), {}},
        {0, "ListIndex", &kTypeInteger, KELP_ENTRY(listSelectionGetter),
         KELP_ENTRY(listSelectionSetter)},
        {0, "Text", &kTypeString, KELP_ENTRY(listTextGetter), KELP_ENTRY(listTextSetter)},
        {0, "ColumnCount", &kTypeInteger, KELP_ENTRY(listColumnCountGetter),
         KELP_ENTRY(listColumnCountSetter)},
        {0, "ColumnWidths", &kTypeString, KELP_ENTRY(listColumnWidthsGetter),
         KELP_ENTRY(listColumnWidthsSetter)},
        {0, "Hierarchical", &kTypeBoolean, KELP_ENTRY(boolGetter),
         KELP_ENTRY(listHierarchicalSetter), offsetof(ListRecord, hierarchical)},
        {0, "LastIndex", &kTypeInteger, KELP_ENTRY(listLastIndexGetter), {}},
        {0, "EnableDrag", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_ENTRY(listEnableDragSetter),
         offsetof(ListRecord, enableDrag)},
        {0, "EnableDragReorder", &kTypeBoolean, KELP_ENTRY(boolGetter),
         KELP_ENTRY(ListEnableDragReorderSetter), offsetof(ListRecord, enableDragReorder)},
        {0, "SelectionType", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD,
         offsetof(ListRecord, selectionType)},
        {0, "SelCount", &kTypeInteger, KELP_ENTRY(listSelCountGetter), {}},
        {0, "InitialValue", &kTypeString, KELP_ENTRY(stringGetter),
         KELP_ENTRY(RuntimeListInitialValueSetter), offsetof(ListRecord, initialValue)},
        {0, "HasHeading", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_ENTRY(listHasHeadingSetter),
         offsetof(ListRecord, hasHeading)},
        {0, "UseFocusRing", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(ListRecord, useFocusRing)},
        {0, "HeadingIndex", &kTypeInteger, KELP_ENTRY(intGetter),
         KELP_ENTRY(listHeadingIndexSetter), offsetof(ListRecord, headingIndex)},
        {0, "ScrollPosition", &kTypeInteger, KELP_ENTRY(listScrollPositionGetter),
         KELP_ENTRY(listScrollPositionSetter)},
        {0, "ScrollPositionX", &kTypeInteger, KELP_ENTRY(listScrollPositionXGetter),
         KELP_ENTRY(listScrollPositionXSetter)},
        {0, "ScrollBarHorizontal", &kTypeBoolean, KELP_ENTRY(boolGetter),
         KELP_ENTRY(listHScrollBarSetter), offsetof(ListRecord, scrollHorizontal)},
        {0, "ScrollBarVertical", &kTypeBoolean, KELP_ENTRY(boolGetter),
         KELP_ENTRY(listVScrollBarSetter), offsetof(ListRecord, scrollVertical)},
        {0, "AutoHideScrollbar", &kTypeBoolean, {}, KELP_ENTRY(listAutoHideScrollbarSetter)},
        {0, "DataSource", &kTypePtr, KELP_ENTRY(ListboxDataSourceGetter),
         KELP_ENTRY(ListboxDataSourceSetter)},
        {0, "DataField", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(ListboxDataFieldSetter),
         offsetof(ListRecord, dataField)},
        {0, "GridLinesHorizontal", &kTypeInteger, KELP_ENTRY(intGetter),
         KELP_ENTRY(listHGridLinesSetter), offsetof(ListRecord, gridHorizontal)},
        {0, "GridLinesVertical", &kTypeInteger, KELP_ENTRY(intGetter),
         KELP_ENTRY(listVGridLinesSetter), offsetof(ListRecord, gridVertical)},
        {0, "DefaultRowHeight", &kTypeInteger, KELP_ENTRY(intGetter),
         KELP_ENTRY(listDefaultRowHeightSetter), offsetof(ListRecord, defaultRowHeight)},
        {0, "ActiveCell", &kTypePtr, KELP_ENTRY(listActiveCellGetter), {}},
        {0, "SortedColumn", &kTypeInteger, KELP_ENTRY(listSortedColumnGetter),
         KELP_ENTRY(listSortedColumnSetter)},
        {0, "ColumnsResizable", &kTypeBoolean, KELP_ENTRY(boolGetter), KELP_PLAIN_FIELD,
         offsetof(ListRecord, columnsResizable)},
        {0, "RequiresSelection", &kTypeBoolean, KELP_ENTRY(boolGetter),
         KELP_ENTRY(listRequiresSelectionSetter), offsetof(ListRecord, requiresSelection)},
    };
    static const ParameterRow text[] = {{"text", &kTypeString}};
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const ParameterRow insert[] = {
        {"row", &kTypeInteger}, {"text", &kTypeString}, {"indent", &kTypeInteger, "0"}};
    static const ParameterRow cell[] = {{"row", &kTypeInteger}, {"column", &kTypeInteger}};
    static const ParameterRow xy[] = {{"x", &kTypeInteger}, {"y", &kTypeInteger}};
    static const ParameterRow receiver[] = {{"receiver", &kTypePtr}};
    static const ParameterRow part[] = {{"name", &kTypeString}};
    static const MethodRow methods[] = {
        {"DeleteAllRows", nullptr, nullptr, 0, KELP_ENTRY(RuntimeListEmpty)},
        {"AddRow", nullptr, text, 1, KELP_ENTRY(RuntimeListAddRow)},
        {"InsertRow", nullptr, insert, 3, KELP_ENTRY(RuntimeListInsertRow)},
        {"AddFolder", nullptr, text, 1, KELP_ENTRY(RuntimeListAddParent)},
        {"InsertFolder", nullptr, insert, 3, KELP_ENTRY(RuntimeListInsertParent)},
        {"RemoveRow", nullptr, index, 1, KELP_ENTRY(RuntimeRemoveRow)},
        {"List", &kTypeString, index, 1, KELP_ENTRY(RuntimeGetRow), KELP_ENTRY(RuntimeSetRow)},
        {"Cell", &kTypeString, cell, 2, KELP_ENTRY(listGetCell), KELP_ENTRY(listSetCell)},
        {"CellBold", &kTypeBoolean, cell, 2, KELP_ENTRY(listGetCellBold),
         KELP_ENTRY(listSetCellBold)},
        {"CellItalic", &kTypeBoolean, cell, 2, KELP_ENTRY(listGetCellItalic),
         KELP_ENTRY(listSetCellItalic)},
        {"CellUnderline", &kTypeBoolean, cell, 2, KELP_ENTRY(listGetCellUnderline),
         KELP_ENTRY(listSetCellUnderline)},
        {"InvalidateCell", nullptr, cell, 2, KELP_ENTRY(listInvalidateCell)},
        {"RowPicture", &kTypePtr, index, 1, KELP_ENTRY(listGetRowPicture),
         KELP_ENTRY(listSetRowPicture)},
        {"Selected", &kTypeBoolean, index, 1, KELP_ENTRY(listGetSelected),
         KELP_ENTRY(listSetSelected)},
        {"Expanded", &kTypeBoolean, index, 1, KELP_ENTRY(listGetExpanded),
         KELP_ENTRY(listSetExpanded)},
        {"Heading", &kTypeString, index, 1, KELP_ENTRY(listGetHeading), KELP_ENTRY(listSetHeading)},
        {"CellCheck", &kTypeBoolean, cell, 2, KELP_ENTRY(listCellCheckGetter),
         KELP_ENTRY(listCellCheckSetter)},
        {"CellType", &kTypeInteger, cell, 2, KELP_ENTRY(listCellTypeGetter),
         KELP_ENTRY(listCellTypeSetter)},
        {"ColumnType", &kTypeInteger, index, 1, KELP_ENTRY(listColumnTypeGetter),
         KELP_ENTRY(listColumnTypeSetter)},
        {"CellAlignment", &kTypeInteger, cell, 2, KELP_ENTRY(listCellAlignmentGetter),
         KELP_ENTRY(listCellAlignmentSetter)},
        {"ColumnAlignment", &kTypeInteger, index, 1, KELP_ENTRY(listColumnAlignmentGetter),
         KELP_ENTRY(listColumnAlignmentSetter)},
        {"CellAlignmentOffset", &kTypeInteger, cell, 2, KELP_ENTRY(listCellAlignmentOffsetGetter),
         KELP_ENTRY(listCellAlignmentOffsetSetter)},
        {"ColumnAlignmentOffset", &kTypeInteger, index, 1,
         KELP_ENTRY(listColumnAlignmentOffsetGetter), KELP_ENTRY(listColumnAlignmentOffsetSetter)},
        {"CellBorderTop", &kTypeInteger, cell, 2, KELP_ENTRY(listGetCellBorderTop),
         KELP_ENTRY(listSetCellBorderTop)},
        {"CellBorderLeft", &kTypeInteger, cell, 2, KELP_ENTRY(listGetCellBorderLeft),
         KELP_ENTRY(listSetCellBorderLeft)},
        {"CellBorderBottom", &kTypeInteger, cell, 2, KELP_ENTRY(listGetCellBorderBottom),
         KELP_ENTRY(listSetCellBorderBottom)},
        {"CellBorderRight", &kTypeInteger, cell, 2, KELP_ENTRY(listGetCellBorderRight),
         KELP_ENTRY(listSetCellBorderRight)},
        {"EditCell", nullptr, cell, 2, KELP_ENTRY(listEditCell)},
        {"ColumnSortDirection", &kTypeInteger, index, 1, KELP_ENTRY(listColumnSortDirectionGetter),
         KELP_ENTRY(listColumnSortDirectionSetter)},
        {"Sort", nullptr, nullptr, 0, KELP_ENTRY(RuntimeListResort)},
        {"Column", &kColumnType, index, 1, KELP_ENTRY(listColumnGetter),
         KELP_ENTRY(listColumnSetter)},
        {"PressHeader", nullptr, index, 1, KELP_ENTRY(listColumnPressHeader)},
        {"CellTag", &kTypePtr, cell, 2, KELP_ENTRY(listGetCellTag), KELP_ENTRY(listSetCellTag)},
        {"RowFromXY", &kTypeInteger, xy, 2, KELP_ENTRY(listRowFromXY)},
        {"ColumnFromXY", &kTypeInteger, xy, 2, KELP_ENTRY(listColFromXY)},
        {"addListSelectionNotificationReceiver", nullptr, receiver, 1, KELP_ENTRY(listAddLSNR)},
        {"removeListSelectionNotificationReceiver", nullptr, receiver, 1,
         KELP_ENTRY(listRemoveLSNR)},
        {"BindList", nullptr, receiver, 1, KELP_ENTRY(listBind)},
        {"Bind", nullptr, receiver, 1, KELP_ENTRY(listBinderBind)},
        {"listDataInsertedRow", nullptr, index, 1, KELP_ENTRY(listListDataInsertedRow)},
        {"listDataRemovedRow", nullptr, index, 1, KELP_ENTRY(listListDataRemovedRow)},
        {"listDataReload", nullptr, nullptr, 0, KELP_ENTRY(listListDataReload)},
        {"getBoundPart", &kTypePtr, part, 1, KELP_ENTRY(listGetBoundPart)},
    };
    static const EventRow events[] = {
        {"Change", "", nullptr, &gHooks.change},
        {"DoubleClick", "", nullptr, &gHooks.doubleClick},
        {"KeyDown", "key As String", "Boolean", &gHooks.keyDown},
        {"EnableMenuItems", "", nullptr, &gHooks.enableMenuItems},
        {"ExpandRow", "row As Integer", nullptr, &gHooks.expandRow},
        {"CollapseRow", "row As Integer", nullptr, &gHooks.collapseRow},
        {"DragRow", "drag As DragItem, row As Integer", "Boolean", &gHooks.dragRow},
        {"SortColumn", "column As Integer", "Boolean", &gHooks.sortColumn},
        {"CellAction", "row As Integer, column As Integer", nullptr, &gHooks.cellAction},
        {"GotFocus", "", nullptr, &gHooks.gotFocus},
        {"LostFocus", "", nullptr, &gHooks.lostFocus},
        {"CellBackgroundPaint", "g As Graphics, row As Integer, column As Integer", "Boolean",
         &gHooks.cellBackgroundPaint},
        {"CellTextPaint",
         "g As Graphics, row As Integer, column As Integer, x as Integer, y as Integer", "Boolean",
         &gHooks.cellTextPaint},
        {"CellClick", "row as Integer, column as Integer, x as Integer, y as Integer", "Boolean",
         &gHooks.cellClick},
        {"CellKeyDown", "row as Integer, column as Integer, key as String", "Boolean",
         &gHooks.cellKeyDown},
        {"CellTextChange", "row as Integer, column as Integer", nullptr, &gHooks.cellTextChange},
        {"CellGotFocus", "row as Integer, column as Integer", nullptr, &gHooks.cellGotFocus},
        {"CellLostFocus", "row as Integer, column as Integer", nullptr, &gHooks.cellLostFocus},
        {"MouseDown", "x As Integer, y As Integer", "Boolean", &gHooks.mouseDown},
        {"MouseDrag", "x As Integer, y As Integer", nullptr, &gHooks.mouseDrag},
        {"MouseUp", "x As Integer, y As Integer", nullptr, &gHooks.mouseUp},
        {"CompareRows",
         "row1 as Integer, row2 as Integer, column as Integer, ByRef result as Integer", "Boolean",
         &gHooks.compareRows},
        {"DragReorderRows", "newPosition as Integer, parentRow as Integer", "Boolean",
         &gHooks.dragReorderRows},
        {"HeaderPressed", "column as Integer", "Boolean", &gHooks.headerPressed},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&ListboxCreatePane)}};
    static const ClassDescription description = {
        .name = "ListBox",
        .super = RectControlDefinition,
        .instanceSize = sizeof(ListRecord),
        .initializer = KELP_ENTRY(listboxConstructor),
        .finalizer = KELP_ENTRY(listboxDestructor),
        .properties = properties,
        .methods = methods,
        .events = events,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

// A second class of the language with the same members.
ObjectDefinition *OldListBoxDefinition() {
    static const ClassDescription description = {
        .name = "OldListbox",
        .super = ListBoxDefinition,
        .instanceSize = sizeof(ListRecord),
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp::listbox
