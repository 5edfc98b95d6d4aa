// Real images on the runtime program, packed by kelp-image with the example
// plug-in as a "KPPl" resource: the runtime extracts it into a private
// folder, loads it, and compiled code reaches its functions by entry name.
// Damaged plug-in resources end the run with the report and status 1, and
// leave no file behind.
#include "support/image_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <string>
#include <vector>

namespace kelp::test {
namespace {

const std::string kLibrary = KELP_BIN_DIR "/libKPExample.so";

// printf of the format at `format` with the value in RAX.
void PrintRax(ImageBuilder &b, uint32_t format) {
    b.LoadDataAddress(Reg::RDI, format);
    b.MovReg(Reg::RSI, Reg::RAX);
    b.MovImm(Reg::RAX, 0);
    b.CallSoftImport("printf", "libc.so.6");
}

// The entry: set up the classes (which loads the plug-ins), then print
// Arith.Twice(21), a new Counter's Add(5) and the plug-in path variable.
image::Segments CallingImage() {
    ImageBuilder b;
    const uint32_t number = b.AddCString("%d\n");
    const uint32_t text = b.AddCString("%s\n");
    const uint32_t counter = b.AddCString("Counter");
    const uint32_t variable = b.AddCString("KPPLUGINPATH");
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::RBX);
    b.CallImport("RuntimeInit");
    b.CallImport("RuntimeInitExternalClasses");
    b.LoadString(Reg::RDI, "Arith.Twice(n As Integer) As Integer");
    b.CallImport("RuntimeLookupPluginEntrypoint");
    b.MovImm(Reg::RDI, 21);
    b.CallReg(Reg::RAX);
    PrintRax(b, number);
    b.LoadDataAddress(Reg::RDI, counter);
    b.CallImport("PluginNewInstance");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.LoadString(Reg::RDI, "Counter.Add(n As Integer) As Integer");
    b.CallImport("RuntimeLookupPluginEntrypoint");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 5);
    b.CallReg(Reg::RAX);
    PrintRax(b, number);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject");
    b.LoadDataAddress(Reg::RDI, variable);
    b.CallSoftImport("getenv", "libc.so.6");
    PrintRax(b, text);
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.Pop(Reg::RBX);
    b.Pop(Reg::RBX);
    b.Epilogue();
    return b.Build();
}

// The entry for a plug-in of the first interface: print Halve(9) and a new
// OldKnob's Spin(3), both reached by their entry names.
image::Segments OldStyleImage() {
    ImageBuilder b;
    const uint32_t numbers = b.AddCString("%d %d\n");
    const uint32_t knob = b.AddCString("OldKnob");
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::R12);
    b.CallImport("RuntimeInit");
    b.CallImport("RuntimeInitExternalClasses");
    b.LoadString(Reg::RDI, "Halve(n As Integer) As Integer");
    b.CallImport("RuntimeLookupPluginEntrypoint");
    b.MovImm(Reg::RDI, 9);
    b.CallReg(Reg::RAX);
    b.MovReg(Reg::R12, Reg::RAX);
    b.LoadDataAddress(Reg::RDI, knob);
    b.CallImport("PluginNewInstance");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.LoadString(Reg::RDI, "OldKnob.Spin(n As Integer) As Integer");
    b.CallImport("RuntimeLookupPluginEntrypoint");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 3);
    b.CallReg(Reg::RAX);
    b.LoadDataAddress(Reg::RDI, numbers);
    b.MovReg(Reg::RSI, Reg::R12);
    b.MovReg(Reg::RDX, Reg::RAX);
    b.MovImm(Reg::RAX, 0);
    b.CallSoftImport("printf", "libc.so.6");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.Pop(Reg::R12);
    b.Pop(Reg::RBX);
    b.Epilogue();
    return b.Build();
}

std::vector<uint8_t> PluginBody(const std::string &name, const std::vector<uint8_t> &library) {
    std::vector<uint8_t> body(1 + name.size() + library.size());
    body[0] = uint8_t(name.size());
    std::copy(name.begin(), name.end(), body.begin() + 1);
    std::copy(library.begin(), library.end(), body.begin() + 1 + long(name.size()));
    return body;
}

size_t EntriesIn(const std::string &folder) {
    size_t n = 0;
    if (DIR *d = opendir(folder.c_str())) {
        while (dirent *e = readdir(d))
            n += std::string(e->d_name) != "." && std::string(e->d_name) != "..";
        closedir(d);
    }
    return n;
}

