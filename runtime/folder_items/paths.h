#pragma once
// Path texts: names, file URLs, relative paths and the SaveInfo byte string
// that lets a program find a file again after it and its base moved.
// Plain functions on std::string, nothing touches the disk.
#include <cstdint>
#include <string>

namespace kelp {

// The last component, a trailing "/" skipped, at most 1,024 bytes.  "" for "/".
std::string LastPathComponent(const std::string &path);

// "." and ".." resolved and "//" folded; keeps a trailing "/".
std::string NormalizePath(const std::string &absolute);

// "file://" + every name percent-encoded (A-Z a-z 0-9 - . _ kept) joined by "/".
std::string FileURLFromPath(const std::string &path);
// The path of a "file:///..." URL with %XX decoded (either case); "" for
// anything else.
std::string PathFromFileURL(const std::string &url);

// From folder `base` to `target`: "..\" for each component of the base left
// after the common start, then the rest of the target joined with "\".
// Both are absolute; `baseIsFolder` / `targetIsFolder` say whether the last
// component is a folder (a file's own name is kept aside and put last).
std::string RelativePath(const std::string &base, bool baseIsFolder, const std::string &target,
                         bool targetIsFolder);
// The reverse: `relative` applied to the folder path `base`.
std::string ResolveRelativePath(const std::string &base, const std::string &relative);

enum SaveInfoMode : int32_t {
    kSaveInfoDefault = 0,  // both paths; the relative one is tried first
    kSaveInfoRelative = 1, // only the path from the base
    kSaveInfoAbsolute = 2, // only the absolute path
};

// Magic, version 1, mode, then records of tag (16-bit, low byte first),
// big-endian 32-bit length and bytes: 2 relative, 1 absolute, 3 and 4 fixed
// flags, 0 the end.
std::string EncodeSaveInfo(int32_t mode, const std::string &absolute, const std::string &relative);
bool IsSaveInfo(const std::string &bytes);

struct SaveInfoPaths {
    int32_t mode = kSaveInfoDefault;
    std::string absolute, relative;
};
// Reads the records up to the end tag or the end of the bytes; false when
// the magic is missing.  A record whose length runs past the data ends it.
bool DecodeSaveInfo(const std::string &bytes, SaveInfoPaths &out);

} // namespace kelp
