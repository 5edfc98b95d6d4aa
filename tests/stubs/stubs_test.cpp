// The services this platform lacks: every function answers its neutral value
// whether given nil or ordinary arguments, keeps its arguments' counts, and
// only the constructors that name something to reach raise.
#include "support/class_kit.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <type_traits>

using namespace kelp::test;

namespace {

// The arguments of one call: all nil, or live values of each kind.
struct Arguments {
    RuntimeObject *object = nullptr;
    KelpString text = nullptr;
    void *pointer = nullptr;
    int32_t integer = 0;
    double number = 0;
};

template <typename T> T ArgumentOf(const Arguments &a) {
    if constexpr (std::is_same_v<T, RuntimeObject *>)
        return a.object;
    else if constexpr (std::is_same_v<T, KelpString>)
        return a.text;
    else if constexpr (std::is_pointer_v<T>)
        return a.pointer;
    else if constexpr (std::is_floating_point_v<T>)
        return T(a.number);
    else
        return T(a.integer);
}

// Calls the function with arguments of its own declared types; true when
// the result is the neutral one.
template <typename R, typename... P> std::function<bool(const Arguments &)> Probe(R (*fn)(P...)) {
    return [fn](const Arguments &a) {
        if constexpr (std::is_void_v<R>) {
            fn(ArgumentOf<P>(a)...);
            return true;
        } else {
            return fn(ArgumentOf<P>(a)...) == R{};
        }
    };
}

struct Row {
    const char *name;
    std::function<bool(const Arguments &)> call;
};

#define KELP_EXPORT(fn) Row{#fn, Probe(&fn)},
const Row kRows[] = {
#include "stubs/exports.inc"
};
#undef KELP_EXPORT

const std::set<std::string> kRaising = {
    "OLEObjectProgramIDConstructor", "OLEObjectNewInstanceConstructor",
    "RegistryItemPathCtor",          "KeyChainConstructor",
    "RuntimeScriptExecute",          "RuntimeScriptFunction",
    "RuntimeStartParamScript"};

std::string ClassOf(RuntimeObject *o) { return o && o->klass ? Str(o->klass->name) : ""; }

TEST(Stubs, EveryFunctionAnswersNeutrallyAndKeepsItsArguments) {
    RuntimeObject *object = RuntimeNewObject(RuntimeLookupClass(Lit("DockItem")));
    ASSERT_NE(object, nullptr);
    KelpString text = Lit("Word.Application");
    int place = 0;
    const Arguments nil, ordinary{object, text, &place, 7, 2.5};
    for (const Row &row : kRows)
        for (const Arguments *args : {&nil, &ordinary}) {
            RuntimeEnterHandlerRegion();
            EXPECT_TRUE(row.call(*args)) << row.name;
            RuntimeObject *e = RuntimeTakeException();
            RuntimeLeaveHandlerRegion();
            if (kRaising.count(row.name)) {
                EXPECT_EQ(ClassOf(e), "ServiceNotAvailableException") << row.name;
                const auto *ex = reinterpret_cast<RuntimeExceptionObject *>(e);
                EXPECT_NE(Str(ex ? ex->message : nullptr).find(" is not available on this system."),
                          std::string::npos)
                    << row.name;
            } else {
                EXPECT_EQ(e, nullptr) << row.name << " raised " << ClassOf(e);
            }
            RuntimeUnlockObject(e);
            EXPECT_EQ(object->referenceCount, 1) << row.name;
            EXPECT_EQ(text->referenceCount, 1) << row.name;
        }
    RuntimeUnlockObject(object);
}

TEST(Stubs, TheirClassesAndFunctionsExistForProgramsToUse) {
    RuntimeInitExternalClasses();
    for (const char *name :
         {"OLEObject", "OLEParameter", "RegistryItem", "KeyChain", "KeyChainItem",
          "AppleEventDescList", "AppleEventRecord", "DockItem", "Movie"}) {
        RuntimeObject *o = RuntimeNewObject(RuntimeLookupClass(Lit(name)));
        EXPECT_EQ(ClassOf(o), name);
        RuntimeUnlockObject(o);
    }
    // Application.DockItem and the module functions read nil.
    EXPECT_EQ(AppDockItemGetter(nullptr, 0), nullptr);
    EXPECT_EQ(openURLMovie(Lit("file:///tmp/none.mov")), nullptr);
    EXPECT_EQ(RuntimeGetDefaultApplicationRegistryItem(), nullptr);
}

} // namespace
