#include "support/image_builder.h"

#include "kelp/records.h"
#include "shutdown/shutdown_task.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace kelp::test {

using kelp::AppendU32;
using kelp::WriteU32;

namespace {
uint8_t Low(Reg r) { return uint8_t(uint8_t(r) & 7); }
bool Ext(Reg r) { return uint8_t(r) >= 8; }
void AppendU64(std::vector<uint8_t> &out, uint64_t v) {
    for (int i = 0; i < 8; ++i)
        out.push_back(uint8_t(v >> (8 * i)));
}
void AppendName(std::vector<uint8_t> &out, const std::string &name) {
    out.push_back(uint8_t(name.size()));
    out.insert(out.end(), name.begin(), name.end());
    out.push_back(0);
}
} // namespace

void ImageBuilder::Bytes(std::initializer_list<uint8_t> bytes) {
    mCode.insert(mCode.end(), bytes.begin(), bytes.end());
}

void ImageBuilder::Rex(bool w, Reg reg, Reg rm) {
    const uint8_t rex = uint8_t(0x40 | (w ? 8 : 0) | (Ext(reg) ? 4 : 0) | (Ext(rm) ? 1 : 0));
    if (rex != 0x40)
        mCode.push_back(rex);
}

void ImageBuilder::Prologue() {
    Push(Reg::RBP);
    MovReg(Reg::RBP, Reg::RSP);
}

void ImageBuilder::Epilogue() {
    Pop(Reg::RBP);
    Ret();
}

void ImageBuilder::Ret() { mCode.push_back(0xC3); }

void ImageBuilder::Push(Reg r) {
    if (Ext(r))
        mCode.push_back(0x41);
    mCode.push_back(uint8_t(0x50 + Low(r)));
}

void ImageBuilder::Pop(Reg r) {
    if (Ext(r))
        mCode.push_back(0x41);
    mCode.push_back(uint8_t(0x58 + Low(r)));
}

void ImageBuilder::MovImm(Reg r, uint64_t value) {
    Rex(true, Reg::RAX, r);
    mCode.push_back(uint8_t(0xB8 + Low(r)));
    AppendU64(mCode, value);
}

void ImageBuilder::MovReg(Reg to, Reg from) {
    Rex(true, from, to);
    mCode.push_back(0x89);
    mCode.push_back(uint8_t(0xC0 | Low(from) << 3 | Low(to)));
}

namespace {
void MemOperand(std::vector<uint8_t> &code, Reg reg, Reg base, int32_t displacement) {
    code.push_back(uint8_t(0x80 | Low(reg) << 3 | Low(base)));
    if (Low(base) == 4)
        code.push_back(0x24); // rsp and r12 as a base need an index byte
    AppendU32(code, uint32_t(displacement));
}
} // namespace

void ImageBuilder::LoadMem(Reg to, Reg base, int32_t displacement) {
    Rex(true, to, base);
    mCode.push_back(0x8B);
    MemOperand(mCode, to, base, displacement);
}

void ImageBuilder::LoadMem32(Reg to, Reg base, int32_t displacement) {
    Rex(false, to, base);
    mCode.push_back(0x8B);
    MemOperand(mCode, to, base, displacement);
}

void ImageBuilder::StoreMem(Reg base, int32_t displacement, Reg from) {
    Rex(true, from, base);
    mCode.push_back(0x89);
    MemOperand(mCode, from, base, displacement);
}

void ImageBuilder::AddImm(Reg r, int32_t value) {
    Rex(true, Reg::RAX, r);
    mCode.push_back(0x81);
    mCode.push_back(uint8_t(0xC0 | Low(r)));
    AppendU32(mCode, uint32_t(value));
}

void ImageBuilder::CallReg(Reg r) {
    if (Ext(r))
        mCode.push_back(0x41);
    mCode.push_back(0xFF);
    mCode.push_back(uint8_t(0xD0 | Low(r)));
}

void ImageBuilder::CompareImm(Reg r, int8_t value) {
    if (Ext(r))
        mCode.push_back(0x41);
    mCode.push_back(0x83);
    mCode.push_back(uint8_t(0xF8 | Low(r)));
    mCode.push_back(uint8_t(value));
}

