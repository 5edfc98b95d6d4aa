// Problems 21 to 30: perimeters, leaves, seats, rocks, a race, a bag of
// items, cars, a box of things, and two jogging problems.
#include "bank/corrections.h"
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

void Problem21() {
    DrawName(1);
    const int32_t r1 = SetR(1, fRandomTo(10));
    const int32_t r2 = SetR(2, fRandomTo(10));
    SetText(Name(1) + " needed to measure a rectangle.  The sides were: "_k + Str(r1) +
            " inches, "_k + Str(r1) + " inches, "_k + Str(r2) + " inches, and "_k + Str(r2) +
            " inches.  What is the perimeter of the rectangle?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r1 + r2 + r2, {{
        {10, {2, 3, 4, 5, -5, -4, -3, -2, -1, 0}},
        {1, {0, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {4, {-10, -5, -1, 0, 1, 2, 4, 6, 10, 15}},
    }}, " inches"_k);
}

void Problem22() {
    DrawName(1);
    const int32_t r2 = SetR(2, fRandomTo(300));
    SetText(Name(1) + " estimated that the tree had one thousand leaves.  If "_k + Str(r2) +
            " leaves fell off how many leaves would there be left on the tree?"_k);
    SetTip("subtract"_k);
    AnswersOffset3(1000 - r2, {{
        {2, {-20, 0, 20, -10, 1, 10, 15, -1, -15, 42}},
        {3, {90, -40, 0, -20, 60, -10, 10, -5, 3, -1}},
        {4, {-4, -3, -1, 0, 1, 3, 4, 10, -8, 22}},
    }}, " leaves"_k);
}

void Problem23() {
    int32_t r1 = fRandomTo(100);
    if (r1 < 50) r1 += 50;
    SetR(1, r1);
    SetText("There are "_k + Str(r1) +
            " empty seats in the theatre.  If 20 seats are taken how many empty seats will remain."_k);
    SetTip("subtract"_k);
    AnswersOffset3(r1 - 20, {{
        {4, {-3, -2, -1, 0, 1, 2, 3, 5, -5, 10}},
        {1, {0, -5, 5, -10, 10, 1, -1, -2, 2, 4}},
        {8, {1, -1, -2, -3, -4, -5, -10, 0, 10, 20}},
    }});
}

void Problem24() {
    DrawName(1);
    const Text He = HeShe(), he = heshe();
    const int32_t r1 = SetR(1, DrawOr(50, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(50, 2, 2));
    SetText(Name(1) + " counted "_k + Str(r1) + " rocks before lunch.  "_k + He + " counted "_k +
            Str(r2) + " more rocks after lunch.  How many rocks did "_k + he + " count total?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r2, {{
        {5, {-4, -3, -2, -1, 0, 1, 2, 3, 4, 5}},
        {2, {-1, 0, 1, 2, 3, 4, 5, 10, 15, 20}},
        {9, {1, 3, -5, -6, -7, -8, -9, -10, 0, 10}},
    }});
}

void Problem25() {
    int32_t r1 = fRandomTo(20);
    if (r1 < 5) r1 += 5;
    SetR(1, r1);
    SetText("The big race is "_k + Str(r1) +
            " days from today.  In three days how many days will there be until the big race?"_k);
    SetTip("subtraction"_k);
    AnswersOffset3(r1 - 3, {{
        {7, {-6, -5, -4, -3, -2, -1, 0, 1, 2, 3}},
        {3, {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7}},
        {2, {-1, 0, 1, 2, 3, 4, 5, 10, 15, 20}},
    }});
}

void Problem26() {
    DrawName(1);
    const Text He = HeShe();
    DrawItem(1);
    // The answer is always 3: the corrected edition asks for different
    // items, so the bag must hold three of a different kind, and the one
    // left at home is a fourth.
    if (Classic()) {
        DrawItem(2);
        DrawItem(3);
        DrawItem(4);
    } else {
        DrawItemDiffering(2, {1});
        DrawItemDiffering(3, {1, 2});
        DrawItemDiffering(4, {1, 2, 3});
    }
    SetText(Name(1) + " has "_k + Item(1) + ", "_k + Item(2) + ", and "_k + Item(3) +
            " in a bag.  "_k + He + " left "_k + Item(4) + " at home.  How many items does "_k +
            Name(1) + " have in the bag?"_k);
    SetTip("addition"_k);
    switch (Randomizer()) {
    case 1:
        AnswersText({"2"_k, "3"_k, "4"_k, "1"_k, "5"_k, "6"_k, "8"_k, "9"_k, "10"_k, "12"_k}, 2);
        break;
    case 2:
        AnswersText({"5"_k, "0"_k, "1"_k, "2"_k, "3"_k, "4"_k, "6"_k, "8"_k, "9"_k, "10"_k}, 5);
        break;
    default:
        AnswersText({"10"_k, "8"_k, "7"_k, "5"_k, "4"_k, "1"_k, "0"_k, "2"_k, "3"_k, "6"_k}, 9);
        break;
    }
}

