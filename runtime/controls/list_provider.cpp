#include "controls/list_provider.h"

#include "base/ascii.h"
#include "exceptions/call_event.h"
#include "exceptions/raise.h"
#include "objects/text.h"

#include "kelp/objects.h"

#include <algorithm>

namespace kelp {
namespace {

// A provider claiming more rows than this is damaged, not large.
constexpr int32_t kMaxRows = 1 << 24;
// Fields of one row a list can show.
constexpr int32_t kMaxFields = 256;

// A signature is "name%result%parameters"; a getter and the setter of the
// same name differ in the result.
bool Named(KelpString signature, std::string_view name, bool returns = false) {
    std::string_view s = objtext::View(signature);
    const size_t cut = s.find('%');
    if (!AsciiEqualNoCase(s.substr(0, cut), name))
        return false;
    return !returns || (cut != s.npos && cut + 1 < s.size() && s[cut + 1] != '%');
}

void *InTable(const RuntimeMethodRow *table, int32_t count, std::string_view name, bool returns) {
    for (int32_t i = 0; table && i < count; ++i)
        if (table[i].code && Named(table[i].signature, name, returns))
            return table[i].code;
    return nullptr;
}

// The getter of a read-only Integer property, or its field.
bool ReadIntegerProperty(RuntimeObject *object, std::string_view name, int32_t *value) {
    for (RuntimeClass *k = object ? object->klass : nullptr; k; k = k->base)
        for (int32_t i = 0; k->propertyTable && i < k->propertyCount; ++i) {
            const RuntimePropertyRow &row = k->propertyTable[i];
            if (!Named(row.signature, name) || !row.getter)
                continue;
            if (row.getter == reinterpret_cast<void *>(1)) {
                *value = *reinterpret_cast<const int32_t *>(
                    reinterpret_cast<const uint8_t *>(object) + row.fieldOffset);
                return true;
            }
            *value = CallHandlerCode<int32_t>(row.getter, object, row.fieldOffset);
            return true;
        }
    return false;
}

std::string TakeText(KelpString s) {
    std::string text(objtext::View(s));
    objtext::Release(s);
    return text;
}

} // namespace

void *MethodNamed(RuntimeObject *object, const char *name, bool returns) {
    for (RuntimeClass *k = object ? object->klass : nullptr; k; k = k->base) {
        if (void *code = InTable(k->methodTable, k->methodCount, name, returns))
            return code;
        if (void *code = InTable(k->directMethodTable, k->directMethodCount, name, returns))
            return code;
    }
    return nullptr;
}

bool IsListDataProvider(RuntimeObject *object) {
    return MethodNamed(object, "GetCount") && MethodNamed(object, "GetRow");
}

int32_t ProviderRowCount(RuntimeObject *provider) {
    void *code = MethodNamed(provider, "GetCount");
    if (!code)
        return 0;
    return std::clamp(CallHandlerCode<int32_t>(code, provider), 0, kMaxRows);
}

bool ReadProviderRow(RuntimeObject *provider, int32_t index, ProviderRow *cells) {
    cells->clear();
    void *getRow = MethodNamed(provider, "GetRow");
    RuntimeObject *row =
        getRow ? CallHandlerCode<RuntimeObject *>(getRow, provider, index) : nullptr;
    if (!row || ExceptionPending()) {
        RuntimeUnlockObject(row);
        return false;
    }
    int32_t fields = 0;
    void *fieldCount = MethodNamed(row, "FieldCount", true);
    if (fieldCount)
        fields = CallHandlerCode<int32_t>(fieldCount, row);
    else
        ReadIntegerProperty(row, "FieldCount", &fields);
    void *nameOf = MethodNamed(row, "getIndString", true),
         *column = MethodNamed(row, "Column", true);
    fields = std::clamp(fields, 0, kMaxFields);
    for (int32_t f = 1; f <= fields && nameOf && column && !ExceptionPending(); ++f) {
        KelpString name = CallHandlerCode<KelpString>(nameOf, row, f);
        cells->push_back(TakeText(CallHandlerCode<KelpString>(column, row, name)));
        objtext::Release(name);
    }
    RuntimeUnlockObject(row);
    return !ExceptionPending();
}

std::vector<ProviderRow> ReadProviderRows(RuntimeObject *provider) {
    std::vector<ProviderRow> rows;
    const int32_t count = ProviderRowCount(provider);
    ProviderRow row;
    for (int32_t i = 0; i < count && ReadProviderRow(provider, i, &row); ++i)
        rows.push_back(std::move(row));
    return rows;
}

void AddListDataReceiver(RuntimeObject *provider, RuntimeObject *receiver) {
    if (void *code = MethodNamed(provider, "addListDataNotificationReceiver"))
        CallHandlerCode(code, provider, receiver);
}

void RemoveListDataReceiver(RuntimeObject *provider, RuntimeObject *receiver) {
    if (void *code = MethodNamed(provider, "removeListDataNotificationReceiver"))
        CallHandlerCode(code, provider, receiver);
}

} // namespace kelp
