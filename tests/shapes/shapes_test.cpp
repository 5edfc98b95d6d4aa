// Shapes drawn into real pictures on a private X server, checked pixel by
// pixel against the same figures drawn by cairo at the same coordinates.
#include "objects/definitions.h"
#include "pictures/picture_object.h"
#include "shapes/outline.h"
#include "shapes/shape_record.h"
#include "support/class_kit.h"
#include "support/xvfb.h"

#include "exceptions/raise.h"
#include "kelp/kelp.h"
#include "kelp/shapes.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <numbers>
#include <set>
#include <vector>

namespace kelp::test {
namespace {

constexpr int kW = 220, kH = 180;
constexpr double kPi = std::numbers::pi;
using Pixels = std::vector<uint32_t>;

// A reference that lets go at the end of the scope.
struct Held {
    RuntimeObject *o;
    explicit Held(RuntimeObject *object) : o(object) {}
    ~Held() { RuntimeUnlockObject(o); }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
    ShapeRecord &operator*() const { return *Shape(o); }
    ShapeRecord *operator->() const { return Shape(o); }
};

RuntimeObject *Make(DefinitionAccessor definition, double x, double y, double w, double h) {
    RuntimeObject *o = NewObjectOfDefinition(definition());
    ShapeRecord &s = *Shape(o);
    s.x = x, s.y = y, s.width = w, s.height = h;
    s.fillColor = 0xCC2200;
    s.borderColor = 0x0033AA;
    return o;
}

void SetDouble(RuntimeObject *o, size_t offset, double v) {
    Object2DDoubleSetter(o, static_cast<int32_t>(offset), v);
}

// What `shape` leaves on a new white picture, moved by (dx, dy).
Pixels Drawn(RuntimeObject *shape, int32_t dx = 0, int32_t dy = 0) {
    Held picture(newPicture(kW, kH, 32));
    Held g(pictureGraphicsGetter(picture.o, 0));
    RuntimeGraphicsDrawObjectXY(g.o, shape, dx, dy);
    return StoreOf(picture.o)->ReadPixels();
}

// The same figure drawn by cairo, without smoothing, on white.
Pixels Cairo(const std::function<void(cairo_t *)> &draw) {
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kW, kH);
    cairo_t *cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    cairo_set_miter_limit(cr, 2);
    draw(cr);
    cairo_destroy(cr);
    cairo_surface_flush(surface);
    Pixels out;
    const int stride = cairo_image_surface_get_stride(surface);
    const unsigned char *data = cairo_image_surface_get_data(surface);
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
            out.push_back(*reinterpret_cast<const uint32_t *>(data + y * stride + 4 * x) &
                          0xFFFFFF);
    cairo_surface_destroy(surface);
    return out;
}

void Colour(cairo_t *cr, uint32_t c) {
    cairo_set_source_rgb(cr, (c >> 16 & 255) / 255.0, (c >> 8 & 255) / 255.0, (c & 255) / 255.0);
}
// Fill in the fill colour, then the border of `width` in the border colour.
void Paint(cairo_t *cr, bool fill, double border) {
    if (fill) {
        Colour(cr, 0xCC2200);
        border > 0 ? cairo_fill_preserve(cr) : cairo_fill(cr);
    }
    if (border > 0) {
        Colour(cr, 0x0033AA);
        cairo_set_line_width(cr, border);
        cairo_stroke(cr);
    }
}

int Ink(const Pixels &p) {
    int n = 0;
    for (uint32_t c : p)
        n += c != 0xFFFFFF;
    return n;
}

// Pixels of a colour in `palette` that find no pixel of the same colour
// within one pixel in the other image, counted both ways.  Blends (edges
// of turned pictures) are not in the palette and count for nothing.
int Mismatches(const Pixels &a, const Pixels &b, const std::set<uint32_t> &palette) {
    int n = 0;
    for (const auto &[from, to] : {std::pair{&a, &b}, std::pair{&b, &a}})
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x) {
                const uint32_t c = (*from)[y * kW + x];
                bool found = !palette.count(c);
                for (int dy = -1; dy <= 1 && !found; ++dy)
                    for (int dx = -1; dx <= 1 && !found; ++dx)
                        found = x + dx >= 0 && x + dx < kW && y + dy >= 0 && y + dy < kH &&
                                (*to)[(y + dy) * kW + x + dx] == c;
                n += !found;
            }
    return n;
}

