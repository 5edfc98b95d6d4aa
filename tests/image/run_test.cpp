// Images run as programs: appended to a copy of the runtime, or as loose
// files beside it, and written by kelp-image.  Output comes from the C
// library's puts, reached through a soft import, so what is printed proves
// the binding of every record type the image uses.
#include "support/image_builder.h"

#include "kelp/records.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

using namespace kelp::test;
namespace img = kelp::image;

namespace {

// Prints a literal, argv[1] through KELPGetCommandLineForUnix, and a line
// from a helper function reached by its code address.
img::Segments Greeter() {
    ImageBuilder b;
    const uint32_t tail = b.AddCString("from the data segment");
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.LoadString(Reg::RAX, "hello from the image");
    b.LoadMem(Reg::RDI, Reg::RAX, 8); // buffer: length byte, then the text
    b.AddImm(Reg::RDI, 1);
    b.CallSoftImport("puts", "libc.so.6");
    b.CallImport("KELPGetCommandLineForUnix");
    b.LoadMem(Reg::RDI, Reg::RAX, 8); // argv[1]
    b.CallSoftImport("puts", "libc.so.6");
    b.LoadCodeAddress(Reg::RAX, 0);
    const size_t helperRef = b.Here() - 8;
    b.CallReg(Reg::RAX);
    b.CallImport("RuntimeExit");
    b.Epilogue();
    const uint32_t helper = uint32_t(b.Here());
    b.Prologue();
    b.LoadDataAddress(Reg::RDI, tail);
    b.CallSoftImport("puts", "libc.so.6");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.Epilogue();
    kelp::WriteU64(b.Code().data() + helperRef, helper);
    return b.Build();
}

const char *kGreeting = "hello from the image\nsecond\nfrom the data segment\n";

// The same image appended to a copy of the runtime, as loose files in the
// current folder on the bare runtime, and appended but started through the
// PATH: argv[0] then holds no path, and the runtime reads its own file
// through the operating system.
TEST(RunImage, EveryWayOfStartingRunsTheImageWithEveryRecordBound) {
    enum Way { Appended, Loose, ThroughPath };
    for (Way way : {Appended, Loose, ThroughPath}) {
        SCOPED_TRACE(way);
        TempDir dir;
        RunResult r;
        if (way == Appended) {
            r = RunAppended(Greeter(), {"second"});
        } else if (way == Loose) {
            ASSERT_TRUE(WriteLoose(Greeter(), dir.path()));
            r = kelp::test::Run(KELP_BIN_DIR "/kelp", {"second"}, dir.path());
        } else {
            ASSERT_TRUE(WriteAppended(Greeter(), dir / "greeter"));
            r = kelp::test::Run("/bin/sh", {"-c", "PATH=" + dir.path() + " exec greeter second"},
                                "/");
        }
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.out, kGreeting);
        EXPECT_EQ(r.err, "");
    }
}

TEST(RunImage, WithoutAnyImageTheRuntimeSaysSoAndEnds) {
    TempDir dir;
    RunResult r = kelp::test::Run(KELP_BIN_DIR "/kelp", {}, dir.path());
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("no application image"), std::string::npos) << r.err;
    EXPECT_EQ(r.out, "");
}

TEST(RunImage, UnboundNamesAreReportedAndTheProgramGoesOn) {
    ImageBuilder b;
    const uint32_t text = b.AddCString("still running");
    b.Prologue();
    b.LoadDataAddress(Reg::RDI, text);
    b.CallSoftImport("puts", "libc.so.6");
    // The entry never reaches the unbound hole: it jumps over it.
    b.Bytes({0xEB, 0x05});
    b.CallImport("NotAnExportOfThisRuntime");
    b.Epilogue();
    RunResult r = RunAppended(b.Build());
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.err.find("Function 'NotAnExportOfThisRuntime' was not exported"), std::string::npos)
        << r.err;
    EXPECT_EQ(r.out, "still running\n");
}

