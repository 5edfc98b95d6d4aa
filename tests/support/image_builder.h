#pragma once
// Builds small application images of real x86_64 code for tests, writes them
// appended to a copy of the runtime (KELP_BIN_DIR "/kelp") or as loose
// segment files, and runs them.
//
// The code follows the image's rules on this port: the entry at code offset 0
// is a plain C function with no arguments; calls to runtime exports are
// `call rel32` whose 4-byte holes are chained through a type 1 link record;
// string literals, data and code addresses are `movabs reg, imm64` whose
// 8-byte immediates type 5, 2 and 3 records fix up.  Arguments go in
// registers as for any C call (rdi, rsi, rdx, rcx, r8, r9; result in rax).
//
// A typical entry:
//
//     kelp::test::ImageBuilder b;
//     b.Prologue();                       // push rbp; mov rbp, rsp
//     b.LoadString(Reg::RDI, "hello");    // rdi = the literal's stringStorage*
//     b.CallImport("SomeRuntimeFunction");
//     b.CallSoftImport("puts", "libc.so.6"); // a C library function
//     b.Epilogue();                       // pop rbp; ret
//     auto image = b.Build();
//     auto result = kelp::test::RunAppended(image, {"arg"});
//     EXPECT_EQ(result.out, "...");
//
// Prologue() leaves the stack 16-byte aligned, as every call needs; code
// that pushes more must keep the count of pushes even between calls.
#include "image/image_format.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace kelp::test {

enum class Reg : uint8_t {
    RAX,
    RCX,
    RDX,
    RBX,
    RSP,
    RBP,
    RSI,
    RDI,
    R8,
    R9,
    R10,
    R11,
    R12,
    R13,
    R14,
    R15
};

class ImageBuilder {
public:
    // ------------------------------------------------------------ code
    size_t Here() const { return mCode.size(); }
    void Bytes(std::initializer_list<uint8_t> bytes);
    void Prologue(); // push rbp; mov rbp, rsp
    void Epilogue(); // pop rbp; ret
    void Ret();
    void Push(Reg r);
    void Pop(Reg r);
    void MovImm(Reg r, uint64_t value);                   // movabs r, value
    void MovReg(Reg to, Reg from);                        // mov to, from (64-bit)
    void LoadMem(Reg to, Reg base, int32_t displacement); // mov to, [base + disp] (64-bit)
    void LoadMem32(Reg to, Reg base,
                   int32_t displacement); // mov to32, [base + disp] (zero-extends)
    void StoreMem(Reg base, int32_t displacement, Reg from); // mov [base + disp], from (64-bit)
    void AddImm(Reg r, int32_t value);                       // add r, value
    void CallReg(Reg r);                                     // call r
    // Branches within the code: cmp r32, imm8, then a jmp / je / jne rel32
    // whose hole SetJumpTarget fills once the target is known.
    enum class When : uint8_t { Always, Equal, NotEqual };
    void CompareImm(Reg r, int8_t value);
    uint32_t Jump(When when); // returns the hole
    void SetJumpTarget(uint32_t hole, uint32_t codeOffset);

    // Calls an export by name through a type 1 chain of `call rel32` holes:
    // one link record per name, however many calls.
    void CallImport(const std::string &name);
    // Tail jump to an export (`jmp rel32`, same chain as calls).
    void JumpImport(const std::string &name);
    // Loads an export's address into a register through a type 1 record with
    // relative flag 0 (an 8-byte absolute hole).
    void LoadImportAddress(Reg r, const std::string &name);
    // Calls a function of a shared library through a type 4 chain.
    void CallSoftImport(const std::string &function, const std::string &library);

    // r = the stringStorage* of a string literal (type 5).  Equal texts share
    // one literal object.
    void LoadString(Reg r, const std::string &text);
    // r = data base + offset (type 2) / code base + offset (type 3).
    void LoadDataAddress(Reg r, uint32_t dataOffset);
    void LoadCodeAddress(Reg r, uint32_t codeOffset);
    // call to an offset in this image's code (rel32, needs no link record).
    void CallLocal(uint32_t codeOffset);

    // Writes a line to standard output with the C library's puts (a soft
    // import of libc.so.6): the text of the string whose stringStorage* is in
    // r (an empty line for null, the empty string), or a fixed text.
    // Clobbers the caller-saved registers, as any call does.
    void PutsString(Reg r);
    void PutsText(const std::string &text);