uint32_t ImageBuilder::Jump(When when) {
    if (when == When::Always) {
        mCode.push_back(0xE9);
    } else {
        mCode.push_back(0x0F);
        mCode.push_back(when == When::Equal ? 0x84 : 0x85);
    }
    const uint32_t hole = uint32_t(mCode.size());
    AppendU32(mCode, 0);
    return hole;
}

void ImageBuilder::SetJumpTarget(uint32_t hole, uint32_t codeOffset) {
    const uint32_t rel = uint32_t(int32_t(codeOffset) - int32_t(hole + 4));
    for (int i = 0; i < 4; ++i)
        mCode[hole + i] = uint8_t(rel >> (8 * i));
}

// Threads a new hole at the end of the code onto the chain named key: the
// new hole ends the chain (link 0) and the previous last hole links to it.
// heads keeps "head" and "last" per key as key and key + '\n'.
void ImageBuilder::ChainHole(std::map<std::string, uint32_t> &chains, const std::string &key) {
    const uint32_t hole = uint32_t(mCode.size());
    auto last = chains.find(key + '\n');
    if (last == chains.end()) {
        chains[key] = hole;
    } else {
        WriteU32(mCode.data() + last->second, hole);
    }
    chains[key + '\n'] = hole;
}

void ImageBuilder::CallImport(const std::string &name) {
    mCode.push_back(0xE8);
    ChainHole(mImportChains, name);
    AppendU32(mCode, 0);
}

void ImageBuilder::JumpImport(const std::string &name) {
    mCode.push_back(0xE9);
    ChainHole(mImportChains, name);
    AppendU32(mCode, 0);
}

void ImageBuilder::LoadImportAddress(Reg r, const std::string &name) {
    Rex(true, Reg::RAX, r);
    mCode.push_back(uint8_t(0xB8 + Low(r)));
    ChainHole(mAbsoluteChains, name);
    AppendU64(mCode, 0);
}

void ImageBuilder::CallSoftImport(const std::string &function, const std::string &library) {
    mCode.push_back(0xE8);
    // Soft chains are keyed by function and library together.
    const std::string key = function + '\t' + library;
    ChainHole(mSoftKeyed, key);
    AppendU32(mCode, 0);
}

void ImageBuilder::LoadString(Reg r, const std::string &text) {
    auto it = mLiterals.find(text);
    const uint32_t offset = it != mLiterals.end() ? it->second : AddStringLiteral(text);
    mLiterals[text] = offset;
    MovImm(r, offset);
    mReferences.push_back({image::kLinkStringReference, uint32_t(mCode.size() - 8)});
}

void ImageBuilder::LoadDataAddress(Reg r, uint32_t dataOffset) {
    MovImm(r, dataOffset);
    mReferences.push_back({image::kLinkDataReference, uint32_t(mCode.size() - 8)});
}

void ImageBuilder::LoadCodeAddress(Reg r, uint32_t codeOffset) {
    MovImm(r, codeOffset);
    mReferences.push_back({image::kLinkCodeReference, uint32_t(mCode.size() - 8)});
}

void ImageBuilder::CallLocal(uint32_t codeOffset) {
    mCode.push_back(0xE8);
    AppendU32(mCode, uint32_t(int32_t(codeOffset) - int32_t(mCode.size() + 4)));
}

void ImageBuilder::PutsString(Reg r) {
    if (r != Reg::RDI)
        MovReg(Reg::RDI, r);
    Bytes({0x48, 0x85, 0xFF});                 // test rdi, rdi
    Bytes({0x74, 0x10});                       // jz +16: to the empty line
    LoadMem(Reg::RDI, Reg::RDI, 8);            // 7 bytes: the buffer
    AddImm(Reg::RDI, 1);                       // 7 bytes: past the length byte
    Bytes({0xEB, 0x0A});                       // jmp +10: over the empty line
    LoadDataAddress(Reg::RDI, AddCString("")); // 10 bytes
    CallSoftImport("puts", "libc.so.6");
}

void ImageBuilder::PutsText(const std::string &text) {
    LoadDataAddress(Reg::RDI, AddCString(text));
    CallSoftImport("puts", "libc.so.6");
}

uint32_t ImageBuilder::AddData(const std::vector<uint8_t> &bytes) {
    while (mData.size() % KELP_LITERAL_ALIGN)
        mData.push_back(0);
    const uint32_t offset = uint32_t(mData.size());
    mData.insert(mData.end(), bytes.begin(), bytes.end());
    return offset;
}