// A bare library name that is a symbolic link in the current folder: the
// loader's own search never looks there, so the binder follows the link by
// hand.  A name the loader can't find is tried again with ".so" behind.
TEST(RunImage, SoftImportsFollowLinksHereAndRetryWithSo) {
    const char *libc = "/lib/x86_64-linux-gnu/libc.so.6";
    ASSERT_EQ(access(libc, R_OK), 0);
    for (bool bare : {true, false}) {
        SCOPED_TRACE(bare ? "link in the current folder" : "name without .so");
        TempDir dir;
        const std::string link = bare ? "kelpclink" : "libkelpc.so";
        ASSERT_EQ(symlink(libc, (dir / link).c_str()), 0);
        ImageBuilder b;
        const uint32_t text = b.AddCString("through the link");
        b.Prologue();
        b.LoadDataAddress(Reg::RDI, text);
        b.CallSoftImport("puts", bare ? link : dir / "libkelpc");
        b.Epilogue();
        ASSERT_TRUE(WriteAppended(b.Build(), dir / "app"));
        RunResult r = kelp::test::Run(dir / "app", {}, dir.path());
        EXPECT_EQ(r.err, "");
        EXPECT_EQ(r.out, "through the link\n");
    }
}

TEST(RunImage, DamagedImagesEndWithOneClearLineAndNoCrash) {
    const std::vector<uint8_t> runtime = ReadFileBytes(KELP_BIN_DIR "/kelp");
    ASSERT_FALSE(runtime.empty());
    const auto good = img::EncodeAppendedImage(Greeter());
    struct Case {
        const char *what;
        std::vector<uint8_t> tail;
        const char *expected;
    };
    std::vector<Case> cases;
    {
        auto t = good; // L far larger than the file
        kelp::WriteU32(t.data() + t.size() - 13, 0xFFFFFF00);
        cases.push_back({"L outside", t, "points outside the file"});
    }
    {
        auto t = good; // the code segment's size runs past the image
        kelp::WriteU32(t.data(), 0x00FFFFFF);
        cases.push_back({"segment size", t, "runs past the end of the image"});
    }
    {
        // Only the trailer: L claims bytes the file doesn't have.
        std::vector<uint8_t> t(good.end() - 13, good.end());
        cases.push_back({"truncated", t, "damaged application image"});
    }
    for (const Case &c : cases) {
        TempDir dir;
        auto bytes = runtime;
        bytes.insert(bytes.end(), c.tail.begin(), c.tail.end());
        ASSERT_TRUE(WriteFileBytes(dir / "app", bytes));
        ASSERT_EQ(chmod((dir / "app").c_str(), 0755), 0);
        RunResult r = kelp::test::Run(dir / "app", {"x"}, dir.path());
        EXPECT_EQ(r.status, 1) << c.what;
        EXPECT_NE(r.err.find(c.expected), std::string::npos) << c.what << ": " << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << c.what << ": " << r.err;
        EXPECT_EQ(r.out, "") << c.what;
    }
}

TEST(RunImage, BuilderPrintsStringsAndTheEmptyString) {
    ImageBuilder b;
    EnterSaving(b, {Reg::RBX, Reg::RBX}); // the caller's; twice, to keep the stack aligned
    b.LoadString(Reg::RBX, "a literal");
    b.PutsString(Reg::RBX);
    b.MovImm(Reg::RSI, 0);
    b.PutsString(Reg::RSI);
    b.PutsString(Reg::RBX);
    b.PutsText("done");
    LeaveRestoring(b, {Reg::RBX, Reg::RBX});
    RunResult r = RunAppended(b.Build());
    EXPECT_EQ(r.out, "a literal\n\na literal\ndone\n");
    EXPECT_EQ(r.status, 0);
}

