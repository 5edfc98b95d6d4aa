#pragma once
// A reader of x86_64 ELF relocatable objects (.o files), as the linker needs
// them: sections, symbols, relocations with addends and COMDAT groups.  Every
// offset, size and index in the file is checked before it is used, so a
// damaged or hostile object gives one error line, never a read outside it.
#include <cstdint>
#include <string>
#include <vector>

namespace kelp::tool {

struct ElfSection {
    std::string name;
    uint32_t type = 0;
    uint64_t flags = 0;
    uint64_t size = 0;
    uint64_t align = 1;             // a power of two, at least 1
    uint32_t link = 0, info = 0;    // as the section type defines them
    const uint8_t *bytes = nullptr; // null for SHT_NOBITS and empty sections
    uint32_t group = 0;             // index of the COMDAT group holding it, or 0
};

struct ElfSymbol {
    std::string name;
    uint8_t bind = 0, type = 0; // STB_*, STT_*
    uint16_t section = 0;       // section index, or SHN_UNDEF / SHN_ABS / SHN_COMMON
    uint64_t value = 0, size = 0;
};

struct ElfRelocation {
    uint64_t offset = 0; // within the section it applies to
    uint32_t type = 0;   // R_X86_64_*
    uint32_t symbol = 0; // index into symbols
    int64_t addend = 0;
};

struct ElfGroup {
    uint32_t section = 0;          // the SHT_GROUP section's own index
    std::string signature;         // the symbol naming the group
    bool comdat = false;           // keep one copy per signature
    std::vector<uint32_t> members; // section indices
};

struct ElfObject {
    std::string path;
    std::vector<uint8_t> bytes; // the whole file; sections point into it
    std::vector<ElfSection> sections;
    std::vector<ElfSymbol> symbols; // index 0 is the null symbol
    // relocations[i]: the RELA entries that apply to section i.
    std::vector<std::vector<ElfRelocation>> relocations;
    std::vector<ElfGroup> groups;
};

// Reads and checks the object at path.  False with error (no prefix) when it
// is unreadable, no ELF, not a 64-bit little-endian x86_64 relocatable object,
// or damaged.
bool ReadElfObject(const std::string &path, ElfObject &object, std::string &error);

// The name of a relocation type ("R_X86_64_64"), or "type N".
std::string RelocationName(uint32_t type);

} // namespace kelp::tool
