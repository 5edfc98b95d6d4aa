#include "image/image_format.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kelp::image {

const char *const kLooseFileNames[kSegmentCount] = {"code.dat",    "data.dat", "import.dat",
                                                    "symbols.dat", "rsrc.dat", "options.dat"};

const char *SegmentName(int segment) {
    static const char *const names[kSegmentCount] = {"code",    "data",      "link table",
                                                     "symbols", "resources", "options"};
    return segment >= 0 && segment < kSegmentCount ? names[segment] : "?";
}

namespace {

// A file opened for reading only when it is a regular file.  O_NONBLOCK keeps
// the open itself from waiting on a FIFO, and fstat then turns away FIFOs,
// directories and devices before a byte is read: their lengths mean nothing
// and reading them may never end.
struct RegularFile {
    int fd = -1;
    uint64_t size = 0;
    bool notRegular = false; // it exists, but is no regular file
    explicit RegularFile(const std::string &path) {
        fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0)
            return;
        struct stat st;
        if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_size < 0) {
            notRegular = true;
            ::close(fd);
            fd = -1;
            return;
        }
        size = uint64_t(st.st_size);
    }
    ~RegularFile() {
        if (fd >= 0)
            ::close(fd);
    }
    RegularFile(const RegularFile &) = delete;
    RegularFile &operator=(const RegularFile &) = delete;

    // Exactly n bytes from offset, or false.
    bool ReadAt(uint64_t offset, void *into, size_t n) const {
        auto *p = static_cast<uint8_t *>(into);
        while (n > 0) {
            const ssize_t got = ::pread(fd, p, n, off_t(offset));
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                return false; // an error, or the file shrank under us
            p += got;
            n -= size_t(got);
            offset += uint64_t(got);
        }
        return true;
    }
};

} // namespace

ReadStatus ReadAppendedImage(const std::string &path, Segments &out, std::string &error) {
    RegularFile file(path);
    if (file.fd < 0) {
        error = file.notRegular ? path + " is not a regular file" : "cannot open " + path;
        return ReadStatus::kUnreadable;
    }
    const uint64_t fileSize = file.size;
    if (fileSize < kTrailerMagicSize)
        return ReadStatus::kNoTrailer;
    char magic[kTrailerMagicSize];
    if (!file.ReadAt(fileSize - kTrailerMagicSize, magic, sizeof magic)) {
        error = "cannot read " + path;
        return ReadStatus::kUnreadable;
    }
    if (std::memcmp(magic, kTrailerMagic, kTrailerMagicSize) != 0)
        return ReadStatus::kNoTrailer;
    if (fileSize < kTrailerSize) {
        error = "the image trailer is cut off";
        return ReadStatus::kDamaged;
    }
    uint8_t word[4];
    if (!file.ReadAt(fileSize - kTrailerSize, word, 4)) {
        error = "cannot read " + path;
        return ReadStatus::kUnreadable;
    }
    const uint64_t imageLength = ReadU32(word);
    const uint64_t room = fileSize - kTrailerSize;
    if (imageLength > room) {
        error = "the image length " + std::to_string(imageLength) + " points outside the file";
        return ReadStatus::kDamaged;
    }
    out.imageLength = uint32_t(imageLength);
    // Everything below is read from a window of exactly imageLength bytes.
    const uint64_t end = room;
    uint64_t at = room - imageLength;
    for (int s = 0; s < kSegmentCount; ++s) {
        out.bytes[s].clear();
        out.present[s] = false;
        if (end - at < 4) {
            error =
                std::string("the image ends before the size of the ") + SegmentName(s) + " segment";
            return ReadStatus::kDamaged;
        }
        if (!file.ReadAt(at, word, 4)) {
            error = "cannot read " + path;
            return ReadStatus::kUnreadable;
        }
        at += 4;
        const uint32_t size = ReadU32(word);
        // Symbols, resources and options count as absent at size 0 or with
        // the top bit set; the first three segments are always read.
        const bool optional = s >= kSymbols;
        if (optional && (size == 0 || (size & 0x80000000u)))
            continue;
        if (uint64_t(size) > end - at) {
            error = std::string("the ") + SegmentName(s) + " segment size " + std::to_string(size) +
                    " runs past the end of the image";
            return ReadStatus::kDamaged;
        }
        if (s == kResources)
            out.resourceFileOffset = uint32_t(at);
        out.bytes[s].resize(size);
        if (size && !file.ReadAt(at, out.bytes[s].data(), size)) {
            error = "cannot read " + path;
            return ReadStatus::kUnreadable;
        }
        out.present[s] = true;
        at += size;
    }
    return ReadStatus::kOk;
}