// Only regular files are segments: a directory or a FIFO of a segment's name
// counts as missing.  `timeout` turns a hang on a FIFO into a failure.
TEST(RunImage, LooseNamesThatAreNoRegularFilesCountAsMissing) {
    struct Case {
        int segment;
        bool fifo; // else a directory
        bool runs; // the greeting is printed
    } cases[] = {
        {img::kCode, false, false},     {img::kCode, true, false},     {img::kSymbols, true, true},
        {img::kResources, false, true}, {img::kResources, true, true}, {img::kOptions, true, true},
    };
    for (const Case &c : cases) {
        const std::string what =
            std::string(img::kLooseFileNames[c.segment]) + (c.fifo ? " as a FIFO" : " as a folder");
        TempDir dir;
        ASSERT_TRUE(WriteLoose(Greeter(), dir.path()));
        const std::string name = dir / img::kLooseFileNames[c.segment];
        ASSERT_EQ(unlink(name.c_str()), 0);
        ASSERT_EQ(c.fifo ? mkfifo(name.c_str(), 0644) : mkdir(name.c_str(), 0755), 0);
        RunResult r =
            kelp::test::Run("/usr/bin/timeout", {"20", KELP_BIN_DIR "/kelp", "second"}, dir.path());
        if (c.runs) {
            EXPECT_EQ(r.status, 0) << what << r.err;
            EXPECT_EQ(r.out, kGreeting) << what;
        } else {
            EXPECT_EQ(r.status, 1) << what << r.err;
            EXPECT_NE(r.err.find("there is no code.dat"), std::string::npos) << what << r.err;
        }
        RunResult info =
            kelp::test::Run("/usr/bin/timeout", {"20", KELP_IMAGE_TOOL, "info", dir.path()});
        EXPECT_NE(info.status, 124) << what << ": hung";
        EXPECT_LT(info.status, 128) << what << ": " << info.err;
        if (!c.runs) {
            EXPECT_NE(info.out.find("no code.dat"), std::string::npos) << what << info.out;
        }
    }
    // The tool asked about a FIFO itself neither waits nor reads it.
    TempDir dir;
    ASSERT_EQ(mkfifo((dir / "pipe").c_str(), 0644), 0);
    RunResult info =
        kelp::test::Run("/usr/bin/timeout", {"20", KELP_IMAGE_TOOL, "info", dir / "pipe"});
    EXPECT_EQ(info.status, 1) << info.err;
    EXPECT_NE(info.err.find("is not a regular file"), std::string::npos) << info.err;
}

// A string constant held by a static cache is released at exit, after the
// image list is destroyed: the segments must still be there.  The data
// segment is large so that its memory goes back to the system when freed, and
// a read after that faults even without a sanitizer.
TEST(RunImage, StringConstantsOutliveTheStaticsThatHoldThem) {
    ImageBuilder b;
    b.AddData(std::vector<uint8_t>(512 * 1024, 0));
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.LoadString(Reg::RSI, "a needle in the text");
    b.LoadString(Reg::RDX, "needle");
    b.MovImm(Reg::RDI, 1);
    // InStr converts the pattern to the text's encoding, and the conversion
    // cache keeps the constant it converted.
    b.CallImport("StringInStr");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallSoftImport("exit", "libc.so.6");
    b.Epilogue();
    img::Segments s = b.Build();
    auto &data = s.bytes[img::kData];
    const std::string text = std::string("\x06needle") + '\0';
    const auto at = std::search(data.begin(), data.end(), text.begin(), text.end());
    ASSERT_NE(at, data.end());
    kelp::WriteU32(&*at - KELP_LITERAL_TEXT_OFFSET + 24, kEncodingASCII);
    RunResult r = RunAppended(s);
    EXPECT_EQ(r.status, 3) << "InStr's answer is the exit status: " << r.err;
    EXPECT_EQ(r.err, "");
}

// --------------------------------------------------------------- the tool

