// Problems 51 to 60: marbles shared out, books in back packs, a dozen fruit,
// tires, a train, two sales, library books, silent reading and a salesman's
// week.
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

void Problem51() {
    const int32_t r1 = SetR(1, DrawRetry(20, 15, 2, 15));
    const int32_t t1 = SetT(1, r1 * 5);
    SetText("There are "_k + Str(r1) + " students in the class.  If we were to split "_k + Str(t1) +
            " marbles evenly among all the students how many marbles would each student get?"_k);
    SetTip("divide"_k);
    // The marbles are always five times the students, so the answer is
    // always "5 marbles"; only its place moves.
    switch (Randomizer()) {
    case 2:
        AnswersText({"2 marbles"_k, "3 marbles"_k, "4 marbles"_k, "5 marbles"_k, "6 marbles"_k, "7 marbles"_k,
                     "8 marbles"_k, "9 marbles"_k, "1 marble"_k, "10 marbles"_k},
                    4);
        break;
    case 3:
        AnswersText({"10 marbles"_k, "8 marbles"_k, "7 marbles"_k, "6 marbles"_k, "0 marbles"_k, "1 marble"_k,
                     "2 marbles"_k, "3 marbles"_k, "4 marbles"_k, "5 marbles"_k},
                    10);
        break;
    default:
        AnswersText({"3 marbles"_k, "4 marbles"_k, "5 marbles"_k, "6 marbles"_k, "7 marbles"_k, "8 marbles"_k,
                     "9 marbles"_k, "10 marbles"_k, "2 marbles"_k, "1 marble"_k},
                    3);
        break;
    }
}

void Problem52() {
    DrawName(1);
    DrawName(2);
    DrawNameDiffering(3, {1, 2});
    const int32_t r1 = SetR(1, DrawRetry(5, 2, 2, 2));
    SetText(Name(1) + ", "_k + Name(2) + ", and "_k + Name(3) + " each have "_k + Str(r1) +
            " books in their back packs.  What is the total number of books?"_k);
    SetTip("multiply"_k);
    AnswersOffset3(3 * r1, {{
        {4, {-3, -2, -1, 0, 1, 2, 3, 4, 5, 10}},
        {7, {10, 7, -5, -3, -2, -1, 0, 1, 2, 3}},
        {8, {2, 4, 6, 8, 10, -5, -3, 0, 5, 3}},
    }}, " books"_k);
}

Text FruitWord(int32_t r) {
    switch (r) {
    case 1: return "apples"_k;
    case 2: return "bananas"_k;
    case 3: return "pears"_k;
    default: return "peaches"_k;
    }
}

void Problem53() {
    DrawName(1);
    DrawName(2);
    const int32_t r1 = SetR(1, fRandomTo(4));
    const Text word = FruitWord(r1);
    SetText(Name(1) + " and "_k + Name(2) + " have a dozen "_k + word + ".  How many "_k + word +
            " would each get if they were to share equally?"_k);
    SetTip("divide"_k);
    // Two children and twelve pieces: the answer is always "six".
    switch (Randomizer()) {
    case 2:
        AnswersText({"six"_k, "seven"_k, "eight"_k, "nine"_k, "ten"_k, "one"_k, "two"_k, "three"_k, "four"_k,
                     "five"_k},
                    1);
        break;
    case 3:
        AnswersText({"one"_k, "three"_k, "four"_k, "five"_k, "six"_k, "seven"_k, "eight"_k, "nine"_k, "ten"_k,
                     "eleven"_k},
                    5);
        break;
    default:
        AnswersText({"nine"_k, "none"_k, "one"_k, "two"_k, "three"_k, "four"_k, "five"_k, "six"_k, "seven"_k,
                     "eight"_k},
                    8);
        break;
    }
}

void Problem54() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(50, 25, 3, 30));
    SetText("There are 4 tires on each car.  "_k + Name(1) + " counted "_k + Str(r1) +
            " cars in the mall parking lot.  How many tires were there total?"_k);
    SetTip("multiply"_k);
    AnswersOffset3(4 * r1, {{
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4}},
        {7, {5, 1, -1, -12, -8, -4, 0, 4, 8, 12}},
        {9, {-1, 1, -6, -8, -4, 8, 21, -16, 0, 16}},
    }});
}

void Problem55() {
    const int32_t r1 = SetR(1, DrawRetry(350, 100, 3, 110));
    SetText("The train travels "_k + Str(r1) +
            " miles each day of the week.  How many miles does it travel each week?"_k);
    SetTip("multiply"_k);
    AnswersOffset3(r1 * 7, {{
        {3, {-20, -10, 0, 10, 20, 5, 1, -1, -5, 7}},
        {7, {-20, -10, -7, -5, -3, -1, 0, 10, 15, 20}},
        {10, {1, 2, 3, 5, 10, 20, -35, -20, -10, 0}},
    }}, " miles"_k);
}

