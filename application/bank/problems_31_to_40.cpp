// Problems 31 to 40: men in a room, people in houses, a growing plant,
// crayons, walks, temperatures, copies, a shopping bill and music practice.
#include "bank/corrections.h"
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

void Problem31() {
    const int32_t r1 = SetR(1, DrawOr(10, 2, 2));
    SetText("There were "_k + Str(r1) +
            " men in the room.  One man left the room and one man entered.  How many men are now in the room?"_k);
    SetTip("subtract and add"_k);
    AnswersOffset3(r1, {{
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4}},
        {7, {-6, -5, -4, -3, -2, -1, 0, 1, 2, 3}},
        {10, {-4, -3, -2, -1, 5, 4, 3, 2, 1, 0}},
    }});
}

void Problem32() {
    const int32_t r1 = SetR(1, DrawOr(5, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(5, 2, 3));
    const int32_t r3 = SetR(3, fRandomTo(500));
    const int32_t r4 = SetR(4, fRandomTo(500));
    SetText(Str(r1) + " people live in the house at "_k + Str(r3) + " Second Street.  "_k +
            Str(r2) + " people live in the house at "_k + Str(r4) +
            " East Fifth Street.  How many people live in both houses?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r2, {{
        {10, {10, -5, 5, -3, -2, -1, 3, 2, 1, 0}},
        {1, {0, 1, 2, -1, -2, 5, -5, 10, -10, 6}},
        {7, {10, -5, 5, -3, -2, -1, 0, 1, 2, 3}},
    }});
}

void Problem33() {
    const int32_t r1 = SetR(1, DrawOr(10, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(10, 2, 2));
    const int32_t t1 = SetT(1, r1 + r2);
    SetText("The plant was "_k + Str(r1) +
            " inches tall the first time it was measured.  It was "_k + Str(t1) +
            " inches tall the second time it was measured.  What is the difference in height between the two measurements?"_k);
    SetTip("subtraction"_k);
    AnswersOffset3(t1 - r1, {{
        {8, {5, 4, 3, -4, -3, -2, -1, 0, 1, 2}},
        {2, {-5, 0, 5, 6, 7, 8, 9, 10, -1, -2}},
        {1, {0, -1, -2, -3, -4, -5, 10, 5, 2, 1}},
    }}, " inches"_k);
}

void Problem34() {
    DrawName(1);
    DrawName(2);
    int32_t r1 = fRandomTo(110);
    if (r1 < 50) r1 += 50;
    SetR(1, r1);
    int32_t r2 = fRandomTo(25);
    if (r2 < 10) r2 += 10;
    SetR(2, r2);
    SetText(Name(1) + " had "_k + Str(r1) + " crayons in a box.  "_k + Name(2) + " took "_k +
            Str(r2) + " crayons from the box.  How many crayons were left?"_k);
    SetTip("subtraction"_k);
    AnswersOffset3(r1 - r2, {{
        {5, {-4, -3, -2, -1, 0, 1, 2, 3, 4, 5}},
        {8, {20, -2, 2, -1, 1, -10, -5, 0, 5, 10}},
        {2, {-1, 0, 1, 10, -10, 5, -5, 6, -6, 3}},
    }}, " crayons"_k);
}

void Problem35() {
    DrawName(1);
    DrawName(2);
    const int32_t r1 = SetR(1, DrawOr(6, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(8, 2, 2));
    int32_t r3 = SetR(3, DrawOr(8, 3, 3));
    // "How much farther" has no answer when the second walk is not longer:
    // the corrected edition draws the mall walk again until it is.
    while (!Classic() && r2 + r3 <= r1) {
        LoopTurn();
        r3 = SetR(3, DrawOr(8, 3, 3));
    }
    SetText(Name(1) + " walked "_k + Str(r1) + " blocks to the deli.  "_k + Name(2) + " walked "_k +
            Str(r2) + " blocks to the deli, and then "_k + Str(r3) +
            " blocks to the mall.  How much further did "_k + Name(2) + " walk?"_k);
    SetTip("add then subtract"_k);
    const int32_t T = r2 + r3 - r1;
    // The careless readings: the second walk added on once more, and the sum
    // of all three walks.
    const int32_t twice = T + r2 + r3, all = r1 + r2 + r3;
    AnswersValue3({{
        {4, {T - 3, T - 2, T - 1, T, T + 1, T + 2, T + 3, T + 4, twice, all}},
        {5, {all, T - 2, T - 1, T + 10, T, twice, T + 3, T + 4, T + 5, T + 6}},
        {6, {twice, T - 2, T - 5, T + 11, all, T, T + 1, T + 3, T + 5, T + 7}},
    }}, " blocks"_k);
}

// Problems 36 and 37 draw alike: a temperature, a small rise for the cooler
// days, and a second temperature up to six degrees above the first.
void DrawTemperatures(int32_t &r1, int32_t &r3) {
    r1 = fRandomTo(85);
    const int32_t r2 = SetR(2, fRandomTo(3));
    if (r1 < 73) r1 += r2;
    SetR(1, r1);
    r3 = SetR(3, fRandomTo(6) + r1);
}

void Problem36() {
    int32_t r1 = 0, r3 = 0;
    DrawTemperatures(r1, r3);
    SetText("Yesterday it was "_k + Str(r1) + " degrees outside.  Today it is "_k + Str(r3) +
            " degrees.  What is the difference between the two temperatures?"_k);
    SetTip("subtraction"_k);
    AnswersOffset3(r3 - r1, {{
        {7, {-10, -5, -4, -3, -2, -1, 0, 1, 2, 5}},
        {9, {-5, 9, 7, 5, 4, 3, 2, 1, 0, -1}},
        {10, {-10, 10, 6, 3, 2, 1, -5, -3, -1, 0}},
    }}, " degrees"_k);
}

void Problem37() {
    int32_t r1 = 0, r3 = 0;
    DrawTemperatures(r1, r3);
    SetText("Yesterday it was "_k + Str(r3) + " degrees outside.  Today it is "_k + Str(r1) +
            " degrees.  What is the difference between the two temperatures?"_k);
    SetTip("subtraction"_k);
    AnswersOffset3(r3 - r1, {{
        {1, {0, -1, 1, 2, 3, 4, 5, 10, 11, 15}},
        {3, {-1, 5, 0, 1, 2, 10, 3, 4, 7, 12}},
        {4, {2, 1, -1, 0, 3, 5, 4, 9, 10, 13}},
    }}, " degrees"_k);
}

void Problem38() {
    DrawName(1);
    const Text he = heshe(), His = HisHer(), his = hisher();
    const int32_t r1 = SetR(1, DrawOr(35, 25, 25));
    const int32_t r2 = SetR(2, DrawOr(35, 25, 25));
    const int32_t r3 = SetR(3, DrawOr(35, 25, 25));
    const int32_t r4 = SetR(4, DrawOr(35, 25, 25));
    SetText(Name(1) + " helped make copies in the office.  On Monday "_k + he + " made "_k +
            Str(r1) + " copies.  "_k + His + " totals for Tuesday, Wednesday, and Thursday were "_k +
            Str(r2) + ", "_k + Str(r3) + ", and "_k + Str(r4) + " respectively.  What was "_k +
            his + " total for the week?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r2 + r3 + r4, {{
        {2, {-1, 0, 1, -2, 2, -3, 3, -4, 5, -10}},
        {4, {-9, -7, -5, 0, 5, 7, 9, -10, -11, 10}},
        {6, {-3, -2, -1, -5, -7, 0, 5, 3, 7, 11}},
    }}, " copies"_k);
}

