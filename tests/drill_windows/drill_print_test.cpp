// The results window's print-out, from a round played on the real program
// to the sheet: to a PDF through the file print backend, read back with
// poppler's pdftotext and pdfinfo, and cancelled in the real page setup
// and print dialogs with Escape.
#include "drill_windows/drill_driver.h"

#include <cstring>

namespace kelp::test {
namespace {

// Words of a text with every run of blanks and line breaks made one blank,
// so that a sheet's line breaks can be compared with the window's.
std::string Squeezed(const std::string &text) {
    std::string out;
    for (char c : text) {
        const bool blank = c == ' ' || c == '\n' || c == '\f' || c == '\t' || c == '\r';
        if (!blank)
            out += c;
        else if (!out.empty() && out.back() != ' ')
            out += ' ';
    }
    return out;
}

std::string Unescaped(const std::string &traced) {
    std::string out;
    for (size_t i = 0; i < traced.size(); ++i)
        if (traced[i] == '\\' && i + 1 < traced.size())
            out += traced[++i] == 'n' ? '\n' : traced[i];
        else
            out += traced[i];
    return out;
}

// Welcome, Multiplication and Division with tips, a round of `length`, the
// answers as given; the results window, once it has opened.
std::string PlayToResults(const Drill &drill, int seed, const std::vector<Step> &steps,
                          std::string &missed) {
    const int kLengthRadio[][2] = {{207, 127}, {207, 148}, {207, 169}, {264, 127}, {264, 148}};
    const auto round = SeededRound(2, int(steps.size()), seed, false);
    EXPECT_EQ(round.size(), steps.size());
    const std::string welcome = Window("Welcome");
    if (welcome.empty() || round.size() != steps.size())
        return "";
    MeasureBar(welcome);
    Keys(welcome, "Return");
    const std::string selection = Window("Exercise Selection");
    Click(selection, 56, 58);
    Click(selection, 56, 127);
    const int *radio = kLengthRadio[steps.size() / 5 - 1];
    Click(selection, radio[0], radio[1]);
    Click(selection, 100, 223);
    const std::string practice = Window(
        "Multiplication and Division Practice: " + std::to_string(steps.size()) + " Questions");
    X("windowfocus --sync " + practice);
    const Round r{2, true, steps, "", ""};
    std::vector<int> sounds;
    Play(drill, practice, r, round, missed, sounds);
    if (!drill.AwaitTrace("open wResults"))
        return "";
    return Window("Sumbrook Results");
}

void TypeName(const std::string &results, const std::string &name) {
    Click(results, 300, 332);
    X("windowfocus --sync " + results + " type --delay 30 '" + name + "'");
}

class DrillPrint : public DrillWindows {
protected:
    void TearDown() override { unsetenv("KELP_PRINT_TO_FILE"); }
};

TEST_F(DrillPrint, TheSheetCarriesNameDateScoreAndMissedProblemsPageByPage) {
    struct Case {
        const char *what;
        int seed;
        std::vector<Step> steps;
        int pages;
    };
    const Case cases[] = {
        {"a short round", 11, {kRight, kWrong, kRight, kWrong, kRight}, 1},
        {"fifteen missed", 12, std::vector<Step>(15, kWrong), 2},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        TempDir dir;
        const std::string pdf = dir / "sheet.pdf";
        setenv("KELP_PRINT_TO_FILE", pdf.c_str(), 1);
        Drill drill({"--seed", std::to_string(c.seed)});
        std::string missed;
        const std::string results = PlayToResults(drill, c.seed, c.steps, missed);
        ASSERT_FALSE(results.empty());
        TypeName(results, "Robin Marsh");
        Click(results, 246, 366); // Print
        ASSERT_TRUE(drill.AwaitTrace("printed wResults"));

        const std::string info = Capture("pdfinfo " + pdf);
        const size_t pages = info.find("Pages:");
        ASSERT_NE(pages, std::string::npos) << info;
        EXPECT_EQ(std::atoi(info.c_str() + pages + 6), c.pages) << info;
        const std::string text = Capture("pdftotext -layout " + pdf + " -");
        const std::string sheet = Squeezed(text);
        const int score = int(std::count_if(c.steps.begin(), c.steps.end(),
                                            [](Step s) { return s.pick == Pick::Right; }));
        const std::string date = drill.Last("text wResults StaticText4 ");
        ASSERT_FALSE(date.empty());
        EXPECT_EQ(sheet.rfind("Sumbrook Robin Marsh You scored " + std::to_string(score) +
                                  " out of " + std::to_string(c.steps.size()) +
                                  " questions. Multiplication and Division " + Squeezed(date),
                              0),
                  0u)
            << sheet;
        // A number under each page's text, in order, and none past the last.
        size_t last = 0;
        for (int page = 1; page <= c.pages + 1; ++page) {
            const size_t at = sheet.find("Page " + std::to_string(page));
            EXPECT_EQ(at == std::string::npos, page > c.pages) << page << " in " << sheet;
            EXPECT_TRUE(at == std::string::npos || at > last) << page;
            last = at == std::string::npos ? last : at;
        }
        // Every missed problem, word for word and in order, page numbers aside.
        std::string words = sheet;
        for (int page = 1; page <= c.pages; ++page) {
            const std::string number = " Page " + std::to_string(page);
            if (const size_t at = words.find(number); at != std::string::npos)
                words.erase(at, number.size());
        }
        EXPECT_NE(words.find(Squeezed(Unescaped(missed))), std::string::npos)
            << words << "\nwants\n"
            << Squeezed(Unescaped(missed));
        if (c.pages > 1) {
            std::filesystem::create_directories("screenshots");
            Capture("pdftoppm -png -r 60 -f 1 -l 1 -singlefile " + pdf +
                    " screenshots/drill_printout");
            EXPECT_TRUE(std::filesystem::exists("screenshots/drill_printout.png"));
        }
    }
}

TEST_F(DrillPrint, CancellingEitherDialogLeavesTheWindowAsItWas) {
    struct Case {
        const char *what;
        std::vector<std::pair<const char *, const char *>> dialogKeys; // title, keys
    };
    const Case cases[] = {
        {"page setup", {{"Page Setup", "Escape"}}},
        {"print dialog", {{"Page Setup", "alt+a"}, {"Print", "Escape"}}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        Drill drill({"--seed", "5"});
        std::string missed;
        const std::string results =
            PlayToResults(drill, 5, {kWrong, kRight, kRight, kRight, kRight}, missed);
        ASSERT_FALSE(results.empty());
        TypeName(results, "Robin Marsh");
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        GdkPixbuf *before = Screenshot(results, "results_named");
        // The heading's placard, outlined in black left of its labels.
        EXPECT_GT(CountColour(before, 0x000000, 20, 10 + gBar, 2, 70), 60);
        Click(results, 246, 366);
        for (const auto &[title, keys] : c.dialogKeys) {
            const std::string dialog = Window(title);
            ASSERT_FALSE(dialog.empty()) << title;
            Keys(dialog, keys);
        }
        ASSERT_TRUE(drill.AwaitTrace("printed wResults"));
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        GdkPixbuf *after = Screenshot(results);
        ASSERT_TRUE(before && after);
        // The texts and the list above the print group, pixel for pixel (the
        // name field's caret blinks and the pressed button keeps the focus).
        int differing = 0;
        for (int y = 0; y < 318; ++y)
            for (int x = 0; x < gdk_pixbuf_get_width(after); ++x) {
                const int at =
                    y * gdk_pixbuf_get_rowstride(after) + x * gdk_pixbuf_get_n_channels(after);
                differing += std::memcmp(gdk_pixbuf_get_pixels(before) + at,
                                         gdk_pixbuf_get_pixels(after) + at, 3) != 0;
            }
        g_object_unref(before);
        g_object_unref(after);
        EXPECT_EQ(differing, 0);
        EXPECT_EQ(drill.Last("text wResults EditField1 "), "Robin Marsh");
        Click(results, 430, 366); // Exit still answers
        EXPECT_EQ(drill.Wait(), 0);
    }
}

} // namespace
} // namespace kelp::test
