// ScrollableCursor: every row of a record set read at once into one block
// of compact rows, so that a program can go to any row by number.  A row is
// each column's type code then its bytes, both counts as compact integers
// (seven bits a byte, low first); a table of row offsets finds a row.
#include "database_classes/database_object.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"

#include "kelp/objects.h"

namespace kelp {
namespace {

struct RowBlock {
    std::vector<std::string> names;
    std::string bytes;
    std::vector<size_t> offsets; // where each row starts
};

struct ScrollableObject {
    RuntimeObject object;
    RowBlock *rows; // owned; null before the constructor
};

void PutCompact(std::string &out, uint64_t n) {
    do {
        uint8_t byte = n & 0x7F;
        n >>= 7;
        out += char(n ? byte | 0x80 : byte);
    } while (n);
}

// False when the block ends first (it never does: we wrote it).
bool GetCompact(const std::string &in, size_t &at, uint64_t &n) {
    n = 0;
    for (int shift = 0; at < in.size() && shift < 64; shift += 7) {
        uint8_t byte = uint8_t(in[at++]);
        n |= uint64_t(byte & 0x7F) << shift;
        if (!(byte & 0x80))
            return true;
    }
    return false;
}

RowBlock *Rows(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    return reinterpret_cast<ScrollableObject *>(self)->rows;
}

} // namespace

ObjectDefinition *ScrollableCursorDefinition() {
    static const TypeRecord kRecordSetType{kTypeObjectOf, nullptr, nullptr, 0,
                                           &RecordSetDefinition};
    static const TypeRecord kRecordType{kTypeObjectOf, nullptr, nullptr, 0,
                                        &DatabaseRecordDefinition};
    static const ParameterRow sourceParam[] = {{"rs", &kRecordSetType}};
    static const ParameterRow rowParam[] = {{"v", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, sourceParam, 1, KELP_ENTRY(scrollableCursorConstructor)},
        {"GetCount", &kTypeInteger, nullptr, 0, KELP_ENTRY(scrollableCursorGetCount)},
        {"GetRow", &kRecordType, rowParam, 1, KELP_ENTRY(scrollableCursorGetRow)},
    };
    static const ClassDescription description = {
        .name = "ScrollableCursor",
        .instanceSize = sizeof(ScrollableObject),
        .finalizer = KELP_ENTRY(scrollableCursorDestructor),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" {

// Reads from the record set's current row to its end.
void scrollableCursorConstructor(RuntimeObject *self, RuntimeObject *recordSet) {
    if (!self || !recordSet) {
        RaiseNilObject();
        return;
    }
    auto *object = reinterpret_cast<ScrollableObject *>(self);
    delete object->rows;
    object->rows = new RowBlock();
    RowBlock &block = *object->rows;
    int32_t count = ColumnCountOf(recordSet);
    for (int32_t i = 0; i < count; ++i)
        block.names.push_back(ColumnNameOf(recordSet, i));
    while (!cursorEOFGetter(recordSet, 0)) {
        block.offsets.push_back(block.bytes.size());
        for (int32_t i = 0; i < count; ++i) {
            CellValue cell = ReadCell(recordSet, i);
            std::string text =
                ValueAsText(cell.bytes.data(), cell.type, int32_t(cell.bytes.size()));
            PutCompact(block.bytes, cell.type);
            PutCompact(block.bytes, text.size());
            block.bytes += text;
        }
        cursorMoveNext(recordSet);
    }
}

void scrollableCursorDestructor(RuntimeObject *self) {
    auto *object = reinterpret_cast<ScrollableObject *>(self);
    delete object->rows;
    object->rows = nullptr;
}

int32_t scrollableCursorGetCount(RuntimeObject *self) {
    RowBlock *rows = Rows(self);
    return rows ? int32_t(rows->offsets.size()) : 0;
}

// Rows count from 0, as list rows do.  A NULL comes back as a column that
// is not set, so Column gives "" and the record's FieldCount skips it.
RuntimeObject *scrollableCursorGetRow(RuntimeObject *self, int32_t index) {
    RowBlock *rows = Rows(self);
    if (!rows || index < 0 || size_t(index) >= rows->offsets.size())
        return nullptr;
    RuntimeObject *record = NewDatabaseRecord();
    size_t at = rows->offsets[size_t(index)];
    for (const std::string &name : rows->names) {
        uint64_t type = 0, length = 0;
        if (!GetCompact(rows->bytes, at, type) || !GetCompact(rows->bytes, at, length) ||
            length > rows->bytes.size() - at)
            break;
        if (type != kDBTypeNull)
            AddRecordColumn(record, name, rows->bytes.substr(at, length), int32_t(type));
        at += length;
    }
    return record;
}

} // extern "C"
