// Problems 11 to 20: pencils, markers, boards, a teaser, lists of numbers,
// fish and a second shopping trip.
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

// A list of three numbers, each on its own line, behind a question.
Text NumberList(int32_t a, int32_t b, int32_t c) {
    return CRLF() + Str(a) + CRLF() + Str(b) + CRLF() + Str(c) + CRLF();
}

void Problem11() {
    DrawGirlsName(1);
    const int32_t r1 = SetR(1, DrawAtLeast(10, 2));
    const int32_t r2 = SetR(2, DrawAtLeast(10, 2));
    int32_t r3 = fRandomTo(10);
    while (r3 > r1 + r2) {
        LoopTurn();
        r3 = fRandomTo(10);
    }
    SetR(3, r3);
    SetText(Name(1) + " had "_k + Str(r1) + " pencils.  She then received "_k + Str(r2) +
            " more.  Deciding she had too many pencils she gave "_k + Str(r3) +
            " to friends.  How many pencils did she have left?"_k);
    SetTip("add and subtract"_k);
    AnswersOffset3(r1 + r2 - r3, {{
        {6, {5, 6, 7, 8, 9, 0, 1, 2, 3, 4}},
        {4, {1, 2, 3, 0, 5, 10, 14, 16, 20, 25}},
        {1, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
    }}, " pencils"_k);
}

void Problem12() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawOr(6, 2, 2));
    const int32_t r2 = SetR(2, DrawOr(5, 2, 2));
    const int32_t r3 = SetR(3, DrawOr(5, 2, 2));
    SetText(Name(1) + " had "_k + Str(r1) + " blue markers, "_k + Str(r2) + " red markers, and "_k +
            Str(r3) + " yellow markers.  How many blue markers did "_k + Name(1) +
            " have total?"_k);
    SetTip("zero plus any number equals the number"_k);
    // Only the blue markers count; the totals stand among the wrong entries.
    const int32_t T = r1;
    const int32_t two = r1 + r2, three = r1 + r2 + r3, firstAndLast = r1 + r3;
    AnswersValue3({{
        {1, {T, T - 1, T - 2, T - 3, two, three, T + 1, T + 2, T + 3, T + 4}},
        {4, {T + 5, T + 3, T + 1, T, T - 1, T + 6, two, three, firstAndLast, T + 4}},
        {8, {two, T + 1, T + 2, three, T + 3, T + 4, T + 5, T, T - 1, T - 2}},
    }});
}

void Problem13() {
    const int32_t r1 = SetR(1, DrawOr(10, 2, 4));
    const int32_t r2 = SetR(2, DrawOr(10, 2, 8));
    SetText("The carpenter has "_k + Str(r1) + " boards that are 6 feet long and "_k + Str(r2) +
            " boards that are 8 feet long.  How many boards does the carpenter have?"_k);
    SetTip("length of boards does not affect number of boards"_k);
    AnswersOffset3(r1 + r2, {{
        {5, {1, 2, 3, 4, 0, 5, 6, 7, 8, 9}},
        {6, {5, 2, 1, 4, 3, 0, 6, 7, 8, 9}},
        {7, {7, 8, 9, 6, 5, 4, 0, 1, 2, 3}},
    }}, " boards"_k);
}

void Problem14() {
    const int32_t r1 = SetR(1, fRandomTo(10));
    SetText("Five boys ate "_k + Str(r1) +
            " hamburgers at 11 o'clock on fourth street.  How many nickels do you need to have a dozen?"_k);
    SetTip("dozen always equals 12"_k);
    const Text r = Str(r1);
    switch (Randomizer()) {
    case 1:
        AnswersText({"1"_k, "2"_k, "5"_k, "11"_k, "12"_k, "15"_k, r, "4"_k, "10"_k, "3"_k}, 5);
        break;
    case 2:
        AnswersText({"2"_k, "4"_k, "1"_k, "13"_k, "22"_k, ".05"_k, "11"_k, "12"_k, r, "5"_k}, 8);
        break;
    default:
        AnswersText({"1"_k, "6"_k, "5"_k, r, "4"_k, "10"_k, "15"_k, "22"_k, "26"_k, "12"_k}, 10);
        break;
    }
}

void Problem15() {
    const int32_t r1 = SetR(1, fRandomTo(500));
    const int32_t r2 = SetR(2, fRandomTo(500));
    const int32_t r3 = SetR(3, fRandomTo(500));
    SetText("What is the total of the first two numbers in the following list:"_k +
            NumberList(r1, r2, r3));
    SetTip("addition"_k);
    AnswersOffset3(r1 + r2, {{
        {3, {-50, -25, 0, 20, 21, 42, 2, -1, 55, -55}},
        {8, {-6, 32, -3, 4, -15, 22, -10, 0, 9, -1}},
        {5, {-92, -50, -30, -26, 0, 15, 22, 31, 35, 44}},
    }});
}