void Problem27() {
    DrawName(1);
    const Text He = HeShe();
    const int32_t r1 = SetR(1, fRandomTo(40));
    const int32_t r2 = SetR(2, fRandomTo(25));
    const int32_t r3 = SetR(3, fRandomTo(30));
    SetText(Name(1) + " counted cars in local store parking lots.  "_k + He + " counted "_k +
            Str(r1) + " at the grocery.  "_k + He + " counted "_k + Str(r2) +
            " at the video store.  "_k + He + " counted "_k + Str(r3) +
            " at the auto shop.  How many cars did "_k + Name(1) + " count?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r2 + r3, {{
        {4, {-2, -3, -4, 0, -10, 10, -5, 5, -1, 1}},
        {5, {-3, -10, -5, -2, 0, 2, 5, 10, -4, 42}},
        {3, {-50, 50, 0, 1, 5, 10, -10, -5, -2, -1}},
    }}, " cars"_k);
}

void Problem28() {
    DrawName(1);
    const Text he = heshe();
    const int32_t r1 = SetR(1, DrawOr(10, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(10, 2, 2));
    const int32_t r3 = SetR(3, DrawOr(10, 2, 2));
    const int32_t t3 = SetT(3, r1 + r2 + r3);
    SetText("If "_k + Name(1) + " has "_k + Str(r1) + " puppets, "_k + Str(r2) + " bows, and "_k +
            Str(r3) + " buttons in a box.  How many different items does "_k + he +
            " have in the box?"_k);
    SetTip("add"_k);
    // Three kinds of thing are in the box, whatever their numbers; the total
    // is offered as a wrong entry.
    switch (Randomizer()) {
    case 1:
        AnswersText({Str(t3), Str(t3 - 1), "3"_k, "7"_k, "13"_k, "15"_k, "18"_k, "20"_k, "34"_k,
                     "11"_k},
                    3);
        break;
    case 2:
        AnswersText({"5"_k, "6"_k, "1"_k, "2"_k, "3"_k, Str(t3), Str(t3 + 5), "7"_k, "0"_k, "10"_k},
                    5);
        break;
    default:
        AnswersText({"8"_k, "2"_k, "40"_k, Str(t3 - 1), Str(t3 + 1), Str(t3), "6"_k, "5"_k, "3"_k,
                     "4"_k},
                    9);
        break;
    }
}

void Problem29() {
    DrawName(1);
    SetText(Name(1) +
            " jogged 1 mile on Monday, a half mile on Tuesday, and 1 mile on Thursday.  How far did "_k +
            Name(1) + " jog total?"_k);
    SetTip("add"_k);
    switch (Randomizer()) {
    case 1:
        AnswersText({"2.5 miles"_k, "3 miles"_k, "3.5 miles"_k, "4 miles"_k, "4.5 miles"_k,
                     "5 miles"_k, "5.5 miles"_k, "6 miles"_k, "6.5 miles"_k, "7 miles"_k},
                    1);
        break;
    case 2:
        AnswersText({"one mile"_k, "two and a half miles"_k, "three miles"_k, "one quarter mile"_k,
                     "one half mile"_k, "two miles"_k, "three miles"_k, "six miles"_k,
                     "one tenth of a mile"_k, "eight miles"_k},
                    2);
        break;
    default:
        AnswersText({"one mile"_k, "one and a half miles"_k, "two miles"_k, "three miles"_k,
                     "three and half miles"_k, "one half mile"_k, "two and a half miles"_k,
                     "six miles"_k, "nine miles"_k, "a half mile"_k},
                    7);
        break;
    }
}

void Problem30() {
    DrawName(1);
    const int32_t r1 = SetR(1, fRandomTo(2));
    const int32_t r2 = SetR(2, fRandomTo(2));
    const int32_t r3 = SetR(3, fRandomTo(2));
    P().sTemp[1] = r1 == 1 ? "Monday"_k : "Tuesday"_k;
    P().sTemp[2] = r2 == 1 ? "Wednesday"_k : "Thursday"_k;
    P().sTemp[3] = r3 == 1 ? "Friday"_k : "Saturday"_k;
    SetText(Name(1) + " jogged 30 minutes on "_k + P().sTemp[1] + ", 25 minutes on "_k +
            P().sTemp[2] + ", and 35 minutes on "_k + P().sTemp[3] +
            ".  How many minutes did "_k + Name(1) + " jog total?"_k);
    SetTip("add"_k);
    switch (Randomizer()) {
    case 1:
        AnswersText({"70"_k, "80"_k, "90"_k, "40"_k, "50"_k, "60"_k, "25"_k, "35"_k, "45"_k, "55"_k},
                    3);
        break;
    case 2:
        AnswersText({"65"_k, "70"_k, "75"_k, "80"_k, "85"_k, "90"_k, "95"_k, "100"_k, "110"_k,
                     "115"_k},
                    6);
        break;
    default:
        AnswersText({"70"_k, "75"_k, "80"_k, "85"_k, "89"_k, "95"_k, "100"_k, "90"_k, "91"_k,
                     "92"_k},
                    8);
        break;
    }
}

} // namespace

void mProb21to30(int32_t number) {
    switch (number) {
    case 21: Problem21(); break;
    case 22: Problem22(); break;
    case 23: Problem23(); break;
    case 24: Problem24(); break;
    case 25: Problem25(); break;
    case 26: Problem26(); break;
    case 27: Problem27(); break;
    case 28: Problem28(); break;
    case 29: Problem29(); break;
    case 30: Problem30(); break;
    default: break;
    }
}

} // namespace sumbrook
