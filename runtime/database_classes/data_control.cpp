// DataControl: a bar of four buttons (first, previous, next, last) and a
// caption, bound to a table or a query of a Database.  RunQuery reads every
// row of the result, so the bar can go to any row; the controls bound to a
// column show its value of the current row through their Text.  New,
// update and delete go to the database as statements, each committed at
// once, since a program expects a record saved from the bar to stay saved.
#include "database_classes/database_object.h"

#include "controls/control.h"
#include "objects/action_interfaces.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/controls.h"
#include "kelp/objects.h"
#include "kelp/plugin.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace kelp {
namespace {

// The actions a button reaches through getBoundPart, and GetConstant's names.
enum DataAction : int32_t {
    kFirst = 1,
    kPrevious,
    kNext,
    kLast,
    kNew,
    kAdd,
    kUpdate,
    kDelete,
};
constexpr struct {
    const char *part;
    DataAction action;
} kParts[] = {
    {"getFirstAction", kFirst},   {"getPrevAction", kPrevious}, {"getNextAction", kNext},
    {"getLastAction", kLast},     {"getNewAction", kNew},       {"getAddAction", kAdd},
    {"getUpdateAction", kUpdate}, {"getDeleteAction", kDelete},
};

struct Bound {
    std::string field;
    RuntimeObject *control; // counted
};

struct DataState {
    std::vector<std::string> names;
    std::vector<int32_t> types;
    std::vector<std::vector<std::optional<std::string>>> rows;
    int32_t row = -1; // from 0; -1: no row
    std::vector<Bound> bound;
};

struct DataControlRecord {
    RuntimeControl control;
    RuntimeObject *database; // counted
    KelpString tableName, query, caption;
    ControlFont font;
    int32_t textAlign; // 0 left, 1 centre, 2 right
    int32_t textColor;
    uint8_t readOnly;
    uint32_t encoding; // of the texts handed to bound controls
    DataState *state;  // owned
};

struct ActionRecord {
    RuntimeObject object;
    RuntimeObject *dataControl; // counted
    int32_t action;
};

DataControlRecord *Record(RuntimeObject *o) { return reinterpret_cast<DataControlRecord *>(o); }
DataState &State(RuntimeObject *o) {
    if (!Record(o)->state)
        Record(o)->state = new DataState();
    return *Record(o)->state;
}

class DataControlPane : public ControlPane {
public:
    explicit DataControlPane(DataControlRecord *record) : ControlPane(&record->control) {
        SetWidget(gtk_hbox_new(false, 0));
        static const struct {
            const char *label;
            void (*move)(RuntimeObject *);
        } kButtons[] = {{"|<", &DataControlMoveFirst},
                        {"<", &DataControlMovePrev},
                        {">", &DataControlMoveNext},
                        {">|", &DataControlMoveLast}};
        for (size_t i = 0; i < std::size(kButtons); ++i) {
            GtkWidget *button = gtk_button_new_with_label(kButtons[i].label);
            mMoves[i] = kButtons[i].move;
            g_object_set_data(G_OBJECT(button), "kelp-move", &mMoves[i]);
            g_signal_connect(button, "clicked", G_CALLBACK(OnClicked), this);
            gtk_box_pack_start(GTK_BOX(mWidget), button, false, false, 0);
            if (i == 1) {
                mLabel = gtk_label_new("");
                gtk_box_pack_start(GTK_BOX(mWidget), mLabel, true, true, 0);
            }
        }
        SetCaption(record->caption);
        SetTextAlign(record->textAlign);
        SetFont(record->font);
        ConnectCommonSignals();
        gtk_widget_show_all(mWidget);
    }
    void SetCaption(KelpString caption) {
        gtk_label_set_text(GTK_LABEL(mLabel), Text(caption).c_str());
    }
    void SetTextAlign(int32_t align) {
        static const float kX[] = {0.0f, 0.5f, 1.0f};
        gtk_misc_set_alignment(GTK_MISC(mLabel), kX[align >= 0 && align <= 2 ? align : 0], 0.5f);
    }
    void SetTextColor(int32_t color) {
        GdkColor c{};
        c.red = guint16(((color >> 16) & 0xff) * 257);
        c.green = guint16(((color >> 8) & 0xff) * 257);
        c.blue = guint16((color & 0xff) * 257);
        gtk_widget_modify_fg(mLabel, GTK_STATE_NORMAL, &c);
    }
    void SetFont(const ControlFont &font) override { ApplyFont(mLabel, font); }

private:
    static void OnClicked(GtkButton *button, gpointer data) {
        auto *pane = static_cast<DataControlPane *>(data);
        auto *move = static_cast<void (**)(RuntimeObject *)>(
            g_object_get_data(G_OBJECT(button), "kelp-move"));
        if (!pane->closing && pane->mRunControl && move)
            (*move)(pane->mRunControl);
    }
    GtkWidget *mLabel = nullptr;
    void (*mMoves[4])(RuntimeObject *) = {};
};

std::string SelectText(DataControlRecord *r) {
    std::string query = Text(r->query);
    return query.empty() ? "SELECT * FROM " + Text(r->tableName) : query;
}

std::string TableOf(DataControlRecord *r) {
    std::string table = Text(r->tableName);
    return table.empty() ? TableOfSelect(Text(r->query)) : table;
}

const std::optional<std::string> *Value(DataState &s, std::string_view field) {
    if (s.row < 0 || size_t(s.row) >= s.rows.size())
        return nullptr;
    for (size_t i = 0; i < s.names.size(); ++i)
        if (SameName(s.names[i], field))
            return &s.rows[size_t(s.row)][i];
    return nullptr;
}

KelpString Labelled(DataControlRecord *r, const std::string &text) {
    KelpString s = NewText(text);
    if (s)
        s->encoding = r->encoding ? r->encoding : kEncodingUTF8;
    return s;
}

// Each bound control shows its column of the current row; "" on none.
void Show(RuntimeObject *self) {
    DataState &s = State(self);
    for (const Bound &b : s.bound) {
        const std::optional<std::string> *v = Value(s, b.field);
        KelpString text = Labelled(Record(self), v && *v ? **v : std::string());
        KELPSetPropValueString(b.control, "Text", text);
        RuntimeUnlockString(text);
    }
}

std::string BoundText(RuntimeObject *control) {
    KelpString text = nullptr;
    KELPGetPropValueString(control, "Text", &text);
    std::string out = Text(text);
    RuntimeUnlockString(text);
    return out;
}

void MoveTo(RuntimeObject *self, int64_t row) {
    if (!self)
        return;
    DataState &s = State(self);
    if (s.rows.empty())
        return;
    s.row = int32_t(std::clamp<int64_t>(row, 0, int64_t(s.rows.size()) - 1));
    Show(self);
}

// Runs a statement on the database and commits it; false on its error.
bool Write(RuntimeObject *self, const std::string &text) {
    RuntimeObject *db = Record(self)->database;
    if (!db || text.empty())
        return false;
    KelpString statement = NewText(text);
    databaseSQLExecute(db, statement);
    RuntimeUnlockString(statement);
    if (databaseErrorCodeGetter(db, 0) != 0)
        return false;
    databaseCommit(db);
    return true;
}

// The current row as the condition of an update or a delete.
std::vector<ColumnChange> OldRow(DataState &s) {
    std::vector<ColumnChange> row;
    for (size_t i = 0; i < s.names.size(); ++i) {
        if (s.types[i] == kDBTypeLongText || s.types[i] == kDBTypeLongBinary)
            continue;
        const std::optional<std::string> &v = s.rows[size_t(s.row)][i];
        row.push_back({s.names[i], v.value_or(""), !v});
    }
    return row;
}

void Perform(RuntimeObject *self, int32_t action) {
    switch (action) {
    case kFirst: DataControlMoveFirst(self); break;
    case kPrevious: DataControlMovePrev(self); break;
    case kNext: DataControlMoveNext(self); break;
    case kLast: DataControlMoveLast(self); break;
    case kNew: DataControlNewRecord(self); break;
    case kAdd: DataControlAddNewRecord(self); break;
    case kUpdate: DataControlUpdateRecord(self); break;
    case kDelete: DataControlDeleteRecord(self); break;
    default: break;
    }
}

ObjectDefinition *DataControlActionDefinition() {
    static const MethodRow methods[] = {
        {"PerformAction", nullptr, nullptr, 0, KELP_ENTRY(DataControlActionPerformAction)},
    };
    static const DefinitionAccessor interfaces[] = {&ActionNotificationReceiverInterfaceDefinition};
    static const ClassDescription description = {
        .name = "DataControlAction",
        .instanceSize = sizeof(ActionRecord),
        .finalizer = KELP_ENTRY(DataControlActionDestructor),
        .methods = methods,
        .interfaces = interfaces,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace

ObjectDefinition *DataControlDefinition() {
    static const TypeRecord kDatabaseType{kTypeObjectOf, nullptr, nullptr, 0, &DatabaseDefinition};
    static const TypeRecord kRecordSetType{kTypeObjectOf, nullptr, nullptr, 0,
                                           &RecordSetDefinition};
    static const PropertyRow properties[] = {
        {0, "Database", &kDatabaseType, KELP_ENTRY(DataControlDBGetter),
         KELP_ENTRY(DataControlDBSetter)},
        {0, "TableName", &kTypeString, KELP_ENTRY(stringGetter),
         KELP_ENTRY(DataControlTableNameSetter), offsetof(DataControlRecord, tableName)},
        {0, "SQLQuery", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(DataControlQuerySetter),
         offsetof(DataControlRecord, query)},
        {0, "Caption", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(DataControlCaptionSetter),
         offsetof(DataControlRecord, caption)},
        {0, "ReadOnly", &kTypeBoolean, KELP_ENTRY(boolGetter),
         KELP_ENTRY(DataControlReadOnlySetter), offsetof(DataControlRecord, readOnly)},
        {0, "TextAlign", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(DataControlAlignSetter),
         offsetof(DataControlRecord, textAlign)},
        {0, "TextColor", &kTypeColor, KELP_ENTRY(intGetter), KELP_ENTRY(DataControlColorSetter),
         offsetof(DataControlRecord, textColor)},
        KELP_FONT_ROWS(DataControlRecord, font, DataControlFontSetter, DataControlSizeSetter,
                       DataControlAttributeSetter),
        {0, "Encoding", &kTypeInteger, KELP_ENTRY(DataControlEncodingGetter),
         KELP_ENTRY(DataControlEncodingSetter)},
        {0, "RecordLocked", &kTypeBoolean, KELP_ENTRY(DataControlRecordLockedGetter), {}},
    };
    static const ParameterRow nameParam[] = {{"name", &kTypeString}};
    static const ParameterRow rowParam[] = {{"row", &kTypeInteger}};
    static const ParameterRow bindParams[] = {{"field", &kTypeString},
                                              {"control", &kTypePtr, nullptr, kParamAssigns}};
    static const MethodRow methods[] = {
        {"RunQuery", nullptr, nullptr, 0, KELP_ENTRY(DataControlRunQuery)},
        {"MoveFirst", nullptr, nullptr, 0, KELP_ENTRY(DataControlMoveFirst)},
        {"MovePrev", nullptr, nullptr, 0, KELP_ENTRY(DataControlMovePrev)},
        {"MoveNext", nullptr, nullptr, 0, KELP_ENTRY(DataControlMoveNext)},
        {"MoveLast", nullptr, nullptr, 0, KELP_ENTRY(DataControlMoveLast)},
        {"MoveTo", nullptr, rowParam, 1, KELP_ENTRY(DataControlMoveTo)},
        {"Row", &kTypeInteger, nullptr, 0, KELP_ENTRY(DataControlRow)},
        {"RowCount", &kTypeInteger, nullptr, 0, KELP_ENTRY(DataControlRowCount)},
        {"FieldCount", &kTypeInteger, nullptr, 0, KELP_ENTRY(DataControlFieldCount)},
        {"GetField", &kTypeString, nameParam, 1, KELP_ENTRY(DataControlGetField)},
        {"GetCursor", &kRecordSetType, nullptr, 0, KELP_ENTRY(DataControlGetCursor)},
        {"NewRecord", nullptr, nullptr, 0, KELP_ENTRY(DataControlNewRecord)},
        {"AddNewRecord", nullptr, nullptr, 0, KELP_ENTRY(DataControlAddNewRecord)},
        {"UpdateRecord", nullptr, nullptr, 0, KELP_ENTRY(DataControlUpdateRecord)},
        {"DeleteRecord", nullptr, nullptr, 0, KELP_ENTRY(DataControlDeleteRecord)},
        {"ClearBoundControls", nullptr, nullptr, 0, KELP_ENTRY(DataControlClearBoundControls)},
        {"ControlBind", nullptr, bindParams, 2, {}, KELP_ENTRY(DataControlControlBindSetter)},
        {"getBoundPart", &kTypePtr, nameParam, 1, KELP_ENTRY(DataControlGetBoundPart)},
        {"GetConstant", &kTypeInteger, nameParam, 1, KELP_ENTRY(DataControlGetConstant)},
    };
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&DataControlCreatePane)},
    };
    static const ClassDescription description = {
        .name = "DataControl",
        .super = RectControlDefinition,
        .instanceSize = sizeof(DataControlRecord),
        .initializer = KELP_ENTRY(DataControlConstructor),
        .finalizer = KELP_ENTRY(DataControlDestructor),
        .properties = properties,
        .methods = methods,
        .hookInstances = hooks,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" {

void DataControlConstructor(RuntimeObject *self) {
    Record(self)->encoding = kEncodingUTF8;
    Record(self)->readOnly = false;
}

void DataControlDestructor(RuntimeObject *self) {
    DataControlRecord *r = Record(self);
    DataControlClearBoundControls(self);
    delete r->state;
    r->state = nullptr;
    RuntimeUnlockObject(r->database);
    r->database = nullptr;
    for (KelpString *s : {&r->tableName, &r->query, &r->caption, &r->font.textFont})
        SetText(*s, "");
}

void DataControlCreatePane(RuntimeObject *self) {
    MakePane<DataControlPane, DataControlRecord>(self);
}

RuntimeObject *DataControlDBGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *db = self ? Record(self)->database : nullptr;
    RuntimeLockObject(db);
    return db;
}
void DataControlDBSetter(RuntimeObject *self, int32_t, RuntimeObject *db) {
    if (!self)
        return;
    RuntimeLockUnlockObjects(db, Record(self)->database);
    Record(self)->database = db;
}
void DataControlTableNameSetter(RuntimeObject *self, int32_t, KelpString name) {
    if (self)
        SetText(Record(self)->tableName, Text(name));
}
void DataControlQuerySetter(RuntimeObject *self, int32_t, KelpString query) {
    if (self)
        SetText(Record(self)->query, Text(query));
}
void DataControlCaptionSetter(RuntimeObject *self, int32_t, KelpString caption) {
    if (!self)
        return;
    SetText(Record(self)->caption, Text(caption));
    if (auto *pane = PaneOf<DataControlPane>(self))
        pane->SetCaption(Record(self)->caption);
}
void DataControlReadOnlySetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (self)
        Record(self)->readOnly = value != 0;
}
void DataControlAlignSetter(RuntimeObject *self, int32_t, int32_t value) {
    StoreAndShow(self, &DataControlRecord::textAlign, value, &DataControlPane::SetTextAlign);
}
void DataControlColorSetter(RuntimeObject *self, int32_t, int32_t value) {
    StoreAndShow(self, &DataControlRecord::textColor, value & 0xffffff,
                 &DataControlPane::SetTextColor);
}
void DataControlFontSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        SetFontName(self, Record(self)->font, value);
}
void DataControlSizeSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        SetFontSize(self, Record(self)->font, value);
}
void DataControlAttributeSetter(RuntimeObject *self, int32_t selector, uint8_t value) {
    if (self)
        SetFontStyle(self, Record(self)->font, selector, value);
}
int32_t DataControlEncodingGetter(RuntimeObject *self, int32_t) {
    return self ? int32_t(Record(self)->encoding) : 0;
}
void DataControlEncodingSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        Record(self)->encoding = uint32_t(value);
}
// A read-only bar, or one without a database, changes no record.
uint8_t DataControlRecordLockedGetter(RuntimeObject *self, int32_t) {
    return !self || Record(self)->readOnly || !Record(self)->database;
}