void Problem16() {
    const int32_t r1 = SetR(1, fRandomTo(500));
    const int32_t r2 = SetR(2, fRandomTo(500));
    const int32_t r3 = SetR(3, fRandomTo(500));
    SetText("Total the first and third numbers in the following list:"_k + NumberList(r1, r2, r3));
    SetTip("addition"_k);
    AnswersOffset3(r1 + r3, {{
        {1, {0, 5, 15, 10, -10, -2, -55, -9, 18, 6}},
        {2, {-90, 0, 65, 88, 5, 3, 78, 4, -22, -11}},
        {7, {-7, -3, -1, 4, 10, 65, 0, 90, -11, 1}},
    }});
}

void Problem17() {
    const int32_t r1 = SetR(1, DrawOr(500, 250, 312));
    const int32_t r2 = SetR(2, fRandomTo(500));
    const int32_t r3 = SetR(3, fRandomTo(250));
    SetText("After subtracting the third number in the following list from the first number what is the result?"_k +
            NumberList(r1, r2, r3));
    SetTip("subtraction"_k);
    AnswersOffset3(r1 - r3, {{
        {3, {-15, -5, 0, 5, 10, 15, 20, 2, 3, 4}},
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4}},
        {7, {-25, -10, -8, -6, -4, -2, 0, 2, 4, 6}},
    }});
}

void Problem18() {
    const int32_t r1 = SetR(1, DrawOr(100, 25, 25));
    int32_t r2 = fRandomTo(333);
    if (r2 < r1) r2 = r1 + 50;
    SetR(2, r2);
    const int32_t r3 = SetR(3, fRandomTo(333));
    SetText("What is the result of subtracting the first number in the following list from the total of the second and third numbers?"_k +
            NumberList(r1, r2, r3));
    SetTip("add then subtract"_k);
    AnswersOffset3(r2 + r3 - r1, {{
        {2, {-5, 0, 5, -1, -2, 1, 2, 10, -10, 33}},
        {8, {-6, 1, 2, 3, 11, 9, 7, 0, -5, -10}},
        {10, {4, 3, -4, -3, 15, 10, 5, -2, -1, 0}},
    }});
}

void Problem19() {
    DrawName(1);
    DrawName(2);
    const int32_t r1 = SetR(1, fRandomTo(10));
    const int32_t r2 = SetR(2, fRandomTo(10));
    SetText(Name(1) + " has "_k + Str(r1) + " gold fish.  "_k + Name(2) + " has "_k + Str(r2) +
            " guppies.  How many fish do they have combined?"_k);
    SetTip("add"_k);
    AnswersOffset3(r1 + r2, {{
        {3, {-2, -1, 0, 1, 2, 3, 4, 5, 10, 15}},
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4}},
        {10, {10, 20, 5, 3, 1, -1, -3, -5, -10, 0}},
    }}, " fish"_k);
}

void Problem20() {
    DrawName(1);
    const Text he = heshe();
    DrawItem(1);
    const int32_t price = SetPrice(fPriceOf(Item(1)));
    SetText(Name(1) + " had $32.00.  Yesterday "_k + he + " bought "_k + Item(1) + " for "_k +
            fMoneyText(price) + ".  How much did "_k + he + " have left?"_k);
    SetTip("subtract"_k);
    const Arrangement &a = Chosen({{
        {1, {3200, 2800, 2659, 2780, 2799, 3500, 2590, 2576, 2900, 2459}},
        {4, {2780, 3100, 2659, 3200, 2650, 2610, 2590, 2576, 2550, 2900}},
        {6, {2780, 2800, 2900, 2780, 2650, 3200, 2590, 2576, 2550, 3000}},
    }});
    Ten values{};
    for (int i = 0; i < 10; ++i) values[i] = a.values[i] - price;
    AnswersMoneyValue(values, a.correct);
}

} // namespace

void mProb11to20(int32_t number) {
    switch (number) {
    case 11: Problem11(); break;
    case 12: Problem12(); break;
    case 13: Problem13(); break;
    case 14: Problem14(); break;
    case 15: Problem15(); break;
    case 16: Problem16(); break;
    case 17: Problem17(); break;
    case 18: Problem18(); break;
    case 19: Problem19(); break;
    case 20: Problem20(); break;
    default: break;
    }
}

} // namespace sumbrook
