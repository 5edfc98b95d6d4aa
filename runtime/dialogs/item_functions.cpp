// The global functions that ask the person for a file or folder, and
// ExportPicture, which asks where to save a picture.
#include "dialogs/file_dialogs.h"

#include "exceptions/raise.h"
#include "folder_items/folder_item_object.h"
#include "strings/kstring.h"

#include "kelp/dialogs.h"
#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/pictures.h"
#include "kelp/strings.h"

using namespace kelp;

namespace {

std::string Text(KelpString s) {
    return s && s->length > 0 ? std::string(GetUTF8String(string::Wrap(s)).View()) : "";
}

RuntimeObject *Choose(int32_t kind, const char *title, KelpString filter, KelpString name) {
    ChooserRequest request;
    request.kind = kind;
    request.title = title;
    request.filter = Text(filter);
    request.suggestedName = Text(name);
    return ChooseItem(request);
}

} // namespace

extern "C" RuntimeObject *RuntimeGetOpenFolderItem(KelpString filter) {
    return Choose(kFileDialogOpen, "Open File", filter, nullptr);
}

extern "C" RuntimeObject *RuntimeGetSaveFolderItem(KelpString filter, KelpString defaultName) {
    return Choose(kFileDialogSave, "Save File", filter, defaultName);
}

extern "C" RuntimeObject *RuntimeSelectFolder() {
    return Choose(kFileDialogSelectFolder, "Select Folder", nullptr, nullptr);
}

extern "C" uint8_t exportPicture(RuntimeObject *picture) {
    if (!picture) {
        RaiseNilObject();
        return 0;
    }
    ChooserRequest request;
    request.kind = kFileDialogSave;
    request.title = "Export Image As:";
    request.suggestedName = "Untitled Image.bmp";
    RuntimeObject *item = ChooseItem(request);
    if (!item)
        return 0;
    FolderItemSaveAsPicture(item, picture, 4);
    FolderItemImp *imp = ImpOf(item);
    const bool written = !RuntimePendingException() && imp && imp->mLastError == 0 && imp->Exists();
    RuntimeUnlockObject(item);
    return written ? 1 : 0;
}
