// A ListBox and a PopupMenu bound to a data provider made the way a compiled
// class is: methods found by name, rows as records of fields.  A seeded run
// of inserts, removals and reloads keeps the list equal to the provider's
// own rows, in the records and in the tree view the X server shows.
#include "controls/control_fixture.h"
#include "controls/list_provider.h"
#include "support/class_kit.h"

#include "kelp/control_accessors.h"
#include "kelp/listbox.h"

#include <random>

namespace kelp::test {
namespace {

using Model = std::vector<std::vector<std::string>>;
Model gModel;                            // the provider's rows
std::vector<RuntimeObject *> gReceivers; // not counted, as a plain provider keeps them
RuntimeClass *gRowClass = nullptr;

struct RowObject {
    RuntimeObject object;
    int32_t index;
};
const std::vector<std::string> &Fields(RuntimeObject *row) {
    return gModel[size_t(reinterpret_cast<RowObject *>(row)->index)];
}
int32_t RowFieldCount(RuntimeObject *row) { return int32_t(Fields(row).size()); }
KelpString RowFieldName(RuntimeObject *, int32_t f) {
    return MakeText(("f" + std::to_string(f)).c_str());
}
void RowColumnSetter(RuntimeObject *, KelpString, KelpString) { ADD_FAILURE() << "the setter"; }
KelpString RowColumn(RuntimeObject *row, KelpString name) {
    return MakeText(Fields(row)[size_t(std::stoi(Str(name).substr(1)) - 1)].c_str());
}
int32_t GetCount(RuntimeObject *) { return int32_t(gModel.size()); }
RuntimeObject *GetRow(RuntimeObject *, int32_t i) {
    if (i < 0 || size_t(i) >= gModel.size())
        return nullptr;
    RuntimeObject *row = RuntimeNewObject(gRowClass);
    reinterpret_cast<RowObject *>(row)->index = i;
    return row;
}
void AddReceiver(RuntimeObject *, RuntimeObject *r) { gReceivers.push_back(r); }
void RemoveReceiver(RuntimeObject *, RuntimeObject *r) { std::erase(gReceivers, r); }

void Define(RuntimeClass *c, std::initializer_list<std::pair<const char *, void *>> methods) {
    int i = 0;
    for (auto [signature, code] : methods)
        c->methodTable[i++] = {code, Lit(signature)};
}

RuntimeObject *NewProvider() {
    static RuntimeClass *provider = nullptr;
    if (!provider) {
        gRowClass = MakeClass(nullptr, "TestRecord", sizeof(RowObject), 4);
        Define(gRowClass, {{"FieldCount%i4%", H(&RowFieldCount)},
                           {"getIndString%s%i4", H(&RowFieldName)},
                           {"Column%%ss", H(&RowColumnSetter)}, // before the getter
                           {"Column%s%s", H(&RowColumn)}});
        provider = MakeClass(nullptr, "TestCursor", sizeof(RuntimeObject), 4);
        Define(provider, {{"GetCount%i4%", H(&GetCount)},
                          {"GetRow%o<TestRecord>%i4", H(&GetRow)},
                          {"addListDataNotificationReceiver%%o", H(&AddReceiver)},
                          {"removeListDataNotificationReceiver%%o", H(&RemoveReceiver)}});
    }
    return RuntimeNewObject(provider);
}

// The provider tells its receivers, by the names of their methods.
void Tell(const char *method, int32_t index = 0) {
    for (RuntimeObject *r : std::vector(gReceivers)) {
        void *code = MethodNamed(r, method);
        ASSERT_NE(code, nullptr) << method;
        if (std::string(method) == "listDataReload")
            reinterpret_cast<void (*)(RuntimeObject *)>(code)(r);
        else
            reinterpret_cast<void (*)(RuntimeObject *, int32_t)>(code)(r, index);
    }
}

std::string Take(KelpString s) {
    std::string text = Str(s);
    RuntimeUnlockString(s);
    return text;
}

class BoundListTest : public ControlFixture {
protected:
    void ExpectShows(RuntimeObject *list, const std::string &when) {
        ASSERT_EQ(listCountGetter(list, 0), int32_t(gModel.size())) << when;
        for (size_t r = 0; r < gModel.size(); ++r)
            for (size_t c = 0; c < gModel[r].size(); ++c)
                EXPECT_EQ(Take(listGetCell(list, int32_t(r), int32_t(c))), gModel[r][c])
                    << when << " cell " << r << "," << c;
        GtkTreeView *view = GTK_TREE_VIEW(gtk_bin_get_child(GTK_BIN(Widget(list))));
        EXPECT_EQ(gtk_tree_model_iter_n_children(gtk_tree_view_get_model(view), nullptr),
                  int(gModel.size()))
            << when;
    }
};

TEST_F(BoundListTest, TheListFollowsItsProvider) {
    gModel = {{"ant", "6"}, {"bee", "4", "yes"}, {}};
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "ListBox", "List1", [](MassData &m) { Box(m, 10, 10, 200, 150); });
        Add(view, "PopupMenu", "Popup1", [](MassData &m) { Box(m, 220, 10, 70, 24); });
    });
    RuntimeObject *list = Find(w, "List1"), *popup = Find(w, "Popup1");
    RuntimeObject *provider = NewProvider();
    RuntimeObject *stranger = RuntimeNewObject(gRowClass); // no GetCount: binds nothing
    listBind(list, stranger);
    EXPECT_TRUE(gReceivers.empty());
    listBind(list, provider);
    ASSERT_EQ(gReceivers, std::vector<RuntimeObject *>{list});
    Settle(60);
    ExpectShows(list, "bound");
    RuntimeListAddRow(list, Lit("ignored"));
    ExpectShows(list, "a row the program adds while bound");

    std::mt19937 random(1911);
    const char *words[] = {"cat", "dog", "", "eel", "fox"};
    for (int step = 0; step < 60; ++step) {
        const int op = int(random() % 3);
        if (op == 0 || gModel.empty()) {
            const size_t at = random() % (gModel.size() + 1);
            std::vector<std::string> fields(random() % 4);
            for (std::string &f : fields)
                f = words[random() % 5];
            gModel.insert(gModel.begin() + long(at), fields);
            Tell("listDataInsertedRow", int32_t(at));
        } else if (op == 1) {
            const size_t at = random() % gModel.size();
            gModel.erase(gModel.begin() + long(at));
            Tell("listDataRemovedRow", int32_t(at));
        } else {
            for (auto &row : gModel)
                if (!row.empty())
                    row[0] += "+";
            Tell("listDataReload");
        }
        ExpectShows(list, "step " + std::to_string(step) + " op " + std::to_string(op));
        if (HasFailure())
            break;
    }
    Settle(60);

    popupBindList(popup, provider);
    ASSERT_EQ(RuntimeComboBoxListCount(popup, 0), int32_t(gModel.size()));
    for (size_t r = 0; r < gModel.size(); ++r)
        EXPECT_EQ(Take(RuntimeComboBoxList(popup, int32_t(r))),
                  gModel[r].empty() ? "" : gModel[r][0]);

    listBind(list, nullptr);
    EXPECT_TRUE(gReceivers.empty()) << "unbinding stops the notifications";
    RuntimeListAddRow(list, Lit("mine"));
    EXPECT_EQ(listCountGetter(list, 0), int32_t(gModel.size()) + 1);
    RuntimeUnlockObject(stranger);
    RuntimeUnlockObject(provider);
}

} // namespace
} // namespace kelp::test
