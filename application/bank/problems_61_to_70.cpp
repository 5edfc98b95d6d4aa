// Problems 61 to 70: text books on loan, markers for ten dollars, gym mats, a
// square, a rectangle, gum, test scores, lap times, an average with a number
// left out, and cartons of eggs.
#include "bank/corrections.h"
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

Text JuniorHighName(int32_t r) {
    switch (r) {
    case 1: return "Plains"_k;
    case 2: return "City Magnet"_k;
    default: return "Cardinal"_k;
    }
}

void Problem61() {
    const int32_t r1 = SetR(1, DrawRetry(600, 300, 3, 315));
    const int32_t r2 = SetR(2, fRandomTo(3));
    const int32_t t1 = SetT(1, r1 * 7);
    SetText("There are "_k + Str(t1) + " text books currently on loan to students at "_k + JuniorHighName(r2) +
            " Junior High.  If each student gets 7 books how many students are there?"_k);
    SetTip("divide"_k);
    AnswersOffset3(r1, {{
        {1, {0, 7, 14, 21, -7, -14, -21, 5, -5, 10}},
        {9, {50, 28, 21, 14, 7, -21, -14, -7, 0, -10}},
        {10, {20, 10, -21, -15, -12, -10, -7, -3, -1, 0}},
    }}, " students"_k);
}

Text WritingThing(int32_t r) {
    switch (r) {
    case 1: return "a marker"_k;
    case 2: return "a pen"_k;
    default: return "a pencil"_k;
    }
}

void Problem62() {
    const int32_t r1 = SetR(1, DrawRetry(99, 20, 3, 26));
    const int32_t r2 = SetR(2, fRandomTo(3));
    SetText("If "_k + WritingThing(r2) + " costs "_k + fMoneyText(r1) + " each how many can you buy for $10.00?"_k);
    SetTip("divide"_k);
    // Only whole markers can be bought: the division truncates.
    AnswersOffset3(1000 / r1, {{
        {5, {-3, -10, -2, -1, 0, 1, 3, 5, 10, 15}},
        {6, {-20, -12, -11, -10, -5, 0, 1, 5, 10, 11}},
        {9, {-5, 25, 22, 21, 20, 14, 11, 10, 0, -10}},
    }});
}

void Problem63() {
    const int32_t r1 = SetR(1, DrawRetry(5, 2, 2, 3));
    SetText("Each day 3 students are picked to help move "_k + Str(r1) +
            " mats in the gym at 11 o'clock.  How many mats were moved each day last week?"_k);
    SetTip("multiply"_k);
    // The mats moved each day are r1 itself; the multiples stand among the
    // wrong entries for a reader who multiplies by the days or the students.
    const int32_t T = r1;
    AnswersValue3({{
        {2, {r1 * 5, T, T - 1, r1 * 4, T + 2, r1 * 3, T + 3, T - 6, T - 4, T + 10}},
        {4, {r1 * 2, r1 * 5, r1 * 7, T, T + 8, T + 9, T - 1, T - 2, T - 3, T - 4}},
        {7, {T + 1, T + 10, T - 10, r1 * 7, T - 5, r1 * 5, T, T + 3, T - 3, r1 * 2}},
    }});
}

void Problem64() {
    const int32_t r1 = SetR(1, DrawRetry(15, 2, 3, 2));
    SetText("Side 3 of a square is "_k + Str(r1) + " inches long.  What is the perimeter of the square?"_k);
    SetTip("multiply"_k);
    AnswersOffset3(r1 * 4, {{
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4}},
        {7, {7, -6, 6, -5, -3, -1, 0, 1, 2, 5}},
        {10, {5, 3, 2, 1, -5, -4, -3, -2, -1, 0}},
    }}, " inches"_k);
}

void Problem65() {
    int32_t r1 = DrawRetry(18, 6, 3, 8);
    const int32_t r2 = SetR(2, DrawRetry(24, 4, 3, 6));
    // A rectangle with equal sides would be a square: lengthen one side.
    if (r1 == r2) r1 = r1 + 1;
    SetR(1, r1);
    const int32_t t1 = SetT(1, r1 > r2 ? r1 : r2);
    const int32_t t2 = SetT(2, r1 > r2 ? r2 : r1);
    SetText("The long side of the rectangle is "_k + Str(t1) + " inches.  The short side of the rectangle is "_k +
            Str(t2) + " inches.  What is the perimeter?"_k);
    SetTip("multiply and add"_k);
    AnswersOffset3(t1 + t1 + t2 + t2, {{
        {3, {-3, -1, 0, 1, 3, 5, 7, 9, 10, -5}},
        {6, {-10, -7, -5, -3, -1, 0, 1, 3, 5, 10}},
        {9, {1, 5, 7, 9, -1, -3, -5, -10, 0, 10}},
    }}, " inches"_k);
}

