// The Clipboard class on the toolkit's clipboards.  Text goes through the
// "CLIPBOARD" selection as UTF-8; raw data of a type goes through a
// selection named by the type, as the bytes of a STRING; pictures go
// through the selection "PictureClipboard" under the target of pixmaps, as
// a header of three words (width, height, row stride) and RGB rows.
//
// Failure channel: none raises.  Without a display every read gives the
// empty string, false or nil and every write does nothing; data another
// program puts under the picture target is checked against its own length
// and refused when it doesn't add up.
#include "canvas/clipboard.h"

#include "objects/definitions.h"
#include "objects/text.h"
#include "pictures/picture_object.h"
#include "strings/kstring.h"

#include "kelp/canvas.h"
#include "kelp/objects.h"
#include "kelp/pictures.h"
#include "kelp/strings.h"

#include <gtk/gtk.h>

#include <cstring>
#include <string>
#include <vector>

namespace kelp {
namespace {

// Pictures beyond this many pixels are not offered: their rows would not
// fit in memory twice over on a small machine.
constexpr int64_t kMaxClipboardPixels = 4096 * 4096;
constexpr size_t kPictureHeader = 3 * sizeof(int32_t);

// The clipboard of a selection name; null without a display.
GtkClipboard *ClipboardNamed(const char *name) {
    if (!gdk_display_get_default())
        return nullptr;
    return gtk_clipboard_get(gdk_atom_intern(name, FALSE));
}
GtkClipboard *TextClipboard() { return ClipboardNamed("CLIPBOARD"); }
GtkClipboard *PictureClipboard() { return ClipboardNamed("PictureClipboard"); }
GdkAtom PixmapAtom() { return gdk_atom_intern("PIXMAP", FALSE); }

// A raw type's selection: its four characters, blanks at the end kept.
GtkClipboard *RawClipboard(KelpString type) {
    std::string name(objtext::View(type).substr(0, 4));
    name.resize(4, ' ');
    return ClipboardNamed(name.c_str());
}

KelpString FromBytes(const void *bytes, size_t length, uint32_t encoding) {
    return kelp::string::FromBytes(bytes, long(length), encoding).ExtractStringStorage();
}

// The bytes a clipboard holds for one target; empty when nothing answers.
std::vector<uint8_t> Contents(GtkClipboard *clipboard, GdkAtom target) {
    std::vector<uint8_t> bytes;
    if (!clipboard)
        return bytes;
    if (GtkSelectionData *data = gtk_clipboard_wait_for_contents(clipboard, target)) {
        if (data->length > 0 && data->data)
            bytes.assign(data->data, data->data + data->length);
        gtk_selection_data_free(data);
    }
    return bytes;
}

// Offers `bytes` under one target until another owner takes the selection.
void Offer(GtkClipboard *clipboard, const char *target, std::vector<uint8_t> bytes) {
    if (!clipboard)
        return;
    std::string name(target); // the toolkit copies the entry
    GtkTargetEntry entry = {name.data(), 0, 0};
    auto *held = new std::vector<uint8_t>(std::move(bytes));
    auto get = [](GtkClipboard *, GtkSelectionData *data, guint, gpointer owned) {
        auto *b = static_cast<std::vector<uint8_t> *>(owned);
        gtk_selection_data_set(data, data->target, 8, b->data(), gint(b->size()));
    };
    auto clear = [](GtkClipboard *, gpointer owned) {
        delete static_cast<std::vector<uint8_t> *>(owned);
    };
    if (!gtk_clipboard_set_with_data(clipboard, &entry, 1, get, clear, held))
        delete held;
}

int32_t ReadWord(const std::vector<uint8_t> &bytes, size_t at) {
    int32_t word;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    return word;
}

} // namespace
} // namespace kelp

using namespace kelp;

// The object holds nothing: the clipboards are the toolkit's.
extern "C" void ClipboardInitializer(RuntimeObject *) {}
extern "C" void ClipboardFinalizer(RuntimeObject *) {}
extern "C" void clipboardClose(RuntimeObject *) {}

extern "C" KelpString clipboardTextGetter(RuntimeObject *, int32_t) {
    GtkClipboard *clipboard = TextClipboard();
    gchar *text = clipboard ? gtk_clipboard_wait_for_text(clipboard) : nullptr;
    if (!text)
        return nullptr;
    KelpString result = FromBytes(text, std::strlen(text), kEncodingUTF8);
    g_free(text);
    return result;
}

extern "C" void clipboardSetText(RuntimeObject *, KelpString text) {
    if (GtkClipboard *clipboard = TextClipboard()) {
        kelp::string utf8 = GetUTF8String(kelp::string::Wrap(text));
        gtk_clipboard_set_text(clipboard, utf8.CString(), gint(utf8.Length()));
    }
}

extern "C" void clipboardTextSetter(RuntimeObject *self, int32_t, KelpString text) {
    clipboardSetText(self, text);
}

extern "C" uint8_t clipboardTextAvailable(RuntimeObject *) {
    GtkClipboard *clipboard = TextClipboard();
    return clipboard && gtk_clipboard_wait_is_text_available(clipboard) ? 1 : 0;
}

extern "C" uint8_t clipboardMacDataAvailable(RuntimeObject *, KelpString type) {
    GtkClipboard *clipboard = RawClipboard(type);
    return clipboard && gtk_clipboard_wait_is_target_available(clipboard, GDK_TARGET_STRING) ? 1
                                                                                             : 0;
}

