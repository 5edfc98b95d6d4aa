// DatabaseQuery: a SELECT kept with its Database, run on demand into rows
// held in memory, with named parameters and receivers told when the rows
// are new.  A parameter is written ":name" in the text; its value goes in
// as a quoted literal (apostrophes doubled), so a value can never change
// the statement around it.  A receiver is any object with a method
// "listDataReload()", such as a ListBox.
#include "database_classes/database_object.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"

#include "kelp/objects.h"
#include "kelp/plugin.h"

#include <algorithm>
#include <cstddef>

namespace kelp {
namespace {

struct QueryState {
    std::vector<std::pair<std::string, std::string>> parameters;
    RuntimeObject *rows = nullptr;          // ScrollableCursor, counted
    std::vector<RuntimeObject *> receivers; // counted
};

struct QueryRecord {
    RuntimeObject object;
    RuntimeObject *database; // counted
    KelpString sqlQuery;
    QueryState *state; // owned
};

QueryRecord *Query(RuntimeObject *self) {
    if (!self)
        RaiseNilObject();
    return reinterpret_cast<QueryRecord *>(self);
}
QueryState &State(QueryRecord *q) {
    if (!q->state)
        q->state = new QueryState();
    return *q->state;
}

bool NameByte(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// The text with each ":name" of a set parameter replaced by its literal;
// text inside apostrophes is left as it is.
std::string Substituted(const std::string &text, const QueryState &s) {
    std::string out;
    bool quoted = false;
    for (size_t i = 0; i < text.size();) {
        char c = text[i];
        if (c == '\'')
            quoted = !quoted;
        if (c != ':' || quoted) {
            out += c;
            ++i;
            continue;
        }
        size_t end = i + 1;
        while (end < text.size() && NameByte(text[end]))
            ++end;
        std::string_view name(text.data() + i + 1, end - i - 1);
        auto found = std::find_if(s.parameters.begin(), s.parameters.end(),
                                  [&](const auto &p) { return SameName(p.first, name); });
        if (name.empty() || found == s.parameters.end()) {
            out.append(text, i, end - i);
        } else {
            out += '\'';
            for (char v : found->second)
                out += v == '\'' ? std::string("''") : std::string(1, v);
            out += '\'';
        }
        i = end;
    }
    return out;
}

} // namespace

ObjectDefinition *DatabaseQueryDefinition() {
    static const TypeRecord kDatabaseType{kTypeObjectOf, nullptr, nullptr, 0, &DatabaseDefinition};
    static const TypeRecord kRecordType{kTypeObjectOf, nullptr, nullptr, 0,
                                        &DatabaseRecordDefinition};
    static const PropertyRow properties[] = {
        {0, "Database", &kDatabaseType, KELP_ENTRY(objGetter), KELP_ENTRY(objSetter),
         offsetof(QueryRecord, database)},
        {0, "SQLQuery", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(stringSetter),
         offsetof(QueryRecord, sqlQuery)},
    };
    static const ParameterRow rowParam[] = {{"row", &kTypeInteger}};
    static const ParameterRow setParams[] = {{"name", &kTypeString}, {"value", &kTypeString}};
    static const ParameterRow receiverParam[] = {{"receiver", &kTypePtr}};
    static const MethodRow methods[] = {
        {"RunQuery", nullptr, nullptr, 0, KELP_ENTRY(databaseQueryRunQuery)},
        {"GetCount", &kTypeInteger, nullptr, 0, KELP_ENTRY(databaseQueryGetCount)},
        {"GetRow", &kRecordType, rowParam, 1, KELP_ENTRY(databaseQueryGetRow)},
        {"SetParameter", nullptr, setParams, 2, KELP_ENTRY(databaseQuerySetParameter)},
        {"addListDataNotificationReceiver", nullptr, receiverParam, 1,
         KELP_ENTRY(databaseQueryAddLDNR)},
        {"removeListDataNotificationReceiver", nullptr, receiverParam, 1,
         KELP_ENTRY(databaseQueryRemoveLDNR)},
    };
    static const ClassDescription description = {
        .name = "DatabaseQuery",
        .instanceSize = sizeof(QueryRecord),
        .finalizer = KELP_ENTRY(databaseQueryDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" {

void databaseQueryDestructor(RuntimeObject *self) {
    QueryRecord *q = reinterpret_cast<QueryRecord *>(self);
    if (QueryState *s = q->state) {
        RuntimeUnlockObject(s->rows);
        for (RuntimeObject *r : s->receivers)
            RuntimeUnlockObject(r);
        delete s;
        q->state = nullptr;
    }
    RuntimeUnlockObject(q->database);
    q->database = nullptr;
    SetText(q->sqlQuery, "");
}

void databaseQuerySetParameter(RuntimeObject *self, KelpString name, KelpString value) {
    QueryRecord *q = Query(self);
    if (!q)
        return;
    auto &parameters = State(q).parameters;
    std::string key = Text(name);
    for (auto &p : parameters)
        if (SameName(p.first, key)) {
            p.second = Text(value);
            return;
        }
    parameters.emplace_back(key, Text(value));
}

// Reads every row; the receivers hear of it even when the query failed
// and the rows are gone, so that a bound list empties.
void databaseQueryRunQuery(RuntimeObject *self) {
    QueryRecord *q = Query(self);
    if (!q)
        return;
    QueryState &s = State(q);
    RuntimeUnlockObject(s.rows);
    s.rows = nullptr;
    if (q->database) {
        KelpString sql = NewText(Substituted(Text(q->sqlQuery), s));
        RuntimeObject *rs = databaseSQLSelect(q->database, sql);
        RuntimeUnlockString(sql);
        if (rs) {
            s.rows = NewObjectOfDefinition(ScrollableCursorDefinition());
            scrollableCursorConstructor(s.rows, rs);
            cursorClose(rs);
            RuntimeUnlockObject(rs);
        }
    }
    std::vector<RuntimeObject *> receivers = s.receivers; // one may remove itself
    for (RuntimeObject *r : receivers) {
        RuntimeLockObject(r);
        if (void *reload = KELPLoadObjectMethod(r, "listDataReload()"))
            reinterpret_cast<void (*)(RuntimeObject *)>(reload)(r);
        RuntimeUnlockObject(r);
    }
}

int32_t databaseQueryGetCount(RuntimeObject *self) {
    QueryRecord *q = Query(self);
    return q && q->state && q->state->rows ? scrollableCursorGetCount(q->state->rows) : 0;
}

RuntimeObject *databaseQueryGetRow(RuntimeObject *self, int32_t row) {
    QueryRecord *q = Query(self);
    return q && q->state && q->state->rows ? scrollableCursorGetRow(q->state->rows, row) : nullptr;
}

void databaseQueryAddLDNR(RuntimeObject *self, RuntimeObject *receiver) {
    QueryRecord *q = Query(self);
    if (!q || !receiver)
        return;
    auto &receivers = State(q).receivers;
    if (std::find(receivers.begin(), receivers.end(), receiver) != receivers.end())
        return;
    RuntimeLockObject(receiver);
    receivers.push_back(receiver);
}

void databaseQueryRemoveLDNR(RuntimeObject *self, RuntimeObject *receiver) {
    QueryRecord *q = Query(self);
    if (!q || !q->state)
        return;
    auto &receivers = q->state->receivers;
    auto at = std::find(receivers.begin(), receivers.end(), receiver);
    if (at != receivers.end()) {
        receivers.erase(at);
        RuntimeUnlockObject(receiver);
    }
}

} // extern "C"
