#include "elf_reader.h"

#include "tool_files.h"

#include <elf.h>

#include <cstring>

namespace kelp::tool {
namespace {

// Fixed-size records are copied out of the file rather than cast in place:
// a damaged file may put them off their alignment.
template <typename T> bool Fetch(const std::vector<uint8_t> &file, uint64_t at, T &out) {
    if (at > file.size() || file.size() - at < sizeof(T))
        return false;
    std::memcpy(&out, file.data() + at, sizeof(T));
    return true;
}

bool Inside(const std::vector<uint8_t> &file, uint64_t offset, uint64_t size) {
    return offset <= file.size() && file.size() - offset >= size;
}

// The NUL-terminated text at offset in a string table section.
bool TableText(const ElfSection &table, uint64_t offset, std::string &out) {
    if (!table.bytes || table.type != SHT_STRTAB || offset >= table.size)
        return false;
    const auto *start = reinterpret_cast<const char *>(table.bytes + offset);
    const void *nul = std::memchr(start, 0, table.size - offset);
    if (!nul)
        return false;
    out.assign(start, size_t(static_cast<const char *>(nul) - start));
    return true;
}

class Reader {
public:
    Reader(ElfObject &object, std::string &error) : mObject(object), mError(error) {}

    bool Fail(std::string text) {
        mError = std::move(text);
        return false;
    }

    bool Header() {
        const auto &file = mObject.bytes;
        if (file.size() < EI_NIDENT || std::memcmp(file.data(), ELFMAG, SELFMAG) != 0)
            return Fail("not an ELF object");
        if (file[EI_CLASS] != ELFCLASS64 || file[EI_DATA] != ELFDATA2LSB)
            return Fail("not a 64-bit little-endian ELF object");
        if (!Fetch(file, 0, mHeader))
            return Fail("the ELF header is cut off");
        if (mHeader.e_machine != EM_X86_64)
            return Fail("made for another architecture (ELF machine " +
                        std::to_string(mHeader.e_machine) + "), not x86_64");
        if (mHeader.e_type != ET_REL)
            return Fail("not a relocatable object (ELF type " + std::to_string(mHeader.e_type) +
                        "); link compiled .o files");
        if (mHeader.e_shentsize != sizeof(Elf64_Shdr) || mHeader.e_shnum == 0 ||
            !Inside(file, mHeader.e_shoff, uint64_t(mHeader.e_shnum) * sizeof(Elf64_Shdr)))
            return Fail("the section table lies outside the file");
        if (mHeader.e_shstrndx >= mHeader.e_shnum)
            return Fail("the section name table index is out of range");
        return true;
    }

    bool Sections() {
        const auto &file = mObject.bytes;
        mObject.sections.resize(mHeader.e_shnum);
        mObject.relocations.resize(mHeader.e_shnum);
        for (uint32_t i = 0; i < mHeader.e_shnum; ++i) {
            Elf64_Shdr h;
            Fetch(file, mHeader.e_shoff + uint64_t(i) * sizeof h, h);
            ElfSection &s = mObject.sections[i];
            s.type = h.sh_type;
            s.flags = h.sh_flags;
            s.size = h.sh_size;
            s.link = h.sh_link;
            s.info = h.sh_info;
            s.align = h.sh_addralign ? h.sh_addralign : 1;
            if (s.align & (s.align - 1))
                return Fail("section " + std::to_string(i) +
                            " has an alignment that is no power of two");
            if (h.sh_type != SHT_NOBITS && h.sh_size) {
                if (!Inside(file, h.sh_offset, h.sh_size))
                    return Fail("section " + std::to_string(i) + " lies outside the file");
                s.bytes = file.data() + h.sh_offset;
            }
            mNameOffsets.push_back(h.sh_name);
        }
        const ElfSection &names = mObject.sections[mHeader.e_shstrndx];
        for (uint32_t i = 0; i < mHeader.e_shnum; ++i)
            if (i && !TableText(names, mNameOffsets[i], mObject.sections[i].name))
                return Fail("section " + std::to_string(i) + " has a name outside the name table");
        return true;
    }

    bool Symbols() {
        uint32_t symtab = 0;
        for (uint32_t i = 1; i < mObject.sections.size(); ++i) {
            if (mObject.sections[i].type != SHT_SYMTAB)
                continue;
            if (symtab)
                return Fail("more than one symbol table");
            symtab = i;
        }
        mSymtab = symtab;
        if (!symtab)
            return true; // an object without symbols has nothing to link against
        const ElfSection &s = mObject.sections[symtab];
        if (s.size % sizeof(Elf64_Sym) || s.link >= mObject.sections.size())
            return Fail("the symbol table is damaged");
        const ElfSection &strings = mObject.sections[s.link];
        const size_t count = s.size / sizeof(Elf64_Sym);
        mObject.symbols.resize(count);
        for (size_t i = 0; i < count; ++i) {
            Elf64_Sym raw;
            std::memcpy(&raw, s.bytes + i * sizeof raw, sizeof raw);
            ElfSymbol &sym = mObject.symbols[i];
            sym.bind = ELF64_ST_BIND(raw.st_info);
            sym.type = ELF64_ST_TYPE(raw.st_info);
            sym.section = raw.st_shndx;
            sym.value = raw.st_value;
            sym.size = raw.st_size;
            if (raw.st_name && !TableText(strings, raw.st_name, sym.name))
                return Fail("symbol " + std::to_string(i) + " has a name outside its table");
            if (sym.section == SHN_XINDEX)
                return Fail("symbol '" + sym.name + "' uses extended section indices");
            const bool special = sym.section == SHN_UNDEF || sym.section >= SHN_LORESERVE;
            if (!special && sym.section >= mObject.sections.size())
                return Fail("symbol '" + sym.name + "' names a section that does not exist");
            // A section symbol has no name of its own: give it its section's.
            if (sym.type == STT_SECTION && !special)
                sym.name = mObject.sections[sym.section].name;
        }
        return true;
    }

