// The tests' own account of how a problem of the bank is drawn and written.
//
// Gen follows the random source and the pickers by their rules alone, from
// the same seed the drill's generator is given, so a test knows every draw a
// problem is about to see.  A problem's model draws its slots through Gen in
// the bank's order and writes the text it must show; Check then builds the
// real problem with the same seed and compares text, tip, the ten entries
// and the correct position, and that the drill used exactly as many draws.
#pragma once

#include "bank/problem_kit.h"
#include "bank_lists.h"
#include "drill/round.h"
#include "drill/state.h"
#include "drill/vocabulary.h"
#include "support/drill_bank_support.h"
#include "support/drill_reference_rnd.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace banktest {

// The random source's rule, shared with the engine's tests.
using Rnd = drilltest::ReferenceRnd;

inline const char *const kNames[61] = {
    "Joey",   "Billy",    "Bob",      "Randy",   "John",    "Martin", "Jerry",    "Terry",
    "Leslie", "Robert",   "Cindy",    "Sally",   "Mandy",   "Jackie", "Jodi",     "Wilma",
    "Betty",  "Martha",   "Isabelle", "Lucy",    "Michael", "Mike",   "Jared",    "Matt",
    "Mathew", "Andy",     "Andrew",   "Gil",     "Gerard",  "Juan",   "Patricia", "Patti",
    "Patty",  "Jeanette", "Jeanie",   "Anna",    "Alice",   "Marie",  "Maria",    "Kathy",
    "Marc",   "Ed",       "Edward",   "Peter",   "Jon",     "Nathan", "Jacob",    "Hector",
    "George", "Darian",   "Walter",   "Alicia",  "Bonnie",  "Sheila", "Judy",     "Juanita",
    "Janice", "Shelby",   "Heather",  "Augusta", "Linda"};

inline bool MaleIndex(int32_t idx) {
    return idx < 10 || (idx >= 20 && idx < 30) || (idx >= 40 && idx <= 50);
}

// The pickers by their rules, on the tests' own generator.
class Gen {
public:
    explicit Gen(uint32_t seed) : rnd(seed) {}

    int32_t To(int32_t n) { return static_cast<int32_t>(rnd.Next() * n + 1); }

    int32_t PickName() {
        int32_t idx = static_cast<int32_t>(rnd.Next() * 61);
        while (idx == lastName)
            idx = static_cast<int32_t>(rnd.Next() * 61);
        male = MaleIndex(idx);
        lastName = idx;
        return idx;
    }
    // nameK as a slot: the pick, kept in slot order for the rule checks.
    std::string Name() { return Keep(PickName()); }
    std::string Boy() {
        int32_t idx = PickName();
        while (!male)
            idx = PickName();
        return Keep(idx);
    }
    std::string Girl() {
        int32_t idx = PickName();
        while (male)
            idx = PickName();
        return Keep(idx);
    }
    std::string NameNotIn(std::vector<int32_t> others) {
        for (;;) {
            const int32_t idx = PickName();
            bool clash = false;
            for (int32_t o : others)
                clash = clash || o == idx;
            if (!clash)
                return Keep(idx);
        }
    }

    // "1..n; below b: v"
    int32_t Or(int32_t n, int32_t below, int32_t instead) {
        const int32_t v = To(n);
        return v < below ? instead : v;
    }
    // "1..n, redrawn up to t times while below b; still below b: v"
    int32_t Retry(int32_t n, int32_t below, int32_t times, int32_t instead) {
        int32_t v = To(n);
        for (int32_t i = 0; i < times && v < below; ++i)
            v = To(n);
        if (v < below) {
            ++fallbacks;
            return instead;
        }
        return v;
    }

    std::string He() const { return male ? "He" : "She"; }
    std::string he() const { return male ? "he" : "she"; }

    Rnd rnd;
    int32_t lastName = 9999;
    bool male = true;
    int32_t fallbacks = 0;      // redraw limits reached, so the fixed value stood in
    std::vector<int32_t> names; // the name slots' indices, in slot order

private:
    std::string Keep(int32_t idx) {
        names.push_back(idx);
        return kNames[idx];
    }
};

inline std::string S(int64_t v) { return std::to_string(v); }

