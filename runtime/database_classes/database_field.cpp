// DatabaseField (the class DatabaseCursorField): one column of a record
// set's current row, read as each type and, after Edit, written as text
// into the row's copy.
#include "database_classes/database_object.h"

#include "database/sql_value.h"
#include "dates/date_common.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "pictures/drawable.h"
#include "pictures/picture_object.h"
#include "strings/kstring.h"
#include "variants/variant_classes.h"

#include "kelp/dates.h"
#include "kelp/objects.h"
#include "kelp/variants.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace kelp {

std::string Text(KelpString s) {
    return s && s->length > 0
               ? std::string(reinterpret_cast<const char *>(s->buffer + 1), size_t(s->length))
               : std::string();
}

KelpString NewText(std::string_view text) {
    return string::FromBytes(text.data(), long(text.size()), kEncodingUTF8).Release();
}

void SetText(KelpString &slot, std::string_view text) {
    KelpString old = slot;
    slot = text.empty() ? nullptr : NewText(text);
    RuntimeUnlockString(old);
}

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && db::CompareNoCase(a, b) == 0;
}

namespace {

template <typename T> T Get(const void *value, int32_t length) {
    T out{};
    if (value && length >= int32_t(sizeof(T)))
        std::memcpy(&out, value, sizeof(T));
    return out;
}

std::string Shortest(double d) {
    char buffer[64];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, d);
    return std::string(buffer, result.ptr);
}

} // namespace

std::string ValueAsText(const void *value, uint8_t type, int32_t length) {
    char buffer[32];
    switch (type) {
    case kDBTypeNull: return {};
    case kDBTypeSmallInt:
    case kDBTypeInteger: return std::to_string(Get<int32_t>(value, length));
    case kDBTypeFloat: return Shortest(Get<float>(value, length));
    case kDBTypeDouble: return Shortest(Get<double>(value, length));
    case kDBTypeBoolean: return Get<uint8_t>(value, length) ? "true" : "false";
    case kDBTypeDate:
    case kDBTypeTime: {
        auto parts = Get<std::array<uint16_t, 3>>(value, length);
        const char *format = type == kDBTypeDate ? "%04u-%02u-%02u" : "%02u:%02u:%02u";
        std::snprintf(buffer, sizeof buffer, format, parts[0], parts[1], parts[2]);
        return buffer;
    }
    default:
        return value && length > 0 ? std::string(static_cast<const char *>(value), size_t(length))
                                   : std::string();
    }
}

double ValueAsDouble(const void *value, uint8_t type, int32_t length) {
    switch (type) {
    case kDBTypeSmallInt:
    case kDBTypeInteger: return Get<int32_t>(value, length);
    case kDBTypeFloat: return Get<float>(value, length);
    case kDBTypeDouble: return Get<double>(value, length);
    case kDBTypeBoolean: return Get<uint8_t>(value, length) ? 1 : 0;
    case kDBTypeText:
    case kDBTypeBinary:
    case kDBTypeLongText:
    case kDBTypeLongBinary: return db::ReadDouble(ValueAsText(value, type, length));
    default: return 0;
    }
}

namespace {

struct FieldObject {
    RuntimeObject object;
    RuntimeObject *recordSet; // counted
    int32_t column;           // from 0
};

FieldObject *Field(RuntimeObject *self) {
    if (!self)
        RaiseNilObject();
    return reinterpret_cast<FieldObject *>(self);
}

CellValue Cell(RuntimeObject *self) {
    FieldObject *f = Field(self);
    return f ? ReadCell(f->recordSet, f->column) : CellValue{};
}

std::string CellText(const CellValue &c) {
    return ValueAsText(c.bytes.data(), c.type, int32_t(c.bytes.size()));
}

void Set(RuntimeObject *self, const std::string *text) {
    if (FieldObject *f = Field(self))
        SetCell(f->recordSet, f->column, text);
}
void SetText(RuntimeObject *self, const std::string &text) { Set(self, &text); }

// A date written as the column's type wants it: a date, a time, or both.
std::string DateText(RuntimeObject *self, RuntimeObject *date) {
    std::string text(SQLDateTimeOf(date).View());
    FieldObject *f = Field(self);
    int32_t type = f ? CellColumnType(f->recordSet, f->column) : -1;
    if (type == kDBTypeDate)
        return text.substr(0, 10);
    if (type == kDBTypeTime && text.size() > 11)
        return text.substr(11);
    return text;
}

} // namespace