void DataControlRunQuery(RuntimeObject *self) {
    if (!self || !Record(self)->database)
        return;
    DataState &s = State(self);
    KelpString sql = NewText(SelectText(Record(self)));
    RuntimeObject *rs = databaseSQLSelect(Record(self)->database, sql);
    RuntimeUnlockString(sql);
    s.names.clear();
    s.types.clear();
    s.rows.clear();
    s.row = -1;
    if (rs) {
        for (int32_t i = 0; i < ColumnCountOf(rs); ++i) {
            s.names.push_back(ColumnNameOf(rs, i));
            s.types.push_back(CellColumnType(rs, i));
        }
        for (; !cursorEOFGetter(rs, 0); cursorMoveNext(rs)) {
            auto &row = s.rows.emplace_back();
            for (size_t i = 0; i < s.names.size(); ++i) {
                CellValue c = ReadCell(rs, int32_t(i));
                if (c.type == kDBTypeNull)
                    row.emplace_back();
                else
                    row.emplace_back(ValueAsText(c.bytes.data(), c.type, int32_t(c.bytes.size())));
            }
        }
        cursorClose(rs);
        RuntimeUnlockObject(rs);
    }
    s.row = s.rows.empty() ? -1 : 0;
    Show(self);
}

void DataControlMoveFirst(RuntimeObject *self) { MoveTo(self, 0); }
void DataControlMoveLast(RuntimeObject *self) {
    if (self)
        MoveTo(self, int64_t(State(self).rows.size()) - 1);
}
void DataControlMoveNext(RuntimeObject *self) {
    if (self)
        MoveTo(self, int64_t(State(self).row) + 1);
}
void DataControlMovePrev(RuntimeObject *self) {
    if (self)
        MoveTo(self, int64_t(State(self).row) - 1);
}
void DataControlMoveTo(RuntimeObject *self, int32_t row) { MoveTo(self, row); }
int32_t DataControlRow(RuntimeObject *self) { return self ? State(self).row : -1; }
int32_t DataControlRowCount(RuntimeObject *self) {
    return self ? int32_t(State(self).rows.size()) : 0;
}
int32_t DataControlFieldCount(RuntimeObject *self) {
    return self ? int32_t(State(self).names.size()) : 0;
}
KelpString DataControlGetField(RuntimeObject *self, KelpString name) {
    if (!self)
        return nullptr;
    const std::optional<std::string> *v = Value(State(self), Text(name));
    return v && *v ? Labelled(Record(self), **v) : nullptr;
}
RuntimeObject *DataControlGetCursor(RuntimeObject *self) {
    if (!self || !Record(self)->database)
        return nullptr;
    KelpString sql = NewText(SelectText(Record(self)));
    RuntimeObject *rs = databaseSQLSelect(Record(self)->database, sql);
    RuntimeUnlockString(sql);
    return rs;
}

