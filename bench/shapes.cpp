// Drawing 10,000 shapes into a picture through Graphics.DrawObject: one
// kind at a time, plain and turned, and all of them held in one group.
// Each run ends with a round trip to the X server so that its work counts.
// Without DISPLAY a private Xvfb is started.
#include "bench_display.h"
#include "main/wiring_table.h"
#include "objects/definitions.h"
#include "process/display.h"
#include "shapes/shape_record.h"

#include "kelp/kelp.h"

#include <gtk/gtk.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using namespace kelp;

constexpr int kCount = 10000;

void Measure(const char *name, const std::function<void()> &body) {
    gdk_display_sync(gdk_display_get_default());
    auto start = std::chrono::steady_clock::now();
    body();
    gdk_display_sync(gdk_display_get_default());
    double ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    std::printf("%-46s %6d shapes %9.2f ms %8.2f us/shape\n", name, kCount, ms,
                ms * 1000.0 / kCount);
}

// kCount shapes of one class spread over a 600 x 400 picture.
std::vector<RuntimeObject *> Spread(DefinitionAccessor kind, double rotation, double border) {
    std::vector<RuntimeObject *> shapes;
    for (int i = 0; i < kCount; ++i) {
        RuntimeObject *o = NewObjectOfDefinition(kind());
        ShapeRecord &s = *Shape(o);
        s.x = (i * 37) % 600, s.y = (i * 53) % 400, s.width = 30, s.height = 20;
        s.x2 = s.x + 40, s.y2 = s.y + 10, s.controlX[0] = s.x + 20, s.controlY[0] = s.y - 30;
        s.order = 1, s.rotation = rotation, s.fillColor = i * 2654435761u & 0xFFFFFF;
        s.border = border > 0 ? 1 : 0, s.borderWidth = border;
        shapes.push_back(o);
    }
    return shapes;
}

void Release(std::vector<RuntimeObject *> &shapes) {
    for (RuntimeObject *o : shapes)
        RuntimeUnlockObject(o);
    shapes.clear();
}

} // namespace

int main(int argc, char **argv) {
    WireRuntime();
    pid_t server = bench::StartXvfb();
    if (!InitToolkit(&argc, &argv)) {
        std::fprintf(stderr, "bench_shapes: no X display\n");
        return 1;
    }
    RuntimeInitExternalClasses();
    RuntimeObject *picture = newPicture(640, 440, 32);
    RuntimeObject *g = pictureGraphicsGetter(picture, 0);

    const struct Row {
        const char *name;
        DefinitionAccessor kind;
        double rotation, border;
    } rows[] = {
        {"RectShape, 30x20", RectShapeDefinition, 0, 0},
        {"RectShape, turned 0.5, border 3", RectShapeDefinition, 0.5, 3},
        {"OvalShape, 30x20", OvalShapeDefinition, 0, 0},
        {"OvalShape, turned, border 4", OvalShapeDefinition, 0.5, 4},
        {"RoundRectShape, turned", RoundRectShapeDefinition, 0.5, 1},
        {"ArcShape, border 2", ArcShapeDefinition, 0, 2},
        {"CurveShape, quadratic, border 3", CurveShapeDefinition, 0, 3},
        {"StringShape \"-\"", StringShapeDefinition, 0, 0},
    };
    for (const Row &row : rows) {
        std::vector<RuntimeObject *> shapes = Spread(row.kind, row.rotation, row.border);
        Measure(row.name, [&] {
            for (RuntimeObject *o : shapes)
                RuntimeGraphicsDrawObject(g, o);
        });
        Release(shapes);
    }

    std::vector<RuntimeObject *> shapes = Spread(OvalShapeDefinition, 0, 1);
    RuntimeObject *group = NewObjectOfDefinition(Group2DDefinition());
    for (RuntimeObject *o : shapes)
        Group2DAppend(group, o);
    Measure("Group2D of ovals, drawn once", [&] { RuntimeGraphicsDrawObject(g, group); });
    Measure("Group2D of ovals, moved by DrawObject(g, 5, 5)",
            [&] { RuntimeGraphicsDrawObjectXY(g, group, 5, 5); });
    RuntimeUnlockObject(group);
    Release(shapes);

    RuntimeUnlockObject(g);
    RuntimeUnlockObject(picture);
    if (server > 0) {
        kill(server, SIGTERM);
        waitpid(server, nullptr, 0);
    }
    return 0;
}