bool ReadLooseFiles(const std::string &dir, Segments &out) {
    bool haveCode = false;
    out.resourceFileOffset = 0;
    out.imageLength = 0;
    for (int s = 0; s < kSegmentCount; ++s) {
        out.bytes[s].clear();
        out.present[s] = false;
        const std::string path = dir.empty() ? kLooseFileNames[s] : dir + "/" + kLooseFileNames[s];
        // Anything but a regular file counts as missing.
        RegularFile file(path);
        if (file.fd < 0)
            continue;
        // A segment's size is a 32-bit word, so no larger file can be one.
        if (file.size > 0xFFFFFFFFu)
            continue;
        out.bytes[s].resize(size_t(file.size));
        if (file.size && !file.ReadAt(0, out.bytes[s].data(), size_t(file.size))) {
            out.bytes[s].clear();
            continue;
        }
        out.present[s] = s < kSymbols || file.size > 0;
        if (s == kCode)
            haveCode = true;
    }
    return haveCode;
}

std::vector<uint8_t> EncodeAppendedImage(const Segments &segments) {
    std::vector<uint8_t> out;
    for (int s = 0; s < kSegmentCount; ++s) {
        const auto &bytes = segments.bytes[s];
        AppendU32(out, uint32_t(bytes.size()));
        out.insert(out.end(), bytes.begin(), bytes.end());
    }
    const uint32_t length = uint32_t(out.size());
    AppendU32(out, length);
    out.insert(out.end(), kTrailerMagic, kTrailerMagic + kTrailerMagicSize);
    return out;
}

// ------------------------------------------------------------- link table

bool LinkTableReader::ReadName(size_t &at, std::string_view &name) {
    if (at >= mSize)
        return false;
    const size_t length = mTable[at];
    // Length byte, text, and the NUL that the length doesn't count.
    if (mSize - at < length + 2)
        return false;
    name = std::string_view(reinterpret_cast<const char *>(mTable + at + 1), length);
    at += length + 2;
    return true;
}

bool LinkTableReader::Next(LinkRecord &record, std::string &error) {
    if (mAt >= mSize)
        return false;
    record = LinkRecord{};
    record.position = mAt;
    record.type = mTable[mAt];
    size_t at = mAt + 1;
    auto cut = [&](const char *what) {
        error = "link record of type " + std::to_string(record.type) + " at " +
                std::to_string(record.position) + " is cut off by the end of the table (" + what +
                ")";
        mAt = mSize;
        return false;
    };
    auto word = [&](uint32_t &v) {
        if (mSize - at < 4)
            return false;
        v = ReadU32(mTable + at);
        at += 4;
        return true;
    };
    switch (record.type) {
    case kLinkImport:
        if (at >= mSize)
            return cut("relative flag");
        record.relative = mTable[at++] == kImportRelative;
        if (!word(record.value))
            return cut("chain head");
        if (!ReadName(at, record.name))
            return cut("name");
        break;
    case kLinkDataReference:
    case kLinkCodeReference:
    case kLinkStringReference:
        if (!word(record.value))
            return cut("offset");
        break;
    case kLinkSoftImport:
        record.relative = true;
        if (!word(record.value))
            return cut("chain head");
        if (!ReadName(at, record.name))
            return cut("function name");
        if (!ReadName(at, record.library))
            return cut("library name");
        break;
    default:
        // Padding and unknown types take one byte.
        break;
    }
    mAt = at;
    return true;
}

// ------------------------------------------------------------- resources

uint32_t FourCC(const char *code) {
    uint32_t v = 0;
    for (int i = 0; i < 4; ++i)
        v = v << 8 | uint8_t(code[i]);
    return v;
}

std::string FourCCText(uint32_t type) {
    std::string s(4, ' ');
    for (int i = 0; i < 4; ++i) {
        const char c = char(type >> (24 - 8 * i));
        s[size_t(i)] = (c >= 0x20 && c < 0x7f) ? c : '?';
    }
    return s;
}

