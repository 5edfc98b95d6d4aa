// Collection against a plain model under seeded random operations, and the
// Random class against python3's generator of the same kind.
#include "support/class_kit.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <sstream>
#include <strings.h>

using namespace kelp::test;

namespace {

RuntimeObject *New(const char *className) {
    return RuntimeNewObject(RuntimeLookupClass(Lit(className)));
}

// Takes the pending exception's class name and clears it.
std::string TakeRaised() {
    RuntimeObject *e = RuntimeTakeException();
    std::string name = e ? Str(e->klass->name) : "";
    RuntimeUnlockObject(e);
    return name;
}

TEST(Collection, RandomOperationsMatchAPlainModel) {
    struct Entry {
        RuntimeObject *value;
        std::string key;
    };
    std::vector<RuntimeObject *> values;
    for (int i = 0; i < 8; ++i)
        values.push_back(New("Random"));
    const char *keys[] = {"", "alpha", "ALPHA", "beta", "Gamma"};
    RuntimeObject *c = New("Collection");
    std::vector<Entry> model;
    std::mt19937 random(20261126);
    RuntimeEnterHandlerRegion();
    for (int step = 0; step < 20000; ++step) {
        const std::string key = keys[random() % 5];
        auto byKey = std::find_if(model.begin(), model.end(), [&](const Entry &e) {
            return !key.empty() && strcasecmp(e.key.c_str(), key.c_str()) == 0;
        });
        const int32_t index = int32_t(random() % (model.size() + 2)); // 0 and n+1 are out
        const bool inRange = index >= 1 && size_t(index) <= model.size();
        switch (random() % 5) {
        case 0:
        case 1: {
            RuntimeObject *v = values[random() % values.size()];
            collectionAdd(c, v, Lit(key));
            model.push_back({v, key});
            break;
        }
        case 2: {
            RuntimeObject *got = collectionIdxItem(c, index);
            EXPECT_EQ(got, inRange ? model[size_t(index - 1)].value : nullptr);
            EXPECT_EQ(TakeRaised(), inRange ? "" : "OutOfBoundsException");
            RuntimeUnlockObject(got);
            break;
        }
        case 3: {
            RuntimeObject *got = collectionItem(c, Lit(key));
            EXPECT_EQ(got, byKey == model.end() ? nullptr : byKey->value) << key;
            RuntimeUnlockObject(got);
            break;
        }
        default:
            if (random() % 2) {
                collectionIdxRemove(c, index);
                EXPECT_EQ(TakeRaised(), inRange ? "" : "OutOfBoundsException");
                if (inRange)
                    model.erase(model.begin() + index - 1);
            } else {
                collectionKeyRemove(c, Lit(key));
                if (byKey != model.end())
                    model.erase(byKey);
            }
        }
        ASSERT_EQ(collectionCount(c), int32_t(model.size())) << "step " << step;
    }
    RuntimeLeaveHandlerRegion();
    // Each value is held once per entry that has it, and no more.
    for (RuntimeObject *v : values)
        EXPECT_EQ(v->referenceCount,
                  1 + std::count_if(model.begin(), model.end(),
                                    [&](const Entry &e) { return e.value == v; }));
    RuntimeUnlockObject(c);
    for (RuntimeObject *v : values) {
        EXPECT_EQ(v->referenceCount, 1);
        RuntimeUnlockObject(v);
    }
}

TEST(RandomClass, SeededSequencesMatchPythonsTwister) {
    // Python's random() draws two 32-bit words of the same twister; its state
    // is set the way a single-number seed sets it.
    const char *program = R"(python3 -c '
import random, math
def state(seed):
    mt = [seed & 0xFFFFFFFF]
    for i in range(1, 624):
        mt.append((1812433253 * (mt[-1] ^ (mt[-1] >> 30)) + i) & 0xFFFFFFFF)
    return (3, tuple(mt + [624]), None)
for seed in [0, 1, 5489, 2**31 - 1, 2**32 - 7]:
    r = random.Random(); r.setstate(state(seed))
    print(" ".join("%.17g" % r.random() for _ in range(5)))
    print(" ".join(str(-3 + math.floor(r.random() * 11)) for _ in range(20)))
    print(" ".join(str(math.floor(r.random() * 1000)) for _ in range(20)))
')";
    std::string reference;
    if (FILE *pipe = popen(program, "r")) {
        char buffer[4096];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            reference.append(buffer, n);
        pclose(pipe);
    }
    ASSERT_FALSE(reference.empty()) << "python3 did not run";
    RuntimeObject *r = New("Random");
    std::ostringstream ours;
    for (uint32_t seed : {0u, 1u, 5489u, 2147483647u, 4294967289u}) {
        RandomSeedSetter(r, 0, int32_t(seed));
        for (int i = 0; i < 5; ++i) {
            char text[40];
            std::snprintf(text, sizeof text, "%.17g", RandomNumber(r));
            ours << (i ? " " : "") << text;
        }
        ours << "\n";
        for (int i = 0; i < 20; ++i) // the bounds in either order
            ours << (i ? " " : "") << RandomNumberInRangeMinMax(r, i % 2 ? 7 : -3, i % 2 ? -3 : 7);
        ours << "\n";
        for (int i = 0; i < 20; ++i)
            ours << (i ? " " : "") << RandomNumberLessThan(r, 1000);
        ours << "\n";
    }
    EXPECT_EQ(ours.str(), reference);
    RuntimeUnlockObject(r);
}

} // namespace
