#pragma once
// Windows bitmap files to and from plain RGB pixels.  A leaf: no toolkit,
// so the fuzzer and the tests drive exactly the code the pictures use.
//
// The reader is given the length of its data and trusts nothing in it:
// every size, offset and palette index is checked against the bytes it
// has, and the pixel count is bounded, so a damaged or hostile file gives
// an error text and never a read past the data or a huge allocation.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kelp {

// Pixels top row first, three bytes (red, green, blue) each, no padding.
struct RGBImage {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> rgb;
};

// The largest picture the reader makes, in pixels, and on either side.
inline constexpr int64_t kBmpMaxPixels = int64_t{1} << 26;
inline constexpr int32_t kBmpMaxSide = 32767;

// Decodes a BMP with a 12-byte (core) or 40-byte (and longer) info header
// at 1, 4, 8, 24 or 32 bits.  Rows are bottom-up, or top-down for a
// negative height.  1-bit pixels are black (clear) and white (set), without
// the palette; an index past the palette reads the unset entry, black.
// Compression is not looked at.  On failure answers false and puts the
// reason in `error` (when given).
bool DecodeBmp(const uint8_t *data, size_t size, RGBImage &out, std::string *error = nullptr);

// A 24-bit BMP with a 40-byte header: rows bottom-up in blue, green, red
// order, each padded to 4 bytes; the resolutions are in dots per inch and
// stored in pixels per metre.  `rgb` holds `stride` bytes a row and
// `channels` (3 or 4) bytes a pixel, red first.
std::string EncodeBmp(const uint8_t *rgb, int32_t width, int32_t height, int32_t stride,
                      int32_t channels, int32_t horizontalDpi = 72, int32_t verticalDpi = 72);

} // namespace kelp