// A picture of four coloured quarters, 40 by 30, and cairo's copy of it.
RuntimeObject *QuarterPicture(Pixels &pixels) {
    RuntimeObject *picture = newPicture(40, 30, 32);
    pixels.clear();
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            pixels.push_back(y < 15 ? (x < 20 ? 0x00AA00u : 0xAA00AAu)
                                    : (x < 20 ? 0x0000CCu : 0xDDAA00u));
    StoreOf(picture)->WritePixels(pixels);
    return picture;
}

class Shapes : public ::testing::Test {
protected:
    void SetUp() override {
        if (!RequireToolkitDisplay())
            GTEST_SKIP() << "no X server";
    }
};

TEST_F(Shapes, MatchCairoAcrossRotationAndScale) {
    Pixels quarters;
    Held picture(QuarterPicture(quarters));
    cairo_surface_t *source = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char *>(quarters.data()), CAIRO_FORMAT_RGB24, 40, 30, 160);
    const struct Row {
        const char *name;
        std::function<RuntimeObject *()> make; // centred on (110, 90)
        std::function<void(cairo_t *)> local;  // around (0, 0), before the turn
        std::set<uint32_t> palette;
    } rows[] = {
        {"rect, wide border only",
         [] {
             RuntimeObject *o = Make(RectShapeDefinition, 110, 90, 90, 60);
             ShapeRecord &s = *Shape(o);
             s.fill = 0, s.border = 1, s.borderWidth = 8;
             return o;
         },
         [](cairo_t *cr) {
             cairo_rectangle(cr, -45, -30, 90, 60);
             Paint(cr, false, 8);
         },
         {0x0033AA}},
        {"oval, wide border",
         [] {
             RuntimeObject *o = Make(OvalShapeDefinition, 110, 90, 100, 60);
             Shape(o)->border = 1, Shape(o)->borderWidth = 6, Shape(o)->segments = 256;
             return o;
         },
         [](cairo_t *cr) {
             cairo_save(cr);
             cairo_scale(cr, 50, 30);
             cairo_arc(cr, 0, 0, 1, 0, 2 * kPi);
             cairo_restore(cr);
             Paint(cr, true, 6);
         },
         {0xCC2200, 0x0033AA}},
        {"arc, a pie",
         [] {
             RuntimeObject *o = Make(ArcShapeDefinition, 110, 90, 100, 80);
             ArcStartAngleSetter(o, offsetof(ShapeRecord, startAngle), 0.3);
             Shape(o)->arcAngle = 2.0;
             return o;
         },
         [](cairo_t *cr) {
             cairo_save(cr);
             cairo_scale(cr, 50, 40);
             cairo_move_to(cr, 0, 0);
             cairo_arc(cr, 0, 0, 1, 0.3, 2.3);
             cairo_close_path(cr);
             cairo_restore(cr);
             Paint(cr, true, 0);
         },
         {0xCC2200}},
        {"round rect",
         [] {
             RuntimeObject *o = Make(RoundRectShapeDefinition, 110, 90, 100, 70);
             Shape(o)->cornerWidth = 40, Shape(o)->cornerHeight = 30;
             return o;
         },
         [](cairo_t *cr) {
             const double corners[4][3] = {
                 {30, -20, -kPi / 2}, {30, 20, 0}, {-30, 20, kPi / 2}, {-30, -20, kPi}};
             for (const auto &c : corners) {
                 cairo_save(cr);
                 cairo_translate(cr, c[0], c[1]);
                 cairo_scale(cr, 20, 15);
                 cairo_arc(cr, 0, 0, 1, c[2], c[2] + kPi / 2);
                 cairo_restore(cr);
             }
             cairo_close_path(cr);
             Paint(cr, true, 0);
         },
         {0xCC2200}},
        {"cubic curve, wide",
         [] {
             RuntimeObject *o = Make(CurveShapeDefinition, 50, 120, 0, 0);
             ShapeRecord &s = *Shape(o);
             s.x2 = 95, s.y2 = 125, s.borderWidth = 5, s.order = 2, s.segments = 200;
             s.controlX[0] = 60, s.controlY[0] = 80, s.controlX[1] = 90, s.controlY[1] = 90;
             SetDouble(o, offsetof(ShapeRecord, x), 110); // the points come along
             SetDouble(o, offsetof(ShapeRecord, y), 90);
             return o;
         },
         [](cairo_t *cr) {
             cairo_move_to(cr, 0, 0);
             cairo_curve_to(cr, 10, -40, 40, -30, 45, 5);
             Paint(cr, false, 5);
         },
         {0x0033AA}},
        {"figure of lines",
         [] {
             RuntimeObject *o = Make(FigureShapeDefinition, 110, 90, 0, 0);
             FigureShapeAddLine(o, 110, 40, 160, 130);
             FigureShapeAddLine(o, 160, 130, 60, 130);
             FigureShapeAddLine(o, 60, 130, 110, 40);
             return o;
         },
         [](cairo_t *cr) {
             cairo_move_to(cr, 0, -50);
             cairo_line_to(cr, 50, 40);
             cairo_line_to(cr, -50, 40);
             cairo_close_path(cr);
             Paint(cr, true, 0);
         },
         {0xCC2200}},
        {"group of two",
         [] {
             RuntimeObject *o = Make(Group2DDefinition, 110, 90, 0, 0);
             Held rect(Make(RectShapeDefinition, 80, 90, 40, 30));
             Held oval(Make(OvalShapeDefinition, 140, 90, 40, 60));
             rect->rotation = 0.2, oval->segments = 128;
             Group2DAppend(o, rect.o);
             Group2DAppend(o, oval.o);
             return o;
         },
         [](cairo_t *cr) {
             cairo_save(cr);
             cairo_translate(cr, -30, 0);
             cairo_rotate(cr, 0.2);
             cairo_rectangle(cr, -20, -15, 40, 30);
             cairo_restore(cr);
             Paint(cr, true, 0);
             cairo_save(cr);
             cairo_translate(cr, 30, 0);
             cairo_scale(cr, 20, 30);
             cairo_arc(cr, 0, 0, 1, 0, 2 * kPi);
             cairo_restore(cr);
             Paint(cr, true, 0);
         },
         {0xCC2200}},
        {"picture",
         [&] {
             RuntimeObject *o = NewObjectOfDefinition(PixmapShapeDefinition());
             PixmapShapeImageCtor(o, picture.o);
             Shape(o)->x = 110, Shape(o)->y = 90;
             return o;
         },
         [&](cairo_t *cr) {
             cairo_set_source_surface(cr, source, -20, -15);
             cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
             cairo_rectangle(cr, -20, -15, 40, 30);
             cairo_fill(cr);
         },
         {0x00AA00, 0xAA00AA, 0x0000CC, 0xDDAA00}},
    };
    const struct Pose {
        double rotation, scale;
    } poses[] = {{0, 1}, {0.6, 1}, {-1.1, 1.6}, {2.5, 0.7}};
    for (const Row &row : rows) {
        for (const Pose &pose : poses) {
            SCOPED_TRACE(::testing::Message()
                         << row.name << " turned " << pose.rotation << " scaled " << pose.scale);
            Held shape(row.make());
            SetDouble(shape.o, offsetof(ShapeRecord, rotation), pose.rotation);
            SetDouble(shape.o, offsetof(ShapeRecord, scale), pose.scale);
            const Pixels ours = Drawn(shape.o);
            const Pixels theirs = Cairo([&](cairo_t *cr) {
                cairo_translate(cr, 110, 90);
                cairo_rotate(cr, pose.rotation);
                cairo_scale(cr, pose.scale, pose.scale);
                row.local(cr);
            });
            const int ink = Ink(theirs);
            ASSERT_GT(ink, 150);
            EXPECT_LE(Mismatches(ours, theirs, row.palette), ink / 25 + 40)
                << "ink " << Ink(ours) << " against " << ink;
        }
    }
    cairo_surface_destroy(source);
}

