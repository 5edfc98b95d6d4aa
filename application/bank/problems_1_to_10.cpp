// Problems 1 to 10: addition and subtraction with money, marbles, minutes,
// bugs, beans and birds.
#include "bank/corrections.h"
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

// "$26.00 less the price" style lists: each entry is fMoneyText(c - price).
void AnswersMoneyLess(int32_t price, const ThreeArrangements &lists) {
    const Arrangement &a = Chosen(lists);
    Ten values{};
    for (int i = 0; i < 10; ++i) values[i] = a.values[i] - price;
    AnswersMoneyValue(values, a.correct);
}

void Problem1() {
    DrawName(1);
    const Text he = heshe();
    DrawItem(1);
    const int32_t price = SetPrice(fPriceOf(Item(1)));
    SetText(Name(1) + " had $26.00.  Yesterday "_k + he + " bought "_k + Item(1) + " for "_k +
            fMoneyText(price) + ".  How much did "_k + he + " have left?"_k);
    SetTip("subtract"_k);
    AnswersMoneyLess(price, {{
        {1, {2600, 2800, 2659, 2780, 2650, 2610, 2590, 2576, 2550, 2459}},
        {4, {2780, 2800, 2659, 2600, 2650, 2610, 2590, 2576, 2550, 2459}},
        {6, {2780, 2800, 2659, 2780, 2650, 2600, 2590, 2576, 2550, 2459}},
    }});
}

void Problem2() {
    DrawName(1);
    DrawItem(1);
    DrawItemDiffering(2, {1});
    DrawItemDiffering(3, {1, 2});
    SetText(Name(1) + " received "_k + Item(1) + ", "_k + Item(2) + ", and "_k + Item(3) +
            ".  How many different items did "_k + Name(1) + " receive?"_k);
    SetTip("addition"_k);
    switch (Randomizer()) {
    case 1:
        AnswersText({"0 items"_k, "1 item"_k, "2 items"_k, "3 items"_k, "4 items"_k, "5 items"_k,
                     "6 items"_k, "7 items"_k, "8 items"_k, "9 items"_k},
                    4);
        break;
    case 2:
        AnswersText({"one item"_k, "two items"_k, "three items"_k, "four items"_k, "five items"_k,
                     "six items"_k, "seven items"_k, "eight items"_k, "nine items"_k, "ten items"_k},
                    3);
        break;
    default:
        AnswersText({"4 items"_k, "6 items"_k, "7 items"_k, "9 items"_k, "3 items"_k, "5 items"_k,
                     "2 items"_k, "1 item"_k, "10 items"_k, "8 items"_k},
                    5);
        break;
    }
}

void Problem3() {
    DrawName(1);
    const Text He = HeShe();
    DrawName(2);
    const int32_t r1 = SetR(1, DrawAtLeast(10, 5));
    SetText(Name(1) + " had "_k + Str(r1) + " cards. "_k + He + " gave "_k + Name(2) +
            " two of them.  How many cards does "_k + Name(1) + " have now?"_k);
    SetTip("subtract"_k);
    AnswersOffset3(r1 - 2, {{
        {6, {5, 7, 1, -2, -5, 0, 3, -3, 6, -6}},
        {8, {1, 2, 3, 6, -2, -3, 4, 0, 5, -1}},
        {10, {5, 4, -4, 3, -3, 2, -2, 1, -1, 0}},
    }});
}

void Problem4() {
    DrawName(1);
    const Text He = HeShe();
    const int32_t r1 = SetR(1, DrawAtLeast(250, 10));
    const int32_t r2 = SetR(2, fRandomTo(250));
    SetText(Name(1) + " has "_k + Str(r1) + " blue marbles.  "_k + He +
            " bought a bag that contained "_k + Str(r2) +
            " more blue marbles.  How many blue marbles does "_k + Name(1) + " have?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r2, {{
        {5, {-20, -15, -10, -5, 0, 5, 10, 15, 20, 25}},
        {3, {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7}},
        {9, {8, 7, 6, 5, 4, 3, 2, 1, 0, -1}},
    }});
}

void Problem5() {
    DrawName(1);
    DrawItem(1);
    // The corrected edition compares two different items at two different
    // prices: "a ruler for $0.80, and a ruler for $1.10" is no comparison,
    // and a difference of nothing has no entry that could show it.
    if (Classic())
        DrawItem(2);
    else
        DrawItemDiffering(2, {1});
    const int32_t t1 = SetT(1, fPriceOf(Item(1)));
    int32_t t2 = SetT(2, fPriceOf(Item(2)));
    while (!Classic() && t2 == t1) {
        LoopTurn();
        t2 = SetT(2, fPriceOf(Item(2)));
    }
    SetText(Name(1) + " bought "_k + Item(1) + " for "_k + fMoneyText(t1) + ", and "_k + Item(2) +
            " for "_k + fMoneyText(t2) +
            ".  What is the difference in price between the two items?"_k);
    SetTip("subtract"_k);
    const int32_t T = t2 <= t1 ? t1 - t2 : t2 - t1;
    const Arrangement &a = Chosen({{
        {5, {-50, -40, -30, -10, 0, 10, 20, 30, 40, 50}},
        {3, {-15, -41, 0, -11, -6, 10, 200, 312, 14, 50}},
        {7, {-1, -2, -3, -4, 5, 6, 0, 10, 11, 12}},
    }});
    // No price difference is shown as nothing or less: a value below a cent
    // is replaced by a made-up sum of at least $30.00.  This also holds for
    // the correct entry when both prices are equal, which then still stands
    // at its position and is the one that counts.
    Ten values{};
    for (int i = 0; i < 10; ++i) {
        int32_t v = T + a.values[i];
        if (v < 1) {
            v = fRandomTo(5000);
            while (v < 3000) {
                LoopTurn();
                v = fRandomTo(5000);
            }
        }
        values[i] = v;
    }
    AnswersMoneyValue(values, a.correct);
}

