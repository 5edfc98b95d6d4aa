// Printing to real PDF files, read back with poppler's tools: the text on
// each page, the page count and size, and the pixels where shapes were
// drawn.  The print and page setup dialogs are answered through the X
// server as a person would.
#include "controls/control_fixture.h"
#include "support/class_kit.h"
#include "support/image_builder.h"
#include "support/person.h"
#include "support/x_input.h"
#include "support/xvfb.h"

#include "print/printer_setup.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace kelp {
namespace {

using test::Lit;

// What poppler says of a PDF: pages, size in points, text of one page.
std::string PdfInfo(const std::string &pdf, const std::string &key) {
    std::istringstream in(test::Run("/usr/bin/pdfinfo", {pdf}).out);
    for (std::string line; std::getline(in, line);)
        if (line.rfind(key, 0) == 0)
            return line.substr(key.size());
    return "";
}
int PageCount(const std::string &pdf) {
    const std::string pages = PdfInfo(pdf, "Pages:");
    return pages.empty() ? -1 : std::atoi(pages.c_str());
}
std::string PageSize(const std::string &pdf) {
    std::istringstream words(PdfInfo(pdf, "Page size:"));
    double w = 0, h = 0;
    std::string x;
    if (!(words >> w >> x >> h))
        return "";
    return std::to_string(int(w)) + "x" + std::to_string(int(h));
}
std::string PageText(const std::string &pdf, int page) {
    const std::string n = std::to_string(page);
    return test::Run("/usr/bin/pdftotext", {"-layout", "-f", n, "-l", n, pdf, "-"}).out;
}

// Page `page` rendered at 72 dots per inch, as 0xRRGGBB words.
struct Rendered {
    int width = 0, height = 0;
    std::vector<uint32_t> pixels;
    uint32_t At(int x, int y) const {
        return x < 0 || y < 0 || x >= width || y >= height ? 0xDEAD : pixels[y * width + x];
    }
};
Rendered Render(const std::string &pdf, int page, const std::string &screenshot = "") {
    const std::string n = std::to_string(page), base = pdf + ".page";
    std::system(
        ("pdftoppm -r 72 -singlefile -f " + n + " -l " + n + " '" + pdf + "' '" + base + "'")
            .c_str());
    if (!screenshot.empty()) {
        std::filesystem::create_directories("screenshots");
        std::system(("pdftoppm -png -r 72 -singlefile -f " + n + " -l " + n + " '" + pdf +
                     "' screenshots/" + screenshot)
                        .c_str());
    }
    Rendered r;
    std::ifstream in(base + ".ppm", std::ios::binary);
    std::string magic;
    int max = 0;
    in >> magic >> r.width >> r.height >> max;
    in.get();
    for (int i = 0; in && i < r.width * r.height; ++i) {
        unsigned char rgb[3];
        in.read(reinterpret_cast<char *>(rgb), 3);
        r.pixels.push_back(uint32_t(rgb[0]) << 16 | uint32_t(rgb[1]) << 8 | rgb[2]);
    }
    return r;
}

bool Reddish(uint32_t c) {
    return (c >> 16) > 0xC0 && ((c >> 8) & 0xFF) < 0x40 && (c & 0xFF) < 0x40;
}

class Print : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        // Only the file backend: no print service is asked about printers.
        gtk_settings_set_string_property(gtk_settings_get_default(), "gtk-print-backends", "file",
                                         "test");
        setenv("KELP_PRINT_TO_FILE", Pdf().c_str(), 1);
    }
    void TearDown() override {
        unsetenv("KELP_PRINT_TO_FILE");
        for (RuntimeObject *o : mObjects)
            RuntimeUnlockObject(o);
    }
    std::string Pdf() const { return mDir / "out.pdf"; }
    RuntimeObject *Keep(RuntimeObject *o) {
        if (o)
            mObjects.push_back(o);
        return o;
    }
    RuntimeObject *NewSetup() {
        RuntimeInitExternalClasses();
        KelpString name = Lit("PrinterSetup");
        RuntimeClass *c = RuntimeLookupClass(name);
        RuntimeUnlockString(name);
        return Keep(c ? RuntimeNewObject(c) : nullptr);
    }
    void Text(RuntimeObject *g, const std::string &text, int x, int y) {
        KelpString s = Lit(text);
        RuntimeGraphicsDrawString(g, s, x, y);
        RuntimeUnlockString(s);
    }
    test::TempDir mDir;
    std::vector<RuntimeObject *> mObjects;
};

