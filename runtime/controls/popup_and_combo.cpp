// PopupMenu and ComboBox: a list of rows to choose from.  The rows live in
// the control (they may be added before there is a pane); the pane shows
// them.  PopupMenu is a GtkCombo whose entry can't be edited; ComboBox is a
// GtkComboBoxEntry, whose text the user may also type.
#include "controls/caption.h"
#include "controls/classes.h"
#include "controls/control.h"
#include "controls/data_binding.h"
#include "controls/list_provider.h"

#include "exceptions/raise.h"
#include "objects/data_interfaces.h"
#include "objects/definitions.h"
#include "objects/text.h"

#include "kelp/control_accessors.h"
#include "kelp/controls.h"
#include "kelp/objects.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kelp {
namespace {

ObjectHook *gPopupChange, *gComboChange, *gComboTextChanged;

struct Row {
    std::string text;             // UTF-8
    RuntimeObject *tag = nullptr; // counted
};

struct ListRecord {
    RuntimeControl control;
    KelpString initialValue; // counted
    ControlFont font;
    int32_t listIndex;      // -1: none
    std::vector<Row> *rows; // owned
    uint8_t isCombo;        // ComboBox rather than PopupMenu
    DataLink data;          // told at each Change
};

ListRecord *Record(RuntimeObject *o) { return reinterpret_cast<ListRecord *>(o); }
std::vector<Row> &Rows(RuntimeObject *o) {
    if (!Record(o)->rows)
        Record(o)->rows = new std::vector<Row>();
    return *Record(o)->rows;
}

class ListPane : public ControlPane {
public:
    explicit ListPane(ListRecord *record) : ControlPane(&record->control), mRecord(record) {
        if (record->isCombo) {
            SetWidget(gtk_combo_box_entry_new_text());
            mEntry = gtk_bin_get_child(GTK_BIN(mWidget));
            g_signal_connect(mWidget, "changed", G_CALLBACK(OnComboChanged), this);
        } else {
            SetWidget(gtk_combo_new());
            mEntry = GTK_COMBO(mWidget)->entry;
            gtk_editable_set_editable(GTK_EDITABLE(mEntry), FALSE);
        }
        g_signal_connect(mEntry, "changed", G_CALLBACK(OnEntryChanged), this);
        Rebuild();
        ApplyFont(mEntry, record->font);
        ConnectCommonSignals();
        gtk_widget_show_all(mWidget);
    }

    // Every row change rebuilds the list and puts the selection back by index.
    void Rebuild() {
        int32_t index = mRecord->listIndex;
        mQuiet = true;
        const std::vector<Row> &rows = *mRecord->rows;
        if (mRecord->isCombo) {
            GtkTreeModel *model = gtk_combo_box_get_model(GTK_COMBO_BOX(mWidget));
            gtk_list_store_clear(GTK_LIST_STORE(model));
            for (const Row &r : rows)
                gtk_combo_box_append_text(GTK_COMBO_BOX(mWidget), r.text.c_str());
        } else {
            GList *strings = nullptr;
            for (const Row &r : rows)
                strings = g_list_append(strings, const_cast<char *>(r.text.c_str()));
            if (strings)
                gtk_combo_set_popdown_strings(GTK_COMBO(mWidget), strings);
            else
                gtk_list_clear_items(GTK_LIST(GTK_COMBO(mWidget)->list), 0, -1);
            g_list_free(strings);
        }
        mQuiet = false;
        Select(index, false);
    }

    // Shows row `index` (-1: none); with notify, Change follows.
    void Select(int32_t index, bool notify) {
        const std::vector<Row> &rows = *mRecord->rows;
        mQuiet = true;
        std::string text =
            index >= 0 && index < int32_t(rows.size()) ? rows[size_t(index)].text : "";
        if (mRecord->isCombo)
            gtk_combo_box_set_active(GTK_COMBO_BOX(mWidget), index);
        gtk_entry_set_text(GTK_ENTRY(mEntry), text.c_str());
        mQuiet = false;
        mRecord->listIndex = IndexOfText();
        if (notify && mRecord->listIndex >= 0)
            FireChange(mRecord->isCombo ? gComboChange : gPopupChange);
    }

    // The font is the entry's, where the chosen row shows.
    void SetFont(const ControlFont &font) override { ApplyFont(mEntry, font); }