// Sizes and angles no drawing can honour draw what the numbers allow, and
// never crash or hang: a mirrored size is the same shape, a shape with no
// area or no finite point draws nothing, a NaN turn is no turn.
TEST_F(Shapes, BadSizesAndAnglesDrawWhatTheNumbersAllow) {
    enum Expect { kNothing, kAsPlain, kSomething };
    const struct Row {
        const char *name;
        DefinitionAccessor kind;
        std::function<void(ShapeRecord &)> spoil;
        Expect expect;
    } rows[] = {
        // clang-format off
        {"negative width", RectShapeDefinition, [](ShapeRecord &s) { s.width = -s.width; }, kAsPlain},
        {"negative height oval", OvalShapeDefinition, [](ShapeRecord &s) { s.height = -60; }, kAsPlain},
        {"zero width", RectShapeDefinition, [](ShapeRecord &s) { s.width = 0; }, kNothing},
        {"zero scale", OvalShapeDefinition, [](ShapeRecord &s) { s.scale = 0; }, kNothing},
        {"NaN rotation", RectShapeDefinition, [](ShapeRecord &s) { s.rotation = NAN; }, kAsPlain},
        {"NaN width", RectShapeDefinition, [](ShapeRecord &s) { s.width = NAN; }, kNothing},
        {"infinite X", OvalShapeDefinition, [](ShapeRecord &s) { s.x = INFINITY; }, kNothing},
        {"NaN arc angle", ArcShapeDefinition, [](ShapeRecord &s) { s.arcAngle = NAN; }, kNothing},
        {"NaN start angle", ArcShapeDefinition, [](ShapeRecord &s) { s.startAngle = NAN; }, kNothing},
        {"huge scale", OvalShapeDefinition, [](ShapeRecord &s) { s.scale = 1e12; }, kSomething},
        {"huge border", RectShapeDefinition, [](ShapeRecord &s) { s.border = 1, s.borderWidth = 1e9; }, kSomething},
        {"NaN border width", RectShapeDefinition, [](ShapeRecord &s) { s.border = 1, s.borderWidth = NAN; }, kAsPlain},
        {"NaN text size", StringShapeDefinition, [](ShapeRecord &s) { s.textSize = NAN; }, kSomething},
        // clang-format on
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Held plain(Make(row.kind, 110, 90, 80, 60));
        Held spoilt(Make(row.kind, 110, 90, 80, 60));
        row.spoil(*spoilt);
        const Pixels drawn = Drawn(spoilt.o);
        if (row.expect == kNothing)
            EXPECT_EQ(Ink(drawn), 0);
        else if (row.expect == kSomething)
            EXPECT_GT(Ink(drawn), 0);
        else
            EXPECT_LE(Mismatches(drawn, Drawn(plain.o), {0xCC2200, 0x0033AA}), 4);
        EXPECT_FALSE(RectShapeContains(spoilt.o, NAN, 90));
    }
}

