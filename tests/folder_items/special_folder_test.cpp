// The SpecialFolder object against the desktop's own look-up (xdg-user-dir),
// under a private HOME whose user-dirs file sets some folders and not others.
#include "kelp/files.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sys/stat.h>

namespace {

std::string Str(KelpString s) {
    return s && s->length > 0
               ? std::string(reinterpret_cast<const char *>(s->buffer + 1), size_t(s->length))
               : std::string();
}

std::string ShellPath(RuntimeObject *item) {
    KelpString path = item ? FileShellPathGetter(item, 0) : nullptr;
    std::string text = Str(path);
    RuntimeUnlockString(path);
    RuntimeUnlockObject(item);
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text;
}

std::string XdgUserDir(const std::string &name) {
    std::string out;
    if (FILE *pipe = popen(("xdg-user-dir " + name).c_str(), "r")) {
        char buffer[1024];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            out.append(buffer, n);
        pclose(pipe);
    }
    while (!out.empty() && (out.back() == '\n' || out.back() == '/'))
        out.pop_back();
    return out;
}

class SpecialFolders : public ::testing::Test {
protected:
    void SetUp() override {
        if (std::system("command -v xdg-user-dir >/dev/null") != 0)
            GTEST_SKIP() << "xdg-user-dir is not installed";
        mOldHome = std::getenv("HOME");
        char pattern[] = "/tmp/special-folders-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        mHome = pattern;
        setenv("HOME", mHome.c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
        mkdir((mHome + "/.config").c_str(), 0700);
    }
    void TearDown() override {
        if (!mOldHome.empty())
            setenv("HOME", mOldHome.c_str(), 1);
        std::system(("rm -rf " + mHome).c_str());
    }
    std::string mHome, mOldHome;
};

TEST_F(SpecialFolders, UserFoldersAgreeWithTheDesktopsLookUp) {
    const std::pair<const char *, const char *> folders[] = {
        {"Desktop", "DESKTOP"},     {"Documents", "DOCUMENTS"},
        {"Music", "MUSIC"},         {"Pictures", "PICTURES"},
        {"Movies", "VIDEOS"},       {"Downloads", "DOWNLOAD"},
        {"Templates", "TEMPLATES"}, {"SharedDocuments", "PUBLICSHARE"}};
    // Without a user-dirs file, then with one that moves some of them (under
    // $HOME, absolute, set twice) and leaves the rest to their defaults.
    for (bool withFile : {false, true}) {
        if (withFile)
            std::ofstream(mHome + "/.config/user-dirs.dirs")
                << "# written by a test\n"
                << "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                << "XDG_MUSIC_DIR=\"/srv/music\"\n"
                << "XDG_DOWNLOAD_DIR=\"$HOME/first\"\n"
                << "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n";
        RuntimeObject *special = systemGetSpecialFoldersClass();
        for (int32_t i = 0; i < 8; ++i) {
            const std::string expected = XdgUserDir(folders[i].second);
            ASSERT_FALSE(expected.empty());
            EXPECT_EQ(ShellPath(GetSpecialFolder(special, i + 1)), expected) << folders[i].first;
            EXPECT_EQ(ShellPath(GetSpecialFolderFromCode(i + 1)), expected) << folders[i].first;
        }
        RuntimeUnlockObject(special);
    }
    EXPECT_EQ(ShellPath(GetSpecialFolderFromCode(9)), mHome);
    EXPECT_EQ(ShellPath(GetSpecialFolderFromCode(1034)), "/etc");
    EXPECT_EQ(GetSpecialFolderFromCode(0), nullptr);
    unsetenv("HOME");
    EXPECT_EQ(GetSpecialFolderFromCode(1), nullptr);
}

} // namespace