// A picture kept in a column: the bytes of a BMP file, the format this port
// reads and writes without help.  Empty when the picture has no pixels.
std::string PictureBytes(RuntimeObject *picture) {
    DrawablePane *store = StoreOf(picture);
    if (!store)
        return {};
    std::vector<uint32_t> pixels = store->ReadPixels();
    if (pixels.empty())
        return {};
    std::vector<uint8_t> rgb(pixels.size() * 3);
    for (size_t i = 0; i < pixels.size(); ++i) {
        rgb[i * 3] = uint8_t(pixels[i] >> 16);
        rgb[i * 3 + 1] = uint8_t(pixels[i] >> 8);
        rgb[i * 3 + 2] = uint8_t(pixels[i]);
    }
    return EncodeBmp(rgb.data(), store->Width(), store->Height(), store->Width() * 3, 3);
}

namespace {

RuntimeObject *PictureOf(RuntimeObject *self) {
    CellValue c = Cell(self);
    if (c.bytes.empty())
        return nullptr;
    // BMP is the picture format this port reads from bytes.
    return PictureFromBmp(reinterpret_cast<const uint8_t *>(c.bytes.data()), c.bytes.size());
}

} // namespace

RuntimeObject *NewDatabaseField(RuntimeObject *recordSet, int32_t column) {
    RuntimeObject *object = NewObjectOfDefinition(DatabaseFieldDefinition());
    if (!object)
        return nullptr;
    FieldObject *f = reinterpret_cast<FieldObject *>(object);
    f->recordSet = recordSet;
    f->column = column;
    RuntimeLockObject(recordSet);
    return object;
}

