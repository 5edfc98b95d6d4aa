// kelp-image link on objects from the real compiler: the images run on the
// real runtime program and behave as the same sources linked the ordinary
// way; what cannot be expressed is refused in one line with no file left.
#include "support/image_builder.h"
#include "support/x_input.h"
#include "support/xvfb.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>

namespace kelp::test {
namespace {

const std::string kTool = KELP_BIN_DIR "/kelp-image";
const std::string kRuntime = KELP_BIN_DIR "/kelp";

// The built image objects whose file names end in one of the names.
std::vector<std::string> Objects(std::initializer_list<const char *> names) {
    std::vector<std::string> found;
    std::stringstream all(IMAGE_LINK_OBJECTS);
    for (std::string path; std::getline(all, path, ':');)
        for (const char *name : names)
            if (path.size() > std::strlen(name) &&
                path.compare(path.size() - std::strlen(name), std::string::npos, name) == 0)
                found.push_back(path);
    return found;
}

RunResult Tool(std::vector<std::string> args) { return kelp::test::Run(kTool, args); }

bool Exists(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

// The same program from the ordinary link, entered at entry.
RunResult Reference(const std::string &entry, bool keepDisplay = false) {
    setenv("KELP_REFERENCE_ENTRY", entry.c_str(), 1);
    RunResult r = kelp::test::Run(IMAGE_LINK_REFERENCE, {}, "", keepDisplay);
    unsetenv("KELP_REFERENCE_ENTRY");
    return r;
}

struct Program {
    const char *entry;
    std::initializer_list<const char *> objects;
    std::vector<std::string> soft;         // the link's --soft and --soft-data arguments
    size_t lines;                          // what it prints, the exit's included
    std::vector<std::string> recordsShown; // in kelp-image info
};

TEST(ImageLink, ProgramsRunAsTheirOrdinaryLinkRunsAndHoldEveryRecordType) {
    const Program programs[] = {
        {"ProgramRecords",
         {"records.c.o", "calls.c.o"},
         {"--soft", "printf:libc.so.6", "--soft", "puts:libc.so.6", "--soft", "fwrite:libc.so.6",
          "--soft-data", "stdout:libc.so.6"},
         8,
         {"import RuntimeAddString (relative", "import RuntimeAddString (absolute",
          "soft import puts from libc.so.6 (", "soft import dlsym from libc.so.6", "data reference",
          "code reference", "string reference at code", "\"records\"", "\"ab\"", "ProgramRecords"}},
        {"ProgramObjects",
         {"objects.cpp.o"},
         {"--soft", "printf:libc.so.6", "--soft", "_ZdlPv:libstdc++.so.6", "--soft",
          "__cxa_atexit:libc.so.6"},
         2,
         {"\"from C++\"", "soft import __cxa_atexit from libc.so.6"}},
    };
    for (const Program &p : programs) {
        SCOPED_TRACE(p.entry);
        TempDir dir;
        const std::vector<std::string> objects = Objects(p.objects);
        ASSERT_EQ(objects.size(), p.objects.size());
        std::vector<std::string> args{"link"};
        args.insert(args.end(), objects.begin(), objects.end());
        args.insert(args.end(), p.soft.begin(), p.soft.end());
        args.insert(args.end(),
                    {"--entry", p.entry, "--append-to", kRuntime, "--out", dir / "program"});
        const RunResult link = Tool(args);
        ASSERT_EQ(link.status, 0) << link.err;

        const RunResult image = kelp::test::Run(dir / "program", {});
        const RunResult reference = Reference(p.entry);
        EXPECT_EQ(image.status, 0) << image.err;
        EXPECT_EQ(image.out, reference.out);
        EXPECT_EQ(size_t(std::count(image.out.begin(), image.out.end(), '\n')), p.lines)
            << image.out;

        const RunResult info = Tool({"info", dir / "program"});
        for (const auto &shown : p.recordsShown)
            EXPECT_NE(info.out.find(shown), std::string::npos) << shown << " in\n" << info.out;
        const RunResult check = Tool({"check", dir / "program"});
        EXPECT_EQ(check.status, 0) << check.out;
        EXPECT_NE(check.out.find(" 0 missing, 0 damaged"), std::string::npos) << check.out;
    }
}

// How a bad object is made: compiled from source, then perhaps damaged.
enum class Damage { kNone, kOtherMachine, kCutShort, kNotElf };

struct BadObject {
    const char *what;
    const char *source; // C, or assembly when the flags say -x assembler
    const char *flags;
    Damage damage;
    const char *secondSource; // another object, or null
    const char *message;      // the one line says this
};

TEST(ImageLink, WhatAnImageCannotExpressIsOneLineAndNoFile) {
    const char *entry = "int Entry(void) { return 0; }\n";
    const std::string large = "-fno-pic -mcmodel=large -O2";
    const BadObject cases[] = {
        {"PIC", "int g; int Entry(void) { return g; }", "-fpic -O2", Damage::kNone, nullptr,
         "position-independent reference (R_X86_64_REX_GOTPCRELX)"},
        {"small model", "int g; int *Entry(void) { return &g; }", "-fno-pic -mcmodel=small -O2",
         Damage::kNone, nullptr, "32-bit absolute address (R_X86_64_32)"},
        {"thread-local", "__thread int t; int Entry(void) { return t; }", large.c_str(),
         Damage::kNone, nullptr, "thread-local data"},
        {"unknown relocation", ".text\n.globl Entry\nEntry: ret\n.data\n.quad Entry@SIZE\n",
         "-x assembler", Damage::kNone, nullptr,
         "section .data: symbol Entry: uses relocation R_X86_64_SIZE64"},
        {"duplicate", "int shared = 1; int Entry(void) { return shared; }", large.c_str(),
         Damage::kNone, "int shared = 2;", "symbol shared: is defined twice"},
        {"no entry", "int Other(void) { return 1; }", large.c_str(), Damage::kNone, nullptr,
         "no object defines the entry function 'Entry'"},
        {"undefined", "int Missing(void); int Entry(void) { return Missing(); }", large.c_str(),
         Damage::kNone, nullptr, "symbol Missing: is undefined"},
        {"destructor",
         "int g; __attribute__((destructor)) static void Bye(void) { g = 1; }\n"
         "void Entry(void) { g = 2; }",
         large.c_str(), Damage::kNone, nullptr, "static destructors"},
        {"other machine", entry, large.c_str(), Damage::kOtherMachine, nullptr,
         "another architecture"},
        {"truncated", entry, large.c_str(), Damage::kCutShort, nullptr, "outside the file"},
        {"not ELF", entry, large.c_str(), Damage::kNotElf, nullptr, "not an ELF object"},
    };
    for (const BadObject &c : cases) {
        SCOPED_TRACE(c.what);
        TempDir dir;
        std::vector<std::string> objects;
        for (const char *source : {c.source, c.secondSource}) {
            if (!source)
                continue;
            const std::string name = dir / ("part" + std::to_string(objects.size()));
            ASSERT_TRUE(WriteFileBytes(name + ".src",
                                       std::vector<uint8_t>(source, source + std::strlen(source))));
            const std::string compile = std::string("gcc -c ") + c.flags + " -x " +
                                        (std::strstr(c.flags, "assembler") ? "assembler" : "c") +
                                        " " + name + ".src -o " + name + ".o";
            ASSERT_EQ(std::system(compile.c_str()), 0) << compile;
            objects.push_back(name + ".o");
        }
        auto bytes = ReadFileBytes(objects[0]);
        ASSERT_GT(bytes.size(), 64u);
        if (c.damage == Damage::kOtherMachine)
            bytes[18] = 183, bytes[19] = 0; // EM_AARCH64
        if (c.damage == Damage::kCutShort)
            bytes.resize(200);
        if (c.damage == Damage::kNotElf)
            bytes.assign({'h', 'e', 'l', 'l', 'o', '\n'});
        ASSERT_TRUE(WriteFileBytes(objects[0], bytes));

        std::vector<std::string> args{"link"};
        args.insert(args.end(), objects.begin(), objects.end());
        args.insert(args.end(), {"--entry", "Entry", "--out", dir / "image"});
        const RunResult r = Tool(args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
        if (c.damage == Damage::kNone && c.message[0] != 'n') {
            EXPECT_EQ(r.err.find("kelp-image: " + dir.path()), 0u) << r.err; // names the object
        }
        EXPECT_FALSE(Exists(dir / "image"));
        EXPECT_FALSE(Exists(dir / "image.partial"));
    }
}

TEST(ImageLink, CheckListsWhatWouldBeMissingWithoutRunningTheImage) {
    TempDir dir;
    // A runtime that offers one export more than the real one.
    const std::string fake = dir / "fake-kelp";
    const std::string script =
        "#!/bin/sh\nKELP_LIST_EXPORTS=1 " + kRuntime + "\necho KelpNoSuchExport\n";
    ASSERT_TRUE(WriteFileBytes(fake, {script.begin(), script.end()}));
    chmod(fake.c_str(), 0755);
    const std::string source = dir / "uses.c";
    const std::string text = "int puts(const char *); void KelpNoSuchExport(void);\n"
                             "void KelpNoSuchFunction(void);\n"
                             "void KelpMain(void) { puts(\"x\"); KelpNoSuchExport(); "
                             "KelpNoSuchFunction(); }\n";
    ASSERT_TRUE(WriteFileBytes(source, {text.begin(), text.end()}));
    ASSERT_EQ(
        std::system(
            ("gcc -c -fno-pic -mcmodel=large -O2 " + source + " -o " + source + ".o").c_str()),
        0);
    const RunResult link =
        Tool({"link", source + ".o", "--soft", "puts:libkelp-absent.so.3", "--soft",
              "KelpNoSuchFunction:libc.so.6", "--runtime", fake, "--out", dir / "image"});
    ASSERT_EQ(link.status, 0) << link.err;
    const RunResult check = Tool({"check", dir / "image", "--runtime", kRuntime});
    EXPECT_EQ(check.status, 1);
    for (const char *missing : {"missing export KelpNoSuchExport (1 call)\n",
                                "missing library libkelp-absent.so.3 (for puts, 1 call)\n",
                                "missing function KelpNoSuchFunction in libc.so.6 (1 call)\n",
                                "0 names bind, 3 missing, 0 damaged\n"})
        EXPECT_NE(check.out.find(missing), std::string::npos) << missing << check.out;
}

// The drill as it ships (kelp with its image) deals the rounds the same drill
// linked into the runtime deals.
TEST(ImageLink, TheDrillsImageDealsTheRoundsOfTheLinkedInDrill) {
    struct Round {
        const char *mode, *seed;
    } rounds[] = {{"1", "7"}, {"2", "42"}, {"3", "2024"}};
    for (const Round &r : rounds) {
        SCOPED_TRACE(std::string("mode ") + r.mode + " seed " + r.seed);
        const std::vector<std::string> args{"--print-round", "--mode", r.mode, "--length", "25",
                                            "--seed",        r.seed};
        const RunResult image = kelp::test::Run(KELP_BIN_DIR "/sumbrook", args);
        const RunResult linked = kelp::test::Run(KELP_BIN_DIR "/sumbrook-linked", args);
        EXPECT_EQ(image.status, 0) << image.err;
        EXPECT_EQ(std::count(image.out.begin(), image.out.end(), '\n'), 25);
        EXPECT_EQ(image.out, linked.out);
    }
}

// The example, as a person uses it: two clicks on Count, and the label reads
// the count each time, the same in the image as in the ordinary link.
TEST(ImageLink, TheCounterExampleCountsClicksInItsLabel) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    auto clicked = [](auto run) {
        std::atomic<bool> ended{false};
        std::thread person([&ended] {
            XDoToolQuiet("search --sync --onlyvisible --name '^Counter$' sleep 0.3 "
                         "mousemove --window %1 60 35 click 1 sleep 0.3 click 1 sleep 0.5");
            for (int i = 0; i < 30 && !ended; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            XDoToolQuiet("search --name '^Counter$' windowkill");
        });
        RunResult r = run();
        ended = true;
        person.join();
        return r;
    };
    const RunResult image =
        clicked([] { return kelp::test::Run(KELP_BIN_DIR "/counter", {}, "", true); });
    EXPECT_EQ(image.out, "Clicks: 1\nClicks: 2\n") << image.err;
    const RunResult reference = clicked([] { return Reference("KelpMain", true); });
    EXPECT_EQ(reference.out, image.out) << reference.err;
}

} // namespace
} // namespace kelp::test
