// Problems 71 to 80: ink pens, a discount, rounding, snails, tickets, a
// list to multiply, quarts, sharing collections, phone calls and a pizza bill.
#include "bank/corrections.h"
#include "bank/problem_kit.h"

namespace sumbrook {

namespace {

void Problem71() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(124, 50, 3, 125));
    SetText(Name(1) + " needs to buy 2 ink pens.  Each ink pen costs "_k + fMoneyText(r1) +
            ".  How much money does "_k + Name(1) + " need."_k);
    SetTip("multiply"_k);
    AnswersMoneyOffset3(r1 * 2, {{
        {9, {20, 1, -10, -5, -4, -3, -12, -1, 0, 10}},
        {5, {-5, -14, -3, -2, 0, 1, 22, 3, 4, 5}},
        {6, {-6, -15, -4, -3, -1, 0, 1, 13, 50, 7}},
    }});
}

void Problem72() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawRetry(2500, 1000, 3, 1200));
    // The discount drops its fraction of a cent before it is taken off.
    const int32_t t1 = SetT(1, r1 / 5);
    SetText(Name(1) + "'s bill came to "_k + fMoneyText(r1) +
            ".  The cashier then took 20% off the total.  How much did "_k + Name(1) +
            " pay?  (Truncate the result of the discount.  Do not round.)"_k);
    SetTip("multiply or divide then subtract"_k);
    AnswersMoneyOffset3(r1 - t1, {{
        {2, {-2, 0, 2, 20, -10, 30, -15, -6, 50, -50}},
        {4, {-10, -20, -30, 0, 10, 20, 30, 40, 50, 5}},
        {10, {10, -40, -30, -20, -10, -8, -6, -4, -2, 0}},
    }});
}

void Problem73() {
    const int32_t r1 = SetR(1, fRandomTo(9));
    const int32_t r2 = SetR(2, fRandomTo(9));
    const int32_t r3 = SetR(3, fRandomTo(9));
    const int32_t r4 = SetR(4, fRandomTo(9));
    SetText("Round the following two numbers to the nearest whole number and multiply them: "_k + Str(r1) + "."_k +
            Str(r2) + " , "_k + Str(r3) + "."_k + Str(r4) + " ."_k);
    SetTip("round and multiply"_k);
    // The text shows the digits as drawn; the rounding happens only here.
    const int32_t a = SetT(1, r2 > 4 ? r1 + 1 : r1);
    const int32_t b = SetT(2, r4 > 4 ? r3 + 1 : r3);
    AnswersOffset3(a * b, {{
        {3, {-2, -1, 0, 1, 2, 3, 4, 5, 10, -5}},
        {4, {-5, -2, -1, 0, 1, 2, 5, 7, 9, 10}},
        {6, {-5, -4, -3, -2, -1, 0, 1, 2, 5, 10}},
    }});
}

void Problem74() {
    const int32_t r1 = SetR(1, DrawOr(5, 2, 6));
    const int32_t r2 = SetR(2, fRandomTo(2) == 2 ? 4 : 3);
    SetText("There are "_k + Str(r1) +
            " snails in the fish tank.  The number of snails doubles each week.  How many snails will there be at the end of "_k +
            Str(r2) + " weeks?"_k);
    SetTip("multi-part multiplication problem"_k);
    AnswersOffset3(r2 == 3 ? r1 * 8 : r1 * 16, {{
        {5, {-18, -15, -10, -1, 0, 5, 10, 15, 18, 21}},
        {7, {-1, 3, 1, 15, 10, 5, 0, -5, -10, -15}},
        {10, {3, 8, -8, 15, -15, 25, 10, -25, -10, 0}},
    }}, " snails"_k);
}

void Problem75() {
    DrawName(1);
    const int32_t r1 = SetR(1, DrawOr(9, 2, 10));
    const int32_t r2 = SetR(2, DrawOr(49, 10, 50));
    const int32_t t1 = SetT(1, r1 * r2);
    // Three blanks after "fair." are how this problem has always read.
    SetText(Name(1) + " was assigned the task of sorting tickets for the school fair.   "_k + HeShe() +
            " was to divide "_k + Str(t1) + " tickets evenly into "_k + Str(r1) +
            " envelopes.  How many tickets did "_k + Name(1) + " put into each envelope?"_k);
    SetTip("divide"_k);
    AnswersOffset3(r2, {{
        {4, {-3, -2, -1, 0, 1, 2, 3, 5, 7, 10}},
        {9, {15, -4, -3, -1, 1, 3, 5, 10, 0, -10}},
        {10, {12, 10, -12, -10, -5, -4, -3, -2, -1, 0}},
    }}, " tickets"_k);
}