ObjectDefinition *DatabaseFieldDefinition() {
    static const TypeRecord kDateType{kTypeObjectOf, nullptr, nullptr, 0, &DateDefinition};
    static const TypeRecord kPictureType{kTypeObjectOf, nullptr, nullptr, 0, &PictureDefinition};
    static const PropertyRow properties[] = {
        {0, "Name", &kTypeString, KELP_ENTRY(cursorFieldNameGetter), {}},
        {0, "StringValue", &kTypeString, KELP_ENTRY(cursorFieldStringValueGetter),
         KELP_ENTRY(cursorFieldStringValueSetter)},
        {0, "IntegerValue", &kTypeInteger, KELP_ENTRY(cursorFieldIntegerValueGetter),
         KELP_ENTRY(cursorFieldIntegerValueSetter)},
        {0, "DoubleValue", &kTypeDouble, KELP_ENTRY(cursorFieldDoubleValueGetter),
         KELP_ENTRY(cursorFieldDoubleValueSetter)},
        {0, "BooleanValue", &kTypeBoolean, KELP_ENTRY(CursorFieldBooleanValueGetter),
         KELP_ENTRY(CursorFieldBooleanValueSetter)},
        {0, "DateValue", &kDateType, KELP_ENTRY(cursorFieldDateValueGetter),
         KELP_ENTRY(cursorFieldDateValueSetter)},
        {0, "NativeValue", &kTypeString, KELP_ENTRY(cursorFieldNativeValueGetter), {}},
        {0, "MacPictValue", &kPictureType, KELP_ENTRY(cursorFieldMactPictGetter),
         KELP_ENTRY(cursorFieldMactPictSetter)},
        {0, "JPEGValue", &kPictureType, KELP_ENTRY(cursorFieldJPEGGetter),
         KELP_ENTRY(cursorFieldJPEGSetter)},
        {0, "Value", &VariantType(), KELP_ENTRY(CursorFieldValueGetter),
         KELP_ENTRY(CursorFieldValueSetter)},
    };
    static const MethodRow methods[] = {
        {"Operator_Convert", &kTypeString, nullptr, 0, KELP_ENTRY(CursorFieldConvertToString)},
        {"Operator_Convert", &kTypeInteger, nullptr, 0, KELP_ENTRY(CursorFieldConvertToInteger)},
        {"Operator_Convert", &kTypeDouble, nullptr, 0, KELP_ENTRY(CursorFieldConvertToDouble)},
        {"Operator_Convert", &kTypeBoolean, nullptr, 0, KELP_ENTRY(CursorFieldConvertToBoolean)},
        {"Operator_Convert", &kDateType, nullptr, 0, KELP_ENTRY(CursorFieldConvertToDate)},
        {"GetString", &kTypeString, nullptr, 0, KELP_ENTRY(databaseCursorFieldGetString)},
    };
    // The language calls this class DatabaseField too.
    static const ClassDescription description = {
        .name = "DatabaseCursorField",
        .instanceSize = sizeof(FieldObject),
        .finalizer = KELP_ENTRY(databaseCursorFieldDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" {

void databaseCursorFieldDestructor(RuntimeObject *self) {
    FieldObject *f = reinterpret_cast<FieldObject *>(self);
    RuntimeObject *rs = f->recordSet;
    f->recordSet = nullptr;
    RuntimeUnlockObject(rs);
}

KelpString cursorFieldNameGetter(RuntimeObject *self, int32_t) {
    FieldObject *f = Field(self);
    return f ? NewText(ColumnNameOf(f->recordSet, f->column)) : nullptr;
}

KelpString cursorFieldStringValueGetter(RuntimeObject *self, int32_t) {
    return NewText(CellText(Cell(self)));
}
void cursorFieldStringValueSetter(RuntimeObject *self, int32_t, KelpString value) {
    SetText(self, Text(value));
}
KelpString databaseCursorFieldGetString(RuntimeObject *self) {
    return cursorFieldStringValueGetter(self, 0);
}
void databaseCursorFieldSetString(RuntimeObject *self, KelpString value) {
    cursorFieldStringValueSetter(self, 0, value);
}
KelpString CursorFieldConvertToString(RuntimeObject *self) {
    return cursorFieldStringValueGetter(self, 0);
}

int32_t cursorFieldIntegerValueGetter(RuntimeObject *self, int32_t) {
    CellValue c = Cell(self);
    if (c.type == kDBTypeText || c.type == kDBTypeBinary || c.type == kDBTypeLongText)
        return int32_t(db::ReadDecimal(c.bytes));
    return int32_t(ValueAsDouble(c.bytes.data(), c.type, int32_t(c.bytes.size())));
}
void cursorFieldIntegerValueSetter(RuntimeObject *self, int32_t, int32_t value) {
    SetText(self, std::to_string(value));
}
int32_t CursorFieldConvertToInteger(RuntimeObject *self) {
    return cursorFieldIntegerValueGetter(self, 0);
}

double cursorFieldDoubleValueGetter(RuntimeObject *self, int32_t) {
    CellValue c = Cell(self);
    return ValueAsDouble(c.bytes.data(), c.type, int32_t(c.bytes.size()));
}
void cursorFieldDoubleValueSetter(RuntimeObject *self, int32_t, double value) {
    SetText(self, Shortest(value));
}
double CursorFieldConvertToDouble(RuntimeObject *self) {
    return cursorFieldDoubleValueGetter(self, 0);
}

uint8_t CursorFieldBooleanValueGetter(RuntimeObject *self, int32_t) {
    CellValue c = Cell(self);
    switch (c.type) {
    case kDBTypeNull: return false;
    case kDBTypeText:
    case kDBTypeBinary:
    case kDBTypeLongText:
    case kDBTypeLongBinary: return SameName(c.bytes, "true");
    default: return ValueAsDouble(c.bytes.data(), c.type, int32_t(c.bytes.size())) != 0;
    }
}
void CursorFieldBooleanValueSetter(RuntimeObject *self, int32_t, uint8_t value) {
    SetText(self, value ? "true" : "false");
}
uint8_t CursorFieldConvertToBoolean(RuntimeObject *self) {
    return CursorFieldBooleanValueGetter(self, 0);
}

RuntimeObject *cursorFieldDateValueGetter(RuntimeObject *self, int32_t) {
    CellValue c = Cell(self);
    if (c.type == kDBTypeDate || c.type == kDBTypeTime) {
        uint16_t p[3] = {};
        if (c.bytes.size() >= sizeof p)
            std::memcpy(p, c.bytes.data(), sizeof p);
        return c.type == kDBTypeDate ? NewDate(p[0], p[1], p[2], 0, 0, 0)
                                     : NewDate(0, 0, 0, p[0], p[1], p[2]);
    }
    if (c.type == kDBTypeNull || c.bytes.empty())
        return nullptr;
    RuntimeObject *date = nullptr;
    KelpString text = NewText(CellText(c));
    parseDate(text, &date);
    RuntimeUnlockString(text);
    return date;
}
void cursorFieldDateValueSetter(RuntimeObject *self, int32_t, RuntimeObject *date) {
    if (!date) {
        Set(self, nullptr);
        return;
    }
    SetText(self, DateText(self, date));
}
RuntimeObject *CursorFieldConvertToDate(RuntimeObject *self) {
    return cursorFieldDateValueGetter(self, 0);
}

KelpString cursorFieldNativeValueGetter(RuntimeObject *self, int32_t) {
    CellValue c = Cell(self);
    return string::FromBytes(c.bytes.data(), long(c.bytes.size()), kEncodingUTF8).Release();
}

RuntimeObject *cursorFieldMactPictGetter(RuntimeObject *self, int32_t) { return PictureOf(self); }
RuntimeObject *cursorFieldJPEGGetter(RuntimeObject *self, int32_t) { return PictureOf(self); }
void cursorFieldMactPictSetter(RuntimeObject *self, int32_t, RuntimeObject *picture) {
    cursorFieldJPEGSetter(self, 0, picture);
}
void cursorFieldJPEGSetter(RuntimeObject *self, int32_t, RuntimeObject *picture) {
    if (!picture)
        Set(self, nullptr);
    else
        SetText(self, PictureBytes(picture));
}

RuntimeObject *CursorFieldValueGetter(RuntimeObject *self, int32_t) {
    CellValue c = Cell(self);
    const void *v = c.bytes.data();
    int32_t n = int32_t(c.bytes.size());
    switch (c.type) {
    case kDBTypeNull: return nullptr;
    case kDBTypeSmallInt:
    case kDBTypeInteger: return intToVariant(int32_t(ValueAsDouble(v, c.type, n)));
    case kDBTypeFloat:
    case kDBTypeDouble: return doubleToVariant(ValueAsDouble(v, c.type, n));
    case kDBTypeBoolean: return booleanToVariant(ValueAsDouble(v, c.type, n) != 0);
    case kDBTypeDate:
    case kDBTypeTime: {
        RuntimeObject *date = cursorFieldDateValueGetter(self, 0);
        RuntimeObject *variant = DateToVariant(date);
        RuntimeUnlockObject(date);
        return variant;
    }
    default: {
        KelpString text = NewText(c.bytes);
        RuntimeObject *variant = stringToVariant(text);
        RuntimeUnlockString(text);
        return variant;
    }
    }
}

void CursorFieldValueSetter(RuntimeObject *self, int32_t, RuntimeObject *variant) {
    if (!variant) {
        Set(self, nullptr);
        return;
    }
    if (IsDate(variant)) {
        SetText(self, DateText(self, variant));
        return;
    }
    KelpString text = variantToString(variant);
    SetText(self, Text(text));
    RuntimeUnlockString(text);
}

} // extern "C"
