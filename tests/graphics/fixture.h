#pragma once
// A white offscreen picture with a GraphicsGTK on it, on the test X server.
#include "graphics/graphics_gtk.h"
#include "pixels.h"
#include "support/xvfb.h"

#include <gtest/gtest.h>

#include <memory>

namespace kelp::test {

class PixmapDrawing : public ::testing::Test {
protected:
    static constexpr int kWidth = 200, kHeight = 120;

    void SetUp() override {
        if (!RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
        g.reset(GraphicsGTK::ForPixmap(kWidth, kHeight));
        drawable = g->Target()->Drawable();
        ASSERT_NE(drawable, nullptr);
    }

    uint32_t At(int x, int y) { return PixelAt(drawable, x, y); }
    InkBox Ink(uint32_t background = 0xFFFFFF) {
        return FindInk(drawable, 0, 0, kWidth, kHeight, background);
    }
    void Colour(uint32_t word) { g->SetForeColor(ColorWordToRGB(word)); }

    std::unique_ptr<GraphicsGTK> g;
    GdkDrawable *drawable = nullptr;
};

} // namespace kelp::test
