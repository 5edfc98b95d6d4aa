// C++ in an image: classes with virtual functions, inline functions and
// templates kept once across objects, a static object built by a constructor
// and destroyed at exit.
#include "kelp/image_code.h"
#include "kelp/strings.h"

extern "C" int printf(const char *format, ...);

namespace {

struct Shape {
    virtual ~Shape() = default;
    virtual int Area() const = 0;
};
struct Square final : Shape {
    explicit Square(int side) : mSide(side) {}
    int Area() const override { return mSide * mSide; }
    int mSide;
};
struct Band final : Shape {
    Band(int w, int h) : mWidth(w), mHeight(h) {}
    int Area() const override { return mWidth * mHeight; }
    int mWidth, mHeight;
};

template <typename T> T Twice(T v) { return v + v; }

// Built before the entry runs; its destructor reports at exit once the
// program has used it.
struct Registry {
    Registry() : mCount(Twice(21)) {}
    ~Registry() {
        if (mCount != Twice(21))
            printf("registry gone with %d\n", mCount);
    }
    int mCount;
};
Registry gRegistry;
Square gSquare(3);
const Shape *const kShapes[] = {&gSquare};

} // namespace

extern "C" void ProgramObjects(void) {
    Band band(2, 5);
    const Shape *shapes[] = {kShapes[0], &band};
    int total = 0;
    for (const Shape *s : shapes)
        total += s->Area();
    ++gRegistry.mCount;
    printf("areas %d, registry %d, %s\n", total, gRegistry.mCount,
           StringGetCString(KELP_STRING("from C++")));
}
