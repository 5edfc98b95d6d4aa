// The volume core and the tree on real files, checked against the format
// by an independent reader (read_volume.py), and against damage.
#include "volume_input.h"
#include "volume_support.h"

#include "support/image_builder.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <random>

namespace kelp::volume {
namespace {

using test::Py;
using test::TempDir;

std::string RandomBytes(size_t n, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes(n, '\0');
    for (char &c : bytes)
        c = char(random());
    return bytes;
}

size_t BlocksOf(VFSVolume &core, uint32_t idnum) {
    size_t n = 0;
    for (const BlockMapEntry &e : core.Map().Entries())
        n += e.idnum == idnum;
    return n;
}

TEST(FreshVolume, BytesAreTheFormat) {
    TempDir dir;
    const std::string core = dir / "core.vol", tree = dir / "tree.vol";
    VFSVolume::CreateVolume(test::DiskFile(core, true), true).reset();
    EXPECT_EQ(
        test::Run("/usr/bin/python3", {"-c", "import struct; print(struct.unpack('>4sI4sIIddII4s', "
                                             "open('" +
                                                 core + "', 'rb').read()))"})
            .out,
        "(b'VFSv', 3, b'BlkS', 1, 0, 40.0, 0.0, 2, 0, b'BlkE')\n");
    test::NewVolume(tree).reset();
    EXPECT_EQ(Py(tree, "v['blocks'], v['counter'], v['map'], v['tree']"),
              "[(8, 1, 0, 40, 1072), (48, 2, 0, 1024, 0), (1072, 1, 1, 1024, 0)] 3 "
              "[[8, 1, 0], [48, 2, 0], [1072, 1, 1]] {'/': {'type': 'fold', 'parent': 0, "
              "'length': 4.0, 'created': 100.0, 'modified': 100.0, 'children': 0}}");
}

// Every version the format has opens, reads and takes a new file without
// changing its version; version 4 is refused.
TEST(FreshVolume, EveryVersionOpensInItsOwnByteOrder) {
    for (int version : {1, 2, 3, 4}) {
        SCOPED_TRACE(version);
        TempDir dir;
        const std::string path = dir / "v.vol";
        {
            auto vhfs = test::NewVolume(path);
            EntryRef folder = vhfs->CreateFolder(vhfs->GetRoot(), "f");
            ASSERT_TRUE(test::WriteEntry(*vhfs, folder, "a", RandomBytes(3000, 1)));
        }
        if (version < 3) {
            ASSERT_EQ(Py(path, "v['version']", ", " + std::to_string(version)), "3");
        }
        if (version == 4) {
            std::fstream f(path, std::ios::in | std::ios::out | std::ios::binary);
            f.seekp(7) << char(4);
        }
        auto vhfs = test::OpenVolume(path);
        if (version == 4) {
            EXPECT_FALSE(vhfs->IsValid());
            EXPECT_EQ(vhfs->Core().Diagnostic(),
                      "VFS volume format version is too advanced for me.");
            continue;
        }
        ASSERT_TRUE(vhfs->IsValid());
        std::vector<EntryRef> root, inside;
        ASSERT_TRUE(vhfs->GetFolderContents(vhfs->GetRoot(), root));
        ASSERT_EQ(root.size(), 1u);
        ASSERT_TRUE(vhfs->GetFolderContents(root[0], inside));
        ASSERT_EQ(inside.size(), 1u);
        EXPECT_EQ(test::ReadEntry(*vhfs, inside[0]), RandomBytes(3000, 1));
        ASSERT_TRUE(test::WriteEntry(*vhfs, root[0], "b", "second"));
        vhfs.reset();
        EXPECT_EQ(Py(path, "(v['version'], v['tree']['//f/b']['length'])"),
                  "(" + std::to_string(version) + ", 6.0)");
    }
}

// Sizes around the 992 bytes of a block (the record takes the first 256),
// written, reopened and read back; the reader's digest of the content must
// be the digest of the bytes.
TEST(FileContent, RoundTripsAtBlockEdges) {
    TempDir dir;
    const std::string path = dir / "sizes.vol";
    const size_t sizes[] = {0, 1, 736, 737, 1023, 1024, 1025, 10 << 20};
    {
        auto vhfs = test::NewVolume(path);
        for (size_t n : sizes) {
            ASSERT_TRUE(test::WriteEntry(*vhfs, vhfs->GetRoot(), std::to_string(n),
                                         RandomBytes(n, unsigned(n))));
            EntryRef ref = vhfs->FindChild(vhfs->GetRoot(), std::to_string(n),
                                           [](auto &a, auto &b) { return a == b; });
            // Exactly full blocks get no empty one behind them.
            EXPECT_EQ(BlocksOf(vhfs->Core(), ref.idnum), std::max<size_t>(1, (256 + n + 991) / 992))
                << n;
        }
    }
    auto vhfs = test::OpenVolume(path);
    ASSERT_TRUE(vhfs->IsValid());
    // Writing past the end leaves zeros in the gap, as a file on disk does.
    EntryRef gap = vhfs->CreateEntry(vhfs->GetRoot(), "gap", kUnknownType);
    std::unique_ptr<VFile> file = vhfs->OpenFile(gap);
    file->SetPosition(5000);
    ASSERT_TRUE(file->Write("x", 1) && file->Close());
    EXPECT_EQ(test::ReadEntry(*vhfs, gap), std::string(5000, '\0') + "x");
    for (size_t n : sizes) {
        const std::string bytes = RandomBytes(n, unsigned(n));
        EntryRef ref = vhfs->FindChild(vhfs->GetRoot(), std::to_string(n),
                                       [](auto &a, auto &b) { return a == b; });
        EXPECT_TRUE(test::ReadEntry(*vhfs, ref) == bytes) << n;
        std::ofstream(dir / "expected") << bytes;
        EXPECT_EQ(Py(path, "v['tree']['//" + std::to_string(n) +
                               "']['sha1'] == hashlib.sha1(open('" + dir / "expected" +
                               "', 'rb').read()).hexdigest()"),
                  "True")
            << n;
    }
}

TEST(Blocks, FreedBlocksAreReusedInMapOrderAndOpenFilesStay) {
    TempDir dir;
    auto vhfs = test::NewVolume(dir / "reuse.vol");
    VFSVolume &core = vhfs->Core();
    const uint32_t a = core.NewFile();
    int16_t h = core.OpenFile(a);
    const std::string bytes = RandomBytes(2500, 7);
    ASSERT_TRUE(core.Write(h, bytes.data(), 2500));
    int16_t second = core.OpenFile(a);
    int64_t n = 4;
    char head[4];
    ASSERT_TRUE(core.Read(second, n, head)); // its own position, from 0
    EXPECT_EQ(std::string(head, 4), bytes.substr(0, 4));
    EXPECT_FALSE(core.DeleteFile(a)) << "open files are not deleted";
    std::string rest(1000, '\0');
    n = 1000;
    EXPECT_FALSE(core.Read(h, n, rest.data())) << "reading past the chain";
    EXPECT_EQ(n, 3 * 992 - 2500) << "what there was is delivered";
    core.CloseFile(h);
    core.CloseFile(second);
    std::vector<int64_t> chainOfA;
    for (const BlockMapEntry &e : core.Map().Entries())
        if (e.idnum == a)
            chainOfA.push_back(e.position);
    ASSERT_TRUE(core.DeleteFile(a));
    const uint32_t b = core.NewFile();
    h = core.OpenFile(b);
    ASSERT_TRUE(core.Write(h, bytes.data(), 2500));
    core.CloseFile(h);
    std::vector<int64_t> chainOfB;
    for (const BlockMapEntry &e : core.Map().Entries())
        if (e.idnum == b)
            chainOfB.push_back(e.position);
    EXPECT_EQ(chainOfB, chainOfA);
}

// The map saves only 32 bits of a position: a file whose blocks lie past
// 4 GB (behind one huge free block of a sparse file) still reads back.
TEST(Blocks, PositionsPastFourGigabytesWork) {
    TempDir dir;
    const std::string path = dir / "big.vol";
    VFSVolume::CreateVolume(test::DiskFile(path, true), true).reset();
    const int64_t huge = (int64_t(5) << 30);
    {
        uint8_t header[28] = {'B', 'l', 'k', 'S'};
        const double length = double(huge);
        uint64_t bits;
        std::memcpy(&bits, &length, 8);
        for (int i = 0; i < 8; ++i)
            header[12 + i] = uint8_t(bits >> (56 - 8 * i));
        int fd = open(path.c_str(), O_WRONLY);
        ASSERT_EQ(pwrite(fd, header, 28, 48), 28);
        ASSERT_EQ(pwrite(fd, "BlkE", 4, 48 + huge - 4), 4);
        close(fd);
    }
    const std::string bytes = RandomBytes(3000, 3);
    uint32_t id;
    {
        VFSVolume core(test::DiskFile(path, false), true);
        ASSERT_TRUE(core.IsValid());
        id = core.NewFile();
        int16_t h = core.OpenFile(id);
        ASSERT_TRUE(core.Write(h, bytes.data(), 3000));
        core.CloseFile(h);
        EXPECT_GT(core.Map().Find(id, 0), int64_t(UINT32_MAX));
    }
    VFSVolume core(test::DiskFile(path, false), true);
    ASSERT_TRUE(core.IsValid());
    std::string back(3000, '\0');
    int64_t n = 3000;
    int16_t h = core.OpenFile(id);
    EXPECT_TRUE(core.Read(h, n, back.data()) && back == bytes);
    core.CloseFile(h);
}

// Damage of every kind the format allows: the volume opens read-only or
// not at all, or shows less, but the walk of it ends.
TEST(DamagedVolumes, OpenReadOnlyOrNotAtAllAndNeverLoop) {
    TempDir dir;
    const std::string path = dir / "good.vol";
    int64_t fileA = 0, folderF = 0;
    {
        auto vhfs = test::NewVolume(path);
        EntryRef f = vhfs->CreateFolder(vhfs->GetRoot(), "f");
        ASSERT_TRUE(test::WriteEntry(*vhfs, vhfs->GetRoot(), "a", RandomBytes(2500, 2)));
        fileA = vhfs->Core().Map().Find(f.idnum + 1, 0);
        folderF = vhfs->Core().Map().Find(f.idnum, 0);
    }
    const std::vector<uint8_t> good = test::ReadFileBytes(path);
    auto bigDouble = [](double d) {
        uint64_t bits;
        std::memcpy(&bits, &d, 8);
        std::string s;
        for (int i = 0; i < 8; ++i)
            s.push_back(char(bits >> (56 - 8 * i)));
        return s;
    };
    const int64_t a2 = fileA + 1024, a3 = fileA + 2048; // a's blocks follow each other
    struct Case {
        const char *what;
        int64_t at; // -1: cut the file here instead
        std::string bytes;
        bool valid, readOnly;
        size_t bytesRead;
    } cases[] = {
        {"file magic", 0, "VFSx", false, false, 0},
        {"version 4", 4, std::string("\0\0\0\4", 4), false, false, 0},
        {"metadata idnum", 12, std::string("\0\0\0\7", 4), false, false, 0},
        {"block length 0", a2 + 12, bigDouble(0), true, true, 736},
        {"block length 31", a2 + 12, bigDouble(31), true, true, 736},
        {"block length NaN", a2 + 12, bigDouble(NAN), true, true, 736},
        {"block length past the end", a3 + 12, bigDouble(1e12), true, true, 1728},
        {"chain back to its start", a2 + 20, bigDouble(double(fileA)), true, false, 1728},
        {"next into a block's middle", a2 + 20, bigDouble(double(a2 + 100)), true, false, 1728},
        {"map count past the file", int64_t(good.size()) - 1024 + 28 + 4,
         std::string("\x7f\xff\xff\xff", 4), true, false, 2500},
        {"name without its NUL", fileA + 28 + 32, std::string(224, 'n'), true, false, 2500},
        {"folder count past its length", folderF + 28 + 256, std::string("\0\0\1\0", 4), true,
         false, 2500},
        {"cut inside the last block", -1, std::to_string(good.size() - 500), true, false, 2500},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<uint8_t> bytes = good;
        if (c.at < 0)
            bytes.resize(std::stoul(c.bytes));
        else
            std::copy(c.bytes.begin(), c.bytes.end(), bytes.begin() + c.at);
        VolumeWalk walk = WalkVolume(bytes.data(), bytes.size());
        EXPECT_EQ(walk.valid, c.valid);
        EXPECT_EQ(walk.readOnly, c.readOnly);
        EXPECT_EQ(walk.bytes, c.bytesRead);
    }
}

TEST(DamagedVolumes, FuzzCorpusReplays) {
    size_t replayed = 0;
    DIR *corpus = opendir(KELP_VOLUME_CORPUS);
    ASSERT_NE(corpus, nullptr);
    while (const dirent *entry = readdir(corpus)) {
        if (entry->d_name[0] == '.')
            continue;
        std::vector<uint8_t> bytes =
            test::ReadFileBytes(std::string(KELP_VOLUME_CORPUS "/") + entry->d_name);
        WalkVolume(bytes.data(), bytes.size());
        ++replayed;
    }
    closedir(corpus);
    EXPECT_GT(replayed, 0u);
}

// A writer killed at a random moment: every file it had flushed is there,
// whole, when the volume is opened again, and the volume takes new files.
TEST(Crash, KilledWriterLeavesEveryFlushedFile) {
    TempDir dir;
    const std::string path = dir / "crash.vol";
    int report[2];
    ASSERT_EQ(pipe(report), 0);
    pid_t child = fork();
    if (child == 0) {
        auto vhfs = volume::VHFSVolume::CreateVolume(
            test::DiskFile(path, true), true,
            [](RandomAccessMechanism &disk) { return static_cast<UnixDataFile &>(disk).Sync(); });
        for (int i = 0;; ++i) {
            test::WriteEntry(*vhfs, vhfs->GetRoot(), "f" + std::to_string(i),
                             RandomBytes(700 + 97 * i, i));
            // Half a file more, never flushed, before the report.
            EntryRef open =
                vhfs->CreateEntry(vhfs->GetRoot(), "partial" + std::to_string(i), kUnknownType);
            vhfs->OpenFile(open)->Write(RandomBytes(5000, 1).data(), 5000);
            vhfs->Flush();
            if (write(report[1], &i, sizeof i) != sizeof i)
                _exit(1);
        }
    }
    close(report[1]);
    int flushed = -1;
    for (int i = 0; i < 25 && read(report[0], &flushed, sizeof flushed) == sizeof flushed;)
        ++i;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(report[0]);
    ASSERT_GE(flushed, 24);
    auto vhfs = test::OpenVolume(path);
    ASSERT_TRUE(vhfs->IsValid());
    EXPECT_FALSE(vhfs->Core().IsReadOnly()) << vhfs->Core().Diagnostic();
    for (int i = 0; i <= flushed; ++i) {
        EntryRef ref = vhfs->FindChild(vhfs->GetRoot(), "f" + std::to_string(i),
                                       [](auto &a, auto &b) { return a == b; });
        EXPECT_TRUE(test::ReadEntry(*vhfs, ref) == RandomBytes(700 + 97 * i, i)) << i;
    }
    ASSERT_TRUE(test::WriteEntry(*vhfs, vhfs->GetRoot(), "after", "the crash"));
    vhfs.reset();
    EXPECT_EQ(Py(path, "v['tree']['//after']['length']"), "9.0");
}

} // namespace
} // namespace kelp::volume
