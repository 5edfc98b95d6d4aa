// An image assembled byte by byte, with nothing of the runtime's own image
// code: what any tool that follows the image rules of this port would write.
// It uses every record type, and runs appended to the runtime and as
// segment files packed by kelp-image.
#include "support/image_builder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

void Put32(Bytes &b, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        b.push_back(uint8_t(v >> (8 * i)));
}
void Put64(Bytes &b, uint64_t v) {
    for (int i = 0; i < 8; ++i)
        b.push_back(uint8_t(v >> (8 * i)));
}
void PutName(Bytes &b, const std::string &s) {
    b.push_back(uint8_t(s.size()));
    b.insert(b.end(), s.begin(), s.end());
    b.push_back(0);
}

Bytes Code() {
    Bytes c;
    c.insert(c.end(), {0x55, 0x48, 0x89, 0xE5}); //  0: push rbp; mov rbp, rsp
    c.insert(c.end(), {0x48, 0xB8});
    Put64(c, 0);                                 //  4: movabs rax, literal   (type 5 at 6)
    c.insert(c.end(), {0x48, 0x8B, 0x78, 0x08}); // 14: mov rdi, [rax+8]
    c.insert(c.end(), {0x48, 0x83, 0xC7, 0x01}); // 18: add rdi, 1
    c.push_back(0xE8);
    Put32(c, 65); // 22: call puts   (type 4, hole 23 -> 65)
    c.push_back(0xE8);
    Put32(c, 0); // 27: call RuntimeInit (type 1, hole 28)
    c.insert(c.end(), {0x48, 0xB9});
    Put64(c, 50);                                // 32: movabs rcx, helper (type 3 at 34)
    c.insert(c.end(), {0xFF, 0xD1});             // 42: call rcx
    c.insert(c.end(), {0x5D, 0xC3});             // 44: pop rbp; ret
    c.insert(c.end(), {0x90, 0x90, 0x90, 0x90}); // 46
    c.insert(c.end(), {0x55, 0x48, 0x89, 0xE5}); // 50: helper
    c.insert(c.end(), {0x48, 0xBF});
    Put64(c, 48); // 54: movabs rdi, text (type 2 at 56)
    c.push_back(0xE8);
    Put32(c, 0); // 64: call puts   (hole 65, end of chain)
    c.insert(c.end(), {0x48, 0xB8});
    Put64(c, 0);                     // 69: movabs rax, RuntimeExit (absolute, 71)
    c.insert(c.end(), {0xFF, 0xD0}); // 79: call rax
    c.insert(c.end(), {0x5D, 0xC3}); // 81: pop rbp; ret
    return c;
}

Bytes Data() {
    Bytes d;
    Put32(d, 1); // reference count
    Put32(d, 0);
    Put64(d, 0);          // buffer: the binder points it at offset 32
    Put32(d, 7);          // capacity
    Put32(d, 5);          // length
    Put32(d, 0x08000100); // UTF-8
    Put32(d, 0);
    d.push_back(5);
    for (char ch : std::string("hand!"))
        d.push_back(uint8_t(ch));
    d.push_back(0);
    while (d.size() < 48)
        d.push_back(0);
    for (char ch : std::string("helper"))
        d.push_back(uint8_t(ch));
    d.push_back(0);
    return d;
}

Bytes Link() {
    Bytes l;
    l.push_back(5);
    Put32(l, 6);
    l.push_back(4);
    Put32(l, 23);
    PutName(l, "puts");
    PutName(l, "libc.so.6");
    l.push_back(0); // padding
    l.push_back(1);
    l.push_back(1);
    Put32(l, 28);
    PutName(l, "RuntimeInit");
    l.push_back(3);
    Put32(l, 34);
    l.push_back(2);
    Put32(l, 56);
    l.push_back(9); // an unknown type: one byte
    l.push_back(1);
    l.push_back(0);
    Put32(l, 71);
    PutName(l, "runtimeexit");
    return l;
}

TEST(HandMadeImage, RunsAppendedToTheRuntime) {
    Bytes file = kelp::test::ReadFileBytes(KELP_BIN_DIR "/kelp");
    ASSERT_FALSE(file.empty());
    Bytes image;
    for (const Bytes &segment : {Code(), Data(), Link(), Bytes{}, Bytes{}, Bytes{}}) {
        Put32(image, uint32_t(segment.size()));
        image.insert(image.end(), segment.begin(), segment.end());
    }
    const uint32_t length = uint32_t(image.size());
    file.insert(file.end(), image.begin(), image.end());
    Put32(file, length);
    for (char ch : std::string("CehNehDeh"))
        file.push_back(uint8_t(ch));
    kelp::test::TempDir dir;
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "app", file));
    ASSERT_EQ(chmod((dir / "app").c_str(), 0755), 0);
    const auto r = kelp::test::Run(dir / "app", {});
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, "hand!\nhelper\n");
    EXPECT_EQ(r.status, 0);
}

TEST(HandMadeImage, RunsFromSegmentFilesPackedByTheTool) {
    kelp::test::TempDir dir;
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "c", Code()));
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "d", Data()));
    ASSERT_TRUE(kelp::test::WriteFileBytes(dir / "l", Link()));
    const auto pack =
        kelp::test::Run(KELP_IMAGE_TOOL, {"pack", "-o", dir / "app", "-r", KELP_BIN_DIR "/kelp",
                                          dir / "c", dir / "d", dir / "l"});
    ASSERT_EQ(pack.status, 0) << pack.err;
    const auto r = kelp::test::Run(dir / "app", {});
    EXPECT_EQ(r.out, "hand!\nhelper\n");
    EXPECT_EQ(r.status, 0);
    const auto info = kelp::test::Run(KELP_IMAGE_TOOL, {"info", dir / "app"});
    EXPECT_NE(info.out.find("import runtimeexit (absolute, 1 hole)"), std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("soft import puts from libc.so.6 (2 holes)"), std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("1 padding, 1 unknown"), std::string::npos) << info.out;
}

} // namespace
