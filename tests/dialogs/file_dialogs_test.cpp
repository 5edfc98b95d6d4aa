// The file dialogs on the test X server, answered by typing as a person
// would, and ShowURL reaching the desktop's opener as one argument.
#include "support/class_kit.h"
#include "support/image_builder.h"
#include "support/person.h"
#include "support/xvfb.h"

#include "dialogs/file_dialogs.h"
#include "folder_items/folder_item_object.h"
#include "folder_items/folder_item_unix.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

namespace kelp {
namespace {

using test::Lit;

// The chooser remembers how it was left (its location field, recent files)
// in the user's folders: this program gets folders of its own, set before
// the toolkit first asks where they are, so every run starts the same and
// the user's own are left alone.
const bool gOwnUserFolders = [] {
    static char folder[] = "/tmp/kelp-dialogs-home-XXXXXX";
    if (!mkdtemp(folder))
        return false;
    setenv("XDG_CONFIG_HOME", folder, 1);
    setenv("XDG_DATA_HOME", folder, 1);
    std::atexit([] { std::filesystem::remove_all(folder); });
    return true;
}();

RuntimeObject *NewOf(const char *className) {
    KelpString name = Lit(className);
    RuntimeObject *o = RuntimeNewObject(RuntimeLookupClass(name));
    RuntimeUnlockString(name);
    return o;
}

std::string PathOf(RuntimeObject *item) {
    FolderItemImp *imp = item ? ImpOf(item) : nullptr;
    return imp ? imp->AbsolutePath() : "";
}

TEST(FileDialogs, ChosenByTypingWithoutMovingTheWorkingFolder) {
    if (!test::RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    ASSERT_TRUE(gOwnUserFolders);
    RuntimeInitExternalClasses();
    test::TempDir dir;
    std::ofstream(dir / "pick-me.txt") << "x";
    std::ofstream(dir / "other.dat") << "x";
    const std::filesystem::path workingFolder = std::filesystem::current_path();
    struct Case {
        const char *kind;
        std::string start;
        std::vector<std::string> steps;
        const char *suggested;
        std::string answer; // "" for nil
    } cases[] = {
        // The file list has the focus: the last of its two rows, then Return.
        {"OpenDialog",
         dir.path(),
         {"sleep 1.5 key End", "sleep 0.5 key Return"},
         "",
         dir / "pick-me.txt"},
        {"OpenDialog", dir.path(), {"key Escape"}, "", ""},
        {"OpenDialog", dir / "no/such/folder", {"key Escape"}, "", ""},
        {"SaveAsDialog", dir.path(), {"key Return"}, "report.txt", dir / "report.txt"},
        {"SelectFolderDialog", dir.path(), {"key Return"}, "", dir.path() + "/"},
    };
    int showing = 0;
    for (const Case &c : cases) {
        const std::string title = "File dialog " + std::to_string(++showing);
        RuntimeObject *d = NewOf(c.kind);
        ASSERT_NE(d, nullptr) << c.kind;
        auto *r = reinterpret_cast<FileDialogRecord *>(d);
        r->title = Lit(title);
        r->suggestedFileName = Lit(c.suggested);
        r->filter = Lit("txt;.dat");
        r->initialDirectory = NewFolderItem(std::make_unique<FolderItemImpUnix>(c.start));
        RuntimeObject *answer;
        {
            test::Person person(title, c.steps);
            answer = FolderItemDialogShowModal(d);
        }
        EXPECT_EQ(PathOf(answer), c.answer) << title << " " << c.kind;
        EXPECT_EQ(answer, r->result) << "the answer is kept as Result";
        EXPECT_EQ(std::filesystem::current_path(), workingFolder);
        RuntimeUnlockObject(answer);
        RuntimeUnlockObject(d);
    }
    EXPECT_FALSE(std::filesystem::exists(dir / "report.txt")) << "a save dialog writes nothing";
}

TEST(FileDialogs, FilterPatterns) {
    struct Case {
        const char *filter;
        std::vector<std::string> patterns;
    } cases[] = {
        {".txt;.text", {"*.txt", "*.text"}},
        {"txt", {"*.txt"}},
        {";;html;", {"*.html"}},
        {"", {}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(FilterPatterns(c.filter), c.patterns) << c.filter;
}

TEST(ShowURL, TheAddressReachesTheOpenerAsOneArgument) {
    test::TempDir dir;
    const std::string log = dir / "opened", opener = dir / "xdg-open";
    std::ofstream(opener) << "#!/bin/sh\nprintf '%s|%s' \"$#\" \"$1\" > '" << log << "'\n";
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    const std::string oldPath = getenv("PATH");
    setenv("PATH", (dir.path() + ":" + oldPath).c_str(), 1);
    const std::string url = "http://example.invalid/a b;touch '" + dir / "hacked" + "' $(id)";
    KelpString s = Lit(url);
    GlobalShowURL(s);
    RuntimeUnlockString(s);
    setenv("PATH", oldPath.c_str(), 1);
    std::string seen;
    for (int i = 0; i < 100 && seen.empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        std::ifstream in(log);
        std::getline(in, seen, '\0');
    }
    EXPECT_EQ(seen, "1|" + url);
    EXPECT_FALSE(std::filesystem::exists(dir / "hacked"));
}

} // namespace
} // namespace kelp
