// The binder on real x86_64 code: images are built, bound in this process and
// their entries called, so every hole is proved by the code that runs
// through it.
#include "support/image_builder.h"

#include "base/fatal_report.h"
#include "image/binder.h"
#include "image/loader.h"
#include "kelp/image.h"
#include "kelp/startup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using namespace kelp::test;
namespace img = kelp::image;

namespace {

std::vector<int64_t> gSeen;
extern "C" void TestImageRecord(int64_t value) { gSeen.push_back(value); }
extern "C" int64_t TestImageTwice(int64_t value) { return value * 2; }

std::vector<std::string> gReports;
void CollectReport(int, const char *, int, const char *condition, const char *message) {
    gReports.push_back(std::string(condition) + "|" + message);
}

class Binder : public ::testing::Test {
protected:
    void SetUp() override {
        AddExport("TestImageRecord", reinterpret_cast<void *>(&TestImageRecord));
        AddExport("TestImageTwice", reinterpret_cast<void *>(&TestImageTwice));
        gSeen.clear();
        gReports.clear();
        mOld = kelp::SetFatalReportHook(&CollectReport);
    }
    void TearDown() override { kelp::SetFatalReportHook(mOld); }

    img::PreparedImage Prepare(ImageBuilder &b,
                               img::Placement where = img::Placement::kNearRuntime) {
        return Prepare(b.Build(), where);
    }
    img::PreparedImage Prepare(img::Segments s,
                               img::Placement where = img::Placement::kNearRuntime) {
        img::PreparedImage p;
        std::string error;
        EXPECT_TRUE(img::PrepareImage(std::move(s), p, error, where)) << error;
        return p;
    }

    kelp::FatalReportHook mOld = nullptr;
};

// An entry that records 7 and 21, calling the same export twice so that the
// chain has two holes, and a second export once.
void RecordSevenAndTwentyOne(ImageBuilder &b, const std::string &recordName = "TestImageRecord") {
    b.Prologue();
    b.MovImm(Reg::RDI, 7);
    b.CallImport(recordName);
    b.MovImm(Reg::RDI, 21);
    b.CallImport("TestImageTwice");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.AddImm(Reg::RDI, -21);
    b.CallImport(recordName);
    b.Epilogue();
}

// Every hole of the relative import chains is bound, names match without
// regard to case, and code far from the runtime calls through one stub per
// distinct target, however many holes reach it.
TEST_F(Binder, RelativeImportChainsBindEveryHoleAndRun) {
    const struct Row {
        const char *recordName;
        img::Placement where;
        uint32_t stubs;
    } rows[] = {
        {"TestImageRecord", img::Placement::kNearRuntime, 0},
        {"testimageRECORD", img::Placement::kNearRuntime, 0},
        {"TestImageRecord", img::Placement::kFar, 2},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.recordName + std::string(row.stubs ? " far" : " near"));
        gSeen.clear();
        ImageBuilder b;
        RecordSevenAndTwentyOne(b, row.recordName);
        auto p = Prepare(b, row.where);
        ASSERT_NE(p.entry, nullptr);
        EXPECT_EQ(p.counts.holes, 3u);
        EXPECT_EQ(p.counts.failures, 0u);
        EXPECT_EQ(p.counts.stubs, row.stubs);
        EXPECT_TRUE(gReports.empty());
        p.entry();
        EXPECT_EQ(gSeen, (std::vector<int64_t>{7, 21}));
        EXPECT_EQ(CodeBase(), p.code);
    }
}

TEST_F(Binder, AbsoluteImportHoleTakesTheWholeAddress) {
    ImageBuilder b;
    b.Prologue();
    b.LoadImportAddress(Reg::RAX, "TestImageRecord");
    b.MovImm(Reg::RDI, 99);
    b.CallReg(Reg::RAX);
    b.LoadImportAddress(Reg::R11, "TestImageRecord");
    b.MovImm(Reg::RDI, 100);
    b.CallReg(Reg::R11);
    b.Epilogue();
    auto p = Prepare(b);
    EXPECT_EQ(p.counts.holes, 2u);
    p.entry();
    EXPECT_EQ(gSeen, (std::vector<int64_t>{99, 100}));
}