void Problem39() {
    DrawName(1);
    DrawItem(1);
    // Three purchases are three different things in the corrected edition,
    // and each price stands beside its item: "The price of a ruler was"
    // repeats the article that only a first mention takes.
    if (Classic()) {
        DrawItem(2);
        DrawItem(3);
    } else {
        DrawItemDiffering(2, {1});
        DrawItemDiffering(3, {1, 2});
    }
    const int32_t t1 = SetT(1, fPriceOf(Item(1)));
    const int32_t t2 = SetT(2, fPriceOf(Item(2)));
    const int32_t t3 = SetT(3, fPriceOf(Item(3)));
    if (Classic()) {
        SetText(Name(1) + " bought "_k + Item(1) + ", "_k + Item(2) + ", and "_k + Item(3) +
                ".  The price of "_k + Item(1) + " was "_k + fMoneyText(t1) + ".  The price of "_k +
                Item(2) + " was "_k + fMoneyText(t2) + ".  The price of "_k + Item(3) + " was "_k +
                fMoneyText(t3) + ".  How much did "_k + Name(1) + " spend?"_k);
    } else {
        SetText(Name(1) + " bought "_k + Item(1) + " for "_k + fMoneyText(t1) + ", "_k + Item(2) +
                " for "_k + fMoneyText(t2) + ", and "_k + Item(3) + " for "_k + fMoneyText(t3) +
                ".  How much did "_k + Name(1) + " spend?"_k);
    }
    SetTip("addition"_k);
    AnswersMoneyOffset3(t1 + t2 + t3, {{
        {1, {0, -5, -50, -25, 1, 5, 7, 8, 11, 16}},
        {7, {-25, -20, -15, -10, -6, -5, 0, 5, 11, 55}},
        {9, {-100, -75, -50, -25, -10, -5, -2, -1, 0, 5}},
    }});
}

void Problem40() {
    DrawName(1);
    const Text He = HeShe();
    const int32_t r1 = SetR(1, DrawRetry(60, 45, 4, 45));
    const int32_t r2 = SetR(2, DrawRetry(60, 45, 4, 45));
    const int32_t r3 = SetR(3, fRandomTo(4));
    switch (r3) {
    case 1: P().sTemp[1] = "guitar"_k; break;
    case 2: P().sTemp[1] = "trumpet"_k; break;
    case 3: P().sTemp[1] = "drums"_k; break;
    default: P().sTemp[1] = "saxophone"_k; break;
    }
    SetText(Name(1) + " practiced playing the "_k + P().sTemp[1] + " for "_k + Str(r1) +
            " minutes on Monday.  "_k + He + " practiced "_k + Str(r2) +
            " minutes on Wednesday.  How many minutes did "_k + Name(1) + " practice total?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r2, {{
        {9, {3, -15, -10, -5, -4, -3, -2, -1, 0, 5}},
        {10, {1, 5, 7, 10, -5, -4, -3, -2, -1, 0}},
        {3, {-5, -3, 0, 3, 5, 7, 9, 10, -10, -8}},
    }}, " minutes"_k);
}

} // namespace

void mProb31to40(int32_t number) {
    switch (number) {
    case 31: Problem31(); break;
    case 32: Problem32(); break;
    case 33: Problem33(); break;
    case 34: Problem34(); break;
    case 35: Problem35(); break;
    case 36: Problem36(); break;
    case 37: Problem37(); break;
    case 38: Problem38(); break;
    case 39: Problem39(); break;
    case 40: Problem40(); break;
    default: break;
    }
}

} // namespace sumbrook
