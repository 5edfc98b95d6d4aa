// The three hand-written arrangements of problems 41 to 87, as the bank
// lists them: for each, the position of the correct entry and the ten
// entries, each an offset from the correct value, a value of its own, or a
// literal text.  Kept apart from the drill's code so that the tests hold
// their own copy of every list.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

namespace banktest {

struct ListEntry {
    enum Kind { Offset, Value, Literal } kind;
    int32_t offset = 0;
    int32_t (*value)(int32_t r1) = nullptr;
    const char *literal = nullptr;
};

inline ListEntry Off(int32_t k) { return {ListEntry::Offset, k, nullptr, nullptr}; }
inline ListEntry Val(int32_t (*f)(int32_t)) { return {ListEntry::Value, 0, f, nullptr}; }
inline ListEntry Lit(const char *s) { return {ListEntry::Literal, 0, nullptr, s}; }

struct ListRow {
    int32_t correct;
    std::array<ListEntry, 10> entries;
};

using ThreeRows = std::array<ListRow, 3>;

inline const std::map<int32_t, ThreeRows> &BankLists() {
    static const std::map<int32_t, ThreeRows> lists = {
        {41, {{
            {2, {Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4), Off(5), Off(10), Off(15), Off(20)}},
            {4, {Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4), Off(5), Off(10)}},
            {6, {Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4)}},
        }}},
        {42, {{
            {5, {Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4), Off(5)}},
            {6, {Off(1), Off(-3), Off(7), Off(5), Off(3), Off(0), Off(-1), Off(-2), Off(-5), Off(-7)}},
            {8, {Off(-6), Off(4), Off(-4), Off(3), Off(-3), Off(-1), Off(-5), Off(0), Off(5), Off(1)}},
        }}},
        {43, {{
            {1, {Off(0), Off(1), Off(2), Off(3), Off(4), Off(5), Off(-1), Off(-2), Off(-3), Off(-4)}},
            {2, {Off(-1), Off(0), Off(1), Off(5), Off(10), Off(12), Off(15), Off(-5), Off(-7), Off(-9)}},
            {7, {Off(5), Off(-10), Off(-5), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3)}},
        }}},
        {44, {{
            {7, {Off(-6), Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3)}},
            {9, {Off(-3), Off(2), Off(1), Off(10), Off(8), Off(6), Off(-5), Off(-1), Off(0), Off(5)}},
            {4, {Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(5), Off(7), Off(9)}},
        }}},
        {45, {{
            {6, {Off(-5), Off(-6), Off(5), Off(-4), Off(-2), Off(0), Off(-1), Off(1), Off(10), Off(9)}},
            {5, {Off(-5), Off(2), Off(1), Off(9), Off(0), Off(5), Off(-3), Off(-1), Off(8), Off(6)}},
            {3, {Off(-5), Off(-2), Off(0), Off(-1), Off(1), Off(2), Off(3), Off(6), Off(7), Off(10)}},
        }}},
        {46, {{
            {1, {Off(0), Off(-1), Off(-2), Off(-3), Off(-4), Off(-5), Off(1), Off(2), Off(3), Off(4)}},
            {4, {Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(5), Off(7), Off(10)}},
            {9, {Off(10), Off(-10), Off(-3), Off(-2), Off(5), Off(3), Off(2), Off(1), Off(0), Off(-1)}},
        }}},
        {47, {{
            {7, {Off(10), Off(-5), Off(5), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3)}},
            {2, {Off(-10), Off(0), Off(1), Off(2), Off(5), Off(6), Off(10), Off(-1), Off(-2), Off(-3)}},
            {5, {Off(-5), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(5), Off(10)}},
        }}},
        {48, {{
            {1, {Off(0), Off(-1), Off(-2), Off(-3), Off(-4), Off(-5), Off(9), Off(10), Off(8), Off(1)}},
            {6, {Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(5)}},
            {10, {Off(15), Off(-10), Off(10), Off(-5), Off(-3), Off(-1), Off(5), Off(2), Off(1), Off(0)}},
        }}},
        {49, {{
            {6, {Off(-8), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4)}},
            {7, {Off(11), Off(-5), Off(5), Off(3), Off(2), Off(1), Off(0), Off(-1), Off(-2), Off(-3)}},
            {9, {Off(3), Off(4), Off(5), Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1)}},
        }}},
        {50, {{
            {9, {Off(-8), Off(-4), Off(-3), Off(-2), Off(-1), Off(1), Off(3), Off(2), Off(0), Off(4)}},
            {1, {Off(0), Off(-5), Off(5), Off(3), Off(2), Off(1), Off(11), Off(-1), Off(-2), Off(-3)}},
            {2, {Off(3), Off(0), Off(5), Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(2), Off(1)}},
        }}},
        {51, {{
            {3, {Lit("3 marbles"), Lit("4 marbles"), Lit("5 marbles"), Lit("6 marbles"), Lit("7 marbles"), Lit("8 marbles"), Lit("9 marbles"), Lit("10 marbles"), Lit("2 marbles"), Lit("1 marble")}},
            {4, {Lit("2 marbles"), Lit("3 marbles"), Lit("4 marbles"), Lit("5 marbles"), Lit("6 marbles"), Lit("7 marbles"), Lit("8 marbles"), Lit("9 marbles"), Lit("1 marble"), Lit("10 marbles")}},
            {10, {Lit("10 marbles"), Lit("8 marbles"), Lit("7 marbles"), Lit("6 marbles"), Lit("0 marbles"), Lit("1 marble"), Lit("2 marbles"), Lit("3 marbles"), Lit("4 marbles"), Lit("5 marbles")}},
        }}},
        {52, {{
            {4, {Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4), Off(5), Off(10)}},
            {7, {Off(10), Off(7), Off(-5), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3)}},
            {8, {Off(2), Off(4), Off(6), Off(8), Off(10), Off(-5), Off(-3), Off(0), Off(5), Off(3)}},
        }}},
        {53, {{
            {8, {Lit("nine"), Lit("none"), Lit("one"), Lit("two"), Lit("three"), Lit("four"), Lit("five"), Lit("six"), Lit("seven"), Lit("eight")}},
            {1, {Lit("six"), Lit("seven"), Lit("eight"), Lit("nine"), Lit("ten"), Lit("one"), Lit("two"), Lit("three"), Lit("four"), Lit("five")}},
            {5, {Lit("one"), Lit("three"), Lit("four"), Lit("five"), Lit("six"), Lit("seven"), Lit("eight"), Lit("nine"), Lit("ten"), Lit("eleven")}},
        }}},
        {54, {{
            {6, {Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4)}},
            {7, {Off(5), Off(1), Off(-1), Off(-12), Off(-8), Off(-4), Off(0), Off(4), Off(8), Off(12)}},
            {9, {Off(-1), Off(1), Off(-6), Off(-8), Off(-4), Off(8), Off(21), Off(-16), Off(0), Off(16)}},
        }}},
        {55, {{
            {3, {Off(-20), Off(-10), Off(0), Off(10), Off(20), Off(5), Off(1), Off(-1), Off(-5), Off(7)}},
            {7, {Off(-20), Off(-10), Off(-7), Off(-5), Off(-3), Off(-1), Off(0), Off(10), Off(15), Off(20)}},
            {10, {Off(1), Off(2), Off(3), Off(5), Off(10), Off(20), Off(-35), Off(-20), Off(-10), Off(0)}},
        }}},
        {56, {{
            {1, {Off(0), Off(1), Off(2), Off(3), Off(4), Off(5), Off(10), Off(-5), Off(-4), Off(-3)}},
            {3, {Off(-3), Off(-2), Off(0), Off(-5), Off(2), Off(4), Off(7), Off(10), Off(15), Off(20)}},
            {9, {Off(-1), Off(-2), Off(-3), Off(-4), Off(-5), Off(20), Off(-20), Off(-10), Off(0), Off(10)}},
        }}},
        {57, {{
            {10, {Off(-15), Off(1), Off(2), Off(3), Off(4), Off(5), Off(10), Off(-5), Off(-4), Off(0)}},
            {2, {Off(-3), Off(0), Off(-2), Off(-5), Off(2), Off(4), Off(7), Off(10), Off(15), Off(20)}},
            {8, {Off(-1), Off(-2), Off(-3), Off(-4), Off(-5), Off(20), Off(-20), Off(0), Off(-10), Off(10)}},
        }}},
        {58, {{
            {5, {Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4), Off(5)}},
            {6, {Off(-15), Off(-12), Off(-9), Off(-6), Off(-3), Off(0), Off(3), Off(6), Off(9), Off(12)}},
            {7, {Off(-60), Off(-50), Off(-18), Off(-9), Off(-6), Off(-3), Off(0), Off(3), Off(6), Off(50)}},
        }}},
        {59, {{
            {5, {Off(-80), Off(-60), Off(-40), Off(-20), Off(0), Off(20), Off(40), Off(45), Off(60), Off(65)}},
            {6, {Off(-60), Off(-50), Off(-40), Off(-30), Off(-20), Off(0), Off(20), Off(30), Off(35), Off(40)}},
            {7, {Off(-42), Off(-40), Off(-20), Off(-15), Off(-10), Off(-5), Off(0), Off(20), Off(22), Off(40)}},
        }}},
        {60, {{
            {2, {Off(-10), Off(0), Off(10), Off(11), Off(15), Off(20), Off(22), Off(25), Off(30), Off(35)}},
            {4, {Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(5), Off(6), Off(10)}},
            {6, {Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(5), Off(10)}},
        }}},
        {61, {{
            {1, {Off(0), Off(7), Off(14), Off(21), Off(-7), Off(-14), Off(-21), Off(5), Off(-5), Off(10)}},
            {9, {Off(50), Off(28), Off(21), Off(14), Off(7), Off(-21), Off(-14), Off(-7), Off(0), Off(-10)}},
            {10, {Off(20), Off(10), Off(-21), Off(-15), Off(-12), Off(-10), Off(-7), Off(-3), Off(-1), Off(0)}},
        }}},
        {62, {{
            {5, {Off(-3), Off(-10), Off(-2), Off(-1), Off(0), Off(1), Off(3), Off(5), Off(10), Off(15)}},
            {6, {Off(-20), Off(-12), Off(-11), Off(-10), Off(-5), Off(0), Off(1), Off(5), Off(10), Off(11)}},
            {9, {Off(-5), Off(25), Off(22), Off(21), Off(20), Off(14), Off(11), Off(10), Off(0), Off(-10)}},
        }}},
        {63, {{
            {2, {Val([](int32_t r1) { return r1 * 5; }), Off(0), Off(-1), Val([](int32_t r1) { return r1 * 4; }), Off(2), Val([](int32_t r1) { return r1 * 3; }), Off(3), Off(-6), Off(-4), Off(10)}},
            {4, {Val([](int32_t r1) { return r1 * 2; }), Val([](int32_t r1) { return r1 * 5; }), Val([](int32_t r1) { return r1 * 7; }), Off(0), Off(8), Off(9), Off(-1), Off(-2), Off(-3), Off(-4)}},
            {7, {Off(1), Off(10), Off(-10), Val([](int32_t r1) { return r1 * 7; }), Off(-5), Val([](int32_t r1) { return r1 * 5; }), Off(0), Off(3), Off(-3), Val([](int32_t r1) { return r1 * 2; })}},
        }}},
        {64, {{
            {6, {Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4)}},
            {7, {Off(7), Off(-6), Off(6), Off(-5), Off(-3), Off(-1), Off(0), Off(1), Off(2), Off(5)}},
            {10, {Off(5), Off(3), Off(2), Off(1), Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0)}},
        }}},
        {65, {{
            {3, {Off(-3), Off(-1), Off(0), Off(1), Off(3), Off(5), Off(7), Off(9), Off(10), Off(-5)}},
            {6, {Off(-10), Off(-7), Off(-5), Off(-3), Off(-1), Off(0), Off(1), Off(3), Off(5), Off(10)}},
            {9, {Off(1), Off(5), Off(7), Off(9), Off(-1), Off(-3), Off(-5), Off(-10), Off(0), Off(10)}},
        }}},
        {66, {{
            {4, {Off(6), Off(3), Off(-3), Off(0), Off(9), Off(1), Off(-1), Off(-2), Off(2), Off(5)}},
            {7, {Off(2), Off(1), Lit("0"), Off(-1), Off(-2), Off(-3), Off(0), Off(3), Off(6), Off(9)}},
            {10, {Off(5), Off(9), Off(6), Off(3), Off(2), Off(1), Off(-3), Off(-2), Off(-1), Off(0)}},
        }}},
        {67, {{
            {1, {Off(0), Off(-2), Off(2), Off(-5), Off(5), Off(-7), Off(7), Off(-9), Off(9), Off(10)}},
            {3, {Off(-4), Off(-2), Off(0), Off(2), Off(4), Off(5), Off(-3), Off(3), Off(7), Off(-7)}},
            {6, {Off(-10), Off(-5), Off(-4), Off(-3), Off(-2), Off(0), Off(2), Off(5), Off(7), Off(12)}},
        }}},
        {68, {{
            {3, {Off(-5), Off(-2), Off(0), Off(2), Off(5), Off(7), Off(9), Off(10), Off(-7), Off(-10)}},
            {4, {Off(-5), Off(-3), Off(-2), Off(0), Off(2), Off(4), Off(6), Off(8), Off(9), Off(10)}},
            {6, {Off(-10), Off(-7), Off(-3), Off(-2), Off(-5), Off(0), Off(5), Off(2), Off(3), Off(10)}},
        }}},
        {69, {{
            {2, {Off(-2), Off(0), Off(3), Off(2), Off(5), Off(-5), Off(10), Off(-10), Off(15), Off(-15)}},
            {4, {Off(-10), Off(-2), Off(2), Off(0), Off(3), Off(6), Off(7), Off(9), Off(10), Off(11)}},
            {8, {Off(12), Off(-10), Off(10), Off(-2), Off(-6), Off(-3), Off(-5), Off(0), Off(4), Off(2)}},
        }}},
        {70, {{
            {1, {Off(0), Off(12), Off(-12), Off(6), Off(-6), Off(3), Off(-3), Off(10), Off(11), Off(-10)}},
            {5, {Off(-24), Off(-18), Off(-12), Off(-6), Off(0), Off(6), Off(12), Off(18), Off(24), Off(-1)}},
            {9, {Off(24), Off(18), Off(6), Off(-6), Off(-2), Off(-1), Off(1), Off(-12), Off(0), Off(12)}},
        }}},
        {71, {{
            {9, {Off(20), Off(1), Off(-10), Off(-5), Off(-4), Off(-3), Off(-12), Off(-1), Off(0), Off(10)}},
            {5, {Off(-5), Off(-14), Off(-3), Off(-2), Off(0), Off(1), Off(22), Off(3), Off(4), Off(5)}},
            {6, {Off(-6), Off(-15), Off(-4), Off(-3), Off(-1), Off(0), Off(1), Off(13), Off(50), Off(7)}},
        }}},
        {72, {{
            {2, {Off(-2), Off(0), Off(2), Off(20), Off(-10), Off(30), Off(-15), Off(-6), Off(50), Off(-50)}},
            {4, {Off(-10), Off(-20), Off(-30), Off(0), Off(10), Off(20), Off(30), Off(40), Off(50), Off(5)}},
            {10, {Off(10), Off(-40), Off(-30), Off(-20), Off(-10), Off(-8), Off(-6), Off(-4), Off(-2), Off(0)}},
        }}},
        {73, {{
            {3, {Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(4), Off(5), Off(10), Off(-5)}},
            {4, {Off(-5), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(5), Off(7), Off(9), Off(10)}},
            {6, {Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(5), Off(10)}},
        }}},
        {74, {{
            {5, {Off(-18), Off(-15), Off(-10), Off(-1), Off(0), Off(5), Off(10), Off(15), Off(18), Off(21)}},
            {7, {Off(-1), Off(3), Off(1), Off(15), Off(10), Off(5), Off(0), Off(-5), Off(-10), Off(-15)}},
            {10, {Off(3), Off(8), Off(-8), Off(15), Off(-15), Off(25), Off(10), Off(-25), Off(-10), Off(0)}},
        }}},
        {75, {{
            {4, {Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(3), Off(5), Off(7), Off(10)}},
            {9, {Off(15), Off(-4), Off(-3), Off(-1), Off(1), Off(3), Off(5), Off(10), Off(0), Off(-10)}},
            {10, {Off(12), Off(10), Off(-12), Off(-10), Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0)}},
        }}},
        {76, {{
            {1, {Off(0), Off(1), Off(2), Off(3), Off(5), Off(10), Off(-5), Off(-6), Off(-7), Off(-10)}},
            {2, {Off(-10), Off(0), Off(10), Off(1), Off(3), Off(5), Off(-1), Off(-3), Off(-5), Off(-7)}},
            {7, {Off(-10), Off(-5), Off(-4), Off(-3), Off(-2), Off(-1), Off(0), Off(1), Off(5), Off(10)}},
        }}},
        {77, {{
            {3, {Off(-5), Off(-2), Off(0), Off(3), Off(5), Off(7), Off(10), Off(-10), Off(-7), Off(6)}},
            {4, {Off(-5), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(5), Off(7), Off(10), Off(11)}},
            {8, {Off(2), Off(-2), Off(11), Off(10), Off(7), Off(5), Off(1), Off(0), Off(-1), Off(-5)}},
        }}},
        {78, {{
            {3, {Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(5), Off(10), Off(-10), Off(-5), Off(20)}},
            {8, {Off(6), Off(-3), Off(-1), Off(3), Off(1), Off(-15), Off(-10), Off(0), Off(10), Off(15)}},
            {9, {Off(-5), Off(-10), Off(10), Off(5), Off(4), Off(3), Off(2), Off(1), Off(0), Off(-1)}},
        }}},
        {79, {{
            {6, {Off(6), Off(-10), Off(-5), Off(-2), Off(-1), Off(0), Off(1), Off(2), Off(5), Off(10)}},
            {7, {Off(-2), Off(2), Off(4), Off(-5), Off(-3), Off(-1), Off(0), Off(1), Off(3), Off(5)}},
            {8, {Off(-1), Off(1), Off(2), Off(-5), Off(5), Off(-20), Off(-10), Off(0), Off(10), Off(20)}},
        }}},
        {80, {{
            {7, {Off(-50), Off(-45), Off(-25), Off(-10), Off(-5), Off(-1), Off(0), Off(1), Off(5), Off(10)}},
            {2, {Off(-10), Off(0), Off(10), Off(15), Off(20), Off(25), Off(30), Off(-1), Off(1), Off(-5)}},
            {4, {Off(-50), Off(-25), Off(-10), Off(0), Off(10), Off(25), Off(35), Off(45), Off(50), Off(100)}},
        }}},
        {81, {{
            {5, {Off(-10), Off(-5), Off(-3), Off(-1), Off(0), Off(1), Off(2), Off(4), Val([](int32_t r1) { return r1 * 3; }), Off(7)}},
            {9, {Off(50), Off(-2), Val([](int32_t r1) { return r1 * 3; }), Off(-3), Off(3), Off(-5), Off(5), Off(-10), Off(0), Off(10)}},
            {10, {Off(3), Val([](int32_t r1) { return r1 * 3; }), Off(1), Off(-1), Off(-2), Off(10), Off(5), Off(-10), Off(-5), Off(0)}},
        }}},
        {82, {{
            {1, {Off(0), Off(-5), Off(5), Off(-6), Off(6), Off(-10), Off(10), Off(-25), Off(25), Off(-50)}},
            {4, {Off(-50), Off(-25), Off(-10), Off(0), Off(10), Off(25), Off(50), Off(65), Off(95), Off(1)}},
            {5, {Off(-1), Off(-10), Off(-25), Off(-50), Off(0), Off(10), Off(50), Off(100), Off(3), Off(4)}},
        }}},
        {83, {{
            {3, {Off(-5), Off(-2), Off(0), Off(2), Off(5), Off(7), Off(8), Off(1), Off(-1), Off(10)}},
            {6, {Off(-10), Off(-8), Off(-6), Off(-4), Off(-2), Off(0), Off(1), Off(5), Off(6), Off(10)}},
            {8, {Off(6), Off(7), Off(3), Off(1), Off(-1), Off(-2), Off(-4), Off(0), Off(10), Off(4)}},
        }}},
        {84, {{
            {2, {Off(-8), Off(0), Off(8), Off(16), Off(24), Off(-1), Off(1), Off(3), Off(-3), Off(10)}},
            {7, {Off(7), Off(-5), Off(1), Off(-24), Off(-16), Off(-8), Off(0), Off(8), Off(16), Off(24)}},
            {9, {Off(32), Off(3), Off(7), Off(-1), Off(-16), Off(1), Off(8), Off(16), Off(0), Off(-15)}},
        }}},
        {85, {{
            {5, {Off(-5), Off(-4), Off(-3), Val([](int32_t r1) { return r1; }), Off(0), Off(1), Off(2), Off(3), Off(12), Off(6)}},
            {8, {Off(-1), Val([](int32_t r1) { return r1; }), Off(2), Off(1), Off(-18), Off(-12), Off(-6), Off(0), Off(12), Off(18)}},
            {9, {Val([](int32_t r1) { return r1; }), Off(-2), Off(-1), Off(2), Off(1), Off(-6), Off(6), Off(-12), Off(0), Off(12)}},
        }}},
        {86, {{
            {1, {Lit("{r2}:0{t1}"), Lit("{r2}:0{t1+1}"), Lit("{r2}:0{t1+2}"), Lit("{r2}:{t1*3}"), Lit("{r2}:54"), Lit("{r2}:55"), Lit("{r2}:56"), Lit("{r2}:57"), Lit("{r2}:58"), Lit("{r2}:30")}},
            {5, {Lit("{r2}:29"), Lit("{r2}:50"), Lit("{r2}:51"), Lit("{r2}:52"), Lit("{r2}:0{t1}"), Lit("{r2}:{t1*3}"), Lit("{r2}:44"), Lit("{r2}:45"), Lit("{r2}:0{t1+1}"), Lit("{r2}:0{t1+2}")}},
            {9, {Lit("{r2}:0{t1+1}"), Lit("{r2}:0{t1+2}"), Lit("{r2}:{t1*3}"), Lit("{r2}:31"), Lit("{r2}:40"), Lit("{r2}:41"), Lit("{r2}:55"), Lit("{r2}:56"), Lit("{r2}:0{t1}"), Lit("{r2}:59")}},
        }}},
        {87, {{
            {3, {Off(-39), Off(-60), Off(0), Off(30), Val([](int32_t r1) { return 60 * r1 * r1; }), Off(60), Off(70), Off(-5), Off(-1), Off(3)}},
            {7, {Off(60), Off(-60), Off(-45), Off(-30), Val([](int32_t r1) { return 60 * r1 * r1; }), Off(-6), Off(0), Off(6), Off(30), Off(45)}},
            {8, {Off(1), Off(150), Off(120), Off(90), Off(60), Val([](int32_t r1) { return 60 * r1 * r1; }), Off(6), Off(0), Off(-6), Off(-45)}},
        }}},
    };
    return lists;
}

} // namespace banktest