    std::string Text() const { return gtk_entry_get_text(GTK_ENTRY(mEntry)); }
    void SetText(const std::string &text) { gtk_entry_set_text(GTK_ENTRY(mEntry), text.c_str()); }

private:
    // Change, then the bound data, unless the handler closed the control.
    void FireChange(const ObjectHook *hook) {
        RuntimeObject *control = mRunControl;
        RuntimeLockObject(control);
        bool alive;
        FireLocked(hook, &alive);
        if (alive)
            NotifyDataChanged(mRecord->data);
        RuntimeUnlockObject(control);
    }

    // The first row whose text is the entry's, or -1.
    int32_t IndexOfText() const {
        std::string text = Text();
        const std::vector<Row> &rows = *mRecord->rows;
        for (size_t i = 0; i < rows.size(); ++i)
            if (rows[i].text == text)
                return int32_t(i);
        return -1;
    }

    static void OnEntryChanged(GtkEditable *, gpointer data) {
        auto *pane = static_cast<ListPane *>(data);
        if (pane->mQuiet || pane->closing || !pane->mRunControl)
            return;
        pane->mRecord->listIndex = pane->IndexOfText();
        bool alive = true;
        if (pane->mRecord->isCombo)
            pane->FireLocked(gComboTextChanged, &alive);
        else if (pane->mRecord->listIndex >= 0)
            pane->FireChange(gPopupChange);
    }
    static void OnComboChanged(GtkComboBox *box, gpointer data) {
        auto *pane = static_cast<ListPane *>(data);
        if (pane->mQuiet || pane->closing || !pane->mRunControl)
            return;
        int32_t index = gtk_combo_box_get_active(box);
        if (index < 0)
            return; // typing: TextChanged tells of it
        pane->mRecord->listIndex = index;
        pane->FireChange(gComboChange);
    }

    ListRecord *mRecord;
    GtkWidget *mEntry = nullptr;
    bool mQuiet = false;
};

void Changed(RuntimeObject *self) {
    if (ListPane *pane = PaneOf<ListPane>(self))
        pane->Rebuild();
}

bool InRange(RuntimeObject *self, int32_t index, bool allowEnd) {
    int32_t count = int32_t(Rows(self).size());
    if (index >= 0 && (index < count || (allowEnd && index == count)))
        return true;
    RaiseOutOfBounds();
    return false;
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" void PopupMenuInitializer(RuntimeObject *self) {
    if (self)
        Record(self)->listIndex = -1;
}

extern "C" void ComboBoxInitializer(RuntimeObject *self) {
    if (!self)
        return;
    Record(self)->isCombo = 1;
    Record(self)->listIndex = -1;
}

extern "C" void PopupMenuFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    if (std::vector<Row> *rows = Record(self)->rows)
        for (Row &r : *rows)
            RuntimeUnlockObject(r.tag);
    delete Record(self)->rows;
    Record(self)->rows = nullptr;
    objtext::Release(Record(self)->initialValue);
    objtext::Release(Record(self)->font.textFont);
    Record(self)->initialValue = Record(self)->font.textFont = nullptr;
    ReleaseDataLink(Record(self)->data);
}

extern "C" void PopupMenuCreatePane(RuntimeObject *self) {
    if (self)
        Rows(self); // the pane shows the record's rows
    MakePane<ListPane, ListRecord>(self);
}

extern "C" void RuntimeComboBoxAddRow(RuntimeObject *self, KelpString text) {
    if (!self)
        return;
    Rows(self).push_back(Row{std::string(objtext::View(text)), nullptr});
    Changed(self);
}

extern "C" void RuntimeComboBoxAddSeparator(RuntimeObject *self) {
    if (!self)
        return;
    Rows(self).push_back(Row{"-", nullptr});
    Changed(self);
}

extern "C" void RuntimeComboBoxInsertRow(RuntimeObject *self, int32_t index, KelpString text) {
    if (!self || !InRange(self, index, true))
        return;
    Rows(self).insert(Rows(self).begin() + index, Row{std::string(objtext::View(text)), nullptr});
    if (Record(self)->listIndex >= index)
        ++Record(self)->listIndex;
    Changed(self);
}