void Problem76() {
    const int32_t r1 = SetR(1, fRandomTo(10));
    const int32_t r2 = SetR(2, fRandomTo(10));
    const int32_t r3 = SetR(3, fRandomTo(500));
    // The list shows r1, r3, r2: the third number on screen is the one
    // multiplied, the second the one added.
    SetText("For the following list of 3 numbers multiply the first number by the third and then add the second."_k +
            CRLF() + Str(r1) + CRLF() + Str(r3) + CRLF() + Str(r2) + CRLF());
    SetTip("multiply then add"_k);
    AnswersOffset3(r1 * r2 + r3, {{
        {1, {0, 1, 2, 3, 5, 10, -5, -6, -7, -10}},
        {2, {-10, 0, 10, 1, 3, 5, -1, -3, -5, -7}},
        {7, {-10, -5, -4, -3, -2, -1, 0, 1, 5, 10}},
    }});
}

void Problem77() {
    const int32_t r1 = SetR(1, DrawOr(9, 2, 10));
    SetText("There are four quarts in a gallon.  How many quarts are there in "_k + Str(r1) + " gallons."_k);
    SetTip("multiply"_k);
    AnswersOffset3(r1 * 4, {{
        {3, {-5, -2, 0, 3, 5, 7, 10, -10, -7, 6}},
        {4, {-5, -2, -1, 0, 1, 2, 5, 7, 10, 11}},
        {8, {2, -2, 11, 10, 7, 5, 1, 0, -1, -5}},
    }}, " quarts"_k);
}

// The words carry their own blanks, and the text uses them as they are:
// " paper clips " leaves a blank before the full stop.
Text CollectionWord(int32_t r) {
    switch (r) {
    case 1: return " paper clips "_k;
    case 2: return " collectors cards"_k;
    default: return " colored pencils"_k;
    }
}

void Problem78() {
    DrawName(1);
    DrawName(2);
    // Three people each with their own score or share: the corrected
    // edition never names the first one again as the third.
    if (Classic())
        DrawName(3);
    else
        DrawNameDiffering(3, {1, 2});
    const int32_t r1 = SetR(1, fRandomTo(10));
    const int32_t r2 = SetR(2, fRandomTo(10));
    const int32_t r3 = SetR(3, fRandomTo(10));
    const int32_t r4 = SetR(4, fRandomTo(3));
    const Text word = CollectionWord(r4);
    const int32_t t1 = SetT(1, r1 * 3);
    const int32_t t2 = SetT(2, r2 * 3);
    const int32_t t3 = SetT(3, r3 * 3);
    SetText(Name(1) + " has "_k + Str(t1) + word + ".  "_k + Name(2) + " has "_k + Str(t2) + word + ".  "_k +
            Name(3) + " has "_k + Str(t3) + word + ".  How many"_k + word +
            " would each person have if they were combined and then divided equally?"_k);
    SetTip("add then divide"_k);
    AnswersOffset3((t1 + t2 + t3) / 3, {{
        {3, {-2, -1, 0, 1, 2, 5, 10, -10, -5, 20}},
        {8, {6, -3, -1, 3, 1, -15, -10, 0, 10, 15}},
        {9, {-5, -10, 10, 5, 4, 3, 2, 1, 0, -1}},
    }});
}

Text CallerPlace(int32_t r) {
    switch (r) {
    case 1: return " school office "_k;
    case 2: return " local library "_k;
    default: return " snack shop "_k;
    }
}

void Problem79() {
    const int32_t r1 = SetR(1, DrawRetry(50, 10, 3, 10));
    const int32_t r2 = SetR(2, DrawRetry(20, 10, 3, 11));
    const int32_t r5 = SetR(5, fRandomTo(3));
    SetText("The"_k + CallerPlace(r5) + "receives "_k + Str(r1) +
            " phone calls each day.  How many calls do they receive over a "_k + Str(r2) + " day period?"_k);
    SetTip("multiply"_k);
    AnswersOffset3(r1 * r2, {{
        {6, {6, -10, -5, -2, -1, 0, 1, 2, 5, 10}},
        {7, {-2, 2, 4, -5, -3, -1, 0, 1, 3, 5}},
        {8, {-1, 1, 2, -5, 5, -20, -10, 0, 10, 20}},
    }}, " calls"_k);
}

void Problem80() {
    const int32_t r1 = SetR(1, fRandomTo(100));
    const int32_t T = r1 + 200;
    const int32_t t2 = SetT(2, T * 5);
    SetText("5 students ordered 2 pizzas at the one local pizza shop.  The total of the order was "_k +
            fMoneyText(t2) +
            ".  If the students were to split the bill evenly how much would each student pay?"_k);
    SetTip("divide"_k);
    AnswersMoneyOffset3(T, {{
        {7, {-50, -45, -25, -10, -5, -1, 0, 1, 5, 10}},
        {2, {-10, 0, 10, 15, 20, 25, 30, -1, 1, -5}},
        {4, {-50, -25, -10, 0, 10, 25, 35, 45, 50, 100}},
    }});
}

} // namespace

void mProb71to80(int32_t number) {
    switch (number) {
    case 71: Problem71(); break;
    case 72: Problem72(); break;
    case 73: Problem73(); break;
    case 74: Problem74(); break;
    case 75: Problem75(); break;
    case 76: Problem76(); break;
    case 77: Problem77(); break;
    case 78: Problem78(); break;
    case 79: Problem79(); break;
    case 80: Problem80(); break;
    default: break;
    }
}

} // namespace sumbrook