// The bytes as they came; their encoding is not known.
extern "C" KelpString clipboardMacData(RuntimeObject *, KelpString type) {
    std::vector<uint8_t> bytes = Contents(RawClipboard(type), GDK_TARGET_STRING);
    return bytes.empty() ? nullptr : FromBytes(bytes.data(), bytes.size(), kEncodingUnknown);
}

extern "C" void clipboardAddMacData(RuntimeObject *, KelpString type, KelpString data) {
    std::string_view bytes = objtext::View(data);
    Offer(RawClipboard(type), "STRING", std::vector<uint8_t>(bytes.begin(), bytes.end()));
}

extern "C" uint8_t clipboardPictureAvailable(RuntimeObject *) {
    GtkClipboard *clipboard = PictureClipboard();
    return clipboard && gtk_clipboard_wait_is_target_available(clipboard, PixmapAtom()) ? 1 : 0;
}

// A picture too large to offer leaves the clipboard as it was.
extern "C" void clipboardPictureSetter(RuntimeObject *, int32_t, RuntimeObject *picture) {
    DrawablePane *store = StoreOf(picture);
    GtkClipboard *clipboard = PictureClipboard();
    if (!store || !clipboard || !store->Pixmap())
        return;
    const int32_t w = store->Width(), h = store->Height();
    if (w < 1 || h < 1 || int64_t(w) * h > kMaxClipboardPixels)
        return;
    GdkPixbuf *pixbuf = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, w, h);
    if (!pixbuf)
        return;
    if (gdk_pixbuf_get_from_drawable(pixbuf, store->Pixmap(), nullptr, 0, 0, 0, 0, w, h)) {
        const int32_t stride = gdk_pixbuf_get_rowstride(pixbuf);
        std::vector<uint8_t> bytes(kPictureHeader + size_t(stride) * size_t(h));
        const int32_t header[3] = {w, h, stride};
        std::memcpy(bytes.data(), header, sizeof header);
        std::memcpy(bytes.data() + kPictureHeader, gdk_pixbuf_get_pixels(pixbuf),
                    size_t(stride) * size_t(h));
        Offer(clipboard, "PIXMAP", std::move(bytes));
    }
    g_object_unref(pixbuf);
}

extern "C" RuntimeObject *clipboardPictureGetter(RuntimeObject *, int32_t) {
    std::vector<uint8_t> bytes = Contents(PictureClipboard(), PixmapAtom());
    if (bytes.size() < kPictureHeader)
        return nullptr;
    const int32_t w = ReadWord(bytes, 0), h = ReadWord(bytes, 4), stride = ReadWord(bytes, 8);
    if (w < 1 || h < 1 || int64_t(w) * h > kMaxClipboardPixels || stride < int64_t(w) * 3 ||
        stride > int64_t(w) * 3 + 64 ||
        int64_t(stride) * h > int64_t(bytes.size() - kPictureHeader))
        return nullptr;
    RuntimeObject *picture = newPicture(w, h, 24);
    DrawablePane *store = StoreOf(picture);
    if (!store || !store->Pixmap()) {
        RuntimeUnlockObject(picture);
        return nullptr;
    }
    GdkGC *gc = gdk_gc_new(store->Pixmap());
    gdk_draw_rgb_image(store->Pixmap(), gc, 0, 0, w, h, GDK_RGB_DITHER_NONE,
                       bytes.data() + kPictureHeader, stride);
    g_object_unref(gc);
    store->ContentChanged();
    return picture;
}

namespace kelp {

ObjectDefinition *ClipboardDefinition() {
    static const PropertyRow properties[] = {
        {0, "Text", &kTypeString, KELP_ENTRY(clipboardTextGetter), KELP_ENTRY(clipboardTextSetter),
         -9},
        {0, "Picture", &kTypePtr, KELP_ENTRY(clipboardPictureGetter),
         KELP_ENTRY(clipboardPictureSetter), -9},
    };
    static const ParameterRow typeParam[] = {{"type", &kTypeString}};
    static const ParameterRow dataParams[] = {{"type", &kTypeString}, {"data", &kTypeString}};
    static const MethodRow methods[] = {
        {"TextAvailable", &kTypeBoolean, nullptr, 0, KELP_ENTRY(clipboardTextAvailable)},
        {"PictureAvailable", &kTypeBoolean, nullptr, 0, KELP_ENTRY(clipboardPictureAvailable)},
        {"MacDataAvailable", &kTypeBoolean, typeParam, 1, KELP_ENTRY(clipboardMacDataAvailable)},
        {"RawDataAvailable", &kTypeBoolean, typeParam, 1, KELP_ENTRY(clipboardMacDataAvailable)},
        {"MacData", &kTypeString, typeParam, 1, KELP_ENTRY(clipboardMacData)},
        {"RawData", &kTypeString, typeParam, 1, KELP_ENTRY(clipboardMacData)},
        {"AddMacData", nullptr, dataParams, 2, KELP_ENTRY(clipboardAddMacData)},
        {"AddRawData", nullptr, dataParams, 2, KELP_ENTRY(clipboardAddMacData)},
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(clipboardClose)},
    };
    static const ClassDescription description = {
        .name = "Clipboard",
        .initializer = KELP_ENTRY(ClipboardInitializer),
        .finalizer = KELP_ENTRY(ClipboardFinalizer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp
