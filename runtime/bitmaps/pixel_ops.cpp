#include "bitmaps/pixel_ops.h"

#include <cmath>
#include <cstring>
#include <vector>

namespace kelp {

// ------------------------------------------------------------------ seed fill

namespace {

struct Segment {
    int16_t y, xLeft, xRight, dy; // row y + dy is the one to examine
};
constexpr int kStackSegments = 10000;

} // namespace

bool SeedFill(PixelBuffer &b, int32_t seedX, int32_t seedY, uint32_t color) {
    if (seedX < 0 || seedY < 0 || seedX >= b.width || seedY >= b.height)
        return false;
    uint32_t old = b.At(seedX, seedY);
    if (old == color)
        return true;
    Segment stack[kStackSegments];
    int depth = 0;
    auto push = [&](int32_t y, int32_t xl, int32_t xr, int32_t dy) {
        if (depth < kStackSegments && y + dy >= 0 && y + dy < b.height)
            stack[depth++] = {static_cast<int16_t>(y), static_cast<int16_t>(xl),
                              static_cast<int16_t>(xr), static_cast<int16_t>(dy)};
    };
    push(seedY, seedX, seedX, 1);
    push(seedY + 1, seedX, seedX, -1); // the seed row itself, popped first
    while (depth > 0) {
        const Segment s = stack[--depth];
        int32_t dy = s.dy, y = s.y + dy, x1 = s.xLeft, x2 = s.xRight;
        int32_t x = x1;
        for (; x >= 0 && b.At(x, y) == old; --x)
            b.At(x, y) = color;
        int32_t left = x + 1;
        bool skip = x >= x1;
        if (!skip) {
            if (left < x1)
                push(y, left, x1 - 1, -dy); // leak on the left
            x = x1 + 1;
        }
        do {
            if (!skip) {
                for (; x < b.width && b.At(x, y) == old; ++x)
                    b.At(x, y) = color;
                push(y, left, x - 1, dy);
                if (x > x2 + 1)
                    push(y, x2 + 1, x - 1, -dy); // leak on the right
            }
            skip = false;
            for (++x; x <= x2 && b.At(x, y) != old; ++x) {}
            left = x;
        } while (x <= x2);
    }
    return true;
}

// ------------------------------------------------------------------- rotation

namespace {

// Blends `keep` of `a` with `give` of `b`, channel by channel.
uint32_t Mix(uint32_t a, double keep, uint32_t b, double give) {
    uint32_t out = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
        double v = ((a >> shift) & 0xFF) * keep + ((b >> shift) & 0xFF) * give;
        uint32_t c = static_cast<uint32_t>(v + 0.5);
        out |= (c > 255 ? 255 : c) << shift;
    }
    return out;
}

// One line of a shear: `count` pixels read through `get`, moved by `shift`
// and blended by its fraction, written through `set`.  Positions no pixel
// reaches get `fill`.
template <typename Get, typename Set>
void ShearLine(int32_t count, double shift, uint32_t, uint32_t fill, Get get, Set set) {
    double whole = std::floor(shift);
    double f = shift - whole;
    if (f < 1.0 / 255) {
        f = 0;
    } else if (f > 0.96) {
        f = 0;
        whole += 1;
    }
    int32_t move = static_cast<int32_t>(whole);
    std::vector<uint32_t> line(static_cast<size_t>(count), fill);
    // The line runs on in the fill at both ends, so its edges blend with it.
    uint32_t given = f == 0 ? 0 : Mix(fill, f, 0, 0); // what the previous pixel gave on
    for (int32_t i = 0; i < count; ++i) {
        uint32_t p = get(i);
        uint32_t out = f == 0 ? p : Mix(p, 1 - f, given, 1);
        given = f == 0 ? 0 : Mix(p, f, 0, 0);
        if (i + move >= 0 && i + move < count)
            line[static_cast<size_t>(i + move)] = out;
    }
    if (f != 0 && count + move >= 0 && count + move < count)
        line[static_cast<size_t>(count + move)] = Mix(fill, 1 - f, given, 1);
    for (int32_t i = 0; i < count; ++i)
        set(i, line[static_cast<size_t>(i)]);
}

// Shears about the centre of the buffer; `centre` is the row (column) of no shift.
void ShearX(PixelBuffer &b, double factor, uint32_t flags, uint32_t fill) {
    for (int32_t y = 0; y < b.height; ++y)
        ShearLine(
            b.width, factor * (y - b.height / 2), flags, fill,
            [&](int32_t i) { return b.At(i, y); }, [&](int32_t i, uint32_t v) { b.At(i, y) = v; });
}

void ShearY(PixelBuffer &b, double factor, uint32_t flags, uint32_t fill) {
    for (int32_t x = 0; x < b.width; ++x)
        ShearLine(
            b.height, factor * (x - b.width / 2), flags, fill,
            [&](int32_t i) { return b.At(x, i); }, [&](int32_t i, uint32_t v) { b.At(x, i) = v; });
}

// A quarter turn about the centre, counter-clockwise on the screen for a
// positive `sign`: exact, so it is done by moving pixels, not by shears.
void QuarterTurn(const PixelBuffer &source, PixelBuffer &dest, int sign, uint32_t fill) {
    int32_t cx = source.width / 2, cy = source.height / 2;
    for (int32_t y = 0; y < dest.height; ++y)
        for (int32_t x = 0; x < dest.width; ++x) {
            int32_t sx = sign > 0 ? cx - (y - cy) : cx + (y - cy);
            int32_t sy = sign > 0 ? cy + (x - cx) : cy - (x - cx);
            bool inside = sx >= 0 && sy >= 0 && sx < source.width && sy < source.height;
            dest.At(x, y) =
                inside ? source.pixels[static_cast<int64_t>(sy) * source.width + sx] : fill;
        }
}

} // namespace

bool RotateByShears(const PixelBuffer &source, PixelBuffer &dest, double angle, uint32_t flags) {
    if (source.pixels == dest.pixels || source.width != dest.width ||
        source.height != dest.height || !source.pixels || !dest.pixels)
        return false;
    const int32_t w = source.width, h = source.height;
    uint32_t fill = (flags & kRotateFillFirstPixel) ? source.pixels[0]
                    : (flags & kRotateFillWhite)    ? 0xFFFFFF
                                                    : 0;
    angle = std::fmod(angle, 2 * M_PI);
    if (angle > M_PI)
        angle -= 2 * M_PI;
    else if (angle < -M_PI)
        angle += 2 * M_PI;
    if (std::fabs(angle) >= M_PI / 2) {
        int sign = angle > 0 ? 1 : -1;
        QuarterTurn(source, dest, sign, fill);
        angle -= sign * M_PI / 2;
        if (std::fabs(angle) >= M_PI / 2) { // a half turn: a second quarter
            std::vector<uint32_t> once(dest.pixels, dest.pixels + static_cast<int64_t>(w) * h);
            QuarterTurn(PixelBuffer{once.data(), w, h}, dest, sign, fill);
            angle -= sign * M_PI / 2;
        }
    } else {
        std::memcpy(dest.pixels, source.pixels,
                    static_cast<size_t>(w) * static_cast<size_t>(h) * 4);
    }
    if (std::fabs(angle) < 0.0001)
        return true;
    // The shears run in a work area large enough that no pixel that ends
    // inside the picture is pushed off an edge on the way.
    const int32_t side = 2 * (w + h);
    std::vector<uint32_t> area(static_cast<size_t>(side) * side, fill);
    PixelBuffer work{area.data(), side, side};
    const int32_t ox = side / 2 - w / 2, oy = side / 2 - h / 2;
    for (int32_t y = 0; y < h; ++y)
        std::memcpy(&work.At(ox, oy + y), &dest.At(0, y), static_cast<size_t>(w) * 4);
    // x += t y, y -= sin(angle) x, x += t y: a turn counter-clockwise on the
    // screen (y grows downward), the same way as the quarter turns above.
    double t = std::tan(angle / 2);
    ShearX(work, t, flags, fill);
    ShearY(work, -2 * t / (t * t + 1), flags, fill);
    ShearX(work, t, flags, fill);
    for (int32_t y = 0; y < h; ++y)
        std::memcpy(&dest.At(0, y), &work.At(ox, oy + y), static_cast<size_t>(w) * 4);
    return true;
}

} // namespace kelp