TEST_F(Print, PagesReachThePdfWithTheirTextShapesAndSize) {
    RuntimeObject *setup = NewSetup();
    ASSERT_NE(setup, nullptr);
    const int left = -printerSetupInfoGetter(setup, 6), top = -printerSetupInfoGetter(setup, 7);
    RuntimeObject *g = RuntimeOpenPrinterDialog(setup, nullptr);
    ASSERT_NE(g, nullptr);
    EXPECT_EQ(RuntimeOpenPrinter(nullptr), nullptr) << "a second print while one is active";
    EXPECT_EQ(graphicsWidthGetter(g, 0), printerSetupInfoGetter(setup, 4));
    EXPECT_EQ(graphicsHeightGetter(g, 0), printerSetupInfoGetter(setup, 5));
    EXPECT_EQ(graphicsFirstPageGetter(g, 0), 1);
    EXPECT_EQ(graphicsLastPageGetter(g, 0), 65535);
    graphicsForeColorSetter(g, 0, 0xFF0000);
    RuntimeGraphicsFillRect(g, 20, 30, 100, 50);
    graphicsForeColorSetter(g, 0, 0x000000);
    Text(g, "Problems missed this round", 20, 120);
    RuntimeGraphicsNextPage(g);
    Text(g, "The second page", 20, 40);
    RuntimeGraphicsNextPage(g);
    RuntimeUnlockObject(g); // the print ends here

    EXPECT_EQ(PageCount(Pdf()), 3);
    EXPECT_EQ(PageSize(Pdf()), std::to_string(printerSetupInfoGetter(setup, 8)) + "x" +
                                   std::to_string(printerSetupInfoGetter(setup, 9)))
        << "whole points at 72 dots per inch";
    EXPECT_NE(PageText(Pdf(), 1).find("Problems missed this round"), std::string::npos);
    EXPECT_EQ(PageText(Pdf(), 1).find("second"), std::string::npos);
    EXPECT_NE(PageText(Pdf(), 2).find("The second page"), std::string::npos);
    EXPECT_EQ(PageText(Pdf(), 2).find("Problems"), std::string::npos) << "pages start blank";
    Rendered page = Render(Pdf(), 1, "print_page");
    struct Probe {
        int x, y;
        bool red;
    } probes[] = {{left + 21, top + 31, true},   {left + 118, top + 78, true},
                  {left + 70, top + 55, true},   {left + 18, top + 31, false},
                  {left + 122, top + 55, false}, {left + 70, top + 82, false}};
    for (const Probe &p : probes)
        EXPECT_EQ(Reddish(page.At(p.x, p.y)), p.red) << p.x << "," << p.y;
    EXPECT_EQ(Render(Pdf(), 3).At(left + 70, top + 55), 0xFFFFFFu) << "the last page is blank";
}

