// The real build/bin/sumbrook under this test's X server, played as a
// child would play it, with real X input through xdotool.  The right
// answers come from the seeded engine (--print-round with the same seed,
// read by python3's json), never from the program's memory.  What the
// windows show is read from the program's trace (SUMBROOK_TRACE: the texts
// its labels hold, read back from the controls) and from screenshots of
// the X server; what it played, from the sound sink.
#include "drill_windows/drill_driver.h"

namespace kelp::test {
namespace {

TEST_F(DrillWindows, RoundsPlayedWithMouseAndKeysEndInTheirResults) {
    const Round rounds[] = {
        {2,
         true,
         {{Pick::None, By::Mouse},
          kRight,
          {Pick::Wrong, By::Keys},
          {Pick::Right, By::Keys},
          kWrong,
          kRight},
         "Multiplication and Division Practice: 5 Questions",
         "Multiplication and Division"},
        {1,
         false,
         {kRight, kRight, kRight, kRight, kRight},
         "Addition and Subtraction Practice: 5 Questions",
         "Addition and Subtraction"},
        {3,
         false,
         {kWrong, kWrong, kWrong, kWrong, kWrong},
         "ALL Practice: 5 Questions",
         "ALL",
         true},
    };
    const int kModeTops[] = {0, 37, 58, 79};
    for (const Round &r : rounds) {
        SCOPED_TRACE(r.title);
        const bool first = &r == &rounds[0];
        const int seed = 7 + r.mode;
        const auto round = SeededRound(r.mode, 5, seed, r.classic);
        ASSERT_EQ(round.size(), 5u);
        std::vector<std::string> args = {"--seed", std::to_string(seed)};
        if (r.classic)
            args.push_back("--classic");
        Drill drill(args);
        const std::string welcome = Window("Welcome");
        ASSERT_FALSE(welcome.empty());
        MeasureBar(welcome);
        if (first)
            g_object_unref(Screenshot(welcome, "welcome"));
        Keys(welcome, "Return"); // Begin is the default button
        const std::string selection = Window("Exercise Selection");
        ASSERT_FALSE(selection.empty());
        Click(selection, 56, kModeTops[r.mode]);
        Click(selection, 56, r.tips ? 127 : 148);
        Click(selection, 207, 127); // 5 questions
        if (first)
            g_object_unref(Screenshot(selection, "selection"));
        Click(selection, 100, 223);
        const std::string practice = Window(r.title);
        ASSERT_FALSE(practice.empty());
        X("windowfocus --sync " + practice); // as a window manager gives a new window the focus
        if (first) {
            ASSERT_TRUE(drill.AwaitTrace("text wMainProg StaticText2 "));
            GdkPixbuf *shot = Screenshot(practice, "practice");
            EXPECT_GT(CountColour(shot, 0xed181e, 50, 225 + gBar, 325, 20), 10)
                << "the tip, in red";
            EXPECT_GT(CountColour(shot, 0x000000, 9, 12 + gBar, 2, 27), 20)
                << "the score's placard, outlined";
            g_object_unref(shot);
        }
        std::string missed;
        std::vector<int> sounds = {2}; // Begin's click
        Play(drill, practice, r, round, missed, sounds);
        // A click on an answer and on OK and keys while the last sound
        // plays reach no question and no button of the results.
        Click(practice, 35, 282);
        Click(practice, 100, 410);
        Keys(practice, "Return space Tab space");
        ASSERT_TRUE(drill.AwaitTrace("open wResults"));
        const int score = int(std::count_if(r.steps.begin(), r.steps.end(),
                                            [](Step s) { return s.pick == Pick::Right; }));
        EXPECT_EQ(drill.Last("text wMainProg StaticText4 "), "Questions Remaining: 0");
        EXPECT_EQ(drill.Last("text wResults StaticText1 "),
                  "You scored " + std::to_string(score) + " out of 5 questions.");
        EXPECT_EQ(drill.Last("text wResults StaticText2 "), r.modeLine);
        EXPECT_EQ(drill.Last("text wResults StaticText3 "), r.tips ? "Tips ON" : "Tips OFF");
        EXPECT_EQ(drill.Last("text wResults EditField2 "),
                  score == 5 ? "Congratulations.  You answered all questions correctly."
                             : "Problems missed this round:\\n\\n" + missed);
        // The sounds, told apart by their lengths, as python3 reads them.
        std::vector<size_t> heard;
        for (int id : sounds)
            heard.push_back(WaveBytes(id));
        EXPECT_TRUE(drill.AwaitSounds(heard.size()));
        EXPECT_EQ(drill.Sounds(), heard);
        const std::string results = Window("Sumbrook Results");
        ASSERT_FALSE(results.empty());
        EXPECT_EQ(drill.Count("open wExerciseSelection"), 1u) << "no key reached Again";
        EXPECT_EQ(drill.Count("open wResults"), 1u) << "no click ended the round again";
        if (!first) {
            // The focus starts in the list of missed problems; the name,
            // Print and Again lie between it and Exit.
            Keys(results, "Tab Tab Tab Tab space");
            EXPECT_EQ(drill.Wait(), 0);
            continue;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        g_object_unref(Screenshot(results, "results"));
        // Again: the selection comes back with this round's choices.
        Click(results, 316, 366);
        ASSERT_TRUE(drill.AwaitTrace("open wExerciseSelection", 2));
        Keys(Window("Exercise Selection"), "Return");
        EXPECT_FALSE(Window(r.title).empty()) << "the choices of the last round stand";
    }
}

TEST_F(DrillWindows, TheBannerWordsWalkThroughTheColourTableFromItsFirstRow) {
    // Where the four words stand, and the table's rows by word.
    const int kWords[4][2] = {{277, 12}, {339, 12}, {277, 26}, {357, 26}};
    const uint32_t kBlue = 0x0000ff, kWhite = 0xffffff, kYellow = 0xffff00, kBlack = 0x000000;
    const uint32_t kRows[4][4] = {{kBlue, kWhite, kYellow, kBlack},
                                  {kBlack, kBlue, kWhite, kYellow},
                                  {kYellow, kBlack, kBlue, kWhite},
                                  {kWhite, kYellow, kBlack, kBlue}};
    Drill drill({});
    const std::string welcome = Window("Welcome");
    ASSERT_FALSE(welcome.empty());
    MeasureBar(welcome);
    // The rows the words showed, in order: 0 before the first tick (all
    // black, as laid out), ? for colours that no row of the table has.
    std::string seen;
    for (int i = 0; i < 40; ++i) {
        GdkPixbuf *shot = Screenshot(welcome);
        ASSERT_NE(shot, nullptr);
        uint32_t colour[4];
        for (int w = 0; w < 4; ++w) {
            int best = -1;
            for (uint32_t c : {kBlue, kWhite, kYellow, kBlack})
                if (int n = CountColour(shot, c, kWords[w][0], kWords[w][1] + 2 + gBar, 40, 12);
                    n > best)
                    best = n, colour[w] = c;
        }
        g_object_unref(shot);
        char row = colour[0] == kBlack && colour[1] == kBlack && colour[2] == kBlack ? '0' : '?';
        for (int r = 0; r < 4; ++r)
            if (std::equal(colour, colour + 4, kRows[r]))
                row = char('1' + r);
        if (seen.empty() || seen.back() != row)
            seen += row;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    // One row per tick, in order, row 1 first.
    EXPECT_NE(std::string("0123412341234123412341234").find(seen), std::string::npos) << seen;
    EXPECT_GE(seen.size(), 5u) << "the walk went round: " << seen;
}

// Opens the window's File menu with the mouse and goes on with keys.
void FileMenu(const std::string &window, const std::string &keys) {
    ClickAt(window, 15, gBar / 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    X("key --delay 80 " + keys);
}

TEST_F(DrillWindows, TheMenusServeEveryWindowOfTheFlowAndEndThisRoundBreaksOffARound) {
    enum class Leave { Begin, EndRound, Answer, Quit };
    struct Stop {
        const char *title;
        bool endRound; // End This Round enabled
        Leave leave;
    };
    const char *kPractice = "Mix Practice: 5 Questions";
    const Stop stops[] = {
        {"Welcome", false, Leave::Begin},   {"Exercise Selection", false, Leave::Begin},
        {kPractice, true, Leave::EndRound}, {"Exercise Selection", false, Leave::Begin},
        {kPractice, true, Leave::Answer},   {"Sumbrook Results", false, Leave::Quit},
    };
    // On a machine without a sound device the drill plays on in silence.
    Drill drill({"--seed", "5"}, false);
    size_t n = 0;
    for (const Stop &stop : stops) {
        SCOPED_TRACE(stop.title);
        const bool first = n == 0;
        const std::string window = Window(stop.title);
        ASSERT_FALSE(window.empty());
        if (first)
            MeasureBar(window);
        ++n;
        FileMenu(window, "Escape"); // the menu is enabled as it opens
        ASSERT_TRUE(drill.AwaitTrace("menu FileEndThisRound ", n));
        EXPECT_EQ(drill.Last("menu FileEndThisRound "), stop.endRound ? "on " : "off ");
        // About from the Info menu, then Help from its shortcut, each above
        // the window of the flow and closed by its close box.  The first
        // time, each is looked at and its links clicked, red as links are.
        struct Link {
            int left, top;
            const char *url;
        };
        const char *kWeb = "https://www.example.org/sumbrook.htm\n";
        const char *kMail = "mailto:support@example.org\n";
        std::string opened;
        auto look = [&](const std::string &info, const char *name, std::vector<Link> links) {
            if (!first)
                return;
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            GdkPixbuf *shot = Screenshot(info, name);
            for (const Link &l : links) {
                EXPECT_GT(CountColour(shot, 0xed181e, l.left, l.top + gBar, 150, 20), 20) << l.url;
                Click(info, l.left + 10, l.top + 8);
                opened += l.url;
            }
            g_object_unref(shot);
        };
        FileMenu(window, "Right Down Return");
        ASSERT_TRUE(drill.AwaitTrace("open wAbout", n));
        const std::string about = Window("About");
        look(about, "about", {{225, 298, kMail}, {17, 341, kWeb}});
        Keys(window, "ctrl+h");
        ASSERT_TRUE(drill.AwaitTrace("open wHelp", n));
        const std::string help = Window("Help");
        look(help, "help", {{15, 153, kWeb}, {15, 202, kMail}});
        if (first) {
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
            EXPECT_EQ(drill.Opened(), opened);
        }
        CloseBox(std::stoul(help));
        CloseBox(std::stoul(about));
        switch (stop.leave) {
        case Leave::Begin:
            if (std::string(stop.title) == "Exercise Selection")
                Click(window, 207, 127); // 5 questions
            Keys(window, "Return");
            break;
        case Leave::EndRound:
            FileMenu(window, "Down Return");
            ASSERT_TRUE(drill.AwaitTrace("end round wMainProg"));
            break;
        case Leave::Answer:
            for (size_t q = 1; q <= 5; ++q) {
                ASSERT_TRUE(drill.AwaitTrace("text wMainProg StaticText2 ", q));
                ClickAnswer(window, 1);
                ASSERT_TRUE(drill.AwaitTrace("answer ", q));
                Click(window, 100, 410);
            }
            ASSERT_TRUE(drill.AwaitTrace("open wResults"));
            break;
        case Leave::Quit:
            Keys(window, "ctrl+q");
            EXPECT_EQ(drill.Wait(), 0);
            break;
        }
    }
    EXPECT_EQ(drill.Count("open wResults"), 1u) << "the round broken off has no results";
    EXPECT_EQ(drill.Count("open wExerciseSelection"), 2u);
}

TEST(DrillResources, TheProgramCarriesItsPicturesSoundsPlugInIconsAndVersion) {
    const std::string info = Capture(KELP_BIN_DIR "/kelp-image info " + kDrill);
    for (const char *line :
         {"BMP      6 ", "BMP      7 ", "BMP      8 ", "BMP      9 ", "BMP     10 ", "WAVE     0 ",
          "WAVE     2 ", "WAVE     3 ", "KPPl 65535 ", "icon 16x16", "icon 128x128",
          "version 1 6 0 0 stage 3 region 0 \"1.6\""})
        EXPECT_NE(info.find(line), std::string::npos) << line << " in\n" << info;
}

TEST(DrillWithoutDisplay, SaysSoInOneLineUnlessItPrints) {
    struct Case {
        std::vector<std::string> args;
        bool ok;
        const char *says;
    };
    const Case cases[] = {
        {{}, false, "sumbrook: no X display"},
        {{"--seed", "3"}, false, "sumbrook: no X display"},
        {{"--mode", "2"}, false, "need --print-round"},
        {{"--print-round", "--mode", "1", "--length", "5", "--seed", "3"}, true, ""},
    };
    for (const Case &c : cases) {
        const RunResult r = kelp::test::Run(kDrill, c.args);
        EXPECT_EQ(r.status == 0, c.ok) << c.says << ": " << r.err;
        EXPECT_LT(r.status, 128) << c.says;
        if (c.ok)
            continue;
        EXPECT_EQ(Lines(r.err).size(), 1u) << r.err;
        EXPECT_NE(r.err.find(c.says), std::string::npos) << r.err;
    }
}

} // namespace
} // namespace kelp::test
