// Folder items inside a volume, as compiled code reaches them: the tree's
// operations and refusals, copies between a real folder and a volume, and
// one image run by the runtime.
#include "volume_support.h"

#include "support/class_kit.h"
#include "support/image_builder.h"

#include "folder_items/folder_item_object.h"
#include "volumes/folder_item_virtual.h"
#include "volumes/virtual_volume_object.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <fstream>

namespace kelp {
namespace {

using test::Lit;
using test::Py;
using test::TempDir;

// Items of one volume file, released with the fixture.
class VolumeItems : public ::testing::Test {
protected:
    void SetUp() override {
        RuntimeObject *host = Keep(RuntimeGetFolderItem(Lit(mDir / "items.vol"), 0));
        mVolume = Keep(FolderItemCreateVirtualVolume(host));
        ASSERT_NE(mVolume, nullptr);
        mRoot = Keep(VirtVolRootGetter(mVolume, 0));
    }
    void TearDown() override {
        for (RuntimeObject *o : mKept)
            RuntimeUnlockObject(o);
    }
    RuntimeObject *Keep(RuntimeObject *o) {
        if (o)
            mKept.push_back(o);
        return o;
    }
    // The item at a path below the root, "a/b".
    RuntimeObject *At(const std::string &path) {
        RuntimeObject *item = mRoot;
        for (size_t start = 0; item && start <= path.size();) {
            size_t end = std::min(path.find('/', start), path.size());
            item = Keep(FolderChild(item, Lit(path.substr(start, end - start))));
            start = end + 1;
        }
        return item;
    }
    FolderItemImp &Imp(const std::string &path) { return *ImpOf(At(path)); }
    void File(const std::string &path, const std::string &text) {
        RuntimeObject *out = FolderItemCreateTextFile(At(path));
        ASSERT_NE(out, nullptr) << path;
        TextOutputStreamWrite(out, Lit(text));
        RuntimeUnlockObject(out);
    }
    // What the independent reader finds, once the volume is on the disk.
    std::string Tree() {
        VolumeOf(mVolume)->Flush();
        return Py(mDir / "items.vol", "sorted(v['tree'])");
    }
    TempDir mDir;
    RuntimeObject *mVolume = nullptr, *mRoot = nullptr;
    std::vector<RuntimeObject *> mKept;
};

TEST_F(VolumeItems, TreeOperationsAndTheirRefusals) {
    for (const char *folder : {"docs", "docs/sub", "pics"})
        FolderItemCreateAsFolder(At(folder));
    File("docs/a.txt", "alpha");
    File("docs/b.txt", "bravo");
    File("c.bin", "charlie");
    EXPECT_EQ(Imp("c.bin").MacType(), "????");
    EXPECT_EQ(Imp("docs/a.txt").AbsolutePath(), "//docs/a.txt");
    EXPECT_EQ(Imp("DOCS/A.TXT").Length(), 5) << "names compare without case";
    struct Case {
        const char *what;
        std::function<bool()> operation;
        bool succeeds;
    } cases[] = {
        {"rename", [&] { return Imp("docs/a.txt").Rename("z.txt"); }, true},
        {"rename onto a sibling", [&] { return Imp("docs/z.txt").Rename("B.TXT"); }, false},
        {"rename the root", [&] { return ImpOf(mRoot)->Rename("x"); }, false},
        {"rename a missing entry", [&] { return Imp("docs/none").Rename("y"); }, false},
        {"move into a folder", [&] { return Imp("docs/b.txt").MoveTo(Imp("pics")); }, true},
        {"move under a new name", [&] { return Imp("c.bin").MoveTo(Imp("pics/c2.bin")); }, true},
        {"move into its own subtree", [&] { return Imp("docs").MoveTo(Imp("docs/sub")); }, false},
        {"move onto itself", [&] { return Imp("docs").MoveTo(Imp("docs")); }, true},
        {"create a name taken in another case",
         [&] { return Imp("PICS/B.TXT").CreateData() != nullptr; }, false},
        {"create a folder that exists", [&] { return Imp("pics").CreateAsFolder(); }, false},
        {"delete a folder with children", [&] { return Imp("docs").Delete(); }, false},
        {"delete the root", [&] { return ImpOf(mRoot)->Delete(); }, false},
        {"delete a file", [&] { return Imp("docs/z.txt").Delete(); }, true},
        {"delete a missing file", [&] { return Imp("docs/z.txt").Delete(); }, false},
        {"delete an empty folder", [&] { return Imp("docs/sub").Delete(); }, true},
        {"set a folder's type", [&] { return Imp("docs").SetMacType("TEXT"); }, false},
        {"set a file's type", [&] { return Imp("pics/b.txt").SetMacType("TEXT"); }, true},
        {"date a folder", [&] { return Imp("pics").SetCreationSeconds(5); }, false},
        {"date a file", [&] { return Imp("pics/b.txt").SetCreationSeconds(3000000000); }, true},
        {"size a folder", [&] { return Imp("pics").SetLength(9); }, false},
        {"size a file", [&] { return Imp("pics/b.txt").SetLength(3); }, true},
    };
    for (const Case &c : cases)
        EXPECT_EQ(c.operation(), c.succeeds) << c.what;
    EXPECT_EQ(Imp("pics/b.txt").MacType(), "TEXT");
    EXPECT_EQ(Imp("pics/b.txt").CreationSeconds(), 3000000000);
    RuntimeObject *in = FolderItemOpenTextFile(At("pics/b.txt"));
    KelpString text = TextInputStreamReadAll(in, nullptr);
    EXPECT_EQ(test::Str(text), "bra") << "the length field decides";
    RuntimeUnlockString(text);
    RuntimeUnlockObject(in);
    EXPECT_EQ(Imp("pics").MacDirID(), 2) << "the root's idnum";
    EXPECT_GT(Imp("pics/b.txt").MacDirID(), 2);
    EXPECT_EQ(Tree(), "['/', '//docs', '//pics', '//pics/b.txt', '//pics/c2.bin']");
    EXPECT_EQ(Py(mDir / "items.vol", "v['tree']['//pics/c2.bin']['length']"), "7.0");
}

// A real tree copied into the volume and out again is the same tree, as
// diff sees it; the move out leaves nothing behind in the volume.
TEST_F(VolumeItems, CopiesInAndOutKeepEveryByte) {
    const std::string source = mDir / "source", back = mDir / "back";
    ASSERT_EQ(std::system(("mkdir -p '" + source +
                           "/inner folder/deeper' && head -c 70000 /dev/urandom > '" + source +
                           "/inner folder/random' && : > '" + source +
                           "/empty' && echo 'a line' > '" + source + "/inner folder/deeper/x y'")
                              .c_str()),
              0);
    RuntimeObject *real = Keep(RuntimeGetFolderItem(Lit(source), 0));
    FolderItemCopyFileTo(real, mRoot);
    EXPECT_EQ(Tree(), "['/', '//source', '//source/empty', '//source/inner folder', "
                      "'//source/inner folder/deeper', '//source/inner folder/deeper/x y', "
                      "'//source/inner folder/random']");
    EXPECT_EQ(Py(mDir / "items.vol", "v['tree']['//source/inner folder/random']['sha1'] == "
                                     "hashlib.sha1(open('" +
                                         source +
                                         "/inner folder/random', 'rb').read()).hexdigest()"),
              "True");
    RuntimeObject *out = Keep(RuntimeGetFolderItem(Lit(back), 0));
    FolderItemCopyFileTo(At("source"), out);
    EXPECT_EQ(test::Run("/usr/bin/diff", {"-r", source, back}).status, 0);
    RuntimeObject *moved = Keep(RuntimeGetFolderItem(Lit(mDir / "moved"), 0));
    FolderItemMoveFileTo(At("source/inner folder/random"), moved);
    EXPECT_EQ(test::Run("/usr/bin/cmp", {mDir / "moved", source + "/inner folder/random"}).status,
              0);
    EXPECT_FALSE(fileExistsGetter(At("source/inner folder/random"), 0));
}

TEST(VolumeImage, RunsThroughTheRuntime) {
    TempDir dir;
    const std::string path = dir / "image.vol";
    using test::Reg;
    test::ImageBuilder b;
    b.Prologue();
    for (Reg r : {Reg::RBX, Reg::R12, Reg::R13, Reg::R14, Reg::R15, Reg::R15})
        b.Push(r);
    b.CallImport("RuntimeInit");
    for (const char *opener : {"FolderItemCreateVirtualVolume", "FolderItemOpenAsVirtualVolume"}) {
        b.LoadString(Reg::RDI, path);
        b.MovImm(Reg::RSI, 0);
        b.CallImport("RuntimeGetFolderItem");
        b.MovReg(Reg::RBX, Reg::RAX);
        b.MovReg(Reg::RDI, Reg::RBX);
        b.CallImport(opener);
        b.MovReg(Reg::R12, Reg::RAX);
        b.MovReg(Reg::RDI, Reg::R12);
        b.MovImm(Reg::RSI, 0);
        b.CallImport("VirtVolRootGetter");
        b.MovReg(Reg::R13, Reg::RAX);
        b.MovReg(Reg::RDI, Reg::R13);
        b.LoadString(Reg::RSI, "hello.txt");
        b.CallImport("FolderChild");
        b.MovReg(Reg::R14, Reg::RAX);
        b.MovReg(Reg::RDI, Reg::R14);
        if (opener[10] == 'C') {
            b.CallImport("FolderItemCreateTextFile");
            b.MovReg(Reg::R15, Reg::RAX);
            b.MovReg(Reg::RDI, Reg::R15);
            b.LoadString(Reg::RSI, "written in a volume");
            b.CallImport("TextOutputStreamWriteLine");
        } else {
            b.CallImport("FolderItemOpenTextFile");
            b.MovReg(Reg::R15, Reg::RAX);
            b.MovReg(Reg::RDI, Reg::R15);
            b.MovImm(Reg::RSI, 0);
            b.CallImport("TextInputStreamReadLine");
            b.PutsString(Reg::RAX);
        }
        for (Reg r : {Reg::R15, Reg::R14, Reg::R13, Reg::R12, Reg::RBX}) {
            b.MovReg(Reg::RDI, r);
            b.CallImport("RuntimeUnlockObject");
        }
    }
    b.CallImport("RuntimeExit");
    for (Reg r : {Reg::R15, Reg::R15, Reg::R14, Reg::R13, Reg::R12, Reg::RBX})
        b.Pop(r);
    b.Epilogue();
    test::RunResult r = test::RunAppended(b.Build());
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "written in a volume\n");
    EXPECT_EQ(Py(path, "(v['tree']['//hello.txt']['length'], v['tree']['//hello.txt']['type'])"),
              "(20.0, '?\?\?\?')");
}

} // namespace
} // namespace kelp