TEST_F(Binder, DataCodeAndStringReferencesBecomeAddresses) {
    ImageBuilder b;
    const uint32_t value = b.AddData({0x2A, 0, 0, 0, 0, 0, 0, 0});
    EnterSaving(b, {Reg::RBX, Reg::RBX}); // callee-saved; twice keeps the stack aligned
    // Data: read the word the image keeps and record it.
    b.LoadDataAddress(Reg::RAX, value);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.CallImport("TestImageRecord");
    // Code: call a function of the image through its absolute address.
    b.LoadCodeAddress(Reg::RAX, 0); // patched below to the helper's offset
    const size_t codeRef = b.Here() - 8;
    b.CallReg(Reg::RAX);
    // String: record the literal's length field and its buffer's length byte.
    b.LoadString(Reg::RBX, "hello, image");
    b.LoadMem32(Reg::RDI, Reg::RBX, 20);
    b.CallImport("TestImageRecord");
    b.LoadMem(Reg::RAX, Reg::RBX, 8);
    b.Bytes({0x48, 0x0F, 0xB6, 0x38}); // movzx rdi, byte [rax]
    b.CallImport("TestImageRecord");
    LeaveRestoring(b, {Reg::RBX, Reg::RBX});
    const uint32_t helper = uint32_t(b.Here());
    b.Prologue();
    b.MovImm(Reg::RDI, 5);
    b.CallImport("TestImageRecord");
    b.Epilogue();
    kelp::WriteU64(b.Code().data() + codeRef, helper);

    auto p = Prepare(b);
    EXPECT_EQ(p.counts.words, 3u);
    p.entry();
    EXPECT_EQ(gSeen, (std::vector<int64_t>{42, 5, 12, 12}));
    // The literal is live: its buffer points at its own length byte.
    const auto *literal = reinterpret_cast<const stringStorage *>(p.data + 8);
    EXPECT_EQ(literal->buffer, reinterpret_cast<const uint8_t *>(literal) + 32);
    EXPECT_EQ(std::memcmp(literal->buffer + 1, "hello, image", 13), 0);
    EXPECT_EQ(literal->referenceCount, 1);
    EXPECT_EQ(DataBase(), p.data);
}

TEST_F(Binder, TwoStringRecordsForOneLiteralShareIt) {
    ImageBuilder b;
    b.Prologue();
    b.LoadString(Reg::RDI, "same");
    b.CallImport("TestImageRecord");
    b.LoadString(Reg::RDI, "same");
    b.CallImport("TestImageRecord");
    b.Epilogue();
    auto p = Prepare(b);
    EXPECT_EQ(p.counts.words, 2u);
    EXPECT_EQ(p.counts.failures, 0u);
    p.entry();
    ASSERT_EQ(gSeen.size(), 2u);
    EXPECT_EQ(gSeen[0], gSeen[1]);
    EXPECT_EQ(gSeen[0], reinterpret_cast<int64_t>(p.data));
}

TEST_F(Binder, SoftImportBindsAFunctionOfASharedLibrary) {
    ImageBuilder b;
    const uint32_t text = b.AddCString("twelve chars");
    b.Prologue();
    b.LoadDataAddress(Reg::RDI, text);
    b.CallSoftImport("strlen", "libc.so.6");
    CallWith(b, "TestImageRecord", {Reg::RAX});
    b.Epilogue();
    auto p = Prepare(b);
    EXPECT_TRUE(gReports.empty()) << gReports.front();
    p.entry();
    EXPECT_EQ(gSeen, (std::vector<int64_t>{12}));
}

