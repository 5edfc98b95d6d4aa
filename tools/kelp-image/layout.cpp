// Layout: which section of which object goes where.  Code and everything
// read-only lands in the code segment, which the runtime makes read-and-
// execute after binding; writable data, string constants and zeroed data
// land in the data segment.
#include "link_state.h"

#include <elf.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <set>
#include <tuple>

namespace kelp::tool {
namespace {

bool StartsWith(const std::string &s, const char *prefix) {
    return s.compare(0, std::strlen(prefix), prefix) == 0;
}

// Sort key of a constructor section: .preinit_array first, then
// .init_array.N by ascending priority N, then plain .init_array.
std::pair<int, unsigned long> ConstructorRank(const ElfSection &s) {
    if (s.type == SHT_PREINIT_ARRAY)
        return {0, 0};
    const auto dot = s.name.find('.', 1);
    if (dot != std::string::npos)
        return {1, std::strtoul(s.name.c_str() + dot + 1, nullptr, 10)};
    return {2, 0};
}

} // namespace

bool Linker::PlaceSection(size_t object, uint32_t index, Where segment,
                          std::vector<uint8_t> &bytes) {
    const ElfSection &s = mObjects[object].sections[index];
    if (s.size > (uint64_t(1) << 30))
        return Fail(object, index, "", "is larger than an image segment can hold");
    const uint64_t at = (bytes.size() + s.align - 1) & ~(s.align - 1);
    bytes.resize(at, segment == Where::kCode ? 0xCC : 0);
    if (s.bytes)
        bytes.insert(bytes.end(), s.bytes, s.bytes + s.size);
    else
        bytes.resize(at + s.size, 0);
    Placed &p = mPlaced[object][index];
    p.segment = segment;
    p.offset = at;
    return true;
}

bool Linker::Layout() {
    mPlaced.resize(mObjects.size());
    std::set<std::string> groupsKept;
    for (size_t o = 0; o < mObjects.size(); ++o) {
        mPlaced[o].resize(mObjects[o].sections.size());
        for (const ElfGroup &g : mObjects[o].groups) {
            if (!g.comdat || groupsKept.insert(g.signature).second)
                continue;
            for (uint32_t member : g.members)
                mPlaced[o][member].discarded = true;
        }
    }

    enum Kind { kText, kReadOnly, kWritable, kConstants, kZeroed, kKinds };
    std::vector<std::pair<size_t, uint32_t>> lists[kKinds];
    for (size_t o = 0; o < mObjects.size(); ++o) {
        const auto &sections = mObjects[o].sections;
        for (uint32_t i = 1; i < sections.size(); ++i) {
            const ElfSection &s = sections[i];
            if (!(s.flags & SHF_ALLOC) || mPlaced[o][i].discarded)
                continue;
            // Unwind tables serve exceptions, which never cross into or out of
            // an image's code, and nothing here reads them.
            if (s.type == SHT_X86_64_UNWIND || s.name == ".eh_frame" || s.type == SHT_NOTE)
                continue;
            if (s.flags & SHF_TLS)
                return Fail(o, i, "", "thread-local data cannot be linked into an image");
            if (s.type == SHT_FINI_ARRAY || StartsWith(s.name, ".fini_array") ||
                StartsWith(s.name, ".dtors"))
                return Fail(o, i, "", "static destructors cannot be linked into an image");
            if (StartsWith(s.name, ".ctors"))
                return Fail(o, i, "",
                            "old-style .ctors constructors cannot be linked; the "
                            "compiler's .init_array can");
            if (s.type == SHT_INIT_ARRAY || s.type == SHT_PREINIT_ARRAY) {
                mConstructorSections.emplace_back(o, i);
                continue;
            }
            if (s.type != SHT_PROGBITS && s.type != SHT_NOBITS)
                return Fail(o, i, "",
                            "has a section type (" + std::to_string(s.type) +
                                ") the linker does not know");
            Kind kind;
            if (s.flags & SHF_EXECINSTR)
                kind = kText;
            else if (!(s.flags & SHF_WRITE) || StartsWith(s.name, ".data.rel.ro"))
                kind = kReadOnly; // tables of addresses are written only by the binder
            else if (s.name == kConstantsSection)
                kind = kConstants;
            else if (s.type == SHT_NOBITS)
                kind = kZeroed;
            else
                kind = kWritable;
            lists[kind].emplace_back(o, i);
        }
    }
    std::stable_sort(mConstructorSections.begin(), mConstructorSections.end(),
                     [&](const auto &a, const auto &b) {
                         return ConstructorRank(mObjects[a.first].sections[a.second]) <
                                ConstructorRank(mObjects[b.first].sections[b.second]);
                     });

    mCode.assign(kStartSize, 0xCC);
    for (int kind = kText; kind < kKinds; ++kind) {
        const bool code = kind == kText || kind == kReadOnly;
        for (const auto &[o, i] : lists[kind]) {
            if (!PlaceSection(o, i, code ? Where::kCode : Where::kData, code ? mCode : mData))
                return false;
            mPlaced[o][i].constants = kind == kConstants;
        }
    }
    return true;
}

} // namespace kelp::tool
