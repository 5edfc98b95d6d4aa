// Pictures from and to files and from the image's resources.
#include "pictures/picture_object.h"

#include "bitmaps/bmp_codec.h"
#include "exceptions/raise.h"
#include "folder_items/folder_item_object.h"
#include "resources/resource_store.h"

#include "kelp/pictures.h"

#include <cctype>
#include <string>
#include <vector>

namespace kelp {
namespace {

enum PictureFormat : int32_t {
    kFormatPNG = 150,
    kFormatJPEG = 151,
    kFormatBMP = 350,
    kFormatXPM = 400,
    kFormatXBM = 401,
    kFormatGIF = 402,
    kFormatTIFF = 403,
};

// The largest file read whole to be decoded: far beyond any picture the
// reader accepts, and short of exhausting memory on a hostile file.
constexpr int64_t kMaxPictureFile = int64_t{1} << 30;

int32_t FormatByName(const std::string &name) {
    static const struct {
        const char *ending;
        int32_t format;
    } kEndings[] = {{".xpm", kFormatXPM},   {".xbm", kFormatXBM}, {".jpg", kFormatJPEG},
                    {".jpeg", kFormatJPEG}, {".png", kFormatPNG}, {".tif", kFormatTIFF},
                    {".tiff", kFormatTIFF}, {".gif", kFormatGIF}};
    std::string lower = name;
    for (char &c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const auto &row : kEndings) {
        std::string ending = row.ending;
        if (lower.size() >= ending.size() &&
            lower.compare(lower.size() - ending.size(), ending.size(), ending) == 0)
            return row.format;
    }
    return 0;
}

bool ReadWhole(FolderItemImp &imp, std::vector<uint8_t> &bytes) {
    std::unique_ptr<RandomAccessMechanism> data = imp.OpenData(false);
    if (!data)
        return false;
    int64_t length = data->GetLength();
    if (length < 0 || length > kMaxPictureFile)
        return false;
    bytes.resize(static_cast<size_t>(length));
    int64_t got = 0;
    if (length > 0 && !data->Read(bytes.data(), length, &got))
        return false;
    bytes.resize(static_cast<size_t>(got));
    return true;
}

RuntimeObject *FromPixbufFile(const std::string &path) {
    GdkPixbuf *pixbuf = gdk_pixbuf_new_from_file(path.c_str(), nullptr);
    if (!pixbuf)
        return nullptr;
    int32_t w = gdk_pixbuf_get_width(pixbuf), h = gdk_pixbuf_get_height(pixbuf);
    RuntimeObject *picture = newPicture(w, h, 24);
    DrawablePane *store = StoreOf(picture);
    if (store && store->Pixmap()) {
        store->ContentChanged();
        gdk_draw_pixbuf(store->Pixmap(), store->Target()->GetGC(), pixbuf, 0, 0, 0, 0, w, h,
                        GDK_RGB_DITHER_NONE, 0, 0);
    }
    g_object_unref(pixbuf);
    return picture;
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *FolderItemOpenImage(RuntimeObject *self, int32_t format) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return nullptr;
    if (format != 0) {
        std::string message =
            "OpenAsPicture doesn't support format " + std::to_string(format) + " in Linux";
        RaiseWithMessage("UnsupportedFormatException", message.c_str());
        return nullptr;
    }
    int32_t byName = FormatByName(imp->Name());
    if (byName != 0)
        return FromPixbufFile(imp->AbsolutePath());
    std::vector<uint8_t> bytes;
    if (!ReadWhole(*imp, bytes) || bytes.size() < 2 || bytes[0] != 'B' || bytes[1] != 'M')
        return nullptr;
    return PictureFromBmp(bytes.data(), bytes.size());
}

extern "C" void FolderItemSaveAsPicture(RuntimeObject *self, RuntimeObject *picture,
                                        int32_t format) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return;
    if (format != 4 && format != kFormatBMP) {
        std::string message =
            "SaveAsPicture doesn't support format " + std::to_string(format) + " in Linux.";
        RaiseWithMessage("UnsupportedFormatException", message.c_str());
        return;
    }
    DrawablePane *store = StoreOf(picture);
    if (!store) {
        if (!picture)
            RaiseNilObject();
        return;
    }
    std::vector<uint32_t> pixels = store->ReadPixels();
    if (pixels.empty())
        return;
    std::vector<uint8_t> rgb(pixels.size() * 3);
    for (size_t i = 0; i < pixels.size(); ++i) {
        rgb[i * 3] = static_cast<uint8_t>(pixels[i] >> 16);
        rgb[i * 3 + 1] = static_cast<uint8_t>(pixels[i] >> 8);
        rgb[i * 3 + 2] = static_cast<uint8_t>(pixels[i]);
    }
    std::string file = EncodeBmp(rgb.data(), store->Width(), store->Height(), store->Width() * 3, 3,
                                 store->mHorizontalResolution, store->mVerticalResolution);
    std::unique_ptr<RandomAccessMechanism> data = imp->CreateData();
    if (!data)
        return;
    if (!data->Write(file.data(), static_cast<int64_t>(file.size())) || !data->Close())
        imp->mLastError = data->LastError();
}

extern "C" RuntimeObject *RuntimeGetBitmapFromResourceManager(int32_t id) {
    ResourceRow row = FindResource(kResourceBitmap, static_cast<uint32_t>(id));
    if (!row.data)
        return nullptr;
    return PictureFromBmp(row.data, row.length);
}
