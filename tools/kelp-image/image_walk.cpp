#include "image_walk.h"

#include "kelp/records.h"
#include "tool_files.h"

#include <cstddef>
#include <set>

namespace kelp::tool {

bool ReadAnyImage(const std::string &path, image::Segments &out, std::string &error) {
    if (IsFolder(path)) {
        if (image::ReadLooseFiles(path, out))
            return true;
        error = "no code.dat in " + path;
        return false;
    }
    switch (image::ReadAppendedImage(path, out, error)) {
    case image::ReadStatus::kOk: return true;
    case image::ReadStatus::kNoTrailer:
        error = path + " carries no application image";
        return false;
    default: error = path + ": " + error; return false;
    }
}

size_t CountHoles(const std::vector<uint8_t> &code, uint32_t head, size_t width, bool &damaged) {
    std::set<uint32_t> seen;
    for (uint32_t at = head; at != 0;) {
        if (at > code.size() || code.size() - at < width || !seen.insert(at).second) {
            damaged = true;
            break;
        }
        at = ReadU32(code.data() + at);
    }
    return seen.size();
}

bool ConstantText(const image::Segments &s, uint32_t codeOffset, std::string &text,
                  uint64_t &dataOffset) {
    const auto &code = s.bytes[image::kCode];
    const auto &data = s.bytes[image::kData];
    if (codeOffset > code.size() || code.size() - codeOffset < 8)
        return false;
    dataOffset = ReadU64(code.data() + codeOffset);
    if (dataOffset > data.size() || data.size() - dataOffset < KELP_LITERAL_TEXT_OFFSET + 2)
        return false;
    const uint8_t *p = data.data() + dataOffset;
    const int32_t length = int32_t(ReadU32(p + offsetof(stringStorage, length)));
    if (length < 0 || uint64_t(length) + 2 > data.size() - dataOffset - KELP_LITERAL_TEXT_OFFSET)
        return false;
    text.assign(reinterpret_cast<const char *>(p + KELP_LITERAL_TEXT_OFFSET + 1), size_t(length));
    return true;
}

} // namespace kelp::tool