uint32_t ImageBuilder::AddCString(const std::string &text) {
    std::vector<uint8_t> bytes(text.begin(), text.end());
    bytes.push_back(0);
    return AddData(bytes);
}

uint32_t ImageBuilder::AddStringLiteral(const std::string &text) {
    std::vector<uint8_t> bytes(KELP_LITERAL_TEXT_OFFSET, 0);
    stringStorage header{};
    header.referenceCount = 1;
    header.buffer = nullptr;
    header.capacity = uint32_t(text.size() + 2);
    header.length = int32_t(text.size());
    header.encoding = kEncodingUTF8;
    std::memcpy(bytes.data(), &header, sizeof header);
    bytes.push_back(uint8_t(text.size() >= 255 ? 255 : text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back(0);
    return AddData(bytes);
}

void ImageBuilder::AddResource(const char *type4, uint16_t id, const std::vector<uint8_t> &data) {
    AppendU32(mResources, kelp::image::FourCC(type4));
    mResources.push_back(uint8_t(id));
    mResources.push_back(uint8_t(id >> 8));
    AppendU32(mResources, 0);
    AppendU32(mResources, uint32_t(data.size()));
    mResources.insert(mResources.end(), data.begin(), data.end());
}

void ImageBuilder::AddResource(const char *type4, uint16_t id, const std::string &text) {
    AddResource(type4, id, std::vector<uint8_t>(text.begin(), text.end()));
}

void ImageBuilder::AddIcon(uint8_t width, uint8_t height, const std::vector<uint8_t> &rgba) {
    mOptions.push_back(image::kOptionWindowIcon);
    mOptions.push_back(width);
    mOptions.push_back(height);
    mOptions.insert(mOptions.end(), rgba.begin(), rgba.end());
}

void ImageBuilder::SetVersion(const int32_t words[6], const std::string &shortVersion,
                              const std::string &longVersion, const std::string &packageInfo) {
    mOptions.push_back(image::kOptionVersion);
    for (int i = 0; i < 6; ++i)
        AppendU32(mOptions, uint32_t(words[i]));
    for (const std::string *s : {&shortVersion, &longVersion, &packageInfo}) {
        mOptions.push_back(uint8_t(s->size()));
        mOptions.insert(mOptions.end(), s->begin(), s->end());
    }
}

void ImageBuilder::AddSymbol(uint32_t codeOffset, const std::string &name) {
    mSymbols.push_back({codeOffset, name});
}

kelp::image::Segments ImageBuilder::Build() {
    using namespace kelp::image;
    Segments s;
    std::vector<uint8_t> link = mLink;
    for (const auto &[key, head] : mImportChains) {
        if (key.back() == '\n')
            continue;
        link.push_back(kLinkImport);
        link.push_back(kImportRelative);
        AppendU32(link, head);
        AppendName(link, key);
    }
    for (const auto &[key, head] : mAbsoluteChains) {
        if (key.back() == '\n')
            continue;
        link.push_back(kLinkImport);
        link.push_back(kImportAbsolute);
        AppendU32(link, head);
        AppendName(link, key);
    }
    for (const auto &[key, head] : mSoftKeyed) {
        if (key.back() == '\n')
            continue;
        const auto tab = key.find('\t');
        link.push_back(kLinkSoftImport);
        AppendU32(link, head);
        AppendName(link, key.substr(0, tab));
        AppendName(link, key.substr(tab + 1));
    }
    for (const auto &[type, offset] : mReferences) {
        link.push_back(type);
        AppendU32(link, offset);
    }
    std::vector<uint8_t> symbols;
    if (!mSymbols.empty()) {
        AppendU32(symbols, uint32_t(mSymbols.size()));
        std::vector<uint8_t> names;
        for (const auto &[offset, name] : mSymbols) {
            AppendU32(symbols, offset);
            AppendU32(symbols, uint32_t(names.size()));
            names.insert(names.end(), name.begin(), name.end());
            names.push_back(0);
        }
        symbols.insert(symbols.end(), names.begin(), names.end());
    }
    s.bytes[kCode] = mCode;
    s.bytes[kData] = mData;
    s.bytes[kLink] = link;
    s.bytes[kSymbols] = symbols;
    s.bytes[kResources] = mResources;
    s.bytes[kOptions] = mOptions;
    for (int i = 0; i < kSegmentCount; ++i)
        s.present[i] = i < kSymbols || !s.bytes[i].empty();
    return s;
}

// ------------------------------------------------------------ files and runs

std::vector<uint8_t> ReadFileBytes(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {});
}

bool WriteFileBytes(const std::string &path, const std::vector<uint8_t> &bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
    return bool(out);
}

bool WriteAppended(const kelp::image::Segments &image, const std::string &path) {
    std::vector<uint8_t> bytes = ReadFileBytes(KELP_BIN_DIR "/kelp");
    if (bytes.empty())
        return false;
    const auto tail = kelp::image::EncodeAppendedImage(image);
    bytes.insert(bytes.end(), tail.begin(), tail.end());
    if (!WriteFileBytes(path, bytes))
        return false;
    return chmod(path.c_str(), 0755) == 0;
}

bool WriteLoose(const kelp::image::Segments &image, const std::string &dir) {
    mkdir(dir.c_str(), 0755);
    for (int i = 0; i < kelp::image::kSegmentCount; ++i)
        if (!WriteFileBytes(dir + "/" + kelp::image::kLooseFileNames[i], image.bytes[i]))
            return false;
    return true;
}

RunResult Run(const std::string &program, const std::vector<std::string> &args,
              const std::string &cwd, bool keepDisplay) {
    RunResult result;
    int out[2], err[2];
    if (pipe(out) != 0)
        return result;
    if (pipe(err) != 0) {
        close(out[0]);
        close(out[1]);
        return result;
    }
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(out[1], 1);
        dup2(err[1], 2);
        close(out[0]);
        close(err[0]);
        close(out[1]);
        close(err[1]);
        if (!cwd.empty() && chdir(cwd.c_str()) != 0)
            _exit(126);
        if (!keepDisplay)
            unsetenv("DISPLAY");
        std::vector<char *> argv;
        argv.push_back(const_cast<char *>(program.c_str()));
        for (const auto &a : args)
            argv.push_back(const_cast<char *>(a.c_str()));
        argv.push_back(nullptr);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string *into[2] = {&result.out, &result.err};
    int open = 2;
    while (open > 0 && poll(fds, 2, -1) > 0) {
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            char buffer[4096];
            const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                into[i]->append(buffer, size_t(n));
            } else {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    int status = 0;
    waitpid(pid, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

TempDir::TempDir() {
    const char *base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/kelp-test-XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back(0);
    if (mkdtemp(buffer.data()))
        mPath = buffer.data();
}

TempDir::~TempDir() {
    if (!mPath.empty())
        kelp::RemoveTree(mPath);
}

RunResult RunAppended(const kelp::image::Segments &image, const std::vector<std::string> &args) {
    TempDir dir;
    const std::string program = dir / "app";
    if (!WriteAppended(image, program))
        return RunResult{};
    return Run(program, args, dir.path());
}

void CallWith(ImageBuilder &b, const std::string &import, std::initializer_list<Reg> args) {
    static constexpr Reg kArgs[] = {Reg::RDI, Reg::RSI, Reg::RDX, Reg::RCX, Reg::R8, Reg::R9};
    if (args.size() > std::size(kArgs))
        std::abort();
    size_t i = 0;
    for (Reg from : args) {
        for (size_t k = 0; k < i; ++k)
            if (from == kArgs[k])
                std::abort();
        if (from != kArgs[i])
            b.MovReg(kArgs[i], from);
        ++i;
    }
    b.CallImport(import);
}

void NewObjectOf(ImageBuilder &b, const std::string &className) {
    b.LoadString(Reg::RDI, className);
    b.CallImport("RuntimeLookupClass");
    CallWith(b, "RuntimeNewObject", {Reg::RAX});
}

void UnlockObject(ImageBuilder &b, Reg r) { CallWith(b, "RuntimeUnlockObject", {r}); }

void LoadDouble(ImageBuilder &b, double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    b.MovImm(Reg::RAX, bits);
    b.Bytes({0x66, 0x48, 0x0F, 0x6E, 0xC0}); // movq xmm0, rax
}

void EnterSaving(ImageBuilder &b, std::initializer_list<Reg> saved) {
    b.Prologue();
    for (Reg r : saved)
        b.Push(r);
}

void LeaveRestoring(ImageBuilder &b, std::initializer_list<Reg> saved) {
    for (auto r = std::rbegin(saved); r != std::rend(saved); ++r)
        b.Pop(*r);
    b.Epilogue();
}

} // namespace kelp::test