extern "C" void RuntimeComboBoxRemoveRow(RuntimeObject *self, int32_t index) {
    if (!self || !InRange(self, index, false))
        return;
    RuntimeUnlockObject(Rows(self)[size_t(index)].tag);
    Rows(self).erase(Rows(self).begin() + index);
    int32_t &at = Record(self)->listIndex;
    at = at == index ? -1 : at > index ? at - 1 : at;
    Changed(self);
}

extern "C" void RuntimeComboBoxDeleteAllRows(RuntimeObject *self) {
    if (!self)
        return;
    for (Row &r : Rows(self))
        RuntimeUnlockObject(r.tag);
    Rows(self).clear();
    Record(self)->listIndex = -1;
    Changed(self);
}

extern "C" KelpString RuntimeComboBoxList(RuntimeObject *self, int32_t index) {
    if (!self || !InRange(self, index, false))
        return nullptr;
    return objtext::Make(Rows(self)[size_t(index)].text);
}

extern "C" RuntimeObject *RuntimeComboBoxRowTag(RuntimeObject *self, int32_t index) {
    if (!self || !InRange(self, index, false))
        return nullptr;
    RuntimeObject *tag = Rows(self)[size_t(index)].tag;
    RuntimeLockObject(tag);
    return tag;
}

extern "C" void RuntimeComboBoxRowTagSetter(RuntimeObject *self, int32_t index,
                                            RuntimeObject *tag) {
    if (!self || !InRange(self, index, false))
        return;
    RuntimeLockObject(tag);
    RuntimeUnlockObject(Rows(self)[size_t(index)].tag);
    Rows(self)[size_t(index)].tag = tag;
}

extern "C" int32_t RuntimeComboBoxListCount(RuntimeObject *self, int32_t) {
    return self ? int32_t(Rows(self).size()) : 0;
}

extern "C" int32_t RuntimeComboBoxListIndexGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->listIndex : -1;
}

extern "C" void RuntimeComboBoxListIndexSetter(RuntimeObject *self, int32_t, int32_t index) {
    if (!self)
        return;
    if (index < -1 || index >= int32_t(Rows(self).size())) {
        RaiseOutOfBounds();
        return;
    }
    Record(self)->listIndex = index;
    if (ListPane *pane = PaneOf<ListPane>(self))
        pane->Select(index, true);
}

extern "C" KelpString RuntimeComboBoxTextGetter(RuntimeObject *self, int32_t) {
    if (!self)
        return nullptr;
    if (ListPane *pane = PaneOf<ListPane>(self))
        return objtext::Make(pane->Text());
    int32_t at = Record(self)->listIndex;
    return at >= 0 && at < int32_t(Rows(self).size()) ? objtext::Make(Rows(self)[size_t(at)].text)
                                                      : nullptr;
}

extern "C" void RuntimeComboBoxTextSetter(RuntimeObject *self, int32_t, KelpString text) {
    if (ListPane *pane = PaneOf<ListPane>(self))
        pane->SetText(std::string(objtext::View(text)));
}

// The design-time rows: one per line.
extern "C" void RuntimeComboBoxInitialValueSetter(RuntimeObject *self, int32_t, KelpString text) {
    if (!self)
        return;
    StoreString(Record(self)->initialValue, text);
    for (Row &r : Rows(self))
        RuntimeUnlockObject(r.tag);
    Rows(self).clear();
    std::string_view all = objtext::View(text);
    std::string line;
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i] == '\r' || all[i] == '\n') {
            Rows(self).push_back(Row{line, nullptr});
            line.clear();
            if (all[i] == '\r' && i + 1 < all.size() && all[i + 1] == '\n')
                ++i;
        } else {
            line += all[i];
        }
    }
    if (!line.empty())
        Rows(self).push_back(Row{line, nullptr});
    Changed(self);
}

extern "C" void RuntimeComboBoxTextFontSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        SetFontName(self, Record(self)->font, value);
}

extern "C" void RuntimeComboBoxTextSizeSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        SetFontSize(self, Record(self)->font, value);
}

// Bold, Italic and Underline, by the row's selector 0, 1, 2.
extern "C" void RuntimeComboBoxStyleSetter(RuntimeObject *self, int32_t selector, uint8_t value) {
    if (self)
        SetFontStyle(self, Record(self)->font, selector, value);
}

