// The clipboard against xclip, another X client that reads and writes the
// same selections, and pictures round-tripped within the process.
#include "canvas/canvas_fixture.h"

#include "strings/kstring.h"
#include "support/image_builder.h"

#include <cstdio>
#include <fstream>

namespace kelp::test {
namespace {

KelpString Bytes(std::string_view s, uint32_t encoding) {
    return kelp::string::FromBytes(s.data(), long(s.size()), encoding).ExtractStringStorage();
}
std::string Owned(KelpString s) {
    std::string text(objtext::View(s));
    RuntimeUnlockString(s);
    return text;
}

class ClipboardTest : public CanvasTest {
protected:
    // What xclip reads from a selection, while this process answers it.
    std::string XclipOut(const std::string &selection, const std::string &target = "UTF8_STRING") {
        std::string out;
        std::atomic<bool> done = false;
        std::thread reader([&] {
            std::string command = "xclip -selection '" + selection + "' -t " + target + " -o";
            if (FILE *pipe = popen(command.c_str(), "r")) {
                char buffer[4096];
                size_t n;
                while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
                    out.append(buffer, n);
                pclose(pipe);
            }
            done = true;
        });
        while (!done)
            Settle(10);
        reader.join();
        return out;
    }
    // xclip takes the selection and serves the bytes until someone else owns it.
    void XclipIn(const std::string &selection, const std::string &target, std::string_view bytes) {
        std::string file = mDir / "in";
        std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
        std::vector<std::string> args = {"xclip", "-selection", selection, "-t",
                                         target,  "-i",         file};
        std::vector<char *> argv;
        for (std::string &a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        int status = 0;
        ASSERT_TRUE(g_spawn_sync(nullptr, argv.data(), nullptr,
                                 GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                             G_SPAWN_STDERR_TO_DEV_NULL),
                                 nullptr, nullptr, nullptr, nullptr, &status, nullptr));
        Settle(100);
    }
    // Takes the picture selection with bytes of our own choosing.
    static void OfferPictureBytes(const std::string &bytes) {
        static std::string held;
        held = bytes;
        static char target[] = "PIXMAP";
        GtkTargetEntry entry = {target, 0, 0};
        gtk_clipboard_set_with_data(
            gtk_clipboard_get(gdk_atom_intern("PictureClipboard", FALSE)), &entry, 1,
            [](GtkClipboard *, GtkSelectionData *data, guint, gpointer) {
                gtk_selection_data_set(data, data->target, 8,
                                       reinterpret_cast<const guchar *>(held.data()),
                                       gint(held.size()));
            },
            nullptr, nullptr);
    }
    TempDir mDir;
};

TEST_F(ClipboardTest, TextGoesOutAsUtf8AndComesBackFromAnotherProgram) {
    struct Case {
        std::string bytes;
        uint32_t encoding;
        std::string utf8;
    } cases[] = {
        {"plain words", kEncodingASCII, "plain words"},
        {"caf\xc3\xa9 \xe2\x82\xac", kEncodingUTF8, "caf\xc3\xa9 \xe2\x82\xac"},
        {"caf\xe9", kEncodingLatin1, "caf\xc3\xa9"},
        {"two\r\nlines", kEncodingASCII, "two\r\nlines"},
    };
    for (const Case &c : cases) {
        KelpString text = Bytes(c.bytes, c.encoding);
        clipboardSetText(nullptr, text);
        RuntimeUnlockString(text);
        EXPECT_EQ(XclipOut("clipboard"), c.utf8) << c.utf8;
        EXPECT_TRUE(clipboardTextAvailable(nullptr));
    }
    XclipIn("clipboard", "UTF8_STRING", "from outside \xe2\x9c\x93");
    EXPECT_TRUE(clipboardTextAvailable(nullptr));
    KelpString back = clipboardTextGetter(nullptr, 0);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->encoding, kEncodingUTF8);
    EXPECT_EQ(Owned(back), "from outside \xe2\x9c\x93");
}

TEST_F(ClipboardTest, AnEmptyClipboardReadsEmptyEverywhere) {
    KelpString text = Bytes("soon gone", kEncodingASCII);
    clipboardSetText(nullptr, text);
    RuntimeUnlockString(text);
    gtk_clipboard_clear(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD));
    KelpString type = Bytes("none", kEncodingASCII);
    EXPECT_FALSE(clipboardTextAvailable(nullptr));
    EXPECT_EQ(clipboardTextGetter(nullptr, 0), nullptr);
    EXPECT_FALSE(clipboardMacDataAvailable(nullptr, type));
    EXPECT_EQ(clipboardMacData(nullptr, type), nullptr);
    RuntimeUnlockString(type);
}