// A picture of blue and green halves, drawn as it is, enlarged, and with
// its white taken as transparent over red: the page shows each where it
// was drawn, scaled and cut through as on screen.
TEST_F(Print, PicturesReachThePageAtTheirPlaceAndScale) {
    RuntimeObject *setup = NewSetup();
    ASSERT_NE(setup, nullptr);
    const int left = -printerSetupInfoGetter(setup, 6), top = -printerSetupInfoGetter(setup, 7);
    RuntimeObject *halves = Keep(newPicture(20, 10, 32));
    RuntimeObject *holed = Keep(newPicture(20, 10, 32));
    for (RuntimeObject *p : {halves, holed}) {
        RuntimeObject *pg = Keep(pictureGraphicsGetter(p, 0));
        graphicsForeColorSetter(pg, 0, 0x0000FF);
        RuntimeGraphicsFillRect(pg, 0, 0, 10, 10);
        graphicsForeColorSetter(pg, 0, p == halves ? 0x00FF00 : 0xFFFFFF);
        RuntimeGraphicsFillRect(pg, 10, 0, 10, 10);
    }
    pictureTransparentSetter(holed, 0, 1);
    RuntimeObject *g = RuntimeOpenPrinter(setup);
    ASSERT_NE(g, nullptr);
    RuntimeGraphicsDrawPicture(g, halves, 20, 30, -10000, -10000, 0, 0, -10000, -10000);
    RuntimeGraphicsDrawPicture(g, halves, 60, 30, 40, 20, 0, 0, 20, 10);
    graphicsForeColorSetter(g, 0, 0xFF0000);
    RuntimeGraphicsFillRect(g, 120, 30, 20, 10);
    RuntimeGraphicsDrawPicture(g, holed, 120, 30, -10000, -10000, 0, 0, -10000, -10000);
    RuntimeUnlockObject(g);
    Rendered page = Render(Pdf(), 1, "print_pictures");
    struct Probe {
        int x, y;
        uint32_t colour;
    } probes[] = {
        {25, 35, 0x0000FF},  {35, 35, 0x00FF00}, {45, 35, 0xFFFFFF},  {25, 42, 0xFFFFFF},
        {65, 45, 0x0000FF},  {78, 48, 0x0000FF}, {82, 35, 0x00FF00},  {98, 48, 0x00FF00},
        {102, 40, 0xFFFFFF}, {70, 52, 0xFFFFFF}, {125, 35, 0x0000FF}, {135, 35, 0xFF0000},
    };
    auto near = [](uint32_t a, uint32_t b) {
        for (int shift : {0, 8, 16})
            if (std::abs(int(a >> shift & 255) - int(b >> shift & 255)) > 24)
                return false;
        return true;
    };
    for (const Probe &p : probes)
        EXPECT_TRUE(near(page.At(left + p.x, top + p.y), p.colour))
            << p.x << "," << p.y << " " << std::hex << page.At(left + p.x, top + p.y);
}

void PaintGreenCorner(RuntimeObject *, RuntimeObject *g) {
    graphicsForeColorSetter(g, 0, 0x00FF00);
    RuntimeGraphicsFillRect(g, 0, 0, 10, 10);
}
void PaintBlueSquare(RuntimeObject *, RuntimeObject *g) {
    graphicsForeColorSetter(g, 0, 0x0000FF);
    RuntimeGraphicsFillRect(g, 5, 5, 10, 10);
}

// A window drawn onto a page: its colour, its Paint and its canvas's Paint,
// each where it is on the window.
class PrintWindow : public test::ControlFixture {};
TEST_F(PrintWindow, DrawIntoAPageGivesThePaintsOfTheWindowAndItsCanvases) {
    test::TempDir dir;
    setenv("KELP_PRINT_TO_FILE", (dir / "w.pdf").c_str(), 1);
    RuntimeObject *w = MakeWindow(100, 80,
                                  [](RuntimeObject *view) {
                                      Add(view, "Canvas", "Art",
                                          [](test::MassData &m) { test::Box(m, 40, 30, 30, 30); },
                                          {{"Paint", test::H(&PaintBlueSquare)}});
                                  },
                                  {{"Paint", test::H(&PaintGreenCorner)}});
    windowHasBackColorSetter(w, 0, 1);
    windowBackColorSetter(w, 0, 0xFF0000);
    RuntimeInitExternalClasses();
    KelpString name = test::Lit("PrinterSetup");
    RuntimeObject *setup = RuntimeNewObject(RuntimeLookupClass(name));
    RuntimeUnlockString(name);
    const int left = -printerSetupInfoGetter(setup, 6), top = -printerSetupInfoGetter(setup, 7);
    RuntimeObject *g = RuntimeOpenPrinter(setup);
    ASSERT_NE(g, nullptr);
    formDrawInto(w, g, 20, 20);
    RuntimeUnlockObject(g);
    unsetenv("KELP_PRINT_TO_FILE");
    Rendered page = Render(dir / "w.pdf", 1);
    for (auto [x, y, colour] : {std::tuple{21, 21, 0x00FF00u},
                                {28, 28, 0x00FF00u},
                                {32, 32, 0xFF0000u},
                                {66, 56, 0x0000FFu},
                                {76, 66, 0xFF0000u},
                                {121, 101, 0xFFFFFFu}})
        EXPECT_EQ(page.At(left + x, top + y), colour) << x << "," << y;
    RuntimeUnlockObject(setup);
}

