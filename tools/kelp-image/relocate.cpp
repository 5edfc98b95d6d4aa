// Relocation: every place an object leaves open becomes a value written now
// (addresses inside one segment, fixed numbers) or a word the runtime's
// binder fills in at load (addresses across segments, runtime exports,
// system library functions, string constants).
#include "link_state.h"

#include "base/bytes.h"
#include "kelp/records.h"

#include <elf.h>

namespace kelp::tool {
namespace {

enum RelocationFamily {
    kIgnored,
    kAbsolute64,
    kDisplacement32,
    kPositionIndependent,
    kThreadLocal,
    kAbsolute32,
    kUnknown
};

RelocationFamily FamilyOf(uint32_t type) {
    switch (type) {
    case R_X86_64_NONE: return kIgnored;
    case R_X86_64_64: return kAbsolute64;
    case R_X86_64_PC32:
    case R_X86_64_PLT32: return kDisplacement32;
    case R_X86_64_GOT32:
    case R_X86_64_GOTPCREL:
    case R_X86_64_GOTOFF64:
    case R_X86_64_GOTPC32:
    case R_X86_64_GOT64:
    case R_X86_64_GOTPCREL64:
    case R_X86_64_GOTPC64:
    case R_X86_64_GOTPLT64:
    case R_X86_64_PLTOFF64:
    case R_X86_64_GOTPCRELX:
    case R_X86_64_REX_GOTPCRELX: return kPositionIndependent;
    case R_X86_64_DTPMOD64:
    case R_X86_64_DTPOFF64:
    case R_X86_64_TPOFF64:
    case R_X86_64_TLSGD:
    case R_X86_64_TLSLD:
    case R_X86_64_DTPOFF32:
    case R_X86_64_GOTTPOFF:
    case R_X86_64_TPOFF32:
    case R_X86_64_GOTPC32_TLSDESC:
    case R_X86_64_TLSDESC_CALL:
    case R_X86_64_TLSDESC: return kThreadLocal;
    case R_X86_64_32:
    case R_X86_64_32S: return kAbsolute32;
    default: return kUnknown;
    }
}

// A displacement to a runtime function must be the operand of a call, a
// jump or a conditional jump: the binder may send it to a jump stub, which
// only a transfer of control can take.
bool IsBranchOperand(const ElfSection &s, uint64_t at) {
    if (at < 1 || !s.bytes)
        return false;
    const uint8_t op = s.bytes[at - 1];
    if (op == 0xE8 || op == 0xE9)
        return true;
    return at >= 2 && s.bytes[at - 2] == 0x0F && (op & 0xF0) == 0x80;
}

} // namespace

bool Linker::CheckConstant(uint64_t d) const {
    const uint64_t text = d + KELP_LITERAL_TEXT_OFFSET;
    if (d % KELP_LITERAL_ALIGN || text + 2 > mData.size())
        return false;
    const uint8_t *p = mData.data() + d;
    const int32_t length = int32_t(ReadU32(p + offsetof(stringStorage, length)));
    if (ReadU32(p + offsetof(stringStorage, referenceCount)) != 1 || length < 0 ||
        ReadU32(p + offsetof(stringStorage, capacity)) != uint32_t(length) + 2 ||
        ReadU32(p + offsetof(stringStorage, encoding)) != kEncodingUTF8)
        return false;
    if (uint64_t(length) + 2 > mData.size() - text)
        return false;
    return p[KELP_LITERAL_TEXT_OFFSET] == (length > 255 ? 255 : length) &&
           p[KELP_LITERAL_TEXT_OFFSET + 1 + size_t(length)] == 0;
}

bool Linker::ApplyOne(size_t o, uint32_t i, const ElfRelocation &r) {
    const ElfSection &sec = mObjects[o].sections[i];
    const Placed &place = mPlaced[o][i];
    const std::string &symbol = mObjects[o].symbols[r.symbol].name;
    const std::string kind = RelocationName(r.type);
    switch (FamilyOf(r.type)) {
    case kIgnored: return true;
    case kPositionIndependent:
        return Fail(o, i, symbol,
                    "is a position-independent reference (" + kind + "); compile with -fno-pic");
    case kThreadLocal:
        return Fail(o, i, symbol,
                    "is thread-local data (" + kind + "), which cannot be linked into an image");
    case kAbsolute32:
        return Fail(o, i, symbol,
                    "is a 32-bit absolute address (" + kind +
                        "), which an image loaded anywhere cannot hold; compile "
                        "with -mcmodel=large");
    case kUnknown:
        return Fail(o, i, symbol, "uses relocation " + kind + ", which an image cannot express");
    case kAbsolute64:
    case kDisplacement32: break;
    }
    const uint64_t width = FamilyOf(r.type) == kAbsolute64 ? 8 : 4;
    if (r.offset > sec.size || sec.size - r.offset < width)
        return Fail(o, i, symbol, kind + " runs past the end of the section");
    Target t;
    if (!Resolve(o, r.symbol, t, i))
        return false;
    const bool bound = t.kind == Target::kImport || t.kind == Target::kSoft;
    if (bound && r.addend != (width == 8 ? 0 : -4))
        return Fail(o, i, symbol, "refers to an address inside a runtime or library function");
    if (!bound) {
        const int64_t moved = int64_t(t.offset) + r.addend;
        if ((t.kind == Target::kCode || t.kind == Target::kData) && moved < 0)
            return Fail(o, i, symbol, "points before the start of its segment");
        t.offset = uint64_t(moved);
    }
    const uint64_t at = place.offset + r.offset;
    std::vector<uint8_t> &bytes = place.segment == Where::kCode ? mCode : mData;

    if (width == 4) {
        if (bound) {
            if (place.segment != Where::kCode || !IsBranchOperand(sec, r.offset))
                return Fail(o, i, symbol,
                            "reaches a runtime or library function by a displacement "
                            "that is no call or jump operand");
            (t.kind == Target::kImport ? mRelativeHoles : mSoftHoles)[t.name].push_back(at);
            return true;
        }
        const Where targetSegment = t.kind == Target::kCode   ? Where::kCode
                                    : t.kind == Target::kData ? Where::kData
                                                              : Where::kNowhere;
        if (targetSegment != place.segment)
            return Fail(o, i, symbol,
                        "is reached by a 32-bit displacement (" + kind +
                            ") across the code and data segments, which are "
                            "loaded apart; compile with -mcmodel=large");
        const int64_t displacement = int64_t(t.offset) - int64_t(at);
        if (displacement < INT32_MIN || displacement > INT32_MAX)
            return Fail(o, i, symbol, "lies out of reach of a 32-bit displacement");
        WriteU32(bytes.data() + at, uint32_t(int32_t(displacement)));
        return true;
    }

    // An 8-byte address.
    if (t.kind == Target::kNull || t.kind == Target::kAbsolute) {
        WriteU64(bytes.data() + at, t.offset);
        return true;
    }
    if (place.constants) {
        // The only address a string constant holds is its buffer, pointing
        // at its own text; the binder sets it, so the image carries 0.
        if (t.kind == Target::kData && r.offset >= 8 && r.offset % KELP_LITERAL_ALIGN == 0 &&
            t.offset == at + (KELP_LITERAL_TEXT_OFFSET - 8)) {
            WriteU64(bytes.data() + at, 0);
            return true;
        }
        return Fail(o, i, symbol, "a string constant may hold no address but its own text's");
    }
    CodeWord word{at, t, false};
    if (t.kind == Target::kData) {
        for (const auto &[start, end] : mConstantRanges) {
            if (t.offset < start || t.offset >= end)
                continue;
            if (!CheckConstant(t.offset))
                return Fail(o, i, symbol,
                            "points into the string constants but not at one laid "
                            "out as a constant");
            word.constant = true;
        }
    }
    // A word in writable data is set by the start routine, from a word in
    // the code segment that the binder fills in.
    if (place.segment == Where::kData)
        mStartWords.emplace_back(at, word);
    else
        mCodeWords.push_back(word);
    return true;
}

bool Linker::Relocate() {
    for (size_t o = 0; o < mObjects.size(); ++o)
        for (uint32_t i = 1; i < mObjects[o].sections.size(); ++i)
            if (mPlaced[o][i].constants) {
                const uint64_t start = mPlaced[o][i].offset;
                mConstantRanges.emplace_back(start, start + mObjects[o].sections[i].size);
            }
    for (size_t o = 0; o < mObjects.size(); ++o) {
        for (uint32_t i = 1; i < mObjects[o].sections.size(); ++i) {
            if (mPlaced[o][i].segment == Where::kNowhere)
                continue; // debug information and the like: nothing of it is kept
            for (const ElfRelocation &r : mObjects[o].relocations[i])
                if (!ApplyOne(o, i, r))
                    return false;
        }
    }
    // Static constructors: each slot's address goes into the table the start
    // routine walks.
    for (const auto &[o, i] : mConstructorSections) {
        const ElfSection &sec = mObjects[o].sections[i];
        for (const ElfRelocation &r : mObjects[o].relocations[i]) {
            const std::string &symbol = mObjects[o].symbols[r.symbol].name;
            if (r.type != R_X86_64_64 || r.offset % 8 || r.offset + 8 > sec.size)
                return Fail(o, i, symbol, "is a constructor slot the linker cannot read");
            Target t;
            if (!Resolve(o, r.symbol, t, i))
                return false;
            if (t.kind == Target::kNull)
                continue;
            if (t.kind != Target::kCode || r.addend < 0)
                return Fail(o, i, symbol, "is a constructor outside the image's code");
            t.offset += uint64_t(r.addend);
            mConstructors.push_back(CodeWord{0, t, false});
        }
    }
    return true;
}

} // namespace kelp::tool
