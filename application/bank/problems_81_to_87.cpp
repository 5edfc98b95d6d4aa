// Problems 81 to 87, the last of the bank: taxis, savings, quarters, picnic
// tables, a room's perimeter in inches, melting ice and seconds in hours.
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

void Problem81() {
    const int32_t r1 = SetR(1, DrawOr(9, 2, 10));
    SetText("Each of the "_k + Str(r1) + " taxis has three passengers.  How many people are in the taxis?"_k);
    SetTip("don't forget the driver, multiply"_k);
    // Every taxi has its driver too; the count without them is a wrong entry.
    const int32_t T = r1 * 4;
    AnswersValue3({{
        {5, {T - 10, T - 5, T - 3, T - 1, T, T + 1, T + 2, T + 4, r1 * 3, T + 7}},
        {9, {T + 50, T - 2, r1 * 3, T - 3, T + 3, T - 5, T + 5, T - 10, T, T + 10}},
        {10, {T + 3, r1 * 3, T + 1, T - 1, T - 2, T + 10, T + 5, T - 10, T - 5, T}},
    }}, " people"_k);
}

void Problem82() {
    DrawName(1);
    const int32_t r1 = SetR(1, fRandomTo(500));
    const int32_t t1 = SetT(1, r1 + 500);
    SetText(Name(1) + " puts "_k + fMoneyText(t1) + " into a savings account each month.  How much money will "_k +
            heshe() + " have saved in 1 year?"_k);
    SetTip("multiply"_k);
    AnswersMoneyOffset3(t1 * 12, {{
        {1, {0, -5, 5, -6, 6, -10, 10, -25, 25, -50}},
        {4, {-50, -25, -10, 0, 10, 25, 50, 65, 95, 1}},
        {5, {-1, -10, -25, -50, 0, 10, 50, 100, 3, 4}},
    }});
}

void Problem83() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(20, 5, 3, 7));
    const int32_t t1 = SetT(1, r1 * 25);
    SetText("If "_k + Name(1) + " were to exchange "_k + fMoneyText(t1) +
            " in mixed currency for the same amount of money in quarters how many quarters would "_k + heshe() +
            " receive?"_k);
    SetTip("divide"_k);
    AnswersOffset3(r1, {{
        {3, {-5, -2, 0, 2, 5, 7, 8, 1, -1, 10}},
        {6, {-10, -8, -6, -4, -2, 0, 1, 5, 6, 10}},
        {8, {6, 7, 3, 1, -1, -2, -4, 0, 10, 4}},
    }});
}

void Problem84() {
    const int32_t r1 = SetR(1, DrawRetry(100, 10, 3, 11));
    const int32_t t1 = SetT(1, r1 * 8);
    SetText("If each picnic table can seat 8 people how many tables will be needed for "_k + Str(t1) + " people?"_k);
    SetTip("divide"_k);
    AnswersOffset3(r1, {{
        {2, {-8, 0, 8, 16, 24, -1, 1, 3, -3, 10}},
        {7, {7, -5, 1, -24, -16, -8, 0, 8, 16, 24}},
        {9, {32, 3, 7, -1, -16, 1, 8, 16, 0, -15}},
    }}, " tables"_k);
}

void Problem85() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(20, 10, 3, 21));
    const int32_t t1 = SetT(1, (r1 * 4) * 12);
    SetText(Name(1) +
            " needs to find the perimeter of the room in inches.  The room is square.  One wall is "_k +
            Str(r1) + " feet wide.  What is the distance around the room?"_k);
    SetTip("multi-part multiplication"_k);
    // The wall's own length stands among the wrong entries.
    const int32_t T = t1;
    AnswersValue3({{
        {5, {T - 5, T - 4, T - 3, r1, T, T + 1, T + 2, T + 3, T + 12, T + 6}},
        {8, {T - 1, r1, T + 2, T + 1, T - 18, T - 12, T - 6, T, T + 12, T + 18}},
        {9, {r1, T - 2, T - 1, T + 2, T + 1, T - 6, T + 6, T - 12, T, T + 12}},
    }}, " inches"_k);
}

void Problem86() {
    DrawName(1);
    const int32_t r1 = SetR(1, fRandomTo(3));
    const int32_t r2 = SetR(2, fRandomTo(12));
    const int32_t t1 = SetT(1, r1 + 4);
    SetText(Name(1) + " found that it takes "_k + Str(t1) +
            " minutes for an ice cube to melt at the current temperature.  If 3 ice cubes were gotten out of the freezer at "_k +
            Str(r2) + ":00 what time will it be when the last ice cube has melted?"_k);
    SetTip("3 cubes make 1 group, multiply by 1"_k);
    // The cubes melt side by side, so the last one is done after one cube's
    // time; three times that is a wrong entry.  t1 is 5 to 7, so one or two
    // minutes more still fit behind ":0".
    const Text hour = Str(r2) + ":"_k;
    const Text right = hour + "0"_k + Str(t1);
    const Text plus1 = hour + "0"_k + Str(t1 + 1);
    const Text plus2 = hour + "0"_k + Str(t1 + 2);
    const Text tripled = hour + Str(t1 * 3);
    auto at = [&](int32_t minutes) { return hour + Str(minutes); };
    switch (Randomizer()) {
    case 2:
        AnswersText({at(29), at(50), at(51), at(52), right, tripled, at(44), at(45), plus1, plus2}, 5);
        break;
    case 3:
        AnswersText({plus1, plus2, tripled, at(31), at(40), at(41), at(55), at(56), right, at(59)}, 9);
        break;
    default:
        AnswersText({right, plus1, plus2, tripled, at(54), at(55), at(56), at(57), at(58), at(30)}, 1);
        break;
    }
}

void Problem87() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(5, 2, 3, 6));
    const int32_t t1 = SetT(1, (r1 * 60) * 60);
    SetText("There are 60 minutes in an hour.  "_k + Name(1) + " wants to know how many seconds are in "_k +
            Str(r1) + " hours.  How many seconds are there in "_k + Str(r1) + " hours?"_k);
    SetTip("multi-part multiplication"_k);
    const int32_t T = t1;
    const int32_t squared = 60 * r1 * r1; // an hour's minutes times the hours twice over
    AnswersValue3({{
        {3, {T - 39, T - 60, T, T + 30, squared, T + 60, T + 70, T - 5, T - 1, T + 3}},
        {7, {T + 60, T - 60, T - 45, T - 30, squared, T - 6, T, T + 6, T + 30, T + 45}},
        {8, {T + 1, T + 150, T + 120, T + 90, T + 60, squared, T + 6, T, T - 6, T - 45}},
    }}, " seconds"_k);
}

} // namespace

void mProb81to90(int32_t number) {
    switch (number) {
    case 81: Problem81(); break;
    case 82: Problem82(); break;
    case 83: Problem83(); break;
    case 84: Problem84(); break;
    case 85: Problem85(); break;
    case 86: Problem86(); break;
    case 87: Problem87(); break;
    default: break;
    }
}

} // namespace sumbrook