// What the language sees of shapes: the inside test, the percent and angle
// accessors, a group's setters carrying its members, and its bounds.
TEST_F(Shapes, ContainsAndSetters) {
    Held rect(Make(RectShapeDefinition, 0, 0, 100, 100));
    Held arc(Make(ArcShapeDefinition, 0, 0, 100, 100)); // 0 to pi / 2: the lower right
    Held round(Make(RoundRectShapeDefinition, 0, 0, 100, 100));
    round->cornerWidth = round->cornerHeight = 60;
    const struct Row {
        RuntimeObject *shape;
        double x, y;
        bool inside;
    } rows[] = {
        {rect.o, 50, 50, true},  {rect.o, 51, 0, false},  {arc.o, 20, 20, true},
        {arc.o, -20, 20, false}, {arc.o, 20, -20, false}, {round.o, 48, 48, false},
        {round.o, 30, 48, true}, {round.o, 0, 50, true},
    };
    for (const Row &row : rows)
        EXPECT_EQ(RectShapeContains(row.shape, row.x, row.y), row.inside)
            << Shape(row.shape)->tag << " at " << row.x << ", " << row.y;
    SetDouble(rect.o, offsetof(ShapeRecord, rotation), kPi / 4);
    EXPECT_TRUE(RectShapeContains(rect.o, 0, 65)); // a diamond now
    EXPECT_FALSE(RectShapeContains(rect.o, 45, 45));

    doublePercentSetter(rect.o, offsetof(ShapeRecord, fill), 49);
    EXPECT_DOUBLE_EQ(rect->fill, 0.49);
    EXPECT_DOUBLE_EQ(doublePercentGetter(rect.o, offsetof(ShapeRecord, fill)), 49);
    ArcStartAngleSetter(arc.o, offsetof(ShapeRecord, startAngle), -1);
    EXPECT_DOUBLE_EQ(arc->startAngle, 2 * kPi - 1);

    Held group(NewObjectOfDefinition(Group2DDefinition()));
    Held a(Make(RectShapeDefinition, 10, 0, 4, 4)), b(Make(OvalShapeDefinition, -10, 0, 4, 4));
    Group2DAppend(group.o, a.o);
    Group2DInsert(group.o, 0, b.o);
    ASSERT_EQ(Group2DCount(group.o), 2);
    EXPECT_EQ(Group2DGetItem(group.o, 0), b.o);
    RuntimeUnlockObject(b.o); // the reference Item gave
    SetDouble(group.o, offsetof(ShapeRecord, x), 5);
    SetDouble(group.o, offsetof(ShapeRecord, scale), 0); // ignored
    SetDouble(group.o, offsetof(ShapeRecord, scale), 2);
    SetDouble(group.o, offsetof(ShapeRecord, rotation), kPi / 2);
    EXPECT_NEAR(a->x, 5, 1e-9);
    EXPECT_NEAR(a->y, 20, 1e-9);
    EXPECT_DOUBLE_EQ(a->scale, 2);
    EXPECT_DOUBLE_EQ(a->rotation, kPi / 2);
    EXPECT_NEAR(b->y, -20, 1e-9);
    Group2DAppend(group.o, group.o); // holds itself: drawing and moving stop
    Drawn(group.o, 3, 4);
    EXPECT_NEAR(a->x, 5, 1e-9); // moved for the draw and back
    Group2DRemoveByObject(group.o, group.o);

    const struct Bad {
        const char *name;
        std::function<void()> call;
    } bad[] = {
        {"Item(2)", [&] { Group2DGetItem(group.o, 2); }},
        {"Item(-1) =", [&] { Group2DSetItem(group.o, -1, a.o); }},
        {"Remove(5)", [&] { Group2DRemoveByIndex(group.o, 5); }},
        {"Insert(3)", [&] { Group2DInsert(group.o, 3, a.o); }},
        {"ControlX(2)", [&] { CurveGetControlX(a.o, 2); }},
        {"ControlY(-1) =", [&] { CurveSetControlY(a.o, -1, 1); }},
        {"Count of nil", [&] { Group2DCount(nullptr); }},
    };
    for (const Bad &row : bad) {
        RuntimeEnterHandlerRegion();
        row.call();
        RuntimeObject *e = RuntimeTakeException();
        RuntimeLeaveHandlerRegion();
        EXPECT_NE(e, nullptr) << row.name;
        RuntimeUnlockObject(e);
    }
    EXPECT_EQ(Group2DCount(group.o), 2);
}

