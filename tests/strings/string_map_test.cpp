// StringMap and its iterators on real strings.
#include "strings/kstring.h"
#include "strings/small_alloc.h"
#include "strings/string_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

using kelp::string;
using kelp::StringMap;
using kelp::StringMapIterator;

namespace {

string Key(int i) { return string(("key" + std::to_string(i)).c_str()); }
std::string Text(const string &s) { return std::string(s.View()); }
// Steps the iterator on and reads its value; -1 when it ends or stands on nothing.
int NextValue(StringMapIterator<int> &it) {
    int v = -1;
    return it.Next() && it.Value(v) ? v : -1;
}

// Counts the calls of the key hash, to tell that a lookup did no hashing.
template <typename V> class CountingMap : public StringMap<V> {
public:
    using StringMap<V>::StringMap;
    mutable int hashes = 0;

protected:
    uint32_t Hash(const string &key) const override {
        ++hashes;
        return StringMap<V>::Hash(key);
    }
};

TEST(StringMapBasics, KeysMayBeEmptyOrHoldNuls) {
    StringMap<int> map;
    map.AddEntry(string(), 5);
    map.AddEntry(string::FromBytes("a\0b", 3, kEncodingASCII), 6);
    map.AddEntry(string("a"), 7);
    int v = 0;
    EXPECT_TRUE(map.GetEntry(string(), v));
    EXPECT_EQ(v, 5);
    EXPECT_TRUE(map.GetEntry(string::FromBytes("A\0B", 3, kEncodingASCII), v));
    EXPECT_EQ(v, 6);
    EXPECT_EQ(map.Count(), 3u);
}

TEST(StringMapBasics, AMapWithoutInsertionsHasNoBinsAndHashesNothing) {
    CountingMap<int> map;
    int v = 0;
    EXPECT_FALSE(map.HasBins());
    EXPECT_FALSE(map.GetEntry(string("x"), v));
    EXPECT_FALSE(map.Has(string("x")));
    map.Remove(string("x"));
    EXPECT_EQ(map.hashes, 0);
    map.AddEntry(string("x"), 1);
    EXPECT_TRUE(map.HasBins());
}

TEST(StringMapBasics, HashRaisesAsciiLowerCaseAndTakesBytesAsSigned) {
    EXPECT_EQ(StringMap<int>::HashKey(string()), 0u);
    EXPECT_EQ(StringMap<int>::HashKey(string("a")), 65u);
    EXPECT_EQ(StringMap<int>::HashKey(string("ab")), 65u * 31 + 66);
    EXPECT_EQ(StringMap<int>::HashKey(string("AB")), StringMap<int>::HashKey(string("ab")));
    string high = string::FromBytes("\xe9", 1, kEncodingLatin1);
    EXPECT_EQ(StringMap<int>::HashKey(high), static_cast<uint32_t>(-23));
}

TEST(StringMapGrowth, DoublesOnlyWhenPastThreeQuarters) {
    StringMap<int> map;
    for (int i = 0; i < 192; ++i)
        map.AddEntry(Key(i), i);
    EXPECT_EQ(map.BinCount(), 256u); // 192 is not above 192
    map.AddEntry(Key(192), 192);
    EXPECT_EQ(map.BinCount(), 512u);
    for (int i = 0; i <= 192; ++i) {
        int v = -1;
        ASSERT_TRUE(map.GetEntry(Key(i), v)) << i;
        EXPECT_EQ(v, i);
    }
}

TEST(StringMapGrowth, RehashKeepsOrderAndRefusesZero) {
    StringMap<int> map(4);
    for (int i = 0; i < 3; ++i)
        map.AddEntry(Key(i), i);
    EXPECT_EQ(map.BinCount(), 4u);
    map.AddEntry(Key(3), 3);
    EXPECT_EQ(map.BinCount(), 8u);
    map.Rehash(3);
    EXPECT_EQ(map.BinCount(), 3u);
    map.Rehash(0); // reported; the map stays usable
    EXPECT_EQ(map.BinCount(), 3u);
    StringMapIterator<int> it(map);
    for (int i = 0; i < 4; ++i) {
        int v = -1;
        ASSERT_TRUE(it.Next());
        it.Value(v);
        EXPECT_EQ(v, i);
    }
    EXPECT_FALSE(it.Next());
}

// Seeded random additions, replacements, removals, lookups and rehashes
// against a plain list in insertion order: keys match without regard to
// case, a replaced entry keeps its first key and its place, a new one goes
// to the end, and every key is given back with the map.
TEST(StringMapModel, RandomOperationsAgreeWithAPlainList) {
    const int64_t before = kelp::TotalAllocLen();
    {
        std::mt19937 gen(20261125);
        StringMap<int> map;
        std::vector<std::pair<std::string, int>> model;
        auto same = [](const std::string &a, const std::string &b) {
            return a.size() == b.size() &&
                   std::equal(a.begin(), a.end(), b.begin(),
                              [](char x, char y) { return tolower(x) == tolower(y); });
        };
        auto find = [&](const std::string &key) {
            return std::find_if(model.begin(), model.end(),
                                [&](const auto &e) { return same(e.first, key); });
        };
        for (int step = 0; step < 40000; ++step) {
            std::string key = "key" + std::to_string(gen() % 400);
            for (char &c : key)
                c = gen() % 2 ? static_cast<char>(toupper(c)) : c;
            const int value = static_cast<int>(gen() % 1000);
            const auto at = find(key);
            switch (gen() % 8) {
            case 0:
            case 1:
            case 2:
                map.AddEntry(string(key.c_str()), value);
                if (at == model.end())
                    model.emplace_back(key, value);
                else
                    at->second = value;
                break;
            case 3:
            case 4:
                map.Remove(string(key.c_str()));
                if (at != model.end())
                    model.erase(at);
                break;
            case 5:
                if (gen() % 100 == 0)
                    map.Rehash(1 + gen() % 5000);
                break;
            default: {
                int got = -1;
                ASSERT_EQ(map.GetEntry(string(key.c_str()), got), at != model.end()) << step;
                if (at != model.end()) {
                    ASSERT_EQ(got, at->second) << step;
                }
            }
            }
            ASSERT_EQ(map.Count(), model.size()) << step;
            if (step % 500 != 0)
                continue;
            StringMapIterator<int> it(map);
            for (const auto &[k, v] : model) {
                int got = -1;
                ASSERT_TRUE(it.Next()) << step;
                ASSERT_TRUE(it.Value(got));
                ASSERT_EQ(Text(it.Key()), k) << step;
                ASSERT_EQ(got, v) << step;
            }
            ASSERT_FALSE(it.Next()) << step;
        }
    }
    EXPECT_EQ(kelp::TotalAllocLen(), before);
}

TEST(StringMapIteration, RemoveCurrentVisitsEveryEntryOnce) {
    StringMap<int> map;
    for (int i = 0; i < 50; ++i)
        map.AddEntry(Key(i), i);
    std::vector<int> seen;
    StringMapIterator<int> it(map);
    while (it.Next()) {
        int v;
        ASSERT_TRUE(it.Value(v));
        seen.push_back(v);
        if (v % 3 != 1)
            it.RemoveCurrent();
    }
    ASSERT_EQ(seen.size(), 50u);
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(seen[i], i);
    EXPECT_EQ(map.Count(), 17u);
    EXPECT_EQ(Text(it.Key()), "");
}

TEST(StringMapIteration, RemovingAnotherEntryLeavesTheIteratorAlone) {
    StringMap<int> map;
    for (int i = 0; i < 5; ++i)
        map.AddEntry(Key(i), i);
    StringMapIterator<int> it(map);
    EXPECT_EQ(NextValue(it), 0);
    EXPECT_EQ(NextValue(it), 1);
    map.Remove(Key(0));
    map.Remove(Key(3));
    int v;
    ASSERT_TRUE(it.Value(v));
    EXPECT_EQ(v, 1);
    EXPECT_EQ(NextValue(it), 2);
    EXPECT_EQ(NextValue(it), 4);
    EXPECT_FALSE(it.Next());
}

TEST(StringMapIteration, RemovingTheEntryUnderAnIteratorMovesItOn) {
    StringMap<int> map;
    for (int i = 0; i < 4; ++i)
        map.AddEntry(Key(i), i);
    StringMapIterator<int> first(map), second(map);
    ASSERT_TRUE(first.Next()); // on key0
    ASSERT_TRUE(second.Next());
    second.RemoveCurrent(); // key0 goes; `first` stood on it
    int v = -1;
    EXPECT_FALSE(first.Value(v));
    EXPECT_EQ(NextValue(first), 1);
    // `second` waits to take key1; removing key1 too must not strand it.
    map.Remove(Key(1));
    EXPECT_EQ(NextValue(second), 2);
    // The last entry removed under an iterator ends the walk.
    StringMapIterator<int> last(map);
    for (int step = 0; step < 4 && NextValue(last) != 3; ++step) {}
    map.Remove(Key(3));
    EXPECT_FALSE(last.Next());
}

TEST(StringMapIteration, AnIteratorOutlivingItsMapIsDisarmed) {
    auto *map = new StringMap<int>;
    map->AddEntry(string("a"), 1);
    StringMapIterator<int> it(*map);
    ASSERT_TRUE(it.Next());
    delete map;
    EXPECT_FALSE(it.Next());
    int v;
    EXPECT_FALSE(it.Value(v));
}

TEST(StringMapForEach, BinByBinAndStopsOnFalse) {
    StringMap<int> map;
    struct Tally {
        std::set<int> values;
        int stopAt = -1;
    } tally;
    auto collect = [](const string &, int &value, void *arg) {
        auto *t = static_cast<Tally *>(arg);
        t->values.insert(value);
        return value != t->stopAt;
    };
    EXPECT_TRUE(map.ForEach(collect, &tally)); // empty map
    for (int i = 0; i < 20; ++i)
        map.AddEntry(Key(i), i);
    EXPECT_TRUE(map.ForEach(collect, &tally));
    EXPECT_EQ(tally.values.size(), 20u);
    tally.values.clear();
    tally.stopAt = 7;
    EXPECT_FALSE(map.ForEach(collect, &tally));
    EXPECT_LT(tally.values.size(), 20u);
    EXPECT_TRUE(tally.values.count(7));
}

TEST(StringSet, HoldsNamesOnce) {
    kelp::StringSet set;
    for (const char *name : {"Alpha", "beta", "ALPHA", "Gamma", "BETA"})
        set.AddEntry(string(name), true);
    EXPECT_EQ(set.Count(), 3u);
    kelp::StringSetIterator it(set);
    std::vector<std::string> names;
    while (it.Next())
        names.push_back(Text(it.Key()));
    EXPECT_EQ(names, (std::vector<std::string>{"Alpha", "beta", "Gamma"}));
}

} // namespace