TEST_F(Print, ResolutionsFollowTheLimitsAndScaleToThePaper) {
    struct Case {
        int32_t settingsDpi, maxDpi, setupDpi;
        bool passSetup;
        int32_t expected;
    } cases[] = {
        {600, 72, 72, true, 72},   // the default limits give 72 dots per inch
        {600, -1, 72, true, 72},   // the limit lifted, the setup's own holds it
        {600, -1, 600, true, 600}, // both allow it
        {300, 150, 600, true, 150}, {0, -1, 600, true, 72}, // an unreadable resolution counts as 72
    };
    for (const Case &c : cases) {
        RuntimeObject *setup = NewSetup();
        PrintHelper *h = HelperOf(setup);
        if (c.settingsDpi)
            gtk_print_settings_set_resolution(h->settings, c.settingsDpi);
        printerSetupMaxResSetter(setup, 10, c.maxDpi);
        printerSetupMaxResSetter(setup, 11, c.maxDpi);
        auto *s = reinterpret_cast<PrinterSetupObject *>(setup);
        s->setupHorizontalResolution = s->setupVerticalResolution = c.setupDpi;
        RuntimeObject *g = RuntimeOpenPrinter(c.passSetup ? setup : nullptr);
        ASSERT_NE(g, nullptr);
        EXPECT_EQ(printerSetupInfoGetter(setup, 1), c.expected) << c.settingsDpi;
        // An inch of dots is an inch of paper whatever the resolution.
        graphicsForeColorSetter(g, 0, 0xFF0000);
        RuntimeGraphicsFillRect(g, 0, 0, c.expected, c.expected);
        RuntimeUnlockObject(g);
        const int left = -printerSetupInfoGetter(setup, 6) * 72 / c.expected;
        const int top = -printerSetupInfoGetter(setup, 7) * 72 / c.expected;
        Rendered page = Render(Pdf(), 1);
        EXPECT_TRUE(Reddish(page.At(left + 70, top + 70))) << c.expected;
        EXPECT_FALSE(Reddish(page.At(left + 74, top + 74))) << c.expected;
        EXPECT_EQ(printerSetupInfoGetter(setup, 2), 0);
        EXPECT_EQ(printerSetupInfoGetter(setup, 3), 0);
        EXPECT_LE(printerSetupInfoGetter(setup, 6), 0);
        EXPECT_LE(printerSetupInfoGetter(setup, 7), 0);
        EXPECT_EQ(printerSetupInfoGetter(setup, 12), 0);
    }
}

TEST_F(Print, PageNamesCountOnFromOnePrintToTheNext) {
    auto labels = [this] {
        return test::Run("/usr/bin/python3", {KELP_SOURCE_DIR "/tests/print/page_labels.py", Pdf()})
            .out;
    };
    RuntimeObject *g = RuntimeOpenPrinter(nullptr);
    ASSERT_NE(g, nullptr);
    RuntimeGraphicsNextPage(g);
    RuntimeUnlockObject(g);
    const std::string first = labels();
    RuntimeUnlockObject(RuntimeOpenPrinter(nullptr));
    const std::string second = labels();
    // The first print's two pages take two names.
    EXPECT_GE(std::atoi(first.c_str()), 1) << first;
    EXPECT_EQ(std::atoi(second.c_str()), std::atoi(first.c_str()) + 2) << second;
}

TEST_F(Print, WithoutAFileOrAPrinterNothingIsPrinted) {
    unsetenv("KELP_PRINT_TO_FILE");
    // The file backend's one printer needs a dialog to say where: there is
    // no default printer to print to.
    EXPECT_EQ(RuntimeOpenPrinter(nullptr), nullptr);
    EXPECT_FALSE(std::filesystem::exists(Pdf()));
    setenv("KELP_PRINT_TO_FILE", (mDir / "no/such/folder/out.pdf").c_str(), 1);
    EXPECT_EQ(RuntimeOpenPrinter(nullptr), nullptr) << "a file that can't be written";
    setenv("KELP_PRINT_TO_FILE", Pdf().c_str(), 1);
    RuntimeObject *g = RuntimeOpenPrinter(nullptr);
    EXPECT_NE(g, nullptr) << "and the failed print let go";
    if (g)
        RuntimeUnlockObject(g);
}

} // namespace
} // namespace kelp

