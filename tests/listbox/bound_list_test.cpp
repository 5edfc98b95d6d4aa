// A ListBox and a PopupMenu bound to a provider made as a compiled class is:
// methods found by name, rows as records of fields.  A seeded run of
// inserts, removals and reloads keeps the list equal to the provider's rows,
// in the records and in the tree view on the X server.
#include "controls/control_fixture.h"
#include "controls/list_provider.h"
#include "support/class_kit.h"

#include "kelp/control_accessors.h"
#include "kelp/listbox.h"

#include <random>

namespace kelp::test {
namespace {

std::vector<std::vector<std::string>> gModel; // the provider's rows
std::vector<RuntimeObject *> gReceivers;      // not counted
RuntimeClass *gRowClass = nullptr;

struct RowObject {
    RuntimeObject object;
    size_t index;
};
auto &Fields(RuntimeObject *row) { return gModel[reinterpret_cast<RowObject *>(row)->index]; }
int32_t FieldCount(RuntimeObject *row) { return int32_t(Fields(row).size()); }
KelpString FieldName(RuntimeObject *, int32_t f) { return MakeText(std::to_string(f).c_str()); }
KelpString Column(RuntimeObject *row, KelpString name) {
    return MakeText(Fields(row)[std::stoul(Str(name)) - 1].c_str());
}
void ColumnSetter(RuntimeObject *, KelpString, KelpString) { ADD_FAILURE() << "the setter"; }
int32_t GetCount(RuntimeObject *) { return int32_t(gModel.size()); }
RuntimeObject *GetRow(RuntimeObject *, int32_t i) {
    RuntimeObject *row = RuntimeNewObject(gRowClass);
    reinterpret_cast<RowObject *>(row)->index = size_t(i);
    return row;
}
void AddReceiver(RuntimeObject *, RuntimeObject *r) { gReceivers.push_back(r); }
void RemoveReceiver(RuntimeObject *, RuntimeObject *r) { std::erase(gReceivers, r); }

RuntimeClass *Define(const char *name, uint32_t size,
                     std::initializer_list<std::pair<const char *, void *>> methods) {
    RuntimeClass *c = MakeClass(nullptr, name, size, int32_t(methods.size()));
    int i = 0;
    for (auto [signature, code] : methods)
        c->methodTable[i++] = {code, Lit(signature)};
    return c;
}

// The provider tells its receivers through their methods of these names.
void Tell(const char *method, int32_t index) {
    for (RuntimeObject *r : std::vector(gReceivers))
        reinterpret_cast<void (*)(RuntimeObject *, int32_t)>(MethodNamed(r, method))(r, index);
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
                EXPECT_EQ(Take(listGetCell(list, int32_t(r), int32_t(c))), gModel[r][c]) << when;
        GtkTreeView *view = GTK_TREE_VIEW(gtk_bin_get_child(GTK_BIN(Widget(list))));
        EXPECT_EQ(gtk_tree_model_iter_n_children(gtk_tree_view_get_model(view), nullptr),
                  int(gModel.size()))
            << when;
    }
};

TEST_F(BoundListTest, TheListFollowsItsProvider) {
    gRowClass = Define("TestRecord", sizeof(RowObject),
                       {{"FieldCount%i4%", H(&FieldCount)},
                        {"getIndString%s%i4", H(&FieldName)},
                        {"Column%%ss", H(&ColumnSetter)}, // before the getter
                        {"Column%s%s", H(&Column)}});
    RuntimeObject *provider =
        RuntimeNewObject(Define("TestCursor", sizeof(RuntimeObject),
                                {{"GetCount%i4%", H(&GetCount)},
                                 {"GetRow%o<TestRecord>%i4", H(&GetRow)},
                                 {"addListDataNotificationReceiver%%o", H(&AddReceiver)},
                                 {"removeListDataNotificationReceiver%%o", H(&RemoveReceiver)}}));
    gModel = {{"ant", "6"}, {"bee", "4", "yes"}, {}};
    RuntimeObject *w = MakeWindow(300, 200, [](RuntimeObject *view) {
        Add(view, "ListBox", "List1", [](MassData &m) { Box(m, 10, 10, 200, 150); });
        Add(view, "PopupMenu", "Popup1", [](MassData &m) { Box(m, 220, 10, 70, 24); });
    });
    RuntimeObject *list = Find(w, "List1"), *popup = Find(w, "Popup1");
    listBind(list, provider);
    ASSERT_EQ(gReceivers, std::vector<RuntimeObject *>{list});
    RuntimeListAddRow(list, Lit("ignored"));
    ExpectShows(list, "bound, and a row the program adds ignored");

    std::mt19937 random(1911);
    const char *words[] = {"cat", "dog", "", "eel", "fox"};
    for (int step = 0; step < 60 && !HasFailure(); ++step) {
        const unsigned op = gModel.empty() ? 0 : random() % 3;
        if (op == 0) {
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
                row.insert(row.begin(), "+");
            for (RuntimeObject *r : std::vector(gReceivers))
                listListDataReload(r);
        }
        ExpectShows(list, "step " + std::to_string(step) + " op " + std::to_string(op));
    }

    popupBindList(popup, provider);
    ASSERT_EQ(RuntimeComboBoxListCount(popup, 0), int32_t(gModel.size()));
    for (size_t r = 0; r < gModel.size(); ++r)
        EXPECT_EQ(Take(RuntimeComboBoxList(popup, int32_t(r))),
                  gModel[r].empty() ? "" : gModel[r][0]);
    listBind(list, nullptr);
    EXPECT_TRUE(gReceivers.empty()) << "unbinding stops the notifications";
    RuntimeListAddRow(list, Lit("mine"));
    EXPECT_EQ(listCountGetter(list, 0), int32_t(gModel.size()) + 1);
    RuntimeUnlockObject(provider);
}

} // namespace
} // namespace kelp::test
