#pragma once
// Whole-picture pixel work on plain buffers of 0xRRGGBB words, row by row:
// the seed fill of RGBSurface.FloodFill and the rotation by shears that the
// shape plotter uses for rotated pictures.  No toolkit here; the picture
// layer reads its store into a buffer, calls these, and draws it back.
#include <cstdint>

namespace kelp {

struct PixelBuffer {
    uint32_t *pixels; // width * height words, top row first
    int32_t width;
    int32_t height;
    uint32_t &At(int32_t x, int32_t y) { return pixels[static_cast<int64_t>(y) * width + x]; }
};

// Paints the 4-connected area of the seed's colour with `color`: a
// scan-line fill with an explicit stack of 10,000 segments on the call
// stack.  A push that finds the stack full is dropped, so a very ragged area
// may be left partly unfilled; nothing is allocated and nothing fails.
// Answers false (and paints nothing) for a seed outside the buffer.
bool SeedFill(PixelBuffer &buffer, int32_t x, int32_t y, uint32_t color);

enum RotateFlags : uint32_t {
    kRotateFillWhite = 1,      // uncovered ends of a row become white
    kRotateFillFirstPixel = 2, // ... or the first pixel of the picture
};

// Rotates `source` into `dest` (same size, distinct buffers) by `angle`
// radians about the centre, counter-clockwise on the screen for a positive
// angle: quarter turns first, moving pixels exactly, then what is left below
// 90 degrees with three shears, whose fractions blend neighbouring pixels
// channel by channel.  False when the
// sizes differ or the buffers are the same.
bool RotateByShears(const PixelBuffer &source, PixelBuffer &dest, double angle, uint32_t flags);

} // namespace kelp
