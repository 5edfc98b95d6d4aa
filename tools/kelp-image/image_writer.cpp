// Writing the image: the start routine, thunks and tables behind the
// objects' code, the hole chains, the link table and the symbol table.
#include "link_state.h"

#include "base/bytes.h"

#include <elf.h>

#include <algorithm>
#include <cstring>

namespace kelp::tool {
namespace {

using image::kLinkCodeReference;
using image::kLinkDataReference;
using image::kLinkImport;
using image::kLinkSoftImport;
using image::kLinkStringReference;

// The start routine.  It is entered as the image's entry, so it keeps the
// stack as it found it for the real entry, which it reaches by a tail jump:
//
//        push rbx
//        lea  rbx, [start words]
//   1:   lea  rax, [end of start words]
//        cmp  rbx, rax
//        je   2f
//        mov  rax, [rbx]          ; the data word's address
//        mov  rdx, [rbx + 8]      ; its value
//        mov  [rax], rdx
//        add  rbx, 16
//        jmp  1b
//   2:   lea  rbx, [variables]
//   3:   lea  rax, [end of variables]
//        cmp  rbx, rax
//        je   5f
//        xor  edi, edi            ; RTLD_DEFAULT: the process's libraries
//        mov  rsi, [rbx + 8]      ; the variable's name
//        call dlsym
//        test rax, rax
//        je   4f                  ; not there: the copy stays 0
//        mov  rax, [rax]
//        mov  rdx, [rbx]          ; the image's copy
//        mov  [rdx], rax
//   4:   add  rbx, 16
//        jmp  3b
//   5:   lea  rbx, [constructors]
//   6:   lea  rax, [end of constructors]
//        cmp  rbx, rax
//        je   7f
//        call [rbx]
//        add  rbx, 8
//        jmp  6b
//   7:   pop  rbx
//        jmp  entry
const uint8_t kStartCode[] = {
    0x53,                            // 0   push rbx
    0x48, 0x8D, 0x1D, 0,    0, 0, 0, // 1   lea rbx, [rip + d]     (d at 4)
    0x48, 0x8D, 0x05, 0,    0, 0, 0, // 8   lea rax, [rip + d]     (d at 11)
    0x48, 0x39, 0xC3,                // 15  cmp rbx, rax
    0x74, 0x10,                      // 18  je 36
    0x48, 0x8B, 0x03,                // 20  mov rax, [rbx]
    0x48, 0x8B, 0x53, 0x08,          // 23  mov rdx, [rbx + 8]
    0x48, 0x89, 0x10,                // 27  mov [rax], rdx
    0x48, 0x83, 0xC3, 0x10,          // 30  add rbx, 16
    0xEB, 0xE4,                      // 34  jmp 8
    0x48, 0x8D, 0x1D, 0,    0, 0, 0, // 36  lea rbx, [rip + d]     (d at 39)
    0x48, 0x8D, 0x05, 0,    0, 0, 0, // 43  lea rax, [rip + d]     (d at 46)
    0x48, 0x39, 0xC3,                // 50  cmp rbx, rax
    0x74, 0x1F,                      // 53  je 86
    0x31, 0xFF,                      // 55  xor edi, edi
    0x48, 0x8B, 0x73, 0x08,          // 57  mov rsi, [rbx + 8]
    0xE8, 0,    0,    0,    0,       // 61  call dlsym             (hole at 62)
    0x48, 0x85, 0xC0,                // 66  test rax, rax
    0x74, 0x09,                      // 69  je 80
    0x48, 0x8B, 0x00,                // 71  mov rax, [rax]
    0x48, 0x8B, 0x13,                // 74  mov rdx, [rbx]
    0x48, 0x89, 0x02,                // 77  mov [rdx], rax
    0x48, 0x83, 0xC3, 0x10,          // 80  add rbx, 16
    0xEB, 0xD5,                      // 84  jmp 43
    0x48, 0x8D, 0x1D, 0,    0, 0, 0, // 86  lea rbx, [rip + d]     (d at 89)
    0x48, 0x8D, 0x05, 0,    0, 0, 0, // 93  lea rax, [rip + d]     (d at 96)
    0x48, 0x39, 0xC3,                // 100 cmp rbx, rax
    0x74, 0x08,                      // 103 je 113
    0xFF, 0x13,                      // 105 call [rbx]
    0x48, 0x83, 0xC3, 0x08,          // 107 add rbx, 8
    0xEB, 0xEC,                      // 111 jmp 93
    0x5B,                            // 113 pop rbx
    0xE9, 0,    0,    0,    0,       // 114 jmp entry              (d at 115)
};
constexpr size_t kLookUpHole = 62;
static_assert(sizeof kStartCode <= kStartSize);

// Writes the displacement at `at` of an instruction ending at `next` to target.
void Displace(std::vector<uint8_t> &code, size_t at, size_t next, uint64_t target) {
    WriteU32(code.data() + at, uint32_t(int32_t(int64_t(target) - int64_t(next))));
}

void AppendName(std::vector<uint8_t> &table, const std::string &name) {
    table.push_back(uint8_t(name.size()));
    table.insert(table.end(), name.begin(), name.end());
    table.push_back(0);
}

// Threads a chain through the holes, in code order: each holds the next
// one's offset, the last 0.  Returns the head.
uint32_t Chain(std::vector<uint8_t> &code, std::vector<uint64_t> &holes, size_t width) {
    std::sort(holes.begin(), holes.end());
    for (size_t k = 0; k < holes.size(); ++k) {
        std::memset(code.data() + holes[k], 0, width);
        WriteU32(code.data() + holes[k], k + 1 < holes.size() ? uint32_t(holes[k + 1]) : 0);
    }
    return holes.empty() ? 0 : uint32_t(holes[0]);
}

void Align(std::vector<uint8_t> &code, size_t to) {
    code.resize((code.size() + to - 1) / to * to, 0xCC);
}

} // namespace

bool Linker::Write(image::Segments &out, LinkStats &stats) {
    // Thunks for soft imports reached by address.
    auto needsThunk = [&](const CodeWord &w) {
        if (w.target.kind == Target::kSoft && !mThunks.count(w.target.name)) {
            Align(mCode, kThunkSize);
            mThunks[w.target.name] = mCode.size();
            mCode.push_back(0xE9);
            mSoftHoles[w.target.name].push_back(mCode.size());
            mCode.resize(mCode.size() + 4, 0);
            Align(mCode, kThunkSize);
        }
    };
    for (const auto &w : mCodeWords)
        needsThunk(w);
    for (const auto &w : mStartWords)
        needsThunk(w.second);

    // The start routine's tables.
    Align(mCode, 8);
    const size_t wordsAt = mCode.size();
    for (auto &[dataAt, value] : mStartWords) {
        mCode.resize(mCode.size() + 16, 0);
        mCodeWords.push_back(CodeWord{mCode.size() - 16, Target{Target::kData, dataAt, {}}, false});
        value.at = mCode.size() - 8;
        mCodeWords.push_back(value);
    }
    // The library variables: the copy's place and the name's, the names
    // themselves behind the table.
    const size_t variablesAt = mCode.size();
    mCode.resize(mCode.size() + 16 * mVariables.size(), 0);
    for (size_t k = 0; k < mVariables.size(); ++k) {
        const size_t row = variablesAt + 16 * k;
        mCodeWords.push_back(CodeWord{row, Target{Target::kData, mVariables[k].second, {}}, false});
        mCodeWords.push_back(CodeWord{row + 8, Target{Target::kCode, mCode.size(), {}}, false});
        mCode.insert(mCode.end(), mVariables[k].first.begin(), mVariables[k].first.end());
        mCode.push_back(0);
    }
    const size_t variablesEnd = variablesAt + 16 * mVariables.size();
    if (!mVariables.empty())
        mSoftHoles[kLookUp].push_back(kLookUpHole);
    Align(mCode, 8);
    const size_t constructorsAt = mCode.size();
    for (auto &c : mConstructors) {
        mCode.resize(mCode.size() + 8, 0);
        c.at = mCode.size() - 8;
        mCodeWords.push_back(c);
    }
    const size_t constructorsEnd = mCode.size();
    if (mCode.size() >= (size_t(1) << 30) || mData.size() > 0xFFFFFFFFu)
        return Fail("the image is too large: its code segment would be " +
                    std::to_string(mCode.size()) + " bytes and its data " +
                    std::to_string(mData.size()));

    std::memcpy(mCode.data(), kStartCode, sizeof kStartCode);
    Displace(mCode, 4, 8, wordsAt);
    Displace(mCode, 11, 15, variablesAt);
    Displace(mCode, 39, 43, variablesAt);
    Displace(mCode, 46, 50, variablesEnd);
    Displace(mCode, 89, 93, constructorsAt);
    Displace(mCode, 96, 100, constructorsEnd);
    Displace(mCode, 115, 119, mEntry);

    // Words the binder completes.
    std::vector<std::pair<uint64_t, uint8_t>> references; // code offset, record type
    for (const CodeWord &w : mCodeWords) {
        uint8_t *word = mCode.data() + w.at;
        switch (w.target.kind) {
        case Target::kNull:
        case Target::kAbsolute: WriteU64(word, w.target.offset); break;
        case Target::kCode:
            WriteU64(word, w.target.offset);
            references.emplace_back(w.at, kLinkCodeReference);
            break;
        case Target::kData:
            WriteU64(word, w.target.offset);
            references.emplace_back(w.at, w.constant ? kLinkStringReference : kLinkDataReference);
            break;
        case Target::kSoft:
            WriteU64(word, mThunks[w.target.name]);
            references.emplace_back(w.at, kLinkCodeReference);
            break;
        case Target::kImport: mAbsoluteHoles[w.target.name].push_back(w.at); break;
        }
    }
    std::sort(references.begin(), references.end());

    std::vector<uint8_t> link;
    for (auto *holes : {&mRelativeHoles, &mAbsoluteHoles}) {
        const bool relative = holes == &mRelativeHoles;
        for (auto &[name, offsets] : *holes) {
            link.push_back(kLinkImport);
            link.push_back(relative ? image::kImportRelative : image::kImportAbsolute);
            AppendU32(link, Chain(mCode, offsets, relative ? 4 : 8));
            AppendName(link, name);
            ++stats.imports;
        }
    }
    for (auto &[name, offsets] : mSoftHoles) {
        link.push_back(kLinkSoftImport);
        AppendU32(link, Chain(mCode, offsets, 4));
        AppendName(link, name);
        AppendName(link,
                   name == kLookUp && !SoftLibrary(name) ? kLookUpLibrary : *SoftLibrary(name));
        ++stats.softImports;
    }
    for (const auto &[at, type] : references) {
        link.push_back(type);
        AppendU32(link, uint32_t(at));
    }
    stats.references = references.size();
    stats.startWords = mStartWords.size();
    stats.constructors = mConstructors.size();
    stats.variables = mVariables.size();

    // The symbol table: the image's functions by code offset.
    std::vector<std::pair<uint64_t, std::string>> functions{{0, "(image start)"}};
    for (size_t o = 0; o < mObjects.size(); ++o)
        for (const ElfSymbol &s : mObjects[o].symbols)
            if (s.type == STT_FUNC && !s.name.empty() && s.section < SHN_LORESERVE &&
                s.section != SHN_UNDEF && mPlaced[o][s.section].segment == Where::kCode)
                functions.emplace_back(mPlaced[o][s.section].offset + s.value, s.name);
    std::sort(functions.begin(), functions.end());
    std::vector<uint8_t> symbols, names;
    AppendU32(symbols, uint32_t(functions.size()));
    for (const auto &[at, name] : functions) {
        AppendU32(symbols, uint32_t(at));
        AppendU32(symbols, uint32_t(names.size()));
        names.insert(names.end(), name.begin(), name.end());
        names.push_back(0);
    }
    symbols.insert(symbols.end(), names.begin(), names.end());

    out = image::Segments{};
    out.bytes[image::kCode] = std::move(mCode);
    out.bytes[image::kData] = std::move(mData);
    out.bytes[image::kLink] = std::move(link);
    out.bytes[image::kSymbols] = std::move(symbols);
    for (int s = image::kCode; s <= image::kSymbols; ++s)
        out.present[s] = true;
    return true;
}

} // namespace kelp::tool