bool ResourceReader::Next(ResourceRecord &record, std::string &error) {
    if (mAt >= mSize)
        return false;
    if (mSize - mAt < 14) {
        error = "resource record at " + std::to_string(mAt) + " is cut off (header)";
        mAt = mSize;
        return false;
    }
    const uint8_t *p = mSeg + mAt;
    record.type = ReadU32(p);
    record.id = uint16_t(p[4] | p[5] << 8);
    record.length = ReadU32(p + 10);
    if (uint64_t(record.length) > mSize - mAt - 14) {
        error = "resource " + FourCCText(record.type) + " " + std::to_string(record.id) + " at " +
                std::to_string(mAt) + " claims " + std::to_string(record.length) +
                " bytes, more than its segment holds";
        mAt = mSize;
        return false;
    }
    record.dataOffset = mAt + 14;
    record.data = mSeg + record.dataOffset;
    mAt += 14 + size_t(record.length);
    return true;
}

// ------------------------------------------------------------- options

bool OptionReader::Next(OptionRecord &record, std::string &error) {
    if (mAt >= mSize)
        return false;
    record = OptionRecord{};
    record.position = mAt;
    record.type = int8_t(mSeg[mAt]);
    auto cut = [&](const char *what) {
        error = "option record of type " + std::to_string(record.type) + " at " +
                std::to_string(record.position) + " runs past the end of its segment (" + what +
                ")";
        mAt = mSize;
        return false;
    };
    const size_t left = mSize - mAt - 1;
    const uint8_t *p = mSeg + mAt + 1;
    if (record.type == kOptionWindowIcon) {
        if (left < 2)
            return cut("icon size");
        record.width = p[0];
        record.height = p[1];
        const uint64_t pixelBytes = uint64_t(record.width) * record.height * 4;
        if (pixelBytes > left - 2)
            return cut("icon pixels");
        record.pixels = p + 2;
        mAt += 3 + size_t(pixelBytes);
        return true;
    }
    if (record.type == kOptionVersion) {
        if (left < 24)
            return cut("version words");
        for (int i = 0; i < 6; ++i)
            record.version.words[i] = int32_t(ReadU32(p + 4 * i));
        size_t at = 24;
        std::string_view *texts[3] = {&record.version.shortVersion, &record.version.longVersion,
                                      &record.version.packageInfo};
        for (auto *text : texts) {
            if (at >= left)
                return cut("version text");
            const size_t n = p[at];
            if (left - at - 1 < n)
                return cut("version text");
            *text = std::string_view(reinterpret_cast<const char *>(p + at + 1), n);
            at += 1 + n;
        }
        record.block = p;
        record.blockLength = uint32_t(at);
        mAt += 1 + at;
        return true;
    }
    mAt += 1;
    return true;
}

// ------------------------------------------------------------- symbols

bool ParseSymbols(const uint8_t *segment, size_t size, std::vector<SymbolRow> &rows,
                  std::string &error) {
    rows.clear();
    if (size == 0)
        return true;
    if (size < 4) {
        error = "symbol table is cut off (row count)";
        return false;
    }
    const uint64_t count = ReadU32(segment);
    if (count > (size - 4) / 8) {
        error = "symbol table claims " + std::to_string(count) + " rows, more than it holds";
        return false;
    }
    const size_t namesAt = 4 + size_t(count) * 8;
    const char *names = reinterpret_cast<const char *>(segment + namesAt);
    const size_t namesSize = size - namesAt;
    for (size_t i = 0; i < count; ++i) {
        const uint8_t *row = segment + 4 + i * 8;
        const uint32_t nameOffset = ReadU32(row + 4);
        if (nameOffset >= namesSize) {
            error = "symbol row " + std::to_string(i) + " names a place outside the table";
            return false;
        }
        const void *nul = std::memchr(names + nameOffset, 0, namesSize - nameOffset);
        if (!nul) {
            error = "symbol row " + std::to_string(i) + " has a name without its end";
            return false;
        }
        rows.push_back({ReadU32(row),
                        std::string_view(names + nameOffset, size_t(static_cast<const char *>(nul) -
                                                                    (names + nameOffset)))});
    }
    return true;
}

} // namespace kelp::image