namespace kelp {
namespace {

using test::Person;

const char *const kChooseFileRow = "mousemove --window %1 80 94 click 1";
const char *const kSelectName = "mousemove --window %1 218 255 click --repeat 3 1";
const char *const kPagesField =
    "mousemove --window %1 46 410 click 1 sleep 0.2 mousemove --window %1 200 410 click 1";
const char *const kPrintButton = "mousemove --window %1 600 464 click 1";

TEST_F(Print, ThePrintDialogAnsweredByAPerson) {
    unsetenv("KELP_PRINT_TO_FILE");
    struct Case {
        const char *what;
        std::vector<std::string> steps;
        bool prints;
        int first, last;
    } cases[] = {
        {"Escape", {"key Escape"}, false, 0, 0},
        {"Cancel", {"mousemove --window %1 490 464 click 1"}, false, 0, 0},
        // clang-format off
        {"Print to File, a name typed, pages 2 to 3",
         {kChooseFileRow, kSelectName, "type typed-by-hand.pdf", kPagesField, "type 2-3", kPrintButton}, true, 2, 3},
        {"Print to File, all pages", {kChooseFileRow, kSelectName, "type all.pdf", kPrintButton}, true, 1, 65535},
        // clang-format on
    };
    for (const Case &c : cases) {
        RuntimeObject *setup = NewSetup();
        const std::string folder = "file://" + mDir.path() + "/output.pdf";
        gtk_print_settings_set(HelperOf(setup)->settings, GTK_PRINT_SETTINGS_OUTPUT_URI,
                               folder.c_str());
        RuntimeObject *g = nullptr;
        {
            Person person("Print", c.steps);
            g = RuntimeOpenPrinterDialog(setup, nullptr);
        }
        ASSERT_EQ(g != nullptr, c.prints) << c.what;
        if (!g) {
            EXPECT_STREQ(
                gtk_print_settings_get(HelperOf(setup)->settings, GTK_PRINT_SETTINGS_OUTPUT_URI),
                folder.c_str())
                << c.what << ": a cancelled dialog leaves the settings";
            continue;
        }
        EXPECT_EQ(graphicsFirstPageGetter(g, 0), c.first) << c.what;
        EXPECT_EQ(graphicsLastPageGetter(g, 0), c.last) << c.what;
        Text(g, c.what, 20, 40);
        RuntimeUnlockObject(g);
    }
    EXPECT_NE(PageText(mDir / "typed-by-hand.pdf", 1).find("pages 2 to 3"), std::string::npos);
    EXPECT_EQ(PageCount(mDir / "all.pdf"), 1);
    EXPECT_FALSE(std::filesystem::exists(mDir / "output.pdf")) << "nothing else was printed";
}

TEST_F(Print, ThePageSetupDialogKeepsOnlyWhatIsApplied) {
    unsetenv("KELP_PRINT_TO_FILE");
    RuntimeObject *setup = NewSetup();
    const int width = printerSetupInfoGetter(setup, 8), height = printerSetupInfoGetter(setup, 9);
    struct Case {
        std::vector<std::string> steps;
        bool accepted;
        int pageWidth;
    } cases[] = {
        {{"mousemove --window %1 118 162 click 1", "key Escape"}, false, width},
        {{"mousemove --window %1 118 162 click 1", "mousemove --window %1 405 205 click 1"},
         true,
         height},
    };
    for (const Case &c : cases) {
        uint8_t accepted;
        {
            Person person("Page Setup", c.steps);
            accepted = printerSetupPageSetup(setup, nullptr);
        }
        EXPECT_EQ(accepted, c.accepted);
        EXPECT_EQ(printerSetupInfoGetter(setup, 8), c.pageWidth);
    }
    // The landscape paper reaches the PDF.
    setenv("KELP_PRINT_TO_FILE", Pdf().c_str(), 1);
    RuntimeUnlockObject(RuntimeOpenPrinter(setup));
    EXPECT_EQ(PageSize(Pdf()), std::to_string(height) + "x" + std::to_string(width));
}

} // namespace
} // namespace kelp
