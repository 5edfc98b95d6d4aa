// File dialogs on GtkFileChooserDialog.  The chooser is told where to start;
// the process's working folder is never changed, so relative paths that
// the program uses elsewhere keep their meaning.
#include "dialogs/file_dialogs.h"

#include "kelp/dialogs.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include "base/fatal_report.h"
#include "exceptions/raise.h"
#include "folder_items/folder_item_object.h"
#include "folder_items/folder_item_unix.h"
#include "folder_items/run_program.h"
#include "folder_items/special_folders.h"
#include "objects/definitions.h"
#include "process/display.h"
#include "strings/kstring.h"
#include "windows/dialog_placement.h"
#include "windows/runtime_view.h"

#include <gtk/gtk.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

#include <cstddef>
#include <cstdio>
#include <memory>

namespace kelp {

namespace {

const char kFile[] = "runtime/dialogs/file_dialogs.cpp";

FileDialogRecord *Record(RuntimeObject *o) { return reinterpret_cast<FileDialogRecord *>(o); }

std::string Text(KelpString s) {
    return s && s->length > 0 ? std::string(GetUTF8String(string::Wrap(s)).View()) : "";
}

ObjectDefinition *FileDialogDefinition() {
    static const TypeRecord itemType{kTypeObjectOf, nullptr, nullptr, 0, &FolderItemDefinition};
    static const TypeRecord windowType{kTypeObjectOf, nullptr, nullptr, 0, &WindowDefinition};
    using R = FileDialogRecord;
    static const PropertyRow properties[] = {
        {0, "Left", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD, offsetof(R, left)},
        {0, "Top", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD, offsetof(R, top)},
        {0, "Title", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD, offsetof(R, title)},
        {0, "ActionButtonCaption", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(R, actionButtonCaption)},
        {0, "CancelButtonCaption", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(R, cancelButtonCaption)},
        {0, "SuggestedFileName", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(R, suggestedFileName)},
        {0, "PromptText", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(R, promptText)},
        {0, "InitialDirectory", &itemType, KELP_ENTRY(objGetter), KELP_ENTRY(objSetter),
         offsetof(R, initialDirectory)},
        {0, "Result", &itemType, KELP_ENTRY(objGetter), {}, offsetof(R, result)},
        {0, "Filter", &kTypeString, KELP_ENTRY(stringGetter), KELP_PLAIN_FIELD,
         offsetof(R, filter)},
    };
    static const ParameterRow withinParams[] = {{"parent", &windowType}};
    static const MethodRow methods[] = {
        {"ShowModal", &itemType, nullptr, 0, KELP_ENTRY(FolderItemDialogShowModal)},
        {"ShowModalWithin", &itemType, withinParams, 1, KELP_ENTRY(FolderItemDialogShowWithin)},
    };
    static const ClassDescription description = {
        .name = "FolderItemDialog",
        .instanceSize = sizeof(FileDialogRecord),
        .initializer = KELP_ENTRY(FolderItemDialogInitializer),
        .finalizer = KELP_ENTRY(FolderItemDialogFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

// The three kinds differ only in the kind their initializer sets.
ObjectDefinition *KindDefinition(const char *name, EntryPoint initializer) {
    const ClassDescription description = {
        .name = name,
        .super = FileDialogDefinition,
        .instanceSize = sizeof(FileDialogRecord),
        .initializer = initializer,
    };
    return BuildDefinition(description);
}
ObjectDefinition *OpenDialogDefinition() {
    static ObjectDefinition *d = KindDefinition("OpenDialog", KELP_ENTRY(OpenDialogInitializer));
    return d;
}
ObjectDefinition *SaveAsDialogDefinition() {
    static ObjectDefinition *d =
        KindDefinition("SaveAsDialog", KELP_ENTRY(SaveAsDialogInitializer));
    return d;
}
ObjectDefinition *SelectFolderDialogDefinition() {
    static ObjectDefinition *d =
        KindDefinition("SelectFolderDialog", KELP_ENTRY(SelectFolderDialogInitializer));
    return d;
}

struct KindOf {
    GtkFileChooserAction action;
    const char *accept;
};

KindOf Kind(int32_t type) {
    switch (type) {
    case kFileDialogSave: return {GTK_FILE_CHOOSER_ACTION_SAVE, GTK_STOCK_SAVE};
    case kFileDialogSelectFolder: return {GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER, GTK_STOCK_OPEN};
    default: return {GTK_FILE_CHOOSER_ACTION_OPEN, GTK_STOCK_OPEN};
    }
}

// Adds the chooser's filters for a Filter text: each ";"-separated name of
// a registered file type becomes a filter of that name with the type's
// endings; what names no type is taken as endings themselves, gathered in
// one more filter, so that a bare "txt;.dat" still works.
void AddFilters(GtkFileChooser *chooser, const std::string &filter) {
    std::string loose;
    size_t start = 0;
    while (start <= filter.size()) {
        size_t end = filter.find(';', start);
        if (end == std::string::npos)
            end = filter.size();
        const std::string name = filter.substr(start, end - start);
        std::string endings;
        if (!name.empty() && FileTypeEndings(name, &endings)) {
            GtkFileFilter *f = gtk_file_filter_new();
            gtk_file_filter_set_name(f, name.c_str());
            for (const std::string &pattern : FilterPatterns(endings))
                gtk_file_filter_add_pattern(f, pattern.c_str());
            gtk_file_chooser_add_filter(chooser, f); // the chooser takes it
        } else if (!name.empty()) {
            loose += (loose.empty() ? "" : ";") + name;
        }
        start = end + 1;
    }
    if (!loose.empty()) {
        GtkFileFilter *f = gtk_file_filter_new();
        gtk_file_filter_set_name(f, loose.c_str());
        for (const std::string &pattern : FilterPatterns(loose))
            gtk_file_filter_add_pattern(f, pattern.c_str());
        gtk_file_chooser_add_filter(chooser, f);
    }
}

} // namespace

std::string RunChooser(const ChooserRequest &r) {
#if defined(__SANITIZE_ADDRESS__)
    // The toolkit's chooser leaks a few strings each time it is shown (the
    // completion's prefixes, its settings file's path when it hides); they
    // are not ours to free, and the leak check is not to count them.
    __lsan::ScopedDisabler toolkitLeaks;
#endif
    if (!RequireDisplay("FolderItemDialog"))
        return std::string();
    const KindOf kind = Kind(r.kind);
    GtkWidget *dialog =
        gtk_file_chooser_dialog_new(r.title.c_str(), nullptr, kind.action, GTK_STOCK_CANCEL,
                                    GTK_RESPONSE_CANCEL, kind.accept, GTK_RESPONSE_OK, nullptr);
    PlaceOverParent(dialog, r.parentWindow);
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_OK);
    auto *chooser = GTK_FILE_CHOOSER(dialog);
    if (r.kind == kFileDialogSave)
        gtk_file_chooser_set_do_overwrite_confirmation(chooser, TRUE);
    // A folder that isn't there leaves the chooser where it would start.
    if (!r.startFolder.empty() && g_file_test(r.startFolder.c_str(), G_FILE_TEST_IS_DIR))
        gtk_file_chooser_set_current_folder(chooser, r.startFolder.c_str());
    if (r.kind != kFileDialogSelectFolder && !r.filter.empty())
        AddFilters(chooser, r.filter);
    if (r.kind == kFileDialogSave) {
        gchar *name = g_filename_from_utf8(r.suggestedName.c_str(), -1, nullptr, nullptr, nullptr);
        if (name)
            gtk_file_chooser_set_current_name(chooser, name);
        g_free(name);
    }
    std::string chosen;
    if (gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_OK) {
        if (gchar *name = gtk_file_chooser_get_filename(chooser)) {
            chosen = name;
            g_free(name);
        }
    }
    gtk_widget_destroy(dialog);
    gdk_flush(); // gone from the screen now, not at the next event
    if (r.kind != kFileDialogSelectFolder && !chosen.empty() && chosen.back() == '/')
        chosen.clear(); // a folder is no answer to a file dialog
    return chosen;
}

RuntimeObject *ChooseItem(const ChooserRequest &request) {
    const std::string path = RunChooser(request);
    return path.empty() ? nullptr : NewFolderItem(std::make_unique<FolderItemImpUnix>(path));
}

namespace {

ChooserRequest RequestOf(const FileDialogRecord &d) {
    ChooserRequest r;
    r.kind = d.mType;
    r.title = Text(d.title);
    r.filter = Text(d.filter);
    r.suggestedName = Text(d.suggestedFileName);
    r.parentWindow = d.parent;
    if (FolderItemImp *start = d.initialDirectory ? ImpOf(d.initialDirectory) : nullptr)
        r.startFolder = start->AbsolutePath();
    return r;
}

} // namespace

std::span<ObjectDefinition *(*const)()> FileDialogDefinitions() {
    static ObjectDefinition *(*const all[])() = {&FileDialogDefinition, &OpenDialogDefinition,
                                                 &SaveAsDialogDefinition,
                                                 &SelectFolderDialogDefinition};
    return all;
}

std::vector<std::string> FilterPatterns(const std::string &filter) {
    std::vector<std::string> patterns;
    size_t start = 0;
    while (start <= filter.size()) {
        size_t end = filter.find(';', start);
        if (end == std::string::npos)
            end = filter.size();
        const std::string ending = filter.substr(start, end - start);
        if (!ending.empty())
            patterns.push_back((ending[0] == '.' ? "*" : "*.") + ending);
        start = end + 1;
    }
    return patterns;
}

} // namespace kelp

using namespace kelp;

extern "C" void FolderItemDialogInitializer(RuntimeObject *self) {
    FileDialogRecord *d = Record(self);
    d->mType = kFileDialogAbstract;
    d->left = d->top = -1;
}

extern "C" void OpenDialogInitializer(RuntimeObject *self) {
    Record(self)->mType = kFileDialogOpen;
}
extern "C" void SaveAsDialogInitializer(RuntimeObject *self) {
    Record(self)->mType = kFileDialogSave;
}
extern "C" void SelectFolderDialogInitializer(RuntimeObject *self) {
    Record(self)->mType = kFileDialogSelectFolder;
}

extern "C" void FolderItemDialogFinalizer(RuntimeObject *self) {
    FileDialogRecord *d = Record(self);
    for (KelpString *s : {&d->title, &d->actionButtonCaption, &d->cancelButtonCaption,
                          &d->suggestedFileName, &d->promptText, &d->filter}) {
        RuntimeUnlockString(*s);
        *s = nullptr;
    }
    RuntimeUnlockObject(d->initialDirectory);
    RuntimeUnlockObject(d->result);
    d->initialDirectory = d->result = nullptr;
}

extern "C" RuntimeObject *FolderItemDialogShowModal(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    FileDialogRecord *d = Record(self);
    KELP_ASSERT(-1 != d->mType, kFile, "-1 != mType",
                "It looks like you're trying to use the abstract FolderItemDialog class "
                "instead of a concrete class");
    if (d->mType < kFileDialogOpen || d->mType > kFileDialogSelectFolder)
        return nullptr;
    RuntimeUnlockObject(d->result);
    d->result = nullptr;
    d->result = ChooseItem(RequestOf(*d));
    if (d->result)
        RuntimeLockObject(d->result); // one for Result, one for the caller
    return d->result;
}

extern "C" RuntimeObject *FolderItemDialogShowWithin(RuntimeObject *self, RuntimeObject *parent) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    Record(self)->parent = parent;
    RuntimeObject *answer = FolderItemDialogShowModal(self);
    Record(self)->parent = nullptr;
    return answer;
}

extern "C" void GlobalShowURL(KelpString url) {
    const std::string text = Text(url);
    if (text.empty())
        return;
    // The desktop's opener gets the address as one argument: no shell sees
    // it, so quotes, blanks and ";" in an address are only characters.
    if (!RunDetached({"xdg-open", text}))
        std::fprintf(stderr, "ShowURL: could not start xdg-open\n");
}
