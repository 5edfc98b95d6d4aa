// Dictionary: its rules, growth of the bin table, removal order, failures,
// and a seeded random walk against a plain model.
#include "dates/date_kit.h"
#include "support/class_kit.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

using datekit::Lit;
using datekit::Raised;
using datekit::Ref;
using datekit::Text;

namespace {

RuntimeObject *NewDictionary() {
    static RuntimeClass *klass = RuntimeLookupClass(Lit("Dictionary"));
    return RuntimeNewObject(klass);
}

void Set(RuntimeObject *d, RuntimeObject *key, RuntimeObject *value) {
    dictionaryValueSetter(d, key, value);
    RuntimeUnlockObject(key);
    RuntimeUnlockObject(value);
}

std::string KeyText(RuntimeObject *d, int32_t index) {
    Ref key(dictionaryKey(d, index));
    return key.get() ? Text(variantToString(key.get())) : "nil";
}

TEST(Dictionary, KeysByHashAndEqualityAsTheLanguageHasThem) {
    Ref d(NewDictionary());
    Set(d.get(), intToVariant(1), stringToVariant(Lit("number")));
    Set(d.get(), stringToVariant(Lit("1")), stringToVariant(Lit("text")));
    EXPECT_EQ(dictionaryCount(d.get()), 2) << "1 and \"1\" hash apart";
    Set(d.get(), stringToVariant(Lit("Name")), intToVariant(1));
    Set(d.get(), stringToVariant(Lit("NAME")), intToVariant(2));
    EXPECT_EQ(dictionaryCount(d.get()), 3) << "case doesn't make a new key";
    EXPECT_EQ(KeyText(d.get(), 2), "Name") << "the first key stays";
    Ref key(stringToVariant(Lit("name")));
    Ref value(dictionaryValueGetter(d.get(), key.get()));
    EXPECT_EQ(variantToInt(value.get()), 2);
    // A nil key is a key like any other: hash 0, equal only to nil.
    Set(d.get(), nullptr, intToVariant(9));
    EXPECT_TRUE(dictionaryHasKey(d.get(), nullptr));
    Ref nilValue(dictionaryValueGetter(d.get(), nullptr));
    EXPECT_EQ(variantToInt(nilValue.get()), 9);
}

TEST(Dictionary, RemovalMovesTheLastKeyIntoTheHole) {
    Ref d(NewDictionary());
    for (const char *k : {"a", "b", "c"})
        Set(d.get(), stringToVariant(Lit(k)), booleanToVariant(1));
    Ref a(stringToVariant(Lit("a")));
    dictionaryRemove(d.get(), a.get());
    EXPECT_EQ(dictionaryCount(d.get()), 2);
    EXPECT_EQ(KeyText(d.get(), 0), "c");
    EXPECT_EQ(KeyText(d.get(), 1), "b");
}

TEST(Dictionary, LookupFailuresAndBadIndices) {
    Ref d(NewDictionary());
    Set(d.get(), intToVariant(5), intToVariant(50));
    Ref missing(intToVariant(6)), fallback(stringToVariant(Lit("none")));
    Ref found(DictionaryLookup(d.get(), missing.get(), fallback.get()));
    EXPECT_EQ(found.get(), fallback.get());
    EXPECT_EQ(dictionaryCount(d.get()), 1) << "Lookup adds nothing";
    struct Case {
        const char *name;
        std::function<void()> call;
        const char *raised;
    } cases[] = {
        {"Value of a missing key",
         [&] { RuntimeUnlockObject(dictionaryValueGetter(d.get(), missing.get())); },
         "KeyNotFoundException"},
        {"Remove of a missing key", [&] { dictionaryRemove(d.get(), missing.get()); },
         "KeyNotFoundException"},
        {"Key(-1)", [&] { RuntimeUnlockObject(dictionaryKey(d.get(), -1)); },
         "OutOfBoundsException"},
        {"Key(Count)", [&] { RuntimeUnlockObject(dictionaryKey(d.get(), 1)); },
         "OutOfBoundsException"},
        {"Value(Count)", [&] { RuntimeUnlockObject(dictionaryValueByIndex(d.get(), 1)); },
         "OutOfBoundsException"},
        {"a nil dictionary", [&] { dictionaryCount(nullptr); }, "NilObjectException"},
        {"a key whose kind has no comparison with the keys in its bin",
         [&] {
             Ref plainKey(RuntimeNewObject(RuntimeLookupClass(Lit("Dictionary"))));
             dictionaryHasKey(d.get(), plainKey.get());
         },
         ""},
    };
    for (const Case &c : cases)
        EXPECT_EQ(Raised(c.call), c.raised) << c.name;
    EXPECT_EQ(dictionaryCount(d.get()), 1);
}

TEST(Dictionary, TheBinTableGrowsThroughThePrimesUnlessFixed) {
    Ref d(NewDictionary());
    EXPECT_EQ(dictionaryGetBins(d.get(), 0), 61);
    std::vector<int32_t> seen;
    for (int32_t i = 0; i < 90000; ++i) {
        Set(d.get(), intToVariant(i), intToVariant(i));
        const int32_t bins = dictionaryGetBins(d.get(), 0);
        if (seen.empty() || seen.back() != bins)
            seen.push_back(bins);
    }
    const std::vector<int32_t> primes = {61,   127,  251,   509,   1021,  2039,
                                         4093, 8191, 16381, 32749, 65521, 131071};
    EXPECT_EQ(seen, primes);
    dictionarySetBins(d.get(), 0, 10);
    for (int32_t i = 90000; i < 90100; ++i)
        Set(d.get(), intToVariant(i), intToVariant(i));
    EXPECT_EQ(dictionaryGetBins(d.get(), 0), 10) << "a count the program set stays";
    for (int32_t i = 0; i < 90100; i += 997) {
        Ref key(intToVariant(i));
        Ref value(dictionaryValueGetter(d.get(), key.get()));
        EXPECT_EQ(variantToInt(value.get()), i);
    }
    dictionarySetBins(d.get(), 0, 0);
    EXPECT_EQ(dictionaryGetBins(d.get(), 0), 131071);
    dictionaryRemoveAll(d.get());
    EXPECT_EQ(dictionaryCount(d.get()), 0);
    EXPECT_EQ(dictionaryGetBins(d.get(), 0), 61);
}

// Keys of an application class whose Operator_Hash raises, or reaches back
// into the dictionary it is being hashed for.
RuntimeObject *gReentered = nullptr;
void RaiseNew(const char *className) {
    RuntimeObject *e = RuntimeNewObject(RuntimeLookupClass(Lit(className)));
    RuntimeRaiseException(e);
    RuntimeUnlockObject(e);
}
int32_t RaisingHash(RuntimeObject *) {
    RaiseNew("OutOfMemoryException");
    return 0;
}
int32_t ReenteringHash(RuntimeObject *self) {
    dictionaryValueSetter(gReentered, self, self);
    return 1;
}
RuntimeClass *KeyClass(const char *name, int32_t (*hash)(RuntimeObject *)) {
    RuntimeClass *c = RuntimeNewClass(nullptr, 1, 0, 0, 0, 0);
    c->name = Lit(name);
    c->instanceSize = sizeof(RuntimeObject);
    c->methodTable[0] = {reinterpret_cast<void *>(hash),
                         Lit((std::string("Operator_Hash%i4%o<") + name + ">").c_str())};
    return c;
}

TEST(Dictionary, KeysWhoseHashFailsLeaveTheDictionaryAsItWas) {
    kelp::test::ReportRecorder reports;
    Ref d(NewDictionary());
    Set(d.get(), intToVariant(1), intToVariant(1));
    Ref bad(RuntimeNewObject(KeyClass("BadKey", &RaisingHash)));
    const std::function<void()> calls[] = {
        [&] { dictionaryValueSetter(d.get(), bad.get(), bad.get()); },
        [&] { dictionaryRemove(d.get(), bad.get()); },
        [&] { RuntimeUnlockObject(dictionaryValueGetter(d.get(), bad.get())); },
        [&] { EXPECT_FALSE(dictionaryHasKey(d.get(), bad.get())); },
        [&] { EXPECT_EQ(DictionaryLookup(d.get(), bad.get(), d.get()), nullptr); },
    };
    for (const auto &call : calls)
        EXPECT_EQ(Raised(call), "OutOfMemoryException");
    EXPECT_EQ(dictionaryCount(d.get()), 1);

    // An exception already pending is not the key's: the look-up goes on.
    RuntimeEnterHandlerRegion();
    RaiseNew("EndException");
    Ref one(intToVariant(1));
    EXPECT_TRUE(dictionaryHasKey(d.get(), one.get()));
    RuntimeUnlockObject(RuntimeTakeException());
    RuntimeLeaveHandlerRegion();

    gReentered = d.get();
    Ref reentering(RuntimeNewObject(KeyClass("ReenteringKey", &ReenteringHash)));
    dictionaryValueSetter(d.get(), reentering.get(), nullptr);
    EXPECT_TRUE(reports.Has("!fBusy"));
    EXPECT_EQ(dictionaryCount(d.get()), 2)
        << "the outer operation finishes, the inner one is refused";
}

// The model: a map from the key's canonical text to its value, and the
// order of Key(index) kept by the same rule (the last fills a hole).
TEST(Dictionary, SeededRandomOperationsAgreeWithAPlainModel) {
    std::mt19937 rng(20261125);
    Ref d(NewDictionary());
    std::unordered_map<std::string, int32_t> model;
    std::vector<std::string> order;
    auto makeKey = [&](std::string &canonical) -> RuntimeObject * {
        const int n = int(rng() % 300);
        if (rng() % 2) {
            // An Integer and a Color of one value are one key.
            canonical = "i" + std::to_string(n);
            return rng() % 4 ? intToVariant(n) : colorToVariant(uint32_t(n));
        }
        std::string text = "Key" + std::to_string(n);
        for (char &c : text)
            if (rng() % 2)
                c = char(std::toupper(c));
        canonical = "s" + std::string("KEY") + std::to_string(n);
        const kelp::string key(text.c_str());
        return stringToVariant(key.Storage());
    };
    for (int step = 0; step < 60000; ++step) {
        std::string canonical;
        Ref key(makeKey(canonical));
        const unsigned op = rng() % 100;
        if (op < 60) {
            const int32_t value = int32_t(rng());
            Ref v(intToVariant(value));
            dictionaryValueSetter(d.get(), key.get(), v.get());
            if (!model.count(canonical))
                order.push_back(canonical);
            model[canonical] = value;
        } else if (op < 85) {
            const std::string raised = Raised([&] { dictionaryRemove(d.get(), key.get()); });
            const bool present = model.erase(canonical) > 0;
            ASSERT_EQ(raised, present ? "" : "KeyNotFoundException");
            if (present) {
                size_t at = 0;
                while (order[at] != canonical)
                    ++at;
                order[at] = order.back();
                order.pop_back();
            }
        } else if (op < 99) {
            Ref none(intToVariant(-1));
            Ref got(DictionaryLookup(d.get(), key.get(), none.get()));
            const auto it = model.find(canonical);
            ASSERT_EQ(variantToInt(got.get()), it == model.end() ? -1 : it->second);
            ASSERT_EQ(dictionaryHasKey(d.get(), key.get()) != 0, it != model.end());
        } else if (rng() % 20 == 0) {
            dictionaryRemoveAll(d.get());
            model.clear();
            order.clear();
        } else {
            dictionarySetBins(d.get(), 0, int32_t(rng() % 3 == 0 ? 0 : 1 + rng() % 200));
        }
        ASSERT_EQ(dictionaryCount(d.get()), int32_t(model.size())) << "step " << step;
        if (step % 500 == 0)
            for (int32_t i = 0; i < int32_t(order.size()); ++i) {
                Ref k(dictionaryKey(d.get(), i));
                const int32_t kind = VarType(k.get());
                const bool number = kind == 2 || kind == 16;
                const std::string text =
                    number ? std::to_string(variantToInt(k.get())) : Text(variantToString(k.get()));
                std::string canon = number ? "i" + text : "s" + text;
                for (char &c : canon)
                    c = char(std::toupper(c));
                std::string expected = order[size_t(i)];
                for (char &c : expected)
                    c = char(std::toupper(c));
                ASSERT_EQ(canon, expected) << "index " << i << " at step " << step;
                Ref value(dictionaryValueByIndex(d.get(), i));
                ASSERT_EQ(variantToInt(value.get()), model[order[size_t(i)]]);
            }
    }
}

} // namespace