// Empties the bound controls for a record still to be added.
void DataControlNewRecord(RuntimeObject *self) {
    if (!self)
        return;
    for (const Bound &b : State(self).bound)
        KELPSetPropValueString(b.control, "Text", nullptr);
}

// The bound controls' texts become a new row, which the bar then shows.
void DataControlAddNewRecord(RuntimeObject *self) {
    if (DataControlRecordLockedGetter(self, 0))
        return;
    DataState &s = State(self);
    std::vector<RecordColumn> columns;
    for (const Bound &b : s.bound)
        columns.push_back({b.field, BoundText(b.control), kDBTypeText});
    if (columns.empty() || !Write(self, InsertText(TableOf(Record(self)), columns)))
        return;
    DataControlRunQuery(self);
    DataControlMoveLast(self);
}

// The bound controls whose text differs from the row change it.
void DataControlUpdateRecord(RuntimeObject *self) {
    if (DataControlRecordLockedGetter(self, 0))
        return;
    DataState &s = State(self);
    if (s.row < 0)
        return;
    std::vector<ColumnChange> changes;
    for (const Bound &b : s.bound) {
        const std::optional<std::string> *v = Value(s, b.field);
        std::string text = BoundText(b.control);
        if (v && v->value_or("") != text)
            changes.push_back({b.field, text, false});
    }
    int32_t row = s.row;
    if (!changes.empty() && Write(self, UpdateText(TableOf(Record(self)), changes, OldRow(s)))) {
        DataControlRunQuery(self);
        MoveTo(self, row);
    }
}

