// Driving the real build/bin/sumbrook under a test's own X server: the
// program with its trace and sound sink in a fresh folder, real X input
// through xdotool, screenshots from the X server, and the round the seeded
// engine deals, as python3 reads its JSON.
#pragma once

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

inline const std::string kDrill = KELP_BIN_DIR "/sumbrook";
inline const std::string kResources = KELP_BIN_DIR "/../sumbrook_resources";

inline std::string Capture(const std::string &command) {
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

inline std::vector<std::string> Lines(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// One run of the drill with its trace and sound sink in a fresh folder.
class Drill {
public:
    // Without `sound` the program finds no sound device, as on a machine
    // that has none.
    explicit Drill(const std::vector<std::string> &args, bool sound = true) {
        setenv("SUMBROOK_TRACE", (mDir / "trace").c_str(), 1);
        if (sound)
            setenv("KELP_SOUND_SINK", (mDir / "sink").c_str(), 1);
        else
            unsetenv("KELP_SOUND_SINK");
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

inline std::string X(const std::string &arguments) {
    return Capture("timeout 10 xdotool " + arguments + " 2>/dev/null");
}

// The window of this title once it is on the screen.
inline std::string Window(const std::string &title) {
    auto ids = Lines(X("search --sync --onlyvisible --name '^" + title + "$'"));
    return ids.empty() ? "" : ids.front();
}

// Every window shows the menu bar above its content: content places are
// measured from the bar's foot.
inline int gBar = 0;

inline void MeasureBar(const std::string &welcome) {
    const std::string geometry = X("getwindowgeometry " + welcome);
    const size_t x = geometry.find("Geometry: 464x");
    gBar = x == std::string::npos ? 0 : std::stoi(geometry.substr(x + 14)) - 192;
}

inline void ClickAt(const std::string &window, int x, int y) {
    X("mousemove --window " + window + " " + std::to_string(x) + " " + std::to_string(y) +
      " click 1");
}

inline void Click(const std::string &window, int x, int y) { ClickAt(window, x, y + gBar); }

inline void Keys(const std::string &window, const std::string &keys) {
    X("windowfocus --sync " + window + " sleep 0.1 key --delay 80 " + keys);
}

// What the X server shows of the window, saved for a person to look at
// when it has a name.
inline GdkPixbuf *Screenshot(const std::string &window, const std::string &name = "") {
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
inline int CountColour(GdkPixbuf *shot, uint32_t rgb, int left, int top, int width, int height) {
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
inline size_t WaveBytes(int id) {
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
inline std::vector<Expected> SeededRound(int mode, int length, int seed, bool classic) {
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
inline void ClickAnswer(const std::string &window, int n) {
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
    std::vector<Step> steps; // the answers, and OK pressed with none
    const char *title, *modeLine;
    bool classic = false; // --classic: the texts as first written
};

// Plays one round; returns the problems it answered wrongly, as the
// results list them, and the sounds it should have made.
inline void Play(const Drill &drill, const std::string &practice, const Round &r,
                 const std::vector<Expected> &round, std::string &missed,
                 std::vector<int> &sounds) {
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
        if (question < round.size()) {
            ASSERT_TRUE(drill.AwaitSounds(sounds.size()));
        }
    }
}

} // namespace kelp::test
