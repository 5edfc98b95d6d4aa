// FolderItemImpUnix on real files in a private folder: names with every
// shell metacharacter through copy, move and launch (checked by listing the
// folder), path texts, SaveInfo after a move, times, 64-bit lengths, and
// temporary items gone after the run-down.
#include "folder_items/folder_item_unix.h"
#include "folder_items/paths.h"
#include "folder_items/special_folders.h"

#include "shutdown/shutdown_task.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <set>
#include <thread>

namespace kelp {
namespace {

// Every character a shell would act on, and a newline.
const std::string kNasty = "a b'c\"d\\e$f`g;h&i|j*k?l(m)n<o>p{q}r[s]t~u#v!w\nx%y";

class FolderItems : public ::testing::Test {
protected:
    void SetUp() override {
        char templ[] = "/tmp/kelp-items-XXXXXX";
        ASSERT_NE(mkdtemp(templ), nullptr);
        mDir = std::string(templ) + "/";
    }
    void TearDown() override { RemoveTree(mDir); }

    std::string Make(const std::string &name, const std::string &bytes = "data") {
        std::ofstream(mDir + name, std::ios::binary) << bytes;
        return mDir + name;
    }
    std::set<std::string> Listing(const std::string &folder) {
        std::set<std::string> names;
        DIR *dir = opendir(folder.c_str());
        while (dirent *e = dir ? readdir(dir) : nullptr)
            if (std::string(e->d_name) != "." && std::string(e->d_name) != "..")
                names.insert(e->d_name);
        if (dir)
            closedir(dir);
        return names;
    }
    std::unique_ptr<FolderItemImp> Item(const std::string &path) {
        return std::make_unique<FolderItemImpUnix>(path);
    }
    std::string mDir;
};

TEST_F(FolderItems, MetacharacterNamesSurviveCopyMoveAndRename) {
    Make(kNasty, "payload");
    auto source = Item(mDir + kNasty);
    ASSERT_TRUE(source->Exists());
    EXPECT_EQ(source->Name(), kNasty);

    ASSERT_TRUE(source->CopyTo(*Item(mDir + kNasty + ".copy")));
    ASSERT_TRUE(Item(mDir + kNasty + ".copy")->MoveTo(*Item(mDir + "moved " + kNasty)));
    ASSERT_TRUE(source->Rename("-n " + kNasty)); // a leading dash is no option either
    EXPECT_EQ(Listing(mDir), (std::set<std::string>{"-n " + kNasty, "moved " + kNasty}));
    std::ifstream in(mDir + "moved " + kNasty);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "payload");