// The money text by its rule: cents part with the sign of the amount.
inline std::string Money(int32_t cents) {
    const int32_t c = cents % 100;
    const int32_t d = (cents - c) / 100;
    if (c > 9)
        return "$" + S(d) + "." + S(c);
    if (c >= 1)
        return "$" + S(d) + ".0" + S(c);
    if (c == 0)
        return "$" + S(d) + ".00";
    return "";
}

// What a problem must come out as.
struct Model {
    Model() = default;
    Model(std::string text_, std::string tip_, int32_t T_)
        : text(std::move(text_)), tip(std::move(tip_)), T(T_) {}

    std::string text;
    std::string tip;
    int32_t T = 0;                           // the correct value of a number or money list
    bool money = false;                      // entries are money texts
    std::string unit;                        // literal behind every number entry
    int32_t r1 = 0;                          // for entries that are values of r1
    std::map<std::string, std::string> fill; // placeholders of literal entries
};

using ModelFn = Model (*)(Gen &);

inline std::string Expand(std::string s, const std::map<std::string, std::string> &fill) {
    for (const auto &[key, value] : fill) {
        for (size_t at = s.find(key); at != std::string::npos; at = s.find(key, at + value.size()))
            s.replace(at, key.size(), value);
    }
    return s;
}

inline std::string ExpectedEntry(const Model &m, const ListEntry &e) {
    auto number = [&](int32_t v) { return m.money ? Money(v) : S(v) + m.unit; };
    switch (e.kind) {
    case ListEntry::Offset: return number(m.T + e.offset);
    case ListEntry::Value: return number(e.value(m.r1));
    case ListEntry::Literal: return Expand(e.literal, m.fill);
    }
    return {};
}

using drilltest::Build;
using drilltest::PrepareDrill;

inline std::string Entry(int32_t i) { return sumbrook::P().sAnswerStrings.Get(i).ToStd(); }

// Builds the problem and compares it with what the model says, for the
// generator state `g` is in; leaves `g` where the drill's generator should be.
inline void CheckOnce(int32_t number, ModelFn model, int32_t randomizer, Gen &g,
                      const std::string &where) {
    Build(number, randomizer);
    const Model m = model(g);
    const ListRow &row = BankLists().at(number)[randomizer - 1];
    ASSERT_EQ(sumbrook::P().sProblemString.ToStd(), m.text) << where;
    ASSERT_EQ(sumbrook::Drill().sTip.ToStd(), m.tip) << where;
    ASSERT_EQ(sumbrook::P().iCorrectAnswerIs, row.correct) << where;
    for (int32_t i = 1; i <= 10; ++i)
        ASSERT_EQ(Entry(i), ExpectedEntry(m, row.entries[i - 1])) << where << " entry " << i;
    // The correct entry is the correct value itself.
    const ListEntry &right = row.entries[row.correct - 1];
    if (right.kind == ListEntry::Offset) {
        ASSERT_EQ(right.offset, 0) << where;
    }
    // No draw more and no draw less than the bank's.
    ASSERT_EQ(rnd(), g.rnd.Next()) << where << ": the draws went out of step";
}

// Every arrangement over `seeds` seeds, each from a fresh selection window
// (no name picked before).
inline void CheckProblem(int32_t number, ModelFn model, uint32_t seeds = 400) {
    PrepareDrill();
    for (int32_t randomizer = 1; randomizer <= 3; ++randomizer) {
        for (uint32_t s = 1; s <= seeds; ++s) {
            const uint32_t seed =
                s * 2654435761u + static_cast<uint32_t>(number * 7919 + randomizer);
            sumbrook::ResetForSelection();
            RuntimeRandomSeed(seed);
            Gen g(seed);
            CheckOnce(number, model, randomizer, g,
                      "problem " + S(number) + " arrangement " + S(randomizer) + " seed " +
                          S(seed));
            if (::testing::Test::HasFatalFailure())
                return;
        }
    }
}

// A seed whose model run satisfies `want`, found with the tests' generator
// alone; 0 if none within the search.
template <typename Want> uint32_t FindSeed(ModelFn model, Want want, uint32_t limit = 2000000) {
    for (uint32_t seed = 1; seed <= limit; ++seed) {
        Gen g(seed);
        if (want(model(g), g))
            return seed;
    }
    return 0;
}

// The model registry, filled by the files of each family.
std::map<int32_t, ModelFn> &Models();

struct RegisterModel {
    RegisterModel(int32_t number, ModelFn fn) { Models()[number] = fn; }
};

} // namespace banktest
