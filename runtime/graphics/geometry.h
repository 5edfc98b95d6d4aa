#pragma once
// The geometry and colour records every drawing shares.  A Rect is in window
// coordinates (not relative to a parent pane); a colour word of the language
// is 0xRRGGBB; an RGBColor holds three 16-bit channels.
#include <cstdint>

namespace kelp {

struct Rect {
    int16_t top = 0, left = 0, bottom = 0, right = 0;
};

struct Point {
    int16_t v = 0, h = 0;
};

// A Rect from a position and size, as the language's methods give them.
inline Rect RectFromXYWH(int32_t x, int32_t y, int32_t w, int32_t h) {
    return Rect{static_cast<int16_t>(y), static_cast<int16_t>(x), static_cast<int16_t>(y + h),
                static_cast<int16_t>(x + w)};
}

struct RGBColor {
    uint16_t red = 0, green = 0, blue = 0;
};

// One channel of a colour word widens by 257 (0xFF -> 0xFFFF) and narrows by
// dividing by 257, so a round trip gives back the same word.
inline RGBColor ColorWordToRGB(uint32_t word) {
    return RGBColor{static_cast<uint16_t>(((word >> 16) & 0xFF) * 257),
                    static_cast<uint16_t>(((word >> 8) & 0xFF) * 257),
                    static_cast<uint16_t>((word & 0xFF) * 257)};
}
inline uint32_t RGBToColorWord(const RGBColor &c) {
    return (static_cast<uint32_t>(c.red / 257) << 16) |
           (static_cast<uint32_t>(c.green / 257) << 8) | static_cast<uint32_t>(c.blue / 257);
}

} // namespace kelp