extern "C" KelpString RuntimeComboBoxTextFontGetter(RuntimeObject *self, int32_t) {
    KelpString name = self ? Record(self)->font.textFont : nullptr;
    objtext::Retain(name);
    return name;
}

extern "C" int32_t RuntimeComboBoxTextSizeGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->font.textSize : 0;
}

extern "C" uint8_t RuntimeComboBoxBoldGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->font.bold : 0;
}

extern "C" uint8_t RuntimeComboBoxItalicGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->font.italic : 0;
}

extern "C" uint8_t RuntimeComboBoxUnderlineGetter(RuntimeObject *self, int32_t) {
    return self ? Record(self)->font.underline : 0;
}

extern "C" KelpString RuntimeComboBoxGetString(RuntimeObject *self) {
    return RuntimeComboBoxTextGetter(self, 0);
}

extern "C" RuntimeObject *PopupDataSourceGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *source = self ? Record(self)->data.source : nullptr;
    RuntimeLockObject(source);
    return source;
}

extern "C" void PopupDataSourceSetter(RuntimeObject *self, int32_t, RuntimeObject *source) {
    if (self)
        SetDataSource(Record(self)->data, source);
}

extern "C" void PopupDataFieldSetter(RuntimeObject *self, int32_t, KelpString field) {
    if (self)
        StoreString(Record(self)->data.field, field);
}

extern "C" void popupAddDNR(RuntimeObject *self, RuntimeObject *receiver) {
    if (self)
        AddDataReceiver(Record(self)->data.receivers, receiver);
}

extern "C" void popupRemoveDNR(RuntimeObject *self, RuntimeObject *receiver) {
    if (self)
        RemoveReceiver(Record(self)->data.receivers, receiver);
}

extern "C" uint8_t popupDataAvailable(RuntimeObject *self) {
    return self && Record(self)->listIndex >= 0 &&
                   Record(self)->listIndex < int32_t(Rows(self).size())
               ? 1
               : 0;
}

// The rows of a data provider become the menu's rows, read once: the first
// field of each is the row's text.  A chosen row past the new end is none.
// An object that isn't a provider leaves the rows as they are.
extern "C" void popupBindList(RuntimeObject *self, RuntimeObject *provider) {
    if (!self || !IsListDataProvider(provider))
        return;
    std::vector<ProviderRow> read = ReadProviderRows(provider);
    for (Row &r : Rows(self))
        RuntimeUnlockObject(r.tag);
    Rows(self).clear();
    for (ProviderRow &cells : read)
        Rows(self).push_back(Row{cells.empty() ? std::string() : std::move(cells[0]), nullptr});
    if (Record(self)->listIndex >= int32_t(Rows(self).size()))
        Record(self)->listIndex = -1;
    Changed(self);
}

// "rowTag": the chosen row's tag as a source of data; nil for any other name.
extern "C" RuntimeObject *popupGetBoundPart(RuntimeObject *self, KelpString name) {
    if (!self || !objtext::SameName(objtext::View(name), "rowTag"))
        return nullptr;
    return NewRowTagPart(self);
}

namespace kelp {

DataLink *PopupDataLink(RuntimeObject *popup) { return popup ? &Record(popup)->data : nullptr; }

RuntimeObject *ChosenRowTag(RuntimeObject *popup) {
    if (!popupDataAvailable(popup))
        return nullptr;
    return Rows(popup)[size_t(Record(popup)->listIndex)].tag;
}

} // namespace kelp