// Fill and Border are all or nothing on this target; segment counts follow
// the shape's size and are capped.
TEST_F(Shapes, StyleThresholdsAndSegmentCounts) {
    Held rect(Make(RectShapeDefinition, 110, 90, 40, 40));
    const struct Row {
        double fill, border, borderWidth;
        bool filled, bordered;
    } rows[] = {{0.49, 0, 1, false, false},
                {0.5, 0, 1, true, false},
                {0, 1, 0, false, false},
                {0, 1, 3, false, true},
                {0, 0.49, 3, false, false}};
    for (const Row &row : rows) {
        rect->fill = row.fill, rect->border = row.border, rect->borderWidth = row.borderWidth;
        const Pixels p = Drawn(rect.o);
        EXPECT_EQ(p[90 * kW + 110] == 0xCC2200, row.filled) << row.fill;
        EXPECT_EQ(p[90 * kW + 90] == 0x0033AA, row.bordered) << row.border;
    }
    Held oval(Make(OvalShapeDefinition, 0, 0, 100, 100));
    std::vector<PointD> points;
    const struct Count {
        int32_t segments;
        double scale;
        size_t points;
    } counts[] = {{2, 1, 40}, {0, 0.1, 8}, {5000, 1, 1024}, {0, 1e9, 1024}, {12, 1, 12}};
    for (const Count &c : counts) {
        oval->segments = c.segments, oval->scale = c.scale;
        ClosedOutline(*oval, points);
        EXPECT_EQ(points.size(), c.points) << c.segments << " at scale " << c.scale;
    }
}