TEST_F(Binder, MissingNamesAreReportedInTheirOwnWordsAndBindingGoesOn) {
    ImageBuilder b;
    b.Prologue();
    b.CallImport("NoSuchExportAnywhere");
    b.CallSoftImport("strlen", "libkelp-no-such-library");
    b.CallSoftImport("no_such_function_here", "libc.so.6");
    b.MovImm(Reg::RDI, 3);
    b.CallImport("TestImageRecord");
    b.Epilogue();
    auto p = Prepare(b);
    std::sort(gReports.begin(), gReports.end());
    EXPECT_EQ(gReports, (std::vector<std::string>{
                            "foundFunction|Function 'NoSuchExportAnywhere' was not exported",
                            "functionEntry|Could not resolve function 'no_such_function_here' in "
                            "libc.so.6",
                            "lib->mLibraryHandle|Missing shared library libkelp-no-such-library"}));
    // The good import is bound; the holes of the three missing names lead to
    // their reports, once per call, and the calls return.
    EXPECT_EQ(p.counts.holes, 4u);
    gReports.clear();
    p.entry();
    EXPECT_EQ(gSeen, (std::vector<int64_t>{3}));
    std::sort(gReports.begin(), gReports.end());
    EXPECT_EQ(gReports, (std::vector<std::string>{
                            "foundFunction|Could not resolve function 'no_such_function_here' in "
                            "libc.so.6",
                            "foundFunction|Function 'NoSuchExportAnywhere' was not exported",
                            "foundFunction|Missing shared library libkelp-no-such-library"}));
}

TEST_F(Binder, PaddingUnknownTypesAndEmptyChainsWriteNothing) {
    ImageBuilder b;
    b.Prologue();
    b.MovImm(Reg::RDI, 1);
    b.CallImport("TestImageRecord");
    b.Epilogue();
    auto &link = b.LinkTable();
    // Padding, two unknown types, then an import of a real name with head 0.
    link = {0,   0,   6,   0xFF, 1,   1,   0,   0,   0,   0,   11, 'R',
            'u', 'n', 't', 'i',  'm', 'e', 'I', 'n', 'i', 't', 0};
    auto before = b.Build().bytes[img::kCode];
    auto p = Prepare(b);
    EXPECT_EQ(p.counts.failures, 0u);
    EXPECT_EQ(p.counts.records, 6u); // four skipped, the head-0 import, the real import
    // Only the real chain changed the code.
    size_t changed = 0;
    for (size_t i = 0; i < before.size(); ++i)
        changed += before[i] != p.code[i];
    EXPECT_LE(changed, 4u);
    p.entry();
    EXPECT_EQ(gSeen, (std::vector<int64_t>{1}));
}

TEST_F(Binder, DamagedTablesAreReportedNeverFollowedOutOfTheCode) {
    ImageBuilder b;
    b.Prologue();
    b.Epilogue();
    auto &link = b.LinkTable();
    auto add = [&](std::initializer_list<uint8_t> bytes) { link.insert(link.end(), bytes); };
    add({1,   1,   0x00, 0x10, 0,   0,   15,  'T', 'e', 's', 't', 'I',
         'm', 'a', 'g',  'e',  'R', 'e', 'c', 'o', 'r', 'd', 0}); // chain head far outside the code
    add({2, 0xF0, 0xFF, 0xFF, 0x7F});                             // data reference outside the code
    add({3, 0x02, 0, 0, 0}); // code word that runs past the end
    add({1, 1, 3});          // cut off in its chain head
    auto p = Prepare(b);
    // The two references outside the code are one kind of fault: one report.
    ASSERT_EQ(gReports.size(), 3u);
    EXPECT_NE(gReports[0].find("outside the code segment"), std::string::npos) << gReports[0];
    EXPECT_NE(gReports[1].find("outside the code segment (2 times in all)"), std::string::npos)
        << gReports[1];
    EXPECT_NE(gReports[2].find("cut off"), std::string::npos) << gReports[2];
    p.entry(); // the code itself was left whole and still runs
}

