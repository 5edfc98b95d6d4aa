#pragma once
// The stored form of an application image: six segments behind the
// executable's own bytes, closed by a trailer, or six loose files.  This code
// only reads and writes bytes; it has no part in binding or running, so the
// runtime and the kelp-image tool share it.  Every reader here checks each
// length against what is really there: a damaged or hostile file gives an
// error text, never a read outside the buffer.
#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelp::image {

inline constexpr char kTrailerMagic[] = "CehNehDeh"; // 9 bytes, no terminator in the file
inline constexpr size_t kTrailerMagicSize = 9;
inline constexpr size_t kTrailerSize = kTrailerMagicSize + 4;

enum Segment { kCode = 0, kData, kLink, kSymbols, kResources, kOptions, kSegmentCount };

// Loose file of each segment, in segment order.
extern const char *const kLooseFileNames[kSegmentCount];
const char *SegmentName(int segment);

struct Segments {
    std::vector<uint8_t> bytes[kSegmentCount];
    // Symbols, resources and options may be absent (size 0 or top bit set).
    bool present[kSegmentCount] = {};
    // File offset of the resource segment's first byte; 0 for loose files.
    uint32_t resourceFileOffset = 0;
    // L of the trailer: the bytes the image takes before it (0 for loose files).
    uint32_t imageLength = 0;
};

enum class ReadStatus {
    kOk,        // the segments were read
    kNoTrailer, // the file doesn't end in the magic: not an error
    kDamaged,   // trailer present, contents impossible; see error
    kUnreadable // the file couldn't be opened or read
};

// Reads the image appended to the file at path; anything but a regular file
// is kUnreadable.
ReadStatus ReadAppendedImage(const std::string &path, Segments &out, std::string &error);

// Reads the loose segment files from dir ("" for the current directory).
// A file that can't be opened, or is no regular file (a directory or FIFO of
// that name), leaves its segment empty.  Returns true when
// "code.dat" was there.
bool ReadLooseFiles(const std::string &dir, Segments &out);

// The six segments with their size words, then L and the magic: what is
// appended to a copy of the runtime executable.
std::vector<uint8_t> EncodeAppendedImage(const Segments &segments);

// ------------------------------------------------------------- link table

// The record types of a link table.  A byte of any other value is skipped.
enum LinkRecordType : uint8_t {
    kLinkPadding = 0,         // one byte, skipped
    kLinkImport = 1,          // a runtime export by name, with its chain of holes
    kLinkDataReference = 2,   // a word that gets the data segment's address added
    kLinkCodeReference = 3,   // a word that gets the code segment's address added
    kLinkSoftImport = 4,      // a function of a shared library, with its chain
    kLinkStringReference = 5, // a word that gets the address of a string constant
};

// The byte behind an import's type: how each hole of its chain takes the
// export's address.
enum ImportHoles : uint8_t {
    kImportAbsolute = 0, // an 8-byte address; any byte but 1 reads as this
    kImportRelative = 1, // a 4-byte displacement from the hole's end
};

struct LinkRecord {
    uint8_t type = 0;         // a LinkRecordType, or another byte that is skipped
    size_t position = 0;      // where the record starts in the table
    bool relative = false;    // imports: displacement holes; soft imports always
    uint32_t value = 0;       // chain head (imports) or word offset (references)
    std::string_view name;    // the export's or the function's name
    std::string_view library; // soft imports
};

// Walks a LinkTable one record at a time.
class LinkTableReader {
public:
    LinkTableReader(const uint8_t *table, size_t size) : mTable(table), mSize(size) {}
    // False at the end, or when a record is cut off by the table's end (then
    // error says which, and the walk is over).
    bool Next(LinkRecord &record, std::string &error);

private:
    bool ReadName(size_t &at, std::string_view &name);
    const uint8_t *mTable;
    size_t mSize;
    size_t mAt = 0;
};

// ------------------------------------------------------------- resources

struct ResourceRecord {
    uint32_t type = 0; // four-character code, first character most significant
    uint16_t id = 0;
    const uint8_t *data = nullptr;
    uint32_t length = 0;
    size_t dataOffset = 0; // offset of the data within the segment
};

class ResourceReader {
public:
    ResourceReader(const uint8_t *segment, size_t size) : mSeg(segment), mSize(size) {}
    bool Next(ResourceRecord &record, std::string &error);

private:
    const uint8_t *mSeg;
    size_t mSize;
    size_t mAt = 0;
};

// Four-character code from text ("WAVE") and back.
uint32_t FourCC(const char *code);
std::string FourCCText(uint32_t type);

// ------------------------------------------------------------- options

struct VersionBlock {
    int32_t words[6] = {}; // Major, Minor, Bug, NonRelease, Stage, Region, as stored
    std::string_view shortVersion, longVersion, packageInfo;
};

// The record types of the options segment.
enum OptionType : int8_t {
    kOptionWindowIcon = 1, // the windows' default icon, RGBA
    kOptionVersion = 2,    // the version block the Application's properties read
};

struct OptionRecord {
    int8_t type = 0; // an OptionType; another type stops nothing but is reported
    size_t position = 0;
    // kOptionWindowIcon.
    uint32_t width = 0, height = 0;
    const uint8_t *pixels = nullptr; // width*height*4 bytes RGBA
    // kOptionVersion: the block behind the type byte and its length.
    VersionBlock version;
    const uint8_t *block = nullptr;
    uint32_t blockLength = 0;
};

class OptionReader {
public:
    OptionReader(const uint8_t *segment, size_t size) : mSeg(segment), mSize(size) {}
    // An unknown type comes back as a record of that type, and the walk goes
    // on at the next byte.  A record that runs past the segment's end is an
    // error and ends the walk.
    bool Next(OptionRecord &record, std::string &error);

private:
    const uint8_t *mSeg;
    size_t mSize;
    size_t mAt = 0;
};

// ------------------------------------------------------------- symbols

struct SymbolRow {
    uint32_t codeOffset;
    std::string_view name;
};

// Parses a symbol segment; false with error when it is damaged (rows that
// lie complete before the damage are still returned).
bool ParseSymbols(const uint8_t *segment, size_t size, std::vector<SymbolRow> &rows,
                  std::string &error);

} // namespace kelp::image
