// Symbol resolution: one definition per global name across the objects; an
// undefined name is the image's own, a runtime export, a named soft import,
// or an error.
#include "link_state.h"

#include <elf.h>

namespace kelp::tool {

bool Linker::ResolveSymbols() {
    std::unordered_map<std::string, uint64_t> commonSizes;
    for (size_t o = 0; o < mObjects.size(); ++o) {
        const auto &symbols = mObjects[o].symbols;
        for (uint32_t k = 1; k < symbols.size(); ++k) {
            const ElfSymbol &s = symbols[k];
            if (s.type == STT_TLS)
                return Fail(o, 0, s.name, "thread-local data cannot be linked into an image");
            if (s.bind == STB_LOCAL || s.section == SHN_UNDEF)
                continue;
            if (s.section == SHN_COMMON) {
                // Tentative definitions: one zeroed place per name, as large
                // and as aligned as the largest asks.
                if (!mGlobals.count(s.name)) {
                    const uint64_t align = s.value ? s.value : 1;
                    if ((align & (align - 1)) || align > 4096 || s.size > (uint64_t(1) << 30))
                        return Fail(o, 0, s.name,
                                    "is a common symbol of impossible size or alignment");
                    auto size = commonSizes.find(s.name);
                    if (size == commonSizes.end() || s.size > size->second) {
                        commonSizes[s.name] = s.size;
                        const uint64_t at = (mData.size() + align - 1) & ~(align - 1);
                        mData.resize(at + s.size, 0);
                        mCommons[s.name] = at;
                    }
                }
                continue;
            }
            if (s.section < SHN_LORESERVE && mPlaced[o][s.section].discarded)
                continue; // the kept COMDAT copy defines it
            const bool weak = s.bind == STB_WEAK;
            auto it = mGlobals.find(s.name);
            if (it == mGlobals.end()) {
                mGlobals.emplace(s.name, GlobalDefinition{o, k, weak});
                mCommons.erase(s.name);
            } else if (!weak) {
                if (!it->second.weak)
                    return Fail(o, s.section < SHN_LORESERVE ? s.section : 0, s.name,
                                "is defined twice (first in " + mObjects[it->second.object].path +
                                    ")");
                it->second = GlobalDefinition{o, k, false};
            }
        }
    }
    // C++ registers the destructors of static objects with the C library's
    // __cxa_atexit under the address of __dso_handle, which names the module
    // they belong to.  The image is its own module: the linker gives it one
    // word of its data.
    static const std::string kModuleHandle = "__dso_handle";
    if (!mGlobals.count(kModuleHandle) && !mCommons.count(kModuleHandle))
        for (const ElfObject &object : mObjects)
            for (const ElfSymbol &s : object.symbols)
                if (s.section == SHN_UNDEF && s.name == kModuleHandle &&
                    !mCommons.count(kModuleHandle)) {
                    const uint64_t at = (mData.size() + 7) & ~uint64_t(7);
                    mData.resize(at + 8, 0);
                    mCommons[kModuleHandle] = at;
                }
    // A library variable the code names gets a word of the image's data,
    // which the start routine fills with the variable's value.
    for (const SoftFunction &v : mInput.softData) {
        if (mGlobals.count(v.function) || mCommons.count(v.function))
            continue;
        const uint64_t at = (mData.size() + 7) & ~uint64_t(7);
        mData.resize(at + 8, 0);
        mCommons[v.function] = at;
        mVariables.emplace_back(v.function, at);
    }
    auto entry = mGlobals.find(mInput.entry);
    Target t;
    if (entry == mGlobals.end() ||
        !TargetOfDefinition(entry->second.object, entry->second.symbol, t, 0) ||
        t.kind != Target::kCode)
        return Fail("no object defines the entry function '" + mInput.entry + "'" +
                    (mError.empty() ? "" : " (" + mError + ")"));
    mEntry = t.offset;
    return true;
}

// The place of a symbol an object defines.
bool Linker::TargetOfDefinition(size_t object, uint32_t symbol, Target &target,
                                uint32_t fromSection) {
    const ElfSymbol &s = mObjects[object].symbols[symbol];
    if (s.section == SHN_ABS) {
        target = Target{Target::kAbsolute, s.value, {}};
        return true;
    }
    if (s.section == SHN_COMMON) {
        auto it = mCommons.find(s.name);
        if (it == mCommons.end())
            return Fail(object, fromSection, s.name, "is a common symbol that was not placed");
        target = Target{Target::kData, it->second, {}};
        return true;
    }
    if (s.section >= SHN_LORESERVE)
        return Fail(object, fromSection, s.name, "lies in a special section the image cannot hold");
    const Placed &p = mPlaced[object][s.section];
    if (p.segment == Where::kNowhere)
        return Fail(object, fromSection, s.name,
                    "lies in section " + mObjects[object].sections[s.section].name +
                        ", which is not part of the image");
    if (s.value > mObjects[object].sections[s.section].size)
        return Fail(object, fromSection, s.name, "lies outside its section");
    target =
        Target{p.segment == Where::kCode ? Target::kCode : Target::kData, p.offset + s.value, {}};
    return true;
}

bool Linker::Resolve(size_t object, uint32_t symbol, Target &target, uint32_t fromSection) {
    const ElfSymbol &s = mObjects[object].symbols[symbol];
    if (s.bind == STB_LOCAL) {
        if (s.section == SHN_UNDEF) {
            target = Target{};
            return true;
        }
        if (s.section < SHN_LORESERVE && mPlaced[object][s.section].discarded)
            return Fail(object, fromSection, s.name,
                        "lies in a discarded duplicate of a shared section");
        return TargetOfDefinition(object, symbol, target, fromSection);
    }
    auto it = mGlobals.find(s.name);
    if (it != mGlobals.end())
        return TargetOfDefinition(it->second.object, it->second.symbol, target, fromSection);
    auto common = mCommons.find(s.name);
    if (common != mCommons.end()) {
        target = Target{Target::kData, common->second, {}};
        return true;
    }
    if (IsExport(s.name)) {
        if (s.name.size() > 255)
            return Fail(object, fromSection, s.name, "is a name longer than 255 bytes");
        target = Target{Target::kImport, 0, s.name};
        return true;
    }
    if (const std::string *library = SoftLibrary(s.name)) {
        if (s.name.size() > 255 || library->size() > 255)
            return Fail(object, fromSection, s.name, "is a name longer than 255 bytes");
        target = Target{Target::kSoft, 0, s.name};
        return true;
    }
    if (s.bind == STB_WEAK) {
        target = Target{};
        return true;
    }
    return Fail(object, fromSection, s.name,
                "is undefined: no object defines it, the runtime does not export it, and no "
                "--soft names its library");
}

} // namespace kelp::tool