TEST_F(Binder, AChainThatLoopsStopsAtTheFirstHoleSeenTwice) {
    ImageBuilder b;
    b.Prologue();
    b.CallImport("TestImageRecord");
    b.CallImport("TestImageRecord");
    b.Epilogue();
    // Point the last hole back at the first: a ring.
    auto &code = b.Code();
    const uint32_t first = 5, second = 10;
    kelp::WriteU32(code.data() + second, first);
    auto p = Prepare(b);
    ASSERT_EQ(gReports.size(), 1u);
    EXPECT_NE(gReports[0].find("loops at offset 5"), std::string::npos) << gReports[0];
    EXPECT_EQ(p.counts.holes, 2u) << "each hole is written once, then the ring is noticed";
}

// Each damaged constant is reported and its word becomes null, so the code
// hands the runtime no string at all rather than a raw data offset.
TEST_F(Binder, RejectedStringConstantsLeaveANullWord) {
    struct Case {
        const char *what;
        size_t field; // offset in the record to damage; ~0: the code's word
        uint64_t value;
        const char *report;
    } cases[] = {
        {"length past the data", 20, 0x7FFFFF00, "is damaged"},
        {"negative length", 20, 0xFFFFFFFF, "is damaged"},
        {"buffer pointing elsewhere", 8, 0x1234, "is damaged"},
        {"offset outside the data", ~size_t(0), 0x10000, "outside the data segment"},
    };
    for (const Case &c : cases) {
        gReports.clear();
        gSeen.clear();
        ImageBuilder b;
        b.Prologue();
        b.LoadString(Reg::RDI, "text");
        const size_t word = b.Here() - 8;
        b.CallImport("TestImageRecord");
        b.Epilogue();
        kelp::WriteU64(c.field == ~size_t(0) ? b.Code().data() + word : b.Data().data() + c.field,
                       c.value);
        auto p = Prepare(b);
        ASSERT_EQ(gReports.size(), 1u) << c.what;
        EXPECT_NE(gReports[0].find(c.report), std::string::npos) << c.what << ": " << gReports[0];
        EXPECT_EQ(kelp::ReadU64(p.code + word), 0u) << c.what;
        p.entry();
        EXPECT_EQ(gSeen, (std::vector<int64_t>{0})) << c.what;
    }
}