void Problem56() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(2200, 1000, 3, 1100));
    SetText(Name(1) + " found a shirt priced "_k + fMoneyText(r1) +
            ".  The store was having a 10% off sale.  How much did "_k + Name(1) +
            " save?  (Do not round.)"_k);
    SetTip("multiply or divide"_k);
    // Integer division truncates: a price of $12.99 saves $1.29.
    AnswersMoneyOffset3(r1 / 10, {{
        {1, {0, 1, 2, 3, 4, 5, 10, -5, -4, -3}},
        {3, {-3, -2, 0, -5, 2, 4, 7, 10, 15, 20}},
        {9, {-1, -2, -3, -4, -5, 20, -20, -10, 0, 10}},
    }});
}

void Problem57() {
    DrawName(1);
    // Up to three redraws while the price is below $15.00; the first of them
    // comes from the short range 1 to 300 and so never lifts the price, the
    // other two from the full range.
    int32_t r1 = fRandomTo(3000);
    for (int32_t redraw = 1; redraw <= 3 && r1 < 1500; ++redraw) {
        LoopTurn();
        r1 = fRandomTo(redraw == 1 ? 300 : 3000);
    }
    if (r1 < 1500) r1 = 1600;
    SetR(1, r1);
    SetText(Name(1) + " found shoes priced "_k + fMoneyText(r1) +
            ".  The store was having a 25% off sale.  How much did "_k + Name(1) +
            " save?  (Do not round.)"_k);
    SetTip("multiply or divide"_k);
    AnswersMoneyOffset3(r1 / 4, {{
        {10, {-15, 1, 2, 3, 4, 5, 10, -5, -4, 0}},
        {2, {-3, 0, -2, -5, 2, 4, 7, 10, 15, 20}},
        {8, {-1, -2, -3, -4, -5, 20, -20, 0, -10, 10}},
    }});
}

Text SchoolName(int32_t r) {
    switch (r) {
    case 1: return "Washington"_k;
    case 2: return "Lincoln"_k;
    default: return "Roosevelt"_k;
    }
}

void Problem58() {
    const int32_t r1 = SetR(1, DrawRetry(600, 250, 3, 325));
    const int32_t r2 = SetR(2, fRandomTo(3));
    SetText(Str(r1) + " students attend "_k + SchoolName(r2) +
            " School.  If each student checks out 3 library books how many books will be checked out total?"_k);
    SetTip("multiply"_k);
    AnswersOffset3(r1 * 3, {{
        {5, {-4, -3, -2, -1, 0, 1, 2, 3, 4, 5}},
        {6, {-15, -12, -9, -6, -3, 0, 3, 6, 9, 12}},
        {7, {-60, -50, -18, -9, -6, -3, 0, 3, 6, 50}},
    }});
}

Text FullSchoolName(int32_t r) {
    switch (r) {
    case 1: return "Grand Elementary School"_k;
    case 2: return "Cherry Street School"_k;
    default: return "Town Elementary School"_k;
    }
}

void Problem59() {
    const int32_t r1 = SetR(1, DrawRetry(100, 10, 3, 20));
    const int32_t r2 = SetR(2, fRandomTo(3));
    SetText("Students at "_k + FullSchoolName(r2) +
            " practice silent reading for 20 minutes each day.  How many minutes do they read over a period "_k +
            Str(r1) + " days?"_k);
    SetTip("multiply"_k);
    AnswersOffset3(20 * r1, {{
        {5, {-80, -60, -40, -20, 0, 20, 40, 45, 60, 65}},
        {6, {-60, -50, -40, -30, -20, 0, 20, 30, 35, 40}},
        {7, {-42, -40, -20, -15, -10, -5, 0, 20, 22, 40}},
    }});
}

void Problem60() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(100, 20, 3, 25));
    const int32_t t1 = SetT(1, r1 * 7);
    const Text he = heshe();
    SetText("The local text book sales person travels "_k + Str(t1) + " miles a week.  If "_k + he +
            " travels the same distance each day how far does "_k + he +
            " travel each day?  (Calculate using a seven day week.)"_k);
    SetTip("divide"_k);
    AnswersOffset3(r1, {{
        {2, {-10, 0, 10, 11, 15, 20, 22, 25, 30, 35}},
        {4, {-3, -2, -1, 0, 1, 2, 3, 5, 6, 10}},
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 5, 10}},
    }}, " miles"_k);
}

} // namespace

void mProb51to60(int32_t number) {
    switch (number) {
    case 51: Problem51(); break;
    case 52: Problem52(); break;
    case 53: Problem53(); break;
    case 54: Problem54(); break;
    case 55: Problem55(); break;
    case 56: Problem56(); break;
    case 57: Problem57(); break;
    case 58: Problem58(); break;
    case 59: Problem59(); break;
    case 60: Problem60(); break;
    default: break;
    }
}

} // namespace sumbrook
