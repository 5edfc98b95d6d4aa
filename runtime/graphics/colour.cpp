// The colour model of the language: words 0xRRGGBB, made from RGB, HSV
// (hexcone) or CMY, and read back in each of them.
#include "kelp/graphics.h"

#include <algorithm>
#include <cmath>

namespace {

int32_t ClampByte(int32_t v) { return std::clamp(v, 0, 255); }

int32_t ScaleUnit(double v) {
    if (!std::isfinite(v))
        return 0;
    return ClampByte(static_cast<int32_t>(std::lround(std::clamp(v, -1.0, 2.0) * 255.0)));
}

struct HSV {
    double h, s, v;
};

HSV ToHSV(uint32_t color) {
    const double r = ((color >> 16) & 0xFF) / 255.0, g = ((color >> 8) & 0xFF) / 255.0,
                 b = (color & 0xFF) / 255.0;
    const double max = std::max({r, g, b}), min = std::min({r, g, b}), delta = max - min;
    HSV out{0.0, max > 0.0 ? delta / max : 0.0, max};
    if (delta > 0.0) {
        if (max == r)
            out.h = (g - b) / delta;
        else if (max == g)
            out.h = 2.0 + (b - r) / delta;
        else
            out.h = 4.0 + (r - g) / delta;
        out.h /= 6.0;
        if (out.h < 0.0)
            out.h += 1.0;
    }
    return out;
}

} // namespace

extern "C" {

uint32_t RuntimeRGB(int32_t red, int32_t green, int32_t blue) {
    return (static_cast<uint32_t>(ClampByte(red)) << 16) |
           (static_cast<uint32_t>(ClampByte(green)) << 8) | static_cast<uint32_t>(ClampByte(blue));
}

uint32_t RuntimeHSV(double h, double s, double v) {
    if (!std::isfinite(h))
        h = 0.0;
    if (!std::isfinite(s))
        s = 0.0;
    if (!std::isfinite(v))
        v = 0.0;
    // Hue 1.0 is the same red as 0.0; holding it below 1 keeps the sector in 0..5.
    h = std::clamp(h, 0.0, 0.999999);
    s = std::clamp(s, 0.0, 1.0);
    v = std::clamp(v, 0.0, 1.0);
    const double sector = h * 6.0;
    const int i = static_cast<int>(std::floor(sector));
    const double f = sector - i;
    const double p = v * (1.0 - s), q = v * (1.0 - s * f), t = v * (1.0 - s * (1.0 - f));
    double r, g, b;
    switch (i) {
    case 0: r = v, g = t, b = p; break;
    case 1: r = q, g = v, b = p; break;
    case 2: r = p, g = v, b = t; break;
    case 3: r = p, g = q, b = v; break;
    case 4: r = t, g = p, b = v; break;
    default: r = v, g = p, b = q; break;
    }
    return RuntimeRGB(ScaleUnit(r), ScaleUnit(g), ScaleUnit(b));
}

uint32_t RuntimeCMY(double c, double m, double y) {
    return RuntimeRGB(ScaleUnit(1.0 - c), ScaleUnit(1.0 - m), ScaleUnit(1.0 - y));
}

int32_t readColorRed(uint32_t color) { return (color >> 16) & 0xFF; }
int32_t readColorGreen(uint32_t color) { return (color >> 8) & 0xFF; }
int32_t readColorBlue(uint32_t color) { return color & 0xFF; }
double readColorHue(uint32_t color) { return ToHSV(color).h; }
double readColorSaturation(uint32_t color) { return ToHSV(color).s; }
double readColorValue(uint32_t color) { return ToHSV(color).v; }
double readColorCyan(uint32_t color) { return (255 - readColorRed(color)) / 255.0; }
double readColorMagenta(uint32_t color) { return (255 - readColorGreen(color)) / 255.0; }
double readColorYellow(uint32_t color) { return (255 - readColorBlue(color)) / 255.0; }

} // extern "C"
