// The FolderItem calls that open sounds and movies and save JPEG files.
// They live beside the picture files because they need what pictures
// stand on: the Sound class and the picture's pixel store.
#include "pictures/picture_object.h"

#include "exceptions/raise.h"
#include "folder_items/folder_item_object.h"
#include "objects/definitions.h"
#include "sound/sound_class.h"

#include "kelp/objects.h"
#include "kelp/pictures.h"

#include <cerrno>
#include <cstring>

using namespace kelp;

extern "C" RuntimeObject *FolderItemOpenSound(RuntimeObject *self) {
    FolderItemImp *imp = ImpOf(self);
    // The sound plays from a path of the system: an entry inside a virtual
    // volume has none.
    if (!imp || imp->IsVirtual())
        return nullptr;
    std::unique_ptr<RandomAccessMechanism> data = imp->OpenData(false);
    char magic[4] = {};
    int64_t got = 0;
    if (!data || !data->Read(magic, 4, &got) || got != 4)
        return nullptr;
    data->Close();
    if (std::memcmp(magic, "RIFF", 4) != 0 && std::memcmp(magic, "FORM", 4) != 0)
        return nullptr;
    RuntimeObject *sound = NewObjectOfDefinition(SoundDefinition());
    if (sound)
        SetSound(sound, imp->AbsolutePath().c_str(), 0);
    return sound;
}

// There is no movie service on this platform: movies open as nil, and a
// program that checks for nil carries on without one.
extern "C" RuntimeObject *FolderItemOpenMovie(RuntimeObject *self) {
    ImpOf(self); // a nil item still raises, as every FolderItem call does
    return nullptr;
}
extern "C" RuntimeObject *FolderItemOpenResourceMovie(RuntimeObject *self, int32_t) {
    ImpOf(self);
    return nullptr;
}

// No vector format is read here.  A program that opens a drawing as vectors
// still wants to show it, so the file opens as OpenAsPicture opens it: the
// picture's pixels, with no Objects.
extern "C" RuntimeObject *FolderItemOpenVectorImage(RuntimeObject *self) {
    return FolderItemOpenImage(self, 0);
}

// JPEG through the toolkit's image saver at quality 90.  The bytes go
// through the item's own file, so the save works wherever the item's data
// can be written; a failure leaves the error in LastErrorCode.
extern "C" void FolderItemSaveAsJPEG(RuntimeObject *self, RuntimeObject *picture) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return;
    DrawablePane *store = StoreOf(picture);
    if (!store) {
        if (!picture)
            RaiseNilObject();
        return;
    }
    if (!store->Pixmap() || store->Width() < 1 || store->Height() < 1)
        return;
    GdkPixbuf *pixels = gdk_pixbuf_get_from_drawable(nullptr, store->Pixmap(), nullptr, 0, 0, 0, 0,
                                                     store->Width(), store->Height());
    gchar *bytes = nullptr;
    gsize length = 0;
    const bool encoded = pixels && gdk_pixbuf_save_to_buffer(pixels, &bytes, &length, "jpeg",
                                                             nullptr, "quality", "90", nullptr);
    if (pixels)
        g_object_unref(pixels);
    if (!encoded) {
        imp->mLastError = EINVAL;
        return;
    }
    std::unique_ptr<RandomAccessMechanism> data = imp->CreateData(); // its error is kept
    if (data && (!data->Write(bytes, static_cast<int64_t>(length)) || !data->Close()))
        imp->mLastError = data->LastError();
    g_free(bytes);
}