void Problem6() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawAtLeast(59, 10));
    const int32_t r2 = SetR(2, DrawAtLeast(59, 10));
    const int32_t r3 = SetR(3, DrawAtLeast(59, 10));
    const int32_t r4 = SetR(4, DrawAtLeast(59, 10));
    SetText(Name(1) + " studies for "_k + Str(r1) + " minutes on Monday, "_k + Str(r2) +
            " minutes on Tuesday, "_k + Str(r3) + " minutes on Wednesday, and "_k + Str(r4) +
            " minutes on Thursday.  How many minutes did "_k + Name(1) + " study total?"_k);
    SetTip("addition"_k);
    AnswersOffset3(r1 + r2 + r3 + r4, {{
        {1, {0, 1, 2, 3, 4, 5, 10, 11, 12, 13}},
        {4, {-10, -5, -1, 0, 1, 5, 10, 15, 20, 25}},
        {7, {-10, -5, -4, -3, -2, -1, 0, 1, 2, 3}},
    }});
}

void Problem7() {
    DrawName(1);
    const Text he = heshe();
    const int32_t r1 = SetR(1, DrawAtLeast(100, 50));
    const int32_t r2 = SetR(2, DrawAtLeast(80, 30));
    const int32_t r3 = SetR(3, fRandomTo(10));
    SetText("Last summer "_k + Name(1) + " collected "_k + Str(r1) + " grasshoppers, "_k +
            Str(r2) + " lady bugs, and "_k + Str(r3) + " spiders. How many bugs did "_k + he +
            " collect?"_k);
    SetTip("addition"_k);
    AnswersOffset3(r1 + r2 + r3, {{
        {2, {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8}},
        {8, {-14, -10, -5, -4, -3, -2, -1, 0, 1, 5}},
        {10, {12, 10, 5, 1, -5, -4, -3, -2, -1, 0}},
    }}, " bugs"_k);
}

void Problem8() {
    DrawName(1);
    DrawName(2);
    const int32_t r1 = SetR(1, DrawOr(30, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(30, 2, 2));
    SetText(Name(1) + " has "_k + Str(r1) + " beans.  "_k + Name(2) + " has "_k + Str(r2) +
            " beans.  How many beans would they have if they put their beans together?"_k);
    SetTip("addition"_k);
    AnswersOffset3(r1 + r2, {{
        {2, {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8}},
        {5, {-5, -4, -3, -2, 0, 5, 7, 8, 9, 10}},
        {9, {20, -10, 8, -7, 7, -6, 6, -5, 0, 5}},
    }}, " beans"_k);
}

void Problem9() {
    DrawName(1);
    const Text he = heshe();
    DrawItem(1);
    const int32_t price = SetPrice(fPriceOf(Item(1)));
    const int32_t t2 = SetT(2, price + 415);
    SetText(Name(1) + " bought "_k + Item(1) + " for "_k + fMoneyText(price) +
            ".  Before buying this item "_k + he + " had "_k + fMoneyText(t2) +
            ".  How much does "_k + Name(1) + " have now?"_k);
    SetTip("subtract"_k);
    switch (Randomizer()) {
    case 1:
        AnswersText({"$2.00"_k, "$3.95"_k, "$4.15"_k, "$5.05"_k, "$2.98"_k, "$3.65"_k, "$4.66"_k,
                     "$5.02"_k, "$1.00"_k, "$1.80"_k},
                    3);
        break;
    case 2:
        AnswersText({"$1.22"_k, "$1.25"_k, "$4.10"_k, "$4.15"_k, "$5.00"_k, "$7.05"_k, "$1.00"_k,
                     "$2.00"_k, "$2.02"_k, "$3.33"_k},
                    4);
        break;
    default:
        AnswersText({"$4.00"_k, "$4.01"_k, "$4.02"_k, "$4.05"_k, "$4.10"_k, "$4.15"_k, "$4.25"_k,
                     "$4.50"_k, "$4.75"_k, "$4.99"_k},
                    6);
        break;
    }
}

void Problem10() {
    const int32_t r1 = SetR(1, fRandomTo(10));
    const int32_t r2 = SetR(2, fRandomTo(25));
    const int32_t r3 = SetR(3, fRandomTo(15));
    const int32_t r4 = SetR(4, fRandomTo(20));
    DrawBoysName(1);
    SetText("Last week "_k + Name(1) + " counted birds on the playground.  On Monday he saw "_k +
            Str(r1) + ".  On Tuesday he saw "_k + Str(r2) + ".  On Wednesday he saw "_k + Str(r3) +
            ".  On Thursday he saw "_k + Str(r4) + ".  How many birds did "_k + Name(1) +
            " see on the playground last week?"_k);
    SetTip("addition"_k);
    AnswersOffset3(r1 + r2 + r3 + r4, {{
        {7, {-6, -5, -4, -3, -2, -1, 0, 1, 2, 3}},
        {2, {-5, 0, 5, 1, 2, 3, 4, 10, 9, 9}},
        {9, {6, 2, -3, 1, 3, 4, 10, -5, 0, 11}},
    }}, " birds"_k);
}

} // namespace

void mProb1to10(int32_t number) {
    switch (number) {
    case 1: Problem1(); break;
    case 2: Problem2(); break;
    case 3: Problem3(); break;
    case 4: Problem4(); break;
    case 5: Problem5(); break;
    case 6: Problem6(); break;
    case 7: Problem7(); break;
    case 8: Problem8(); break;
    case 9: Problem9(); break;
    case 10: Problem10(); break;
    default: break;
    }
}

} // namespace sumbrook