TEST_F(ClipboardTest, RawDataKeepsEveryByteUnderItsOwnType) {
    const std::string data("\x00\x01raw\xff\x00end", 9);
    KelpString type = Bytes("kelp", kEncodingASCII), other = Bytes("othr", kEncodingASCII);
    KelpString bytes = Bytes(data, kEncodingUnknown);
    clipboardAddMacData(nullptr, type, bytes);
    RuntimeUnlockString(bytes);
    EXPECT_TRUE(clipboardMacDataAvailable(nullptr, type));
    EXPECT_FALSE(clipboardMacDataAvailable(nullptr, other));
    EXPECT_EQ(Owned(clipboardMacData(nullptr, type)), data);
    // A later offer of the type replaces the bytes; the other type stays empty.
    KelpString again = Bytes("second", kEncodingASCII);
    clipboardAddMacData(nullptr, type, again);
    RuntimeUnlockString(again);
    EXPECT_EQ(Owned(clipboardMacData(nullptr, type)), "second");
    EXPECT_EQ(clipboardMacData(nullptr, other), nullptr);
    RuntimeUnlockString(type);
    RuntimeUnlockString(other);
}

TEST_F(ClipboardTest, PicturesRoundTripAndBadOnesAreRefused) {
    RuntimeObject *picture = Filled(30, 20, 0x336699);
    StoreOf(picture)->SetPixel(0, 0, 0xff0000);
    StoreOf(picture)->SetPixel(29, 19, 0x00ff00);
    clipboardPictureSetter(nullptr, 0, picture);
    RuntimeUnlockObject(picture);
    EXPECT_TRUE(clipboardPictureAvailable(nullptr));
    auto check = [&](const char *what) {
        RuntimeObject *back = clipboardPictureGetter(nullptr, 0);
        ASSERT_NE(back, nullptr) << what;
        DrawablePane *store = StoreOf(back);
        EXPECT_EQ(store->Width(), 30) << what;
        EXPECT_EQ(store->Height(), 20) << what;
        EXPECT_EQ(store->GetPixel(0, 0), 0xff0000u) << what;
        EXPECT_EQ(store->GetPixel(29, 19), 0x00ff00u) << what;
        EXPECT_EQ(store->GetPixel(15, 10), 0x336699u) << what;
        RuntimeUnlockObject(back);
    };
    check("round trip");
    // Too many pixels to offer: the clipboard keeps what it had.
    RuntimeObject *huge = newPicture(4097, 4097, 32);
    clipboardPictureSetter(nullptr, 0, huge);
    RuntimeUnlockObject(huge);
    check("after a picture too large");
    // Data of another owner under the picture target must add up.
    struct Hostile {
        const char *what;
        std::vector<int32_t> header;
        size_t rowBytes;
    } hostile[] = {
        {"short header", {30}, 0},
        {"rows past the data", {30, 20, 90}, 90 * 19},
        {"negative height", {30, -20, 90}, 90 * 20},
        {"stride below a row", {30, 20, 60}, 60 * 20},
        {"huge size", {1 << 20, 1 << 20, 3 << 20}, 16},
    };
    for (const Hostile &h : hostile) {
        std::string bytes(reinterpret_cast<const char *>(h.header.data()), h.header.size() * 4);
        bytes.append(h.rowBytes, '\x7f');
        OfferPictureBytes(bytes);
        EXPECT_TRUE(clipboardPictureAvailable(nullptr)) << h.what;
        EXPECT_EQ(clipboardPictureGetter(nullptr, 0), nullptr) << h.what;
    }
}

} // namespace
} // namespace kelp::test