    // A failing copy reports, and touches nothing else.
    EXPECT_FALSE(Item(mDir + "missing")->CopyTo(*Item(mDir + "x")));
    EXPECT_EQ(Listing(mDir).size(), 2u);
}

TEST_F(FolderItems, LaunchPassesTheParameterAsOneArgument) {
    std::string script = Make(
        "run " + kNasty, "#!/bin/sh\nprintf '%s|%s' \"$#\" \"$1\" > \"$(dirname \"$0\")/out.tmp\"\n"
                         "mv \"$(dirname \"$0\")/out.tmp\" \"$(dirname \"$0\")/out\"\n");
    auto item = Item(script);
    item->MakeExecutable();
    EXPECT_EQ(item->Permissions() & 0100, 0100);
    ASSERT_TRUE(item->Launch("p " + kNasty));
    std::string out = mDir + "out";
    for (int i = 0; i < 500 && access(out.c_str(), F_OK) != 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::ifstream in(out);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "1|p " + kNasty);
    EXPECT_EQ(Listing(mDir), (std::set<std::string>{"run " + kNasty, "out"}));
}

TEST(FolderItemPaths, NamesParentsAndURLs) {
    struct Case {
        std::string path, name, parent, url;
    } cases[] = {
        {"/usr/lib/", "lib", "/usr/", "file:///usr/lib"},
        {"/", "", "", "file:///"},
        {"/tmp/a b%c", "a b%c", "/tmp/", "file:///tmp/a%20b%25c"},
        {"/x/\xc3\xa9t\xc3\xa9", "\xc3\xa9t\xc3\xa9", "/x/", "file:///x/%C3%A9t%C3%A9"},
    };
    for (const Case &c : cases) {
        FolderItemImpUnix item(c.path);
        EXPECT_EQ(item.Name(), c.name) << c.path;
        std::unique_ptr<FolderItemImp> parent = item.Parent();
        EXPECT_EQ(parent ? parent->AbsolutePath() : "", c.parent) << c.path;
        EXPECT_EQ(item.URLPath(), c.url) << c.path;
        if (c.path != "/") {
            std::string bare = c.path.back() == '/' ? c.path.substr(0, c.path.size() - 1) : c.path;
            EXPECT_EQ(PathFromFileURL(c.url), bare);
        }
    }
    EXPECT_EQ(PathFromFileURL("file:///a%2fb%2Fc"), "/a/b/c");
    EXPECT_EQ(PathFromFileURL("http://x/y"), "");
    EXPECT_EQ(PathFromFileURL("file://host/y"), "");
    EXPECT_EQ(LastPathComponent("/" + std::string(2000, 'n')).size(), 1024u);
}

TEST_F(FolderItems, ChildrenAndListing) {
    Make("file");
    mkdir((mDir + "sub").c_str(), 0777);
    symlink("file", (mDir + "link").c_str());
    auto folder = Item(mDir);
    EXPECT_EQ(folder->Count(), 3);
    std::set<std::string> seen;
    for (int i = 0; i < folder->Count(); ++i)
        seen.insert(folder->Item(i, false)->Name());
    EXPECT_EQ(seen, (std::set<std::string>{"file", "sub", "link"}));
    EXPECT_EQ(folder->Item(3, false), nullptr);
    EXPECT_EQ(folder->Item(-1, false), nullptr);

    auto file = folder->Child("file");
    for (const char *name : {"x", ".", ".."})
        EXPECT_EQ(file->Child(name), nullptr) << name; // a file has no children
    EXPECT_EQ(folder->Child(".")->AbsolutePath(), mDir);
    EXPECT_EQ(folder->Child("sub")->AbsolutePath(), mDir + "sub/");
    EXPECT_EQ(folder->Child("sub")->Child("..")->AbsolutePath(), mDir);

    auto link = folder->Child("link");
    EXPECT_TRUE(link->IsAlias());
    EXPECT_EQ(link->ResolveAlias()->AbsolutePath(), mDir + "file");
    bool resolvedSeen = false;
    for (int i = 0; i < 3; ++i)
        resolvedSeen |= folder->Item(i, true)->AbsolutePath() == mDir + "file" &&
                        folder->Item(i, false)->Name() == "link";
    EXPECT_TRUE(resolvedSeen);
    // Deleting the link leaves its target alone.
    ASSERT_TRUE(link->Delete());
    EXPECT_EQ(Listing(mDir), (std::set<std::string>{"file", "sub"}));
}

TEST_F(FolderItems, ReachableMissingAndUnreachablePaths) {
    Make("plain");
    EXPECT_NE(FolderItemImpUnix::FromPath(mDir + "missing"), nullptr); // valid, not there
    EXPECT_FALSE(FolderItemImpUnix::FromPath(mDir + "missing")->Exists());
    EXPECT_EQ(FolderItemImpUnix::FromPath(mDir + "plain/below"), nullptr); // ENOTDIR
    std::string longPath =
        mDir + std::string(200, 'd') + "/" + std::string(1025 - mDir.size() - 201, 'f');
    ASSERT_EQ(longPath.size(), 1025u);
    auto item = FolderItemImpUnix::FromPath(longPath);
    ASSERT_NE(item, nullptr);
    EXPECT_FALSE(item->Exists());
    EXPECT_EQ(item->mLastError, ENOENT);
    EXPECT_EQ(FolderItemImpUnix::FromPath("/" + std::string(300, 'z')), nullptr); // ENAMETOOLONG
    EXPECT_EQ(FolderItemImpUnix::FromPath(""), nullptr);
    // A relative path starts at the executable's folder.
    EXPECT_EQ(FolderItemImpUnix::FromPath("x")->AbsolutePath(), DefaultFolder() + "/x");
}

TEST_F(FolderItems, VisibilityRenamesAndDeleteWithContents) {
    Make("shown");
    auto item = Item(mDir + "shown");
    EXPECT_TRUE(item->Visible());
    ASSERT_TRUE(item->SetVisible(false));
    EXPECT_EQ(item->Name(), ".shown");
    ASSERT_TRUE(item->SetVisible(false)); // already so: nothing done
    ASSERT_TRUE(item->SetVisible(true));
    EXPECT_EQ(Listing(mDir), (std::set<std::string>{"shown"}));

    auto tree = Item(mDir + "tree");
    ASSERT_TRUE(tree->CreateAsFolder());
    EXPECT_EQ(tree->AbsolutePath(), mDir + "tree/");
    mkdir((mDir + "tree/a").c_str(), 0777);
    mkdir((mDir + "tree/a/b").c_str(), 0777);
    Make("tree/a/b/leaf");
    symlink(mDir.c_str(), (mDir + "tree/a/up").c_str()); // must not be followed
    EXPECT_FALSE(tree->Delete());                        // not empty
    EXPECT_EQ(tree->mLastError, ENOTEMPTY);
    ASSERT_TRUE(tree->DeleteWithContents());
    EXPECT_EQ(Listing(mDir), (std::set<std::string>{"shown"}));
}

TEST_F(FolderItems, TimesLengthsAndWriteability) {
    auto item = Item(Make("t", "0123456789"));
    const int64_t when = kSecondsFrom1904To1970 + 1000000000; // 2001-09-09 UTC
    ASSERT_TRUE(item->SetModificationSeconds(when));
    EXPECT_EQ(item->ModificationSeconds(), when);
    struct stat st;
    stat((mDir + "t").c_str(), &st);
    EXPECT_EQ(st.st_mtime, 1000000000);
    EXPECT_NEAR(static_cast<double>(item->CreationSeconds() - kSecondsFrom1904To1970),
                static_cast<double>(time(nullptr)), 60.0);

    EXPECT_TRUE(item->FolderItemImp::IsWriteable());               // the probe through the file
    EXPECT_EQ(item->ModificationSeconds(), when);                  // and the date is put back
    EXPECT_TRUE(Item(mDir + "new")->FolderItemImp::IsWriteable()); // probe file in the folder
    EXPECT_EQ(Listing(mDir), (std::set<std::string>{"t"}));

    ASSERT_TRUE(item->SetLength(5LL << 30));
    EXPECT_EQ(item->Length(), 5LL << 30);
    std::unique_ptr<RandomAccessMechanism> data = item->OpenData(true);
    ASSERT_NE(data, nullptr);
    data->SetPosition((4LL << 30) + 7);
    EXPECT_TRUE(data->Write("z", 1));
    EXPECT_EQ(data->GetPosition(), (4LL << 30) + 8);
    EXPECT_FALSE(Item(mDir + "none")->OpenData(false));
}

TEST_F(FolderItems, SaveInfoFindsTheFileAfterAMove) {
    mkdir((mDir + "base").c_str(), 0777);
    mkdir((mDir + "base/docs").c_str(), 0777);
    Make("base/docs/f.txt");
    std::string relative = RelativePath(mDir + "base/", true, mDir + "base/docs/f.txt", false);
    EXPECT_EQ(relative, "docs\\f.txt");
    EXPECT_EQ(RelativePath("/a/b/", true, "/a/c/d/", true), "..\\c\\d");
    EXPECT_EQ(RelativePath("/a/b/x.txt", false, "/a/c/y", false), "..\\c\\y");
    EXPECT_EQ(ResolveRelativePath("/a/b/", "..\\c\\y"), "/a/c/y");

    std::string info = EncodeSaveInfo(kSaveInfoDefault, mDir + "base/docs/f.txt", relative);
    ASSERT_TRUE(IsSaveInfo(info));
    EXPECT_EQ(info.substr(0, 6), std::string("\x00\xF1\xD1\x73\x01\x00", 6));
    SaveInfoPaths paths;
    ASSERT_TRUE(DecodeSaveInfo(info, paths));
    EXPECT_EQ(paths.relative, relative);
    EXPECT_EQ(paths.absolute, mDir + "base/docs/f.txt");
    // Damaged strings stop at the data's end.
    for (size_t cut = 0; cut < info.size(); ++cut)
        DecodeSaveInfo(info.substr(0, cut), paths);
    ASSERT_TRUE(DecodeSaveInfo(info.substr(0, 12) + std::string("\xff\xff\xff\xff", 4), paths));
    EXPECT_EQ(paths.relative, "");
    ASSERT_TRUE(DecodeSaveInfo(info, paths));

    // The pair moves together: the relative path still finds the file.
    ASSERT_EQ(rename((mDir + "base").c_str(), (mDir + "moved").c_str()), 0);
    EXPECT_EQ(ResolveRelativePath(mDir + "moved/", paths.relative), mDir + "moved/docs/f.txt");
}

TEST_F(FolderItems, SpecialAndTemporaryItems) {
    EXPECT_EQ(FindStandardFolder(1034)->AbsolutePath(), "/etc/");
    EXPECT_EQ(FindStandardFolder(1045)->AbsolutePath(), "/usr/lib/");
    EXPECT_EQ(FindStandardFolder(1033), nullptr);
    EXPECT_EQ(FindSpecialFolder(SpecialFolder::kTemporary)->AbsolutePath(), "/tmp/");

    std::string home = mDir + "home";
    mkdir(home.c_str(), 0777);
    mkdir((home + "/.gnome-desktop").c_str(), 0777);
    const char *saved = getenv("HOME");
    std::string savedHome = saved ? saved : "";
    setenv("HOME", home.c_str(), 1);
    EXPECT_EQ(FindSpecialFolder(SpecialFolder::kDesktop)->AbsolutePath(),
              home + "/.gnome-desktop/");
    EXPECT_EQ(FindSpecialFolder(SpecialFolder::kDocuments)->AbsolutePath(), home + "/");
    EXPECT_EQ(FindSpecialFolder(SpecialFolder::kTrash), nullptr);
    unsetenv("HOME");
    EXPECT_EQ(FindSpecialFolder(SpecialFolder::kPreferences), nullptr);
    if (saved)
        setenv("HOME", savedHome.c_str(), 1);

    std::unique_ptr<FolderItemImp> temp = NewTemporaryItemName();
    ASSERT_NE(temp, nullptr);
    EXPECT_FALSE(temp->Exists());
    EXPECT_EQ(temp->AbsolutePath().size(), 12u); // "/tmp/" and seven characters
    ASSERT_TRUE(temp->CreateAsFolder());
    mkdir((temp->AbsolutePath() + "n1").c_str(), 0777);
    mkdir((temp->AbsolutePath() + "n1/n2").c_str(), 0777);
    std::ofstream(temp->AbsolutePath() + "n1/n2/f") << "x";
    RemoveItemAtShutdown(*temp);
    auto file = Item(Make("kept-until-shutdown"));
    RemoveItemAtShutdown(*file);
    RunShutdownTasks();
    EXPECT_FALSE(temp->Exists()); // the folder itself too
    EXPECT_FALSE(file->Exists());
}

TEST(FileTypes, MatchEndingsWithoutCase) {
    RegisterFileType("text", "ttxt", "TEXT", ".txt;.text");
    RegisterFileType("picture", "", "", ".BMP");
    RegisterFileType("any text", "", "", "t");
    struct Case {
        const char *name, *type;
    } cases[] = {{"a.TXT", "text"}, {"b.bmp", "picture"}, {"c.text", "text"},
                 {"notes", ""},     {"at", "any text"},   {".bmpx", ""}};
    for (const Case &c : cases)
        EXPECT_EQ(FileTypeOfName(c.name), c.type) << c.name;
    DeregisterFileType("text");
    EXPECT_EQ(FileTypeOfName("a.txt"), "any text");
    DeregisterFileType("picture");
    DeregisterFileType("any text");
    EXPECT_EQ(FileTypeOfName("a.txt"), "");
}

} // namespace
} // namespace kelp
