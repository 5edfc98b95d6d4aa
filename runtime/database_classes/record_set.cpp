// RecordSet (the class DatabaseCursor): a cursor of an engine, moved row by
// row, and the copy of a row that Edit makes and Update writes back.  An
// engine without an update or delete slot gets the generated statement
// through its Database's SQLExecute.
#include "database_classes/database_object.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/objects.h"

#include <cstddef>

namespace kelp {
namespace {

const TypeRecord kFieldType{kTypeObjectOf, nullptr, nullptr, 0, &DatabaseFieldDefinition};

RecordSetObject *Live(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    RecordSetObject *rs = RecordSetOf(self);
    return rs->cursorData ? rs : nullptr;
}

void EndEdit(RecordSetObject *rs) {
    rs->inEdit = false;
    delete rs->oldValues;
    delete rs->newValues;
    delete rs->oldNull;
    delete rs->newNull;
    delete rs->changed;
    rs->oldValues = rs->newValues = nullptr;
    rs->oldNull = rs->newNull = rs->changed = nullptr;
}

const std::vector<std::string> &Names(RecordSetObject *rs) {
    if (!rs->columns) {
        rs->columns = new ColumnCache();
        int32_t count = rs->cursor->columnCount ? rs->cursor->columnCount(rs->cursorData) : 0;
        for (int32_t i = 0; i < count; ++i) {
            KelpString name =
                rs->cursor->columnName ? rs->cursor->columnName(rs->cursorData, i) : nullptr;
            rs->columns->names.push_back(Text(name));
            RuntimeUnlockString(name);
        }
    }
    return rs->columns->names;
}

void Moved(RecordSetObject *rs, bool moved, bool forward) {
    EndEdit(rs);
    if (moved) {
        rs->eof = rs->bof = false;
    } else if (forward) {
        rs->eof = true;
    } else {
        rs->bof = true;
    }
}

// Runs a generated statement through the owner.
void RunOnOwner(RecordSetObject *rs, const std::string &text) {
    if (!rs->owner)
        return;
    KelpString statement = NewText(text);
    databaseSQLExecute(rs->owner, statement);
    RuntimeUnlockString(statement);
}

std::vector<ColumnChange> OldRow(RecordSetObject *rs) {
    std::vector<ColumnChange> row;
    const std::vector<std::string> &names = Names(rs);
    for (size_t i = 0; i < names.size() && rs->oldValues && i < rs->oldValues->size(); ++i) {
        int32_t type = rs->cursor->columnType ? rs->cursor->columnType(rs->cursorData, int32_t(i))
                                              : kDBTypeText;
        if (type == kDBTypeLongText || type == kDBTypeLongBinary)
            continue; // a BLOB can't be compared; the other columns find the row
        row.push_back({names[i], (*rs->oldValues)[i], (*rs->oldNull)[i] != 0});
    }
    return row;
}

// Copies the current row, the state Edit starts from and DeleteRecord needs.
void CopyRow(RecordSetObject *rs) {
    EndEdit(rs);
    size_t count = Names(rs).size();
    rs->oldValues = new std::vector<std::string>(count);
    rs->newValues = new std::vector<std::string>(count);
    rs->oldNull = new std::vector<uint8_t>(count);
    rs->newNull = new std::vector<uint8_t>(count);
    rs->changed = new std::vector<uint8_t>(count);
    for (size_t i = 0; i < count; ++i) {
        CellValue cell = ReadCell(&rs->object, int32_t(i));
        (*rs->oldValues)[i] = ValueAsText(cell.bytes.data(), cell.type, int32_t(cell.bytes.size()));
        (*rs->oldNull)[i] = cell.type == kDBTypeNull;
    }
}

} // namespace

CellValue ReadCell(RuntimeObject *recordSet, int32_t column) {
    CellValue cell;
    RecordSetObject *rs = RecordSetOf(recordSet);
    if (!rs->cursorData || rs->eof || column < 0)
        return cell;
    if (rs->inEdit && rs->changed && size_t(column) < rs->changed->size() &&
        (*rs->changed)[size_t(column)]) {
        if (!(*rs->newNull)[size_t(column)]) {
            cell.type = kDBTypeText;
            cell.bytes = (*rs->newValues)[size_t(column)];
        }
        return cell;
    }
    if (!rs->cursor->columnValue)
        return cell;
    void *value = nullptr;
    int32_t length = 0;
    rs->cursor->columnValue(rs->cursorData, column, &value, &cell.type, &length);
    if (value && length > 0)
        cell.bytes.assign(static_cast<const char *>(value), size_t(length));
    if (rs->cursor->releaseValue)
        rs->cursor->releaseValue(rs->cursorData);
    return cell;
}

int32_t CellColumnType(RuntimeObject *recordSet, int32_t column) {
    RecordSetObject *rs = RecordSetOf(recordSet);
    if (!rs->cursorData || !rs->cursor->columnType)
        return -1;
    return rs->cursor->columnType(rs->cursorData, column);
}

void SetCell(RuntimeObject *recordSet, int32_t column, const std::string *value) {
    RecordSetObject *rs = RecordSetOf(recordSet);
    if (!rs->cursorData || !rs->inEdit || column < 0 || size_t(column) >= rs->changed->size())
        return; // without Edit a set changes nothing
    (*rs->changed)[size_t(column)] = true;
    (*rs->newNull)[size_t(column)] = value == nullptr;
    (*rs->newValues)[size_t(column)] = value ? *value : std::string();
}

std::string ColumnNameOf(RuntimeObject *recordSet, int32_t column) {
    const std::vector<std::string> &names = Names(RecordSetOf(recordSet));
    return column >= 0 && size_t(column) < names.size() ? names[size_t(column)] : std::string();
}

int32_t ColumnCountOf(RuntimeObject *recordSet) {
    RecordSetObject *rs = RecordSetOf(recordSet);
    return rs->cursorData ? int32_t(Names(rs).size()) : 0;
}

RuntimeObject *NewRecordSet(void *data, const KELPDatabaseCursorDefinition *cursor,
                            RuntimeObject *owner, std::string_view sql) {
    if (!data || !cursor)
        return nullptr;
    RuntimeObject *object = NewObjectOfDefinition(RecordSetDefinition());
    if (!object) {
        if (cursor->closeCursor)
            cursor->closeCursor(data);
        return nullptr;
    }
    RecordSetObject *rs = RecordSetOf(object);
    rs->cursorData = data;
    rs->cursor = cursor;
    rs->owner = owner;
    RuntimeLockObject(owner);
    SetText(rs->sourceSql, sql);
    RegisterOpen(object);
    // On the first row at once; an empty set is at both ends.
    bool moved = cursor->nextRow && cursor->nextRow(data);
    rs->eof = rs->bof = !moved;
    return object;
}

ObjectDefinition *RecordSetDefinition() {
    static const ParameterRow nameParam[] = {{"Name", &kTypeString}};
    static const ParameterRow indexParam[] = {{"Index", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"MoveNext", nullptr, nullptr, 0, KELP_ENTRY(cursorMoveNext)},
        {"MovePrevious", nullptr, nullptr, 0, KELP_ENTRY(CursorMovePrev)},
        {"MoveFirst", nullptr, nullptr, 0, KELP_ENTRY(CursorMoveFirst)},
        {"MoveLast", nullptr, nullptr, 0, KELP_ENTRY(CursorMoveLast)},
        {"Field", &kFieldType, nameParam, 1, KELP_ENTRY(cursorGetFieldByName)},
        {"IdxField", &kFieldType, indexParam, 1, KELP_ENTRY(cursorGetFieldByIndex)},
        {"DeleteRecord", nullptr, nullptr, 0, KELP_ENTRY(cursorDeleteRecord)},
        {"Edit", nullptr, nullptr, 0, KELP_ENTRY(cursorEdit)},
        {"Update", nullptr, nullptr, 0, KELP_ENTRY(cursorUpdate)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(cursorClose)},
        {"RecordCount", &kTypeInteger, nullptr, 0, KELP_ENTRY(RecordSetRecordCount)},
        {"ColumnType", &kTypeInteger, indexParam, 1, KELP_ENTRY(RecordSetColumnType)},
    };
    static const PropertyRow properties[] = {
        {0, "BOF", &kTypeBoolean, KELP_ENTRY(cursorBOFGetter), {}},
        {0, "EOF", &kTypeBoolean, KELP_ENTRY(cursorEOFGetter), {}},
        {0, "FieldCount", &kTypeInteger, KELP_ENTRY(cursorFieldCount), {}},
    };
    // The language calls this class RecordSet too.
    static const ClassDescription description = {
        .name = "DatabaseCursor",
        .instanceSize = sizeof(RecordSetObject),
        .finalizer = KELP_ENTRY(databaseCursorDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" {

void databaseCursorDestructor(RuntimeObject *self) {
    cursorClose(self);
    RecordSetObject *rs = RecordSetOf(self);
    UnregisterOpen(self);
    RuntimeObject *owner = rs->owner;
    rs->owner = nullptr;
    RuntimeUnlockObject(owner);
    SetText(rs->sourceSql, "");
    delete rs->columns;
    rs->columns = nullptr;
}

void cursorClose(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return;
    }
    RecordSetObject *rs = RecordSetOf(self);
    EndEdit(rs);
    rs->eof = true; // a closed set answers EOF
    if (!rs->cursorData)
        return;
    void *data = rs->cursorData;
    rs->cursorData = nullptr;
    if (rs->cursor->closeCursor)
        rs->cursor->closeCursor(data);
    UnregisterOpen(self);
}

void cursorMoveNext(RuntimeObject *self) {
    RecordSetObject *rs = Live(self);
    if (!rs || rs->eof || !rs->cursor->nextRow)
        return;
    Moved(rs, rs->cursor->nextRow(rs->cursorData), true);
}

void CursorMovePrev(RuntimeObject *self) {
    RecordSetObject *rs = Live(self);
    if (!rs || !rs->cursor->previousRow)
        return;
    Moved(rs, rs->cursor->previousRow(rs->cursorData), false);
}

void CursorMoveFirst(RuntimeObject *self) {
    RecordSetObject *rs = Live(self);
    if (!rs || !rs->cursor->firstRow)
        return;
    bool moved = rs->cursor->firstRow(rs->cursorData);
    Moved(rs, moved, true);
    rs->bof = !moved;
}

void CursorMoveLast(RuntimeObject *self) {
    RecordSetObject *rs = Live(self);
    if (!rs || !rs->cursor->lastRow)
        return;
    bool moved = rs->cursor->lastRow(rs->cursorData);
    Moved(rs, moved, true);
    rs->bof = !moved;
}

uint8_t cursorBOFGetter(RuntimeObject *self, int32_t) {
    if (!self) {
        RaiseNilObject();
        return false;
    }
    return RecordSetOf(self)->bof;
}

uint8_t cursorEOFGetter(RuntimeObject *self, int32_t) {
    if (!self) {
        RaiseNilObject();
        return false;
    }
    return RecordSetOf(self)->eof || !RecordSetOf(self)->cursorData;
}

int32_t cursorFieldCount(RuntimeObject *self, int32_t) {
    if (!self) {
        RaiseNilObject();
        return 0;
    }
    return ColumnCountOf(self);
}

int32_t RecordSetRecordCount(RuntimeObject *self) {
    RecordSetObject *rs = Live(self);
    if (!rs || !rs->cursor->rowCount)
        return -1;
    return rs->cursor->rowCount(rs->cursorData);
}

// Columns count from 1 here, as IdxField counts them; -1 when the engine
// doesn't say.
int32_t RecordSetColumnType(RuntimeObject *self, int32_t index) {
    RecordSetObject *rs = Live(self);
    return rs ? CellColumnType(self, index - 1) : -1;
}

RuntimeObject *cursorGetFieldByName(RuntimeObject *self, KelpString name) {
    RecordSetObject *rs = Live(self);
    if (!rs)
        return nullptr;
    std::string wanted = Text(name);
    const std::vector<std::string> &names = Names(rs);
    for (size_t i = 0; i < names.size(); ++i)
        if (SameName(names[i], wanted))
            return NewDatabaseField(self, int32_t(i));
    return nullptr; // a missing column is nil; using it raises in the program
}

RuntimeObject *cursorGetFieldByIndex(RuntimeObject *self, int32_t index) {
    RecordSetObject *rs = Live(self);
    if (!rs || index < 1 || size_t(index) > Names(rs).size())
        return nullptr;
    return NewDatabaseField(self, index - 1);
}

void cursorEdit(RuntimeObject *self) {
    RecordSetObject *rs = Live(self);
    if (!rs || rs->eof)
        return;
    CopyRow(rs);
    rs->inEdit = true;
}

void cursorUpdate(RuntimeObject *self) {
    RecordSetObject *rs = Live(self);
    if (!rs || !rs->inEdit)
        return;
    std::vector<int32_t> columns;
    std::vector<ColumnChange> changes;
    const std::vector<std::string> &names = Names(rs);
    for (size_t i = 0; i < rs->changed->size(); ++i)
        if ((*rs->changed)[i]) {
            columns.push_back(int32_t(i));
            changes.push_back({names[i], (*rs->newValues)[i], (*rs->newNull)[i] != 0});
        }
    if (changes.empty()) {
        EndEdit(rs);
        return;
    }
    if (rs->cursor->updateRow) {
        std::vector<KelpString> values;
        for (const ColumnChange &c : changes)
            values.push_back(c.isNull ? nullptr : NewText(c.value));
        rs->cursor->updateRow(rs->cursorData, int32_t(columns.size()), columns.data(),
                              values.data());
        for (KelpString v : values)
            RuntimeUnlockString(v);
    } else {
        std::string text = UpdateText(TableOfSelect(Text(rs->sourceSql)), changes, OldRow(rs));
        RunOnOwner(rs, text);
    }
    EndEdit(rs);
}

void cursorDeleteRecord(RuntimeObject *self) {
    RecordSetObject *rs = Live(self);
    if (!rs || rs->eof)
        return;
    if (rs->cursor->deleteRow) {
        rs->cursor->deleteRow(rs->cursorData);
        return;
    }
    CopyRow(rs);
    std::string text = DeleteText(TableOfSelect(Text(rs->sourceSql)), OldRow(rs));
    EndEdit(rs);
    RunOnOwner(rs, text);
}

} // extern "C"