void DataControlDeleteRecord(RuntimeObject *self) {
    if (DataControlRecordLockedGetter(self, 0))
        return;
    DataState &s = State(self);
    if (s.row < 0)
        return;
    int32_t row = s.row;
    if (Write(self, DeleteText(TableOf(Record(self)), OldRow(s)))) {
        DataControlRunQuery(self);
        MoveTo(self, row);
    }
}

void DataControlClearBoundControls(RuntimeObject *self) {
    if (!self || !Record(self)->state)
        return;
    std::vector<Bound> bound;
    bound.swap(State(self).bound);
    for (const Bound &b : bound)
        RuntimeUnlockObject(b.control);
}

// ControlBind(field) = control: the control shows that column; nil unbinds
// the field.
void DataControlControlBindSetter(RuntimeObject *self, KelpString field, RuntimeObject *control) {
    if (!self)
        return;
    std::vector<Bound> &bound = State(self).bound;
    std::string name = Text(field);
    for (auto it = bound.begin(); it != bound.end(); ++it)
        if (SameName(it->field, name)) {
            RuntimeUnlockObject(it->control);
            bound.erase(it);
            break;
        }
    if (!control)
        return;
    RuntimeLockObject(control);
    bound.push_back({name, control});
    Show(self);
}

// "getNextAction" and its kind give an object whose PerformAction does that
// to the bar: a push button's action receivers may hold it.
RuntimeObject *DataControlGetBoundPart(RuntimeObject *self, KelpString name) {
    int32_t action = DataControlGetConstant(self, name);
    if (!self || action < 0)
        return nullptr;
    RuntimeObject *part = NewObjectOfDefinition(DataControlActionDefinition());
    if (part) {
        RuntimeLockObject(self);
        reinterpret_cast<ActionRecord *>(part)->dataControl = self;
        reinterpret_cast<ActionRecord *>(part)->action = action;
    }
    return part;
}

int32_t DataControlGetConstant(RuntimeObject *, KelpString name) {
    std::string wanted = Text(name);
    for (const auto &p : kParts)
        if (SameName(p.part, wanted))
            return p.action;
    return -1;
}

void DataControlActionPerformAction(RuntimeObject *self) {
    if (self)
        Perform(reinterpret_cast<ActionRecord *>(self)->dataControl,
                reinterpret_cast<ActionRecord *>(self)->action);
}

void DataControlActionDestructor(RuntimeObject *self) {
    RuntimeObject *dc = reinterpret_cast<ActionRecord *>(self)->dataControl;
    reinterpret_cast<ActionRecord *>(self)->dataControl = nullptr;
    RuntimeUnlockObject(dc);
}

} // extern "C"