// Link records written by hand.
std::vector<uint8_t> Import(uint32_t head, const std::string &name = "TestImageTwice") {
    std::vector<uint8_t> r{img::kLinkImport, 1};
    kelp::AppendU32(r, head);
    r.push_back(uint8_t(name.size()));
    for (char c : name)
        r.push_back(uint8_t(c));
    r.push_back(0);
    return r;
}
std::vector<uint8_t> Reference(uint8_t type, uint32_t offset) {
    std::vector<uint8_t> r{type};
    kelp::AppendU32(r, offset);
    return r;
}
std::vector<uint8_t> operator+(std::vector<uint8_t> a, const std::vector<uint8_t> &b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// A byte of code belongs to one record: a second writer is reported and
// leaves the first one's value alone, in whichever order the records come.
TEST_F(Binder, BytesThatTwoRecordsWriteAreReportedAndWrittenOnce) {
    const uint8_t data = img::kLinkDataReference, code = img::kLinkCodeReference;
    struct Case {
        const char *what;
        std::vector<uint8_t> link;
        const char *report;
        uint32_t at;    // where the first writer's value stands
        uint8_t stands; // its record type: the hole of TestImageTwice, or a word
    } cases[] = {
        {"a reference on a call hole", Import(5) + Reference(data, 5), "lands on a call hole", 5,
         img::kLinkImport},
        {"a reference across a hole's end", Import(5) + Reference(code, 1), "lands on a call hole",
         5, img::kLinkImport},
        {"a chain through a reference's word", Reference(data, 3) + Import(5),
         "which a reference already wrote", 3, data},
        {"two chains through one hole", Import(5) + Import(5, "TestImageRecord"),
         "which another chain's hole already wrote", 5, img::kLinkImport},
        {"two references on one word", Reference(code, 12) + Reference(data, 12),
         "a word another reference already wrote", 12, code},
    };
    for (const Case &c : cases) {
        gReports.clear();
        ImageBuilder b;
        b.Prologue(); // 4 bytes: the call's hole is at offset 5
        b.Bytes({0xE8, 0, 0, 0, 0});
        b.Epilogue();
        b.Bytes({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
        b.AddData({1, 2, 3, 4, 5, 6, 7, 8}); // a data segment, so its base is not 0
        img::Segments s = b.Build();
        s.bytes[img::kLink] = c.link;
        const std::vector<uint8_t> before = s.bytes[img::kCode];
        auto p = Prepare(std::move(s));
        ASSERT_EQ(gReports.size(), 1u) << c.what;
        EXPECT_NE(gReports[0].find(c.report), std::string::npos) << c.what << ": " << gReports[0];
        if (c.stands == img::kLinkImport) {
            const int32_t disp = int32_t(kelp::ReadU32(p.code + c.at));
            EXPECT_EQ(p.code + c.at + 4 + disp, reinterpret_cast<uint8_t *>(&TestImageTwice))
                << c.what;
        } else {
            const uint8_t *base = c.stands == data ? p.data : p.code;
            EXPECT_EQ(kelp::ReadU64(p.code + c.at),
                      kelp::ReadU64(before.data() + c.at) + reinterpret_cast<uint64_t>(base))
                << c.what;
        }
    }
}

// A table that repeats a fault for record after record gives one report per
// kind of fault, with the count; a junk options segment likewise.
TEST_F(Binder, RepeatedFaultsAreReportedOnceWithTheirCount) {
    ImageBuilder b;
    b.Prologue();
    b.Epilogue();
    img::Segments s = b.Build();
    auto &link = s.bytes[img::kLink];
    for (int i = 0; i < 3000; ++i)
        link = link + Import(0, "NoSuchExport" + std::to_string(i));
    for (int i = 0; i < 2000; ++i)
        link = link + Reference(img::kLinkDataReference, 0x7FFF0000u + uint32_t(i));
    for (int i = 0; i < 1000; ++i)
        link = link + Import(0x100000u + uint32_t(i), "TestImageRecord");
    for (int i = 0; i < 300; ++i) { // soft imports from 300 libraries that aren't there
        const std::string library = "libkelp-none-" + std::to_string(i) + ".so";
        link = link + std::vector<uint8_t>{img::kLinkSoftImport,   0, 0, 0, 0, 1, 'f', 0,
                                           uint8_t(library.size())};
        link.insert(link.end(), library.begin(), library.end());
        link.push_back(0);
    }
    s.bytes[img::kOptions].assign(200 * 1024, 0x55); // an unknown type at every byte
    s.present[img::kOptions] = true;
    auto p = Prepare(std::move(s));
    ASSERT_EQ(gReports.size(), 5u);
    EXPECT_EQ(gReports[0],
              "foundFunction|Function 'NoSuchExport0' was not exported (3000 times in all)");
    EXPECT_NE(gReports[1].find("outside the code segment (2000 times in all)"), std::string::npos)
        << gReports[1];
    EXPECT_NE(gReports[2].find("outside the code segment (1000 times in all)"), std::string::npos)
        << gReports[2];
    EXPECT_EQ(gReports[3], "lib->mLibraryHandle|Missing shared library libkelp-none-0.so (300 "
                           "times in all)");
    EXPECT_EQ(gReports[4], "0|Unknown option record of type 85 at offset 0 (204800 times in all)");
    EXPECT_EQ(p.counts.failures, 6300u);
}

} // namespace
