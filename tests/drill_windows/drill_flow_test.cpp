// The real build/bin/sumbrook under this test's X server, played as a
// child would play it, with real X input through xdotool.  The right
// answers come from the seeded engine (--print-round with the same seed,
// read by python3's json), never from the program's memory.  What the
// windows show is read from the program's trace (SUMBROOK_TRACE: the texts
// its labels hold, read back from the controls) and from screenshots of
// the X server; what it played, from the sound sink.
#include "support/image_builder.h"
#include "support/xvfb.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

extern char **environ;

namespace kelp::test {

void CloseBox(unsigned long window); // close_box.cpp

namespace {

const std::string kDrill = KELP_BIN_DIR "/sumbrook";
const std::string kResources = KELP_BIN_DIR "/../sumbrook_resources";

std::string Capture(const std::string &command) {
    std::string out;
    if (FILE *p = popen(command.c_str(), "r")) {
        char buffer[4096];
        size_t n;
        while ((n = fread(buffer, 1, sizeof buffer, p)) > 0)
            out.append(buffer, n);
        pclose(p);
    }
    return out;
}

std::vector<std::string> Lines(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// One run of the drill with its trace and sound sink in a fresh folder.
class Drill {
public:
    explicit Drill(const std::vector<std::string> &args) {
        setenv("SUMBROOK_TRACE", (mDir / "trace").c_str(), 1);
        setenv("KELP_SOUND_SINK", (mDir / "sink").c_str(), 1);
        setenv("KELP_SOUND_SINK_PACE", "1", 1); // sounds take as long as they sound
        // The desktop's opener, as links start it: one line per argument.
        std::filesystem::create_directories(mDir / "bin");
        std::ofstream(mDir / "bin/xdg-open")
            << "#!/bin/sh\nprintf '%s\\n' \"$@\" >> " << (mDir / "opened") << "\n";
        std::filesystem::permissions(mDir / "bin/xdg-open", std::filesystem::perms::owner_all);
        setenv("PATH", ((mDir / "bin") + ":" + getenv("PATH")).c_str(), 1);
        std::vector<char *> argv{const_cast<char *>(kDrill.c_str())};
        for (const auto &a : args)
            argv.push_back(const_cast<char *>(a.c_str()));
        argv.push_back(nullptr);
        if (posix_spawn(&mPid, kDrill.c_str(), nullptr, nullptr, argv.data(), environ) != 0)
            mPid = -1;
    }
    ~Drill() {
        setenv("PATH", mPath.c_str(), 1);
        if (mPid > 0 && waitpid(mPid, nullptr, WNOHANG) == 0) {
            kill(mPid, SIGKILL);
            waitpid(mPid, nullptr, 0);
        }
    }
    // The exit status, or -1 when it is still running after 20 s.
    int Wait() {
        for (int i = 0; i < 200; ++i) {
            int status = 0;
            if (waitpid(mPid, &status, WNOHANG) == mPid) {
                mPid = -1;
                return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return -1;
    }
    // The trace lines that begin with `prefix`, less the prefix.
    std::vector<std::string> Traced(const std::string &prefix) const {
        std::ifstream in(mDir / "trace");
        std::vector<std::string> found;
        for (std::string line; std::getline(in, line);)
            if (line.rfind(prefix, 0) == 0)
                found.push_back(line.substr(prefix.size()));
        return found;
    }
    size_t Count(const std::string &prefix) const { return Traced(prefix).size(); }
    std::string Last(const std::string &prefix) const {
        const auto found = Traced(prefix);
        return found.empty() ? "" : found.back();
    }
    // Waits until the trace holds `count` lines that begin with `prefix`.
    bool AwaitTrace(const std::string &prefix, size_t count = 1) const {
        for (int i = 0; i < 200 && Count(prefix) < count; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return Count(prefix) >= count;
    }
    // The bytes given to the device in each opening that has closed, in
    // order: one sound each, when a sound ends before the next begins.
    std::vector<size_t> Sounds() const {
        std::vector<uint8_t> d = ReadFileBytes(mDir / "sink");
        std::vector<size_t> sounds;
        size_t open = 0;
        for (size_t at = 0; at + 8 <= d.size();) {
            const uint32_t n =
                d[at + 4] | d[at + 5] << 8 | d[at + 6] << 16 | uint32_t(d[at + 7]) << 24;
            const std::string tag(d.begin() + long(at), d.begin() + long(at) + 4);
            if (tag == "OPEN")
                open = 0;
            else if (tag == "DATA")
                open += n;
            else if (tag == "CLOS")
                sounds.push_back(open);
            at += 8 + n;
        }
        return sounds;
    }
    // Waits until `count` sounds have played to their end.
    bool AwaitSounds(size_t count) const {
        for (int i = 0; i < 100 && Sounds().size() < count; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return Sounds().size() >= count;
    }

    std::string Opened() const {
        std::ifstream in(mDir / "opened");
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

private:
    std::string mPath = getenv("PATH");
    TempDir mDir;
    pid_t mPid = -1;
};

std::string X(const std::string &arguments) {
    return Capture("timeout 10 xdotool " + arguments + " 2>/dev/null");
}

// The window of this title once it is on the screen.
std::string Window(const std::string &title) {
    auto ids = Lines(X("search --sync --onlyvisible --name '^" + title + "$'"));
    return ids.empty() ? "" : ids.front();
}

// Every window shows the menu bar above its content: content places are
// measured from the bar's foot.
int gBar = 0;

void MeasureBar(const std::string &welcome) {
    const std::string geometry = X("getwindowgeometry " + welcome);
    const size_t x = geometry.find("Geometry: 464x");
    gBar = x == std::string::npos ? 0 : std::stoi(geometry.substr(x + 14)) - 192;
}

void ClickAt(const std::string &window, int x, int y) {
    X("mousemove --window " + window + " " + std::to_string(x) + " " + std::to_string(y) +
      " click 1");
}

void Click(const std::string &window, int x, int y) { ClickAt(window, x, y + gBar); }

void Keys(const std::string &window, const std::string &keys) {
    X("windowfocus --sync " + window + " sleep 0.1 key --delay 80 " + keys);
}

// What the X server shows of the window, saved for a person to look at
// when it has a name.
GdkPixbuf *Screenshot(const std::string &window, const std::string &name = "") {
    GdkWindow *foreign = gdk_window_foreign_new(GdkNativeWindow(std::stoul(window)));
    if (!foreign)
        return nullptr;
    int w = 0, h = 0;
    gdk_drawable_get_size(foreign, &w, &h);
    GdkPixbuf *shot =
        gdk_pixbuf_get_from_drawable(nullptr, foreign, gdk_colormap_get_system(), 0, 0, 0, 0, w, h);
    g_object_unref(foreign);
    std::filesystem::create_directories("screenshots");
    if (shot && !name.empty())
        gdk_pixbuf_save(shot, ("screenshots/drill_" + name + ".png").c_str(), "png", nullptr,
                        nullptr);
    return shot;
}

// Pixels of about this colour inside the rectangle (text is smoothed, so
// few pixels of a letter carry its colour exactly).
int CountColour(GdkPixbuf *shot, uint32_t rgb, int left, int top, int width, int height) {
    int n = 0;
    for (int y = top; shot && y < top + height && y < gdk_pixbuf_get_height(shot); ++y)
        for (int x = left; x < left + width && x < gdk_pixbuf_get_width(shot); ++x) {
            const guchar *p = gdk_pixbuf_get_pixels(shot) + y * gdk_pixbuf_get_rowstride(shot) +
                              x * gdk_pixbuf_get_n_channels(shot);
            n += std::abs(p[0] - int(rgb >> 16)) < 48 &&
                 std::abs(p[1] - int(rgb >> 8 & 0xff)) < 48 &&
                 std::abs(p[2] - int(rgb & 0xff)) < 48;
        }
    return n;
}

// Bytes of samples in the drill's own sound file, as python3 reads it.
size_t WaveBytes(int id) {
    const std::string n = Capture("python3 -c 'import wave,sys; w=wave.open(sys.argv[1]); "
                                  "print(w.getnframes()*w.getsampwidth()*w.getnchannels())' " +
                                  kResources + "/wave_" + std::to_string(id) + ".wav");
    return n.empty() ? 0 : std::stoul(n);
}

struct Expected {
    int correct;
    std::string text, tip;
};

// The round the engine deals for this seed, one problem per line.
std::vector<Expected> SeededRound(int mode, int length, int seed, bool classic) {
    const std::string json = Capture(
        kDrill + (classic ? " --classic" : "") + " --print-round --mode " + std::to_string(mode) +
        " --length " + std::to_string(length) + " --seed " + std::to_string(seed) +
        " | python3 -c 'import sys,json\nfor l in sys.stdin:\n q=json.loads(l)\n "
        "print(q[\"correct\"]); print(q[\"tip\"]); print(q[\"text\"].replace(\"\\r\\n\", "
        "\"\\\\n\"))'");
    const auto lines = Lines(json);
    std::vector<Expected> round;
    for (size_t i = 0; i + 2 < lines.size(); i += 3)
        round.push_back({std::stoi(lines[i]), lines[i + 2], lines[i + 1]});
    return round;
}

class DrillWindows : public ::testing::Test {
protected:
    void SetUp() override {
        if (!RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
    }
};

enum class Pick { None, Right, Wrong };
enum class By { Mouse, Keys };

// Answer positions of the practice window: 1 to 5 down the left column,
// 6 to 10 down the right.
void ClickAnswer(const std::string &window, int n) {
    static const int kTops[] = {271, 294, 318, 342, 367};
    Click(window, n <= 5 ? 35 : 213, kTops[(n - 1) % 5] + 11);
}

struct Step {
    Pick pick;
    By by;
};
constexpr Step kRight{Pick::Right, By::Mouse}, kWrong{Pick::Wrong, By::Mouse};

struct Round {
    int mode;
    bool tips;
    std::vector<Step> steps; // five answers, and OK pressed with none
    const char *title, *modeLine;
    bool classic = false; // --classic: the texts as first written
};

// Plays one round; returns the problems it answered wrongly, as the
// results list them, and the sounds it should have made.
void Play(const Drill &drill, const std::string &practice, const Round &r,
          const std::vector<Expected> &round, std::string &missed, std::vector<int> &sounds) {
    const std::string kProblem = "text wMainProg StaticText2 ";
    size_t question = 0, chosen = 0;
    bool focusInAnswers = false; // after a key answer the focus stays in the answers
    for (const Step &s : r.steps) {
        ASSERT_TRUE(drill.AwaitTrace(kProblem, question + 1));
        const Expected &q = round[question];
        EXPECT_EQ(drill.Last(kProblem), q.text) << "question " << question + 1;
        const std::string want =
            std::to_string(s.pick == Pick::Right ? q.correct : q.correct % 10 + 1) + " wMainProg";
        if (s.pick == Pick::None) {
            Click(practice, 100, 410);
        } else if (s.by == By::Mouse) {
            ClickAnswer(practice, std::stoi(want));
            ASSERT_TRUE(drill.AwaitTrace("answer ", ++chosen));
            EXPECT_EQ(drill.Last("answer "), want);
            Click(practice, 100, 410);
        } else {
            // Back from OK into the answers, Space on the one with the
            // focus, then the arrows until the wanted one is chosen, as a
            // reader of the screen would, and Return for OK.
            Keys(practice, focusInAnswers ? "space" : "shift+Tab space");
            ASSERT_TRUE(drill.AwaitTrace("answer ", ++chosen));
            for (int i = 0; i < 10 && drill.Last("answer ") != want; ++i) {
                Keys(practice, "Down"); // each arrow chooses the next answer
                ASSERT_TRUE(drill.AwaitTrace("answer ", ++chosen));
            }
            EXPECT_EQ(drill.Last("answer "), want);
            Keys(practice, "Return");
        }
        focusInAnswers = s.pick != Pick::None && s.by == By::Keys;
        sounds.push_back(s.pick == Pick::None ? 2 : s.pick == Pick::Right ? 3 : 0);
        if (s.pick == Pick::None) {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            EXPECT_EQ(drill.Last("text wMainProg StaticText4 "), "Questions Remaining: 5");
        }
        if (s.pick == Pick::Wrong)
            missed += q.text + (r.classic ? " " : "  Tip: ") + q.tip + "\\n\\n";
        question += s.pick != Pick::None;
        // The child listens to each sound before going on, but the last.
        if (question < 5) {
            ASSERT_TRUE(drill.AwaitSounds(sounds.size()));
        }
    }
}

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
            g_object_unref(shot);
        }
        std::string missed;
        std::vector<int> sounds = {2}; // Begin's click
        Play(drill, practice, r, round, missed, sounds);
        // Keys while the last sound plays reach no question and no button
        // of the results.
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
        if (!first) {
            Keys(results, "Tab space"); // Again has the focus; one Tab reaches Exit
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
    Drill drill({"--seed", "5"});
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
        look(about, "about", {{237, 362, kMail}, {17, 405, kWeb}});
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

TEST(DrillResources, TheProgramCarriesItsPicturesSoundsIconsAndVersion) {
    const std::string info = Capture(KELP_BIN_DIR "/kelp-image info " + kDrill);
    for (const char *line :
         {"BMP      6 ", "BMP      7 ", "BMP      8 ", "BMP      9 ", "BMP     10 ", "WAVE     0 ",
          "WAVE     2 ", "WAVE     3 ", "icon 16x16", "icon 128x128",
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
