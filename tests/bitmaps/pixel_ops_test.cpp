// The seed fill against a breadth-first fill on seeded random pictures, and
// rotation by shears against exact quarter turns.
#include "bitmaps/pixel_ops.h"

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <random>
#include <vector>

namespace kelp {
namespace {

// The plain model: a breadth-first walk over 4-neighbours.
void ReferenceFill(std::vector<uint32_t> &p, int w, int h, int x, int y, uint32_t color) {
    uint32_t old = p[y * w + x];
    if (old == color)
        return;
    std::deque<std::pair<int, int>> queue{{x, y}};
    p[y * w + x] = color;
    while (!queue.empty()) {
        auto [cx, cy] = queue.front();
        queue.pop_front();
        const int dx[] = {1, -1, 0, 0}, dy[] = {0, 0, 1, -1};
        for (int k = 0; k < 4; ++k) {
            int nx = cx + dx[k], ny = cy + dy[k];
            if (nx >= 0 && ny >= 0 && nx < w && ny < h && p[ny * w + nx] == old) {
                p[ny * w + nx] = color;
                queue.push_back({nx, ny});
            }
        }
    }
}

TEST(SeedFill, AgreesWithABreadthFirstFill) {
    std::mt19937 rng(42);
    for (int round = 0; round < 2000; ++round) {
        int w = 1 + rng() % 40, h = 1 + rng() % 40;
        int walls = rng() % 60; // percent of wall pixels
        std::vector<uint32_t> pixels(w * h);
        for (uint32_t &p : pixels)
            p = static_cast<int>(rng() % 100) < walls ? 0x000000 : 0xFFFFFF;
        int x = rng() % w, y = rng() % h;
        uint32_t color = rng() % 3 == 0 ? pixels[y * w + x] : 0x00FF00;
        std::vector<uint32_t> expected = pixels;
        ReferenceFill(expected, w, h, x, y, color);
        PixelBuffer buffer{pixels.data(), w, h};
        ASSERT_TRUE(SeedFill(buffer, x, y, color));
        ASSERT_EQ(pixels, expected) << "round " << round << " " << w << "x" << h;
    }
}

TEST(SeedFill, SeedsOutsideThePictureChangeNothing) {
    std::vector<uint32_t> pixels(16, 0xFFFFFF);
    PixelBuffer buffer{pixels.data(), 4, 4};
    for (auto [x, y] : {std::pair{-1, 0}, {0, -1}, {4, 0}, {0, 4}})
        EXPECT_FALSE(SeedFill(buffer, x, y, 0));
    EXPECT_EQ(pixels, std::vector<uint32_t>(16, 0xFFFFFF));
}

std::vector<uint32_t> Numbered(int n) {
    std::vector<uint32_t> p(n * n);
    for (int i = 0; i < n * n; ++i)
        p[i] = static_cast<uint32_t>(i * 2654435761u) & 0xFFFFFF;
    return p;
}

TEST(RotateByShears, QuarterTurnsAreExact) {
    const int n = 9;
    std::vector<uint32_t> src = Numbered(n), out(n * n), back(n * n);
    PixelBuffer s{src.data(), n, n}, d{out.data(), n, n}, b{back.data(), n, n};
    ASSERT_TRUE(RotateByShears(s, d, M_PI / 2, kRotateFillWhite));
    // One of the two quarter turns about the centre, exactly.
    bool clockwise = true, counter = true;
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            clockwise &= out[x * n + (n - 1 - y)] == src[y * n + x];
            counter &= out[(n - 1 - x) * n + y] == src[y * n + x];
        }
    EXPECT_TRUE(clockwise != counter);
    ASSERT_TRUE(RotateByShears(d, b, -M_PI / 2, kRotateFillWhite));
    EXPECT_EQ(back, src); // and the other way undoes it

    struct Case {
        double angle;
        bool identity;
    } cases[] = {{0, true}, {2 * M_PI, true}, {-2 * M_PI, true}, {0.00005, true}, {M_PI, false}};
    for (const Case &c : cases) {
        ASSERT_TRUE(RotateByShears(s, d, c.angle, 0));
        EXPECT_EQ(out == src, c.identity) << c.angle;
    }
    ASSERT_TRUE(RotateByShears(s, d, M_PI, 0)); // a half turn: the picture upside down
    for (int i = 0; i < n * n; ++i)
        EXPECT_EQ(out[n * n - 1 - i], src[i]);
    EXPECT_FALSE(RotateByShears(s, s, 1.0, 0));
    PixelBuffer other{back.data(), n, n - 1};
    EXPECT_FALSE(RotateByShears(s, other, 1.0, 0));
}

TEST(RotateByShears, SmallTurnsBlendAndFill) {
    const int n = 21;
    std::vector<uint32_t> src(n * n, 0x204060), out(n * n);
    PixelBuffer s{src.data(), n, n}, d{out.data(), n, n};
    ASSERT_TRUE(RotateByShears(s, d, 0.3, kRotateFillWhite));
    EXPECT_EQ(out[(n / 2) * n + n / 2], 0x204060u); // the centre stays
    EXPECT_EQ(out[0], 0xFFFFFFu);                   // a corner is uncovered
    ASSERT_TRUE(RotateByShears(s, d, 0.3, 0));
    EXPECT_EQ(out[0], 0u);
    // Every pixel is the colour, white, or a blend between the two.
    ASSERT_TRUE(RotateByShears(s, d, 0.3, kRotateFillWhite));
    for (uint32_t p : out) {
        uint32_t r = p >> 16, g = p >> 8 & 255, b = p & 255;
        EXPECT_TRUE(r >= 0x20 && g >= 0x40 && b >= 0x60) << std::hex << p;
    }
}

} // namespace
} // namespace kelp
