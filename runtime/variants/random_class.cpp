// The Random class: each object holds a generator of its own.
#include "variants/random_class.h"

#include "kelp/objects.h"
#include "kelp/random.h"

#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "random/random_generator.h"

#include <cstddef>

namespace kelp {
namespace {

struct RandomObject {
    RuntimeObject object;
    int32_t seed;               // as last set, or the fresh seed
    RandomGenerator *generator; // made by the initializer
};

RandomGenerator *GeneratorOf(RuntimeObject *self) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    auto *r = reinterpret_cast<RandomObject *>(self);
    if (!r->generator) // a subclass that skipped the initializer
        r->generator = new RandomGenerator(static_cast<uint32_t>(r->seed));
    return r->generator;
}

} // namespace

ObjectDefinition *RandomDefinition() {
    static const ParameterRow range[] = {{"minimum", &kTypeInteger}, {"maximum", &kTypeInteger}};
    static const ParameterRow limit[] = {{"limit", &kTypeInteger}};
    static const PropertyRow properties[] = {
        {0, "Seed", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(RandomSeedSetter),
         offsetof(RandomObject, seed)},
    };
    static const MethodRow methods[] = {
        {"Number", &kTypeDouble, nullptr, 0, KELP_ENTRY(RandomNumber)},
        {"InRange", &kTypeInteger, range, 2, KELP_ENTRY(RandomNumberInRangeMinMax)},
        {"LessThan", &kTypeInteger, limit, 1, KELP_ENTRY(RandomNumberLessThan)},
        {"Randomize", nullptr, nullptr, 0, KELP_ENTRY(RandomizeSeed)},
    };
    static const ClassDescription description = {
        .name = "Random",
        .instanceSize = sizeof(RandomObject),
        .initializer = KELP_ENTRY(RandomConstructor),
        .finalizer = KELP_ENTRY(RandomDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void RandomConstructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *r = reinterpret_cast<RandomObject *>(self);
    const uint32_t seed = FreshSeed();
    r->seed = static_cast<int32_t>(seed);
    r->generator = new RandomGenerator(seed);
}

extern "C" void RandomDestructor(RuntimeObject *self) {
    if (!self)
        return;
    auto *r = reinterpret_cast<RandomObject *>(self);
    delete r->generator;
    r->generator = nullptr;
}

extern "C" void RandomSeedSetter(RuntimeObject *self, int32_t, int32_t seed) {
    if (RandomGenerator *g = GeneratorOf(self)) {
        reinterpret_cast<RandomObject *>(self)->seed = seed;
        g->Seed(static_cast<uint32_t>(seed));
    }
}

extern "C" void RandomizeSeed(RuntimeObject *self) {
    if (RandomGenerator *g = GeneratorOf(self)) {
        const uint32_t seed = FreshSeed();
        reinterpret_cast<RandomObject *>(self)->seed = static_cast<int32_t>(seed);
        g->Seed(seed);
    }
}

extern "C" double RandomNumber(RuntimeObject *self) {
    RandomGenerator *g = GeneratorOf(self);
    return g ? g->Number() : 0;
}

extern "C" int32_t RandomNumberInRangeMinMax(RuntimeObject *self, int32_t low, int32_t high) {
    RandomGenerator *g = GeneratorOf(self);
    return g ? g->InRange(low, high) : 0;
}

extern "C" int32_t RandomNumberLessThan(RuntimeObject *self, int32_t limit) {
    RandomGenerator *g = GeneratorOf(self);
    return g ? g->LessThan(limit) : 0;
}