void Problem66() {
    DrawName(1);
    DrawName(2);
    // Three people each with their own score or share: the corrected
    // edition never names the first one again as the third.
    if (Classic())
        DrawName(3);
    else
        DrawNameDiffering(3, {1, 2});
    const int32_t r1 = SetR(1, DrawRetry(5, 2, 3, 6));
    SetText(Name(1) + ", "_k + Name(2) + ", and "_k + Name(3) + " each have "_k + Str(r1) +
            " sticks of gum.  How many sticks of gum do they have total?"_k);
    SetTip("multiply"_k);
    const int32_t T = 3 * r1;
    AnswersOffset3(T, {{
        {4, {6, 3, -3, 0, 9, 1, -1, -2, 2, 5}},
        {7, {2, 1, 0, -1, -2, -3, 0, 3, 6, 9}},
        {10, {5, 9, 6, 3, 2, 1, -3, -2, -1, 0}},
    }});
    // The second arrangement has a plain "0" as its third entry: no sticks at
    // all, a wrong answer that does not move with the draw.
    if (Randomizer() == 2) SetAnswer(3, "0"_k);
}

void Problem67() {
    DrawName(1);
    DrawName(2);
    // Three people each with their own score or share: the corrected
    // edition never names the first one again as the third.
    if (Classic())
        DrawName(3);
    else
        DrawNameDiffering(3, {1, 2});
    const int32_t r1 = SetR(1, DrawRetry(100, 70, 3, 75));
    const int32_t r2 = SetR(2, DrawRetry(100, 70, 3, 85));
    const int32_t r3 = SetR(3, DrawRetry(100, 70, 3, 90));
    SetText("On a recent test "_k + Name(1) + " scored "_k + Str(r1) + ", "_k + Name(2) + " scored "_k + Str(r2) +
            ", and "_k + Name(3) + " scored "_k + Str(r3) +
            ".  What was the average score?  (Truncate decimals.  Do not round.)"_k);
    SetTip("add then divide"_k);
    AnswersOffset3((r1 + r2 + r3) / 3, {{
        {1, {0, -2, 2, -5, 5, -7, 7, -9, 9, 10}},
        {3, {-4, -2, 0, 2, 4, 5, -3, 3, 7, -7}},
        {6, {-10, -5, -4, -3, -2, 0, 2, 5, 7, 12}},
    }}, " points"_k);
}

void Problem68() {
    const int32_t r1 = SetR(1, DrawRetry(59, 30, 3, 60));
    const int32_t r2 = SetR(2, DrawRetry(60, 30, 3, 50));
    const int32_t r3 = SetR(3, DrawRetry(60, 30, 3, 55));
    const int32_t r4 = SetR(4, fRandomTo(2));
    const Text word = r4 == 1 ? "race car"_k : "horse"_k;
    SetText("The "_k + word + " made 3 laps of the track.  The times were: "_k + Str(r1) + " seconds, "_k +
            Str(r2) + " seconds, and "_k + Str(r3) +
            " seconds.  What was the average time to complete a lap?  (Truncate decimals.  Do not round.)"_k);
    SetTip("add then divide"_k);
    AnswersOffset3((r1 + r2 + r3) / 3, {{
        {3, {-5, -2, 0, 2, 5, 7, 9, 10, -7, -10}},
        {4, {-5, -3, -2, 0, 2, 4, 6, 8, 9, 10}},
        {6, {-10, -7, -3, -2, -5, 0, 5, 2, 3, 10}},
    }}, " seconds"_k);
}

void Problem69() {
    const int32_t r1 = SetR(1, fRandomTo(100));
    const int32_t r2 = SetR(2, fRandomTo(100));
    const int32_t r3 = SetR(3, DrawOr(100, 5, 5));
    const int32_t r4 = SetR(4, fRandomTo(100));
    // The third line is always 25, the number the reader is told to leave out.
    SetText("Average the following list of numbers.  Exclude the 3rd number from all calculations.  "
            "(Truncate decimals.  Do not round.)"_k +
            CRLF() + Str(r1) + CRLF() + Str(r2) + CRLF() + "25"_k + CRLF() + Str(r3) + CRLF() + Str(r4));
    SetTip("add then divide"_k);
    AnswersOffset3((r1 + r2 + r3 + r4) / 4, {{
        {2, {-2, 0, 3, 2, 5, -5, 10, -10, 15, -15}},
        {4, {-10, -2, 2, 0, 3, 6, 7, 9, 10, 11}},
        {8, {12, -10, 10, -2, -6, -3, -5, 0, 4, 2}},
    }});
}

void Problem70() {
    const int32_t r1 = SetR(1, DrawRetry(11, 3, 3, 12));
    SetText("Each carton of eggs contains one dozen eggs.  The store had "_k + Str(r1) +
            " cartons left on the shelf.  How many eggs were there in all?"_k);
    SetTip("multiply"_k);
    AnswersOffset3(12 * r1, {{
        {1, {0, 12, -12, 6, -6, 3, -3, 10, 11, -10}},
        {5, {-24, -18, -12, -6, 0, 6, 12, 18, 24, -1}},
        {9, {24, 18, 6, -6, -2, -1, 1, -12, 0, 12}},
    }}, " eggs"_k);
}

} // namespace

void mProb61to70(int32_t number) {
    switch (number) {
    case 61: Problem61(); break;
    case 62: Problem62(); break;
    case 63: Problem63(); break;
    case 64: Problem64(); break;
    case 65: Problem65(); break;
    case 66: Problem66(); break;
    case 67: Problem67(); break;
    case 68: Problem68(); break;
    case 69: Problem69(); break;
    case 70: Problem70(); break;
    default: break;
    }
}

} // namespace sumbrook
