// Fuzz entry for the BMP reader.  Whatever the bytes, the reader must
// answer without reading past them; a picture it accepts must have the
// pixels its size says, and must survive a write and a second read intact.
#include "bitmaps/bmp_codec.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    kelp::RGBImage image;
    if (!kelp::DecodeBmp(data, size, image))
        return 0;
    if (image.rgb.size() != static_cast<size_t>(image.width) * image.height * 3)
        std::abort();
    // Round trips are costly on large pictures; the small ones cover the path.
    if (image.rgb.size() > (1u << 16))
        return 0;
    std::string again =
        kelp::EncodeBmp(image.rgb.data(), image.width, image.height, image.width * 3, 3);
    kelp::RGBImage second;
    if (!kelp::DecodeBmp(reinterpret_cast<const uint8_t *>(again.data()), again.size(), second) ||
        second.rgb != image.rgb)
        std::abort();
    return 0;
}