// Runs the program in `work` with TMPDIR pointed at a folder of its own.
RunResult RunWithPrivateTemp(const std::string &program, const TempDir &work, const TempDir &temp) {
    const char *old = getenv("TMPDIR");
    const std::string saved = old ? old : "";
    setenv("TMPDIR", temp.path().c_str(), 1);
    RunResult r = test::Run(program, {}, work.path());
    old ? setenv("TMPDIR", saved.c_str(), 1) : unsetenv("TMPDIR");
    return r;
}

// Packed by the tool, extracted at the start, gone at the run-down; a
// plug-in of the first interface is converted and called the same way.
TEST(PluginImage, PackedByTheToolLoadedAndCalledByName) {
    const struct {
        image::Segments (*image)();
        std::string library, out;
    } cases[] = {
        {CallingImage, kLibrary, "42\n5\n(null)\n"},
        {OldStyleImage, KELP_BIN_DIR "/libKPOldStyle.so", "4 30\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.library);
        TempDir work, temp, loose;
        ASSERT_TRUE(WriteLoose(c.image(), loose.path()));
        const std::string program = work / "app";
        RunResult pack = test::Run(KELP_BIN_DIR "/kelp-image", {"pack", "-o", program, loose.path(),
                                                                "--plugin", "65535:" + c.library});
        ASSERT_EQ(pack.status, 0) << pack.err;
        RunResult info = test::Run(KELP_BIN_DIR "/kelp-image", {"info", program});
        EXPECT_NE(info.out.find("KPPl 65535"), std::string::npos) << info.out;
        RunResult r = RunWithPrivateTemp(program, work, temp);
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.out, c.out) << r.err;
        EXPECT_EQ(EntriesIn(temp.path()), 0u); // the extracted library went at the run-down
    }
}

TEST(PluginImage, LibraryBesideTheProgramIsLoadedInPlace) {
    TempDir work, temp;
    image::Segments image = CallingImage();
    // The bytes in the image are no library at all: only the file counts.
    const std::vector<uint8_t> body = PluginBody("libKPExample.so", {'n', 'o', 'p', 'e'});
    ImageBuilder rsrc;
    rsrc.AddResource("KPPl", 65535, body);
    image.bytes[image::kResources] = rsrc.Build().bytes[image::kResources];
    ASSERT_TRUE(WriteFileBytes(work / "libKPExample.so", ReadFileBytes(kLibrary)));
    ASSERT_TRUE(WriteAppended(image, work / "app"));
    RunResult r = RunWithPrivateTemp(work / "app", work, temp);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "42\n5\n(null)\n");
    EXPECT_EQ(EntriesIn(temp.path()), 0u); // nothing was extracted
    EXPECT_EQ(ReadFileBytes(work / "libKPExample.so"), ReadFileBytes(kLibrary)); // and kept
}

TEST(PluginImage, DamagedPluginsEndTheRunWithTheReport) {
    std::vector<uint8_t> wrongClass = ReadFileBytes(kLibrary);
    ASSERT_GT(wrongClass.size(), 4u);
    wrongClass[4] = 1; // ELFCLASS32: a library of another architecture
    std::vector<uint8_t> truncated = PluginBody("libX.so", {1, 2, 3});
    truncated[0] = 200; // the name runs past the resource
    const struct Case {
        const char *what;
        std::vector<uint8_t> body;
        const char *says;
    } cases[] = {
        {"not a library", PluginBody("libText.so", {'h', 'e', 'l', 'l', 'o'}), "libText.so"},
        {"no main entry",
         PluginBody("libNoEntry.so", ReadFileBytes(KELP_BIN_DIR "/libKPNoEntry.so")),
         "KELPPluginMain"},
        {"wrong architecture", PluginBody("libWrong.so", wrongClass), "ELF"},
        {"name past the end", truncated, "damaged"},
        {"empty", {}, "damaged"},
    };
    for (const Case &c : cases) {
        TempDir work, temp;
        image::Segments image = CallingImage();
        ImageBuilder rsrc;
        rsrc.AddResource("KPPl", 7, c.body);
        image.bytes[image::kResources] = rsrc.Build().bytes[image::kResources];
        ASSERT_TRUE(WriteAppended(image, work / "app"));
        RunResult r = RunWithPrivateTemp(work / "app", work, temp);
        EXPECT_EQ(r.status, 1) << c.what << ": " << r.err;
        EXPECT_EQ(r.out, "") << c.what;
        EXPECT_NE(r.err.find("The application cannot continue because a needed file cannot be "
                             "installed. "),
                  std::string::npos)
            << c.what << ": " << r.err;
        EXPECT_NE(r.err.find(c.says), std::string::npos) << c.what << ": " << r.err;
        EXPECT_EQ(EntriesIn(temp.path()), 0u) << c.what;
    }
}

} // namespace
} // namespace kelp::test