namespace kelp {
namespace {

template <bool combo> ObjectDefinition *ListDefinition(const char *name, EntryPoint initializer) {
    static const PropertyRow properties[] = {
        {0, "ListCount", &kTypeInteger, KELP_ENTRY(RuntimeComboBoxListCount), {}, -9},
        {0, "ListIndex", &kTypeInteger, KELP_ENTRY(RuntimeComboBoxListIndexGetter),
         KELP_ENTRY(RuntimeComboBoxListIndexSetter), -9},
        {0, "Text", &kTypeString, KELP_ENTRY(RuntimeComboBoxTextGetter),
         KELP_ENTRY(RuntimeComboBoxTextSetter), -9},
        {0, "InitialValue", &kTypeString, KELP_ENTRY(stringGetter),
         KELP_ENTRY(RuntimeComboBoxInitialValueSetter), offsetof(ListRecord, initialValue)},
        KELP_FONT_ROWS(ListRecord, font, RuntimeComboBoxTextFontSetter,
                       RuntimeComboBoxTextSizeSetter, RuntimeComboBoxStyleSetter),
        {0, "DataSource", &kTypePtr, KELP_ENTRY(PopupDataSourceGetter),
         KELP_ENTRY(PopupDataSourceSetter), -9},
        {0, "DataField", &kTypeString, KELP_ENTRY(stringGetter), KELP_ENTRY(PopupDataFieldSetter),
         offsetof(ListRecord, data.field)},
    };
    static const TypeRecord receiverType{kTypeObjectOf, nullptr, nullptr, 0,
                                         &DataNotificationReceiverInterfaceDefinition};
    static const ParameterRow receiverParams[] = {{"receiver", &receiverType}};
    static const ParameterRow partParams[] = {{"name", &kTypeString}};
    static const ParameterRow textParams[] = {{"text", &kTypeString}};
    static const ParameterRow indexParams[] = {{"index", &kTypeInteger}};
    static const ParameterRow insertParams[] = {{"index", &kTypeInteger}, {"text", &kTypeString}};
    static const ParameterRow tagParams[] = {{"index", &kTypeInteger}, {"tag", &kTypePtr}};
    static const MethodRow methods[] = {
        {"AddRow", nullptr, textParams, 1, KELP_ENTRY(RuntimeComboBoxAddRow)},
        {"AddSeparator", nullptr, nullptr, 0, KELP_ENTRY(RuntimeComboBoxAddSeparator)},
        {"InsertRow", nullptr, insertParams, 2, KELP_ENTRY(RuntimeComboBoxInsertRow)},
        {"RemoveRow", nullptr, indexParams, 1, KELP_ENTRY(RuntimeComboBoxRemoveRow)},
        {"DeleteAllRows", nullptr, nullptr, 0, KELP_ENTRY(RuntimeComboBoxDeleteAllRows)},
        {"List", &kTypeString, indexParams, 1, KELP_ENTRY(RuntimeComboBoxList)},
        {"RowTag", &kTypePtr, tagParams, 1, KELP_ENTRY(RuntimeComboBoxRowTag),
         KELP_ENTRY(RuntimeComboBoxRowTagSetter)},
        {"addDataNotificationReceiver", nullptr, receiverParams, 1, KELP_ENTRY(popupAddDNR)},
        {"removeDataNotificationReceiver", nullptr, receiverParams, 1, KELP_ENTRY(popupRemoveDNR)},
        {"DataAvailable", &kTypeBoolean, nullptr, 0, KELP_ENTRY(popupDataAvailable)},
        {"getBoundPart", &kTypePtr, partParams, 1, KELP_ENTRY(popupGetBoundPart)},
        {"BindList", nullptr, receiverParams, 1, KELP_ENTRY(popupBindList)},
    };
    static const DefinitionAccessor interfaces[] = {&DataNotifierInterfaceDefinition,
                                                    &DataAvailableProviderInterfaceDefinition};
    static const EventRow popupEvents[] = {{"Change", "", nullptr, &gPopupChange}};
    static const EventRow comboEvents[] = {{"Change", "", nullptr, &gComboChange},
                                           {"TextChanged", "", nullptr, &gComboTextChanged}};
    static const HookInstanceRow hooks[] = {
        {"CreatePane", reinterpret_cast<void *>(&PopupMenuCreatePane)}};
    static const ClassDescription description = {
        .name = name,
        .super = RectControlDefinition,
        .instanceSize = sizeof(ListRecord),
        .initializer = initializer,
        .finalizer = KELP_ENTRY(PopupMenuFinalizer),
        .properties = properties,
        .methods = methods,
        .events =
            combo ? std::span<const EventRow>(comboEvents) : std::span<const EventRow>(popupEvents),
        .hookInstances = hooks,
        .interfaces = interfaces,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace

ObjectDefinition *PopupMenuDefinition() {
    return ListDefinition<false>("PopupMenu", KELP_ENTRY(PopupMenuInitializer));
}
ObjectDefinition *ComboBoxDefinition() {
    return ListDefinition<true>("ComboBox", KELP_ENTRY(ComboBoxInitializer));
}

} // namespace kelp
