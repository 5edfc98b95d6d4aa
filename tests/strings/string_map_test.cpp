// StringMap and its iterators on real strings.
#include "strings/kstring.h"
#include "strings/small_alloc.h"
#include "strings/string_map.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

using kelp::string;
using kelp::StringMap;
using kelp::StringMapIterator;

namespace {

string Key(int i) { return string(("key" + std::to_string(i)).c_str()); }
std::string Text(const string &s) { return std::string(s.View()); }

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

TEST(StringMapBasics, AddGetReplaceAndCount) {
    StringMap<int> map;
    map.AddEntry(string("one"), 1);
    map.AddEntry(string("two"), 2);
    int v = 0;
    EXPECT_TRUE(map.GetEntry(string("one"), v));
    EXPECT_EQ(v, 1);
    EXPECT_TRUE(map.Has(string("two")));
    EXPECT_FALSE(map.Has(string("three")));
    EXPECT_FALSE(map.GetEntry(string("three"), v));
    map.AddEntry(string("one"), 11);
    EXPECT_EQ(map.Count(), 2u);
    EXPECT_TRUE(map.GetEntry(string("one"), v));
    EXPECT_EQ(v, 11);
}

TEST(StringMapBasics, KeysAreCaseInsensitiveAndTheFirstKeyStays) {
    StringMap<int> map;
    map.AddEntry(string("Open"), 1);
    map.AddEntry(string("OPEN"), 2);
    EXPECT_EQ(map.Count(), 1u);
    int v = 0;
    EXPECT_TRUE(map.GetEntry(string("open"), v));
    EXPECT_EQ(v, 2);
    StringMapIterator<int> it(map);
    ASSERT_TRUE(it.Next());
    EXPECT_EQ(Text(it.Key()), "Open");
}

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

TEST(StringMapGrowth, ThousandsOfKeysKeepOrderAndValues) {
    int64_t before = kelp::TotalAllocLen();
    {
        StringMap<int> map;
        const int n = 5000;
        for (int i = 0; i < n; ++i)
            map.AddEntry(Key(i), i * 3);
        EXPECT_EQ(map.Count(), static_cast<uint32_t>(n));
        EXPECT_EQ(map.BinCount(), 8192u);
        for (int i = 0; i < n; i += 7) {
            int v = -1;
            ASSERT_TRUE(map.GetEntry(string(("KEY" + std::to_string(i)).c_str()), v));
            EXPECT_EQ(v, i * 3);
        }
        StringMapIterator<int> it(map);
        int expected = 0;
        while (it.Next()) {
            int v = -1;
            ASSERT_TRUE(it.Value(v));
            ASSERT_EQ(v, expected * 3);
            ++expected;
        }
        EXPECT_EQ(expected, n);
        for (int i = 0; i < n; i += 2)
            map.Remove(Key(i));
        EXPECT_EQ(map.Count(), static_cast<uint32_t>(n / 2));
        EXPECT_FALSE(map.Has(Key(10)));
        EXPECT_TRUE(map.Has(Key(11)));
    }
    EXPECT_EQ(kelp::TotalAllocLen(), before); // keys released with the map
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

TEST(StringMapRemoval, RemoveUnlinksAndForgets) {
    StringMap<int> map;
    for (int i = 0; i < 10; ++i)
        map.AddEntry(Key(i), i);
    map.Remove(string("KEY9")); // the tail
    map.Remove(string("key0")); // the head
    map.Remove(string("missing"));
    EXPECT_EQ(map.Count(), 8u);
    map.AddEntry(string("new"), 100); // appended behind the new tail
    std::vector<int> order;
    StringMapIterator<int> it(map);
    int v;
    while (it.Next() && it.Value(v))
        order.push_back(v);
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 100}));
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
    ASSERT_TRUE(it.Next());
    ASSERT_TRUE(it.Next()); // on key1
    map.Remove(Key(0));
    map.Remove(Key(3));
    int v;
    ASSERT_TRUE(it.Value(v));
    EXPECT_EQ(v, 1);
    ASSERT_TRUE(it.Next());
    it.Value(v);
    EXPECT_EQ(v, 2);
    ASSERT_TRUE(it.Next());
    it.Value(v);
    EXPECT_EQ(v, 4);
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
    ASSERT_TRUE(first.Next());
    first.Value(v);
    EXPECT_EQ(v, 1);
    // `second` waits to take key1; removing key1 too must not strand it.
    map.Remove(Key(1));
    ASSERT_TRUE(second.Next());
    second.Value(v);
    EXPECT_EQ(v, 2);
    // The last entry removed under an iterator ends the walk.
    StringMapIterator<int> last(map);
    while (last.Next()) {
        int w;
        last.Value(w);
        if (w == 3)
            break;
    }
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