// A string is centred on X with its baseline on Y; turned a quarter, its
// ink is as tall as it was wide.
TEST_F(Shapes, StringsStandAndTurn) {
    Held text(Make(StringShapeDefinition, 110, 90, 0, 0));
    SSToStringSetter(text.o, 0, Lit("Shapes"));
    text->textSize = 24, text->fillColor = 0x000000;
    KelpString back = StringToSSGetter(text.o, 0);
    EXPECT_EQ(Str(back), "Shapes");
    ReleaseString(back);
    auto box = [](const Pixels &p) {
        int left = kW, right = -1, top = kH, bottom = -1;
        for (int i = 0; i < kW * kH; ++i)
            if (p[i] != 0xFFFFFF)
                left = std::min(left, i % kW), right = std::max(right, i % kW),
                top = std::min(top, i / kW), bottom = std::max(bottom, i / kW);
        return std::array<int, 4>{left, top, right, bottom};
    };
    const auto flat = box(Drawn(text.o));
    EXPECT_NEAR((flat[0] + flat[2]) / 2.0, 110, 2);
    EXPECT_LE(flat[3], 96); // the descent, at most
    EXPECT_GE(flat[1], 60);
    text->rotation = kPi / 2;
    const auto turned = box(Drawn(text.o));
    EXPECT_NEAR(turned[3] - turned[1], flat[2] - flat[0], 3);
    EXPECT_NEAR(turned[2] - turned[0], flat[3] - flat[1], 3);
    EXPECT_LT(turned[0], 110); // turned clockwise: the tops of the letters face right
}

// System._DrawWindow: the fill, then the backdrop at the top left, cut to
// the picture, or stretched over it.
TEST_F(Shapes, SystemDrawsAWindowPicture) {
    Pixels quarters;
    Held backdrop(QuarterPicture(quarters)); // 40 x 30
    const struct Row {
        const char *name;
        int32_t width, height;
        bool withBackdrop, stretch;
        struct Spot {
            int x, y;
            uint32_t colour;
        } spots[4];
    } rows[] = {
        // clang-format off
        {"backdrop at the top left", 60, 50, true, false,
         {{0, 0, 0x00AA00}, {39, 29, 0xDDAA00}, {40, 0, 0x336699}, {0, 30, 0x336699}}},
        {"backdrop cut to the picture", 25, 10, true, false,
         {{0, 0, 0x00AA00}, {24, 9, 0xAA00AA}, {19, 9, 0x00AA00}, {20, 0, 0xAA00AA}}},
        {"backdrop stretched", 80, 90, true, true,
         {{0, 0, 0x00AA00}, {79, 89, 0xDDAA00}, {41, 10, 0xAA00AA}, {10, 46, 0x0000CC}}},
        // clang-format on
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Held picture(SystemDrawWindow(nullptr, Lit("Untitled"), row.width, row.height, 0, 1, 1, 1,
                                      1, row.withBackdrop ? backdrop.o : nullptr, row.stretch,
                                      0x336699));
        ASSERT_NE(picture.o, nullptr);
        EXPECT_EQ(pictureWidthGetter(picture.o, 0), row.width);
        EXPECT_EQ(PictureDepthGetter(picture.o, 0), 32);
        for (const auto &spot : row.spots)
            EXPECT_EQ(StoreOf(picture.o)->GetPixel(spot.x, spot.y), spot.colour)
                << spot.x << ", " << spot.y;
    }
}

} // namespace
} // namespace kelp::test