    // ------------------------------------------------------------ data
    // Appends bytes to the data segment (8-aligned); returns their offset.
    uint32_t AddData(const std::vector<uint8_t> &bytes);
    uint32_t AddCString(const std::string &text); // text and a NUL
    // A string literal object; returns its data offset.
    uint32_t AddStringLiteral(const std::string &text);

    // ------------------------------------------------------------ link records, raw
    // For tests of the binder itself: append any bytes to the link table.
    std::vector<uint8_t> &LinkTable() { return mLink; }
    std::vector<uint8_t> &Code() { return mCode; }
    std::vector<uint8_t> &Data() { return mData; }

    // ------------------------------------------------------------ resources and options
    void AddResource(const char *type4, uint16_t id, const std::vector<uint8_t> &data);
    void AddResource(const char *type4, uint16_t id, const std::string &text);
    // A window icon: width*height RGBA pixels.
    void AddIcon(uint8_t width, uint8_t height, const std::vector<uint8_t> &rgba);
    // The version block; words in the order Major, Minor, Bug, NonRelease,
    // Stage, Region, stored little-endian.
    void SetVersion(const int32_t words[6], const std::string &shortVersion,
                    const std::string &longVersion, const std::string &packageInfo);
    std::vector<uint8_t> &Options() { return mOptions; }
    std::vector<uint8_t> &Resources() { return mResources; }
    void AddSymbol(uint32_t codeOffset, const std::string &name);

    // Closes the chains into link records and returns the six segments.
    kelp::image::Segments Build();

private:
    void Rex(bool w, Reg reg, Reg rm);
    void ChainHole(std::map<std::string, uint32_t> &chains, const std::string &key);
    std::vector<uint8_t> mCode, mData, mLink, mResources, mOptions;
    std::map<std::string, uint32_t> mImportChains;   // name -> last hole
    std::map<std::string, uint32_t> mAbsoluteChains; // name -> last hole
    std::map<std::string, uint32_t> mSoftKeyed;      // function '\t' library -> hole
    std::map<std::string, uint32_t> mLiterals;
    std::vector<std::pair<uint32_t, std::string>> mSymbols;
    std::vector<std::pair<uint8_t, uint32_t>> mReferences; // type, code offset
};

struct RunResult {
    int status = -1; // exit status, or 128 + signal
    std::string out, err;
};

// Writes the runtime (KELP_BIN_DIR "/kelp") with the image appended to path.
bool WriteAppended(const kelp::image::Segments &image, const std::string &path);
// Writes the six loose segment files into dir (created when missing).
bool WriteLoose(const kelp::image::Segments &image, const std::string &dir);

// Runs program with args in cwd ("" for the current folder), without a
// display unless keepDisplay, and captures what it writes.
RunResult Run(const std::string &program, const std::vector<std::string> &args,
              const std::string &cwd = "", bool keepDisplay = false);

// A fresh folder under the system's temporary folder, removed with its
// contents when the object goes.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    const std::string &path() const { return mPath; }
    std::string operator/(const std::string &name) const { return mPath + "/" + name; }

private:
    std::string mPath;
};

// Appends the image to a copy of the runtime in a new temporary folder and
// runs it there.
RunResult RunAppended(const kelp::image::Segments &image,
                      const std::vector<std::string> &args = {});

std::vector<uint8_t> ReadFileBytes(const std::string &path);
bool WriteFileBytes(const std::string &path, const std::vector<uint8_t> &bytes);

// Short forms for the sequences image tests repeat.

// Moves the registers into the argument registers in order (rdi, rsi, rdx,
// rcx, r8, r9) and calls the import.  A source must not be an argument
// register already written by an earlier one: that would pass the wrong
// value, so it aborts the test program instead.
void CallWith(ImageBuilder &b, const std::string &import, std::initializer_list<Reg> args);
// rax = a new object of the class named className.
void NewObjectOf(ImageBuilder &b, const std::string &className);
// Hands the object in r to RuntimeUnlockObject.
void UnlockObject(ImageBuilder &b, Reg r);
// xmm0 = value, through rax.
void LoadDouble(ImageBuilder &b, double value);
// Prologue and the pushes of saved, then their pops and the epilogue; pass
// an even count to keep the stack aligned for calls.
void EnterSaving(ImageBuilder &b, std::initializer_list<Reg> saved);
void LeaveRestoring(ImageBuilder &b, std::initializer_list<Reg> saved);

} // namespace kelp::test