TEST(KelpImageTool, PacksLooseFilesAndTheResultRuns) {
    TempDir dir;
    ASSERT_TRUE(WriteLoose(Greeter(), dir / "loose"));
    ASSERT_TRUE(WriteFileBytes(dir / "note.txt", {'h', 'i'}));
    RunResult pack = kelp::test::Run(
        KELP_IMAGE_TOOL, {"pack", "-o", dir / "app", "-r", KELP_BIN_DIR "/kelp", dir / "loose",
                          "--resource", "TEXT:128:" + (dir / "note.txt")});
    ASSERT_EQ(pack.status, 0) << pack.err;
    RunResult run = kelp::test::Run(dir / "app", {"second"}, "/");
    EXPECT_EQ(run.out, kGreeting);

    RunResult info = kelp::test::Run(KELP_IMAGE_TOOL, {"info", dir / "app"});
    EXPECT_EQ(info.status, 0) << info.out << info.err;
    EXPECT_NE(info.out.find("import KELPGetCommandLineForUnix (relative, 1 hole)"),
              std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("soft import puts from libc.so.6 (3 holes)"), std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("1 data references, 1 code references, 1 string references"),
              std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("TEXT   128 2 bytes"), std::string::npos) << info.out;

    // Packing the packed program again replaces its image, not stacks one.
    RunResult again = kelp::test::Run(
        KELP_IMAGE_TOOL, {"pack", "-o", dir / "app2", "-r", dir / "app", dir / "loose"});
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(ReadFileBytes(dir / "app2").size() + 14 + 2, ReadFileBytes(dir / "app").size());
}

// The old image is cut off by its trailer's length, which may cover more than
// its segments.
TEST(KelpImageTool, PackingReplacesAnImageByItsTrailersLength) {
    TempDir dir;
    ASSERT_TRUE(WriteLoose(Greeter(), dir / "loose"));
    RunResult clean = kelp::test::Run(
        KELP_IMAGE_TOOL, {"pack", "-o", dir / "clean", "-r", KELP_BIN_DIR "/kelp", dir / "loose"});
    ASSERT_EQ(clean.status, 0) << clean.err;
    // Code of one `ret`; symbols, resources and options absent by the top
    // bit of their sizes; three bytes behind the last segment.
    std::vector<uint8_t> image, old = ReadFileBytes(KELP_BIN_DIR "/kelp");
    for (uint32_t size : {1u, 0u, 0u, 0x80000010u, 0x80000500u, 0x80000001u}) {
        kelp::AppendU32(image, size);
        if (size == 1)
            image.push_back(0xC3);
    }
    image.insert(image.end(), {'x', 'y', 'z'});
    old.insert(old.end(), image.begin(), image.end());
    kelp::AppendU32(old, uint32_t(image.size()));
    old.insert(old.end(), img::kTrailerMagic, img::kTrailerMagic + img::kTrailerMagicSize);
    ASSERT_TRUE(WriteFileBytes(dir / "old", old));
    img::Segments check;
    std::string error;
    ASSERT_EQ(img::ReadAppendedImage(dir / "old", check, error), img::ReadStatus::kOk) << error;
    RunResult pack = kelp::test::Run(KELP_IMAGE_TOOL,
                                     {"pack", "-o", dir / "new", "-r", dir / "old", dir / "loose"});
    ASSERT_EQ(pack.status, 0) << pack.err;
    EXPECT_EQ(ReadFileBytes(dir / "new"), ReadFileBytes(dir / "clean"));
}

TEST(KelpImageTool, InfoOnDamagedInputSaysWhatIsWrong) {
    TempDir dir;
    img::Segments s = Greeter();
    s.bytes[img::kResources] = {'T', 'X', 'E', 'T', 1, 0, 0, 0, 0, 0, 0xFF, 0, 0, 0, 'x'};
    s.bytes[img::kOptions] = {1, 16, 16, 0, 0};
    ASSERT_TRUE(WriteLoose(s, dir.path()));
    RunResult info = kelp::test::Run(KELP_IMAGE_TOOL, {"info", dir.path()});
    EXPECT_EQ(info.status, 1);
    EXPECT_NE(info.out.find("claims 255 bytes, more than its segment holds"), std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("runs past the end of its segment (icon pixels)"), std::string::npos)
        << info.out;

    RunResult bare = kelp::test::Run(KELP_IMAGE_TOOL, {"info", KELP_BIN_DIR "/kelp"});
    EXPECT_EQ(bare.status, 1);
    EXPECT_NE(bare.err.find("carries no application image"), std::string::npos);
}

} // namespace
