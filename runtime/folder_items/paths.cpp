#include "folder_items/paths.h"

#include <vector>

namespace kelp {
namespace {

constexpr uint32_t kSaveInfoMagic = 0x00F1D173;

std::vector<std::string> Split(const std::string &text, char separator) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (;;) {
        size_t at = text.find(separator, start);
        std::string part =
            text.substr(start, at == std::string::npos ? std::string::npos : at - start);
        if (!part.empty())
            parts.push_back(part);
        if (at == std::string::npos)
            return parts;
        start = at + 1;
    }
}

void PutRecord(std::string &out, uint16_t tag, const std::string &bytes) {
    out += static_cast<char>(tag & 0xFF);
    out += static_cast<char>(tag >> 8);
    uint32_t n = static_cast<uint32_t>(bytes.size());
    for (int shift = 24; shift >= 0; shift -= 8)
        out += static_cast<char>(n >> shift & 0xFF);
    out += bytes;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

std::string LastPathComponent(const std::string &path) {
    size_t end = path.size();
    if (end > 0 && path[end - 1] == '/')
        --end;
    size_t start = path.rfind('/', end == 0 ? 0 : end - 1);
    start = start == std::string::npos ? 0 : start + 1;
    if (end <= start)
        return std::string();
    if (end - start > 1024)
        start = end - 1024;
    return path.substr(start, end - start);
}

std::string NormalizePath(const std::string &absolute) {
    std::vector<std::string> kept;
    for (const std::string &part : Split(absolute, '/')) {
        if (part == ".")
            continue;
        if (part == "..") {
            if (!kept.empty())
                kept.pop_back();
            continue;
        }
        kept.push_back(part);
    }
    std::string out;
    for (const std::string &part : kept)
        out += "/" + part;
    if (out.empty() || (!absolute.empty() && absolute.back() == '/'))
        out += "/";
    return out;
}

std::string FileURLFromPath(const std::string &path) {
    static const char kHex[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (const std::string &name : Split(path, '/')) {
        url += '/';
        for (unsigned char c : name) {
            bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                         (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_';
            if (plain)
                url += static_cast<char>(c);
            else {
                url += '%';
                url += kHex[c >> 4];
                url += kHex[c & 15];
            }
        }
    }
    if (url.size() == 7)
        url += '/';
    return url;
}

std::string PathFromFileURL(const std::string &url) {
    if (url.compare(0, 8, "file:///") != 0)
        return std::string();
    std::string path;
    for (size_t i = 7; i < url.size(); ++i) {
        int high, low;
        if (url[i] == '%' && i + 2 < url.size() && (high = HexDigit(url[i + 1])) >= 0 &&
            (low = HexDigit(url[i + 2])) >= 0) {
            path += static_cast<char>(high << 4 | low);
            i += 2;
        } else {
            path += url[i];
        }
    }
    return path;
}

std::string RelativePath(const std::string &base, bool baseIsFolder, const std::string &target,
                         bool targetIsFolder) {
    std::vector<std::string> from = Split(base, '/');
    std::vector<std::string> to = Split(target, '/');
    if (!baseIsFolder && !from.empty())
        from.pop_back();
    std::string fileName;
    if (!targetIsFolder && !to.empty()) {
        fileName = to.back();
        to.pop_back();
    }
    size_t same = 0;
    while (same < from.size() && same < to.size() && from[same] == to[same])
        ++same;
    std::string out;
    for (size_t i = same; i < from.size(); ++i)
        out += "..\\";
    for (size_t i = same; i < to.size(); ++i)
        out += to[i] + "\\";
    if (!fileName.empty())
        out += fileName;
    else if (!out.empty() && out.back() == '\\' && same < to.size())
        out.pop_back();
    return out;
}

std::string ResolveRelativePath(const std::string &base, const std::string &relative) {
    std::vector<std::string> parts = Split(base, '/');
    for (const std::string &part : Split(relative, '\\')) {
        if (part == "..") {
            if (!parts.empty())
                parts.pop_back();
        } else if (part != ".") {
            parts.push_back(part);
        }
    }
    std::string out;
    for (const std::string &part : parts)
        out += "/" + part;
    return out.empty() ? "/" : out;
}

std::string EncodeSaveInfo(int32_t mode, const std::string &absolute, const std::string &relative) {
    std::string out;
    for (int shift = 24; shift >= 0; shift -= 8)
        out += static_cast<char>(kSaveInfoMagic >> shift & 0xFF);
    out += static_cast<char>(1);
    out += static_cast<char>(mode);
    if (mode != kSaveInfoAbsolute)
        PutRecord(out, 2, relative);
    if (mode != kSaveInfoRelative)
        PutRecord(out, 1, absolute);
    PutRecord(out, 3, std::string(1, '\1'));
    PutRecord(out, 4, std::string(1, '\0'));
    PutRecord(out, 0, std::string());
    return out;
}

bool IsSaveInfo(const std::string &bytes) {
    return bytes.size() >= 4 && static_cast<uint8_t>(bytes[0]) == 0x00 &&
           static_cast<uint8_t>(bytes[1]) == 0xF1 && static_cast<uint8_t>(bytes[2]) == 0xD1 &&
           static_cast<uint8_t>(bytes[3]) == 0x73;
}

bool DecodeSaveInfo(const std::string &bytes, SaveInfoPaths &out) {
    out = SaveInfoPaths();
    if (!IsSaveInfo(bytes) || bytes.size() < 6)
        return false;
    out.mode = static_cast<uint8_t>(bytes[5]);
    size_t at = 6;
    while (at + 6 <= bytes.size()) {
        uint8_t tag = static_cast<uint8_t>(bytes[at]);
        uint32_t length = 0;
        for (int i = 0; i < 4; ++i)
            length = length << 8 | static_cast<uint8_t>(bytes[at + 2 + i]);
        at += 6;
        if (tag == 0 || length > bytes.size() - at)
            break;
        if (tag == 1)
            out.absolute = bytes.substr(at, length);
        else if (tag == 2)
            out.relative = bytes.substr(at, length);
        at += length;
    }
    return true;
}

} // namespace kelp
