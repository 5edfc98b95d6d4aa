#pragma once
// The linker's working state, shared by its steps: layout (layout.cpp),
// symbol resolution (symbols.cpp), relocation (relocate.cpp) and writing the
// image (image_writer.cpp).  Each step reports its first fault through Fail
// and the link stops there.
#include "elf_reader.h"
#include "linker.h"

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelp::tool {

enum class Where : uint8_t { kNowhere, kCode, kData };

// Where a section of an object went.
struct Placed {
    Where segment = Where::kNowhere;
    uint64_t offset = 0;
    bool discarded = false; // a COMDAT copy another object already gave
    bool constants = false; // holds string constants
};

// What an address in a relocation resolves to.
struct Target {
    enum Kind : uint8_t {
        kNull,     // an undefined weak symbol: the address 0
        kAbsolute, // a fixed number (SHN_ABS)
        kCode,     // offset in the code segment
        kData,     // offset in the data segment
        kImport,   // a runtime export, by name
        kSoft,     // a system library's function, by name
    } kind = kNull;
    uint64_t offset = 0; // kCode, kData; the value for kAbsolute
    std::string name;    // kImport, kSoft
};

// An 8-byte word in the code segment and what the binder must make of it.
struct CodeWord {
    uint64_t at = 0;       // code offset of the word
    Target target;         // offset already includes the addend
    bool constant = false; // kData that is a string constant
};

struct GlobalDefinition {
    size_t object = 0;
    uint32_t symbol = 0;
    bool weak = false;
};

// The start: at code offset 0 the linker puts a routine that sets the
// writable data words that hold addresses, copies in the library variables,
// runs the static constructors and then jumps to the entry.  Its length is
// fixed.
inline constexpr size_t kStartSize = 128;
// The C library's look-up the start routine finds library variables with.
inline constexpr const char *kLookUp = "dlsym";
inline constexpr const char *kLookUpLibrary = "libc.so.6";
// A soft import reached by an address rather than a call goes through a
// `jmp rel32` thunk of this size.
inline constexpr size_t kThunkSize = 8;
// String constants in objects live in this section.
inline constexpr const char *kConstantsSection = ".kelp.strings";

class Linker {
public:
    Linker(const LinkInput &input, std::string &error) : mInput(input), mError(error) {}

    bool ReadObjects(LinkStats &stats);
    bool Layout();
    bool ResolveSymbols();
    bool Relocate();
    bool Write(image::Segments &out, LinkStats &stats);

private:
    // Always false, so that a step can `return Fail(...)`.
    bool Fail(size_t object, uint32_t section, const std::string &symbol, const std::string &what);
    bool Fail(const std::string &what);

    bool PlaceSection(size_t object, uint32_t index, Where segment, std::vector<uint8_t> &bytes);
    bool Resolve(size_t object, uint32_t symbol, Target &target, uint32_t fromSection);
    bool TargetOfDefinition(size_t object, uint32_t symbol, Target &target, uint32_t fromSection);
    bool ApplyOne(size_t object, uint32_t section, const ElfRelocation &r);
    bool CheckConstant(uint64_t dataOffset) const;
    const std::string *SoftLibrary(const std::string &function) const;
    bool IsExport(const std::string &name) const;

    // The output's link table pieces.
    void AddRecordsFor(const CodeWord &word, std::vector<uint8_t> &code);

    const LinkInput &mInput;
    std::string &mError;
    std::vector<ElfObject> mObjects;
    std::vector<std::vector<Placed>> mPlaced; // [object][section]
    std::vector<uint8_t> mCode, mData;
    // Static constructor slots in order: (object, .init_array section).
    std::vector<std::pair<size_t, uint32_t>> mConstructorSections;
    std::unordered_map<std::string, GlobalDefinition> mGlobals;
    std::unordered_map<std::string, uint64_t> mCommons;       // data offset of each common symbol
    std::vector<std::pair<std::string, uint64_t>> mVariables; // library variable, its data copy
    std::unordered_map<std::string, std::string> mExportsFolded; // upper-case -> as given
    // Results of relocation.
    std::vector<std::pair<uint64_t, uint64_t>> mConstantRanges; // data offsets [start, end)
    std::vector<CodeWord> mCodeWords;
    std::vector<std::pair<uint64_t, CodeWord>> mStartWords; // data offset, value
    std::vector<CodeWord> mConstructors;
    std::map<std::string, std::vector<uint64_t>> mRelativeHoles; // export -> hole offsets
    std::map<std::string, std::vector<uint64_t>> mSoftHoles;     // function -> hole offsets
    std::map<std::string, std::vector<uint64_t>> mAbsoluteHoles; // export -> word offsets
    std::map<std::string, uint64_t> mThunks;                     // soft function -> thunk
    uint64_t mEntry = 0;
};

} // namespace kelp::tool