    bool Relocations() {
        for (uint32_t i = 1; i < mObject.sections.size(); ++i) {
            const ElfSection &s = mObject.sections[i];
            if (s.type == SHT_REL)
                return Fail(
                    "section " + s.name +
                    " holds relocations without addends (REL), which x86_64 objects never do");
            if (s.type != SHT_RELA)
                continue;
            if (s.size % sizeof(Elf64_Rela) || s.info == 0 || s.info >= mObject.sections.size() ||
                s.link != mSymtab)
                return Fail("relocation section " + s.name + " is damaged");
            const size_t count = s.size / sizeof(Elf64_Rela);
            auto &list = mObject.relocations[s.info];
            for (size_t k = 0; k < count; ++k) {
                Elf64_Rela raw;
                std::memcpy(&raw, s.bytes + k * sizeof raw, sizeof raw);
                ElfRelocation r{raw.r_offset, uint32_t(ELF64_R_TYPE(raw.r_info)),
                                uint32_t(ELF64_R_SYM(raw.r_info)), raw.r_addend};
                if (r.symbol >= mObject.symbols.size())
                    return Fail("relocation section " + s.name + " names symbol " +
                                std::to_string(r.symbol) + ", which does not exist");
                if (r.offset > mObject.sections[s.info].size)
                    return Fail("relocation section " + s.name + " points outside " +
                                mObject.sections[s.info].name);
                list.push_back(r);
            }
        }
        return true;
    }

    bool Groups() {
        for (uint32_t i = 1; i < mObject.sections.size(); ++i) {
            const ElfSection &s = mObject.sections[i];
            if (s.type != SHT_GROUP)
                continue;
            if (s.size < 4 || s.size % 4 || s.link != mSymtab || s.info >= mObject.symbols.size())
                return Fail("group section " + s.name + " is damaged");
            ElfGroup g;
            g.section = i;
            g.signature = mObject.symbols[s.info].name;
            g.comdat = ReadWord(s.bytes) & GRP_COMDAT;
            for (uint64_t at = 4; at < s.size; at += 4) {
                const uint32_t member = ReadWord(s.bytes + at);
                if (member == 0 || member >= mObject.sections.size())
                    return Fail("group " + g.signature + " names a section that does not exist");
                g.members.push_back(member);
                mObject.sections[member].group = i;
            }
            mObject.groups.push_back(std::move(g));
        }
        return true;
    }

private:
    static uint32_t ReadWord(const uint8_t *p) {
        return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
    }

    ElfObject &mObject;
    std::string &mError;
    Elf64_Ehdr mHeader{};
    std::vector<uint32_t> mNameOffsets;
    uint32_t mSymtab = 0;
};

} // namespace

bool ReadElfObject(const std::string &path, ElfObject &object, std::string &error) {
    object = ElfObject{};
    object.path = path;
    if (!ReadWholeFile(path, object.bytes)) {
        error = "cannot be read";
        return false;
    }
    Reader reader(object, error);
    return reader.Header() && reader.Sections() && reader.Symbols() && reader.Relocations() &&
           reader.Groups();
}

std::string RelocationName(uint32_t type) {
    static const char *const kNames[] = {"R_X86_64_NONE",
                                         "R_X86_64_64",
                                         "R_X86_64_PC32",
                                         "R_X86_64_GOT32",
                                         "R_X86_64_PLT32",
                                         "R_X86_64_COPY",
                                         "R_X86_64_GLOB_DAT",
                                         "R_X86_64_JUMP_SLOT",
                                         "R_X86_64_RELATIVE",
                                         "R_X86_64_GOTPCREL",
                                         "R_X86_64_32",
                                         "R_X86_64_32S",
                                         "R_X86_64_16",
                                         "R_X86_64_PC16",
                                         "R_X86_64_8",
                                         "R_X86_64_PC8",
                                         "R_X86_64_DTPMOD64",
                                         "R_X86_64_DTPOFF64",
                                         "R_X86_64_TPOFF64",
                                         "R_X86_64_TLSGD",
                                         "R_X86_64_TLSLD",
                                         "R_X86_64_DTPOFF32",
                                         "R_X86_64_GOTTPOFF",
                                         "R_X86_64_TPOFF32",
                                         "R_X86_64_PC64",
                                         "R_X86_64_GOTOFF64",
                                         "R_X86_64_GOTPC32",
                                         "R_X86_64_GOT64",
                                         "R_X86_64_GOTPCREL64",
                                         "R_X86_64_GOTPC64",
                                         "R_X86_64_GOTPLT64",
                                         "R_X86_64_PLTOFF64",
                                         "R_X86_64_SIZE32",
                                         "R_X86_64_SIZE64",
                                         "R_X86_64_GOTPC32_TLSDESC",
                                         "R_X86_64_TLSDESC_CALL",
                                         "R_X86_64_TLSDESC",
                                         "R_X86_64_IRELATIVE",
                                         "R_X86_64_RELATIVE64",
                                         "type 39",
                                         "type 40",
                                         "R_X86_64_GOTPCRELX",
                                         "R_X86_64_REX_GOTPCRELX"};
    if (type < sizeof kNames / sizeof kNames[0])
        return kNames[type];
    return "type " + std::to_string(type);
}

} // namespace kelp::tool
