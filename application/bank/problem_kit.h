// What a problem of the bank uses: the pickers, the working fields, the
// pronouns, the problem text and tip, and the ten answers.
//
// How a block of ten is written
// -----------------------------
// A block is one function, mProbAtoB(number), that builds the problem of that
// number into the current question's fields.  mSetProblem (drill/round.h)
// already calls every block by its range: a block is registered simply by
// defining its function, in its own file under application/bank/.
//
//     void mProb41to50(int32_t number) {
//         switch (number) {
//         case 41: {
//             DrawName(1);                                  // name1
//             const int32_t r1 = SetR(1, DrawRetry(10, 2, 5, 2));
//             SetText(Name(1) + " has a box that can hold 12 books.  There are "_k
//                     + Str(r1) + " already in the box.  ..."_k);
//             SetTip("subtract"_k);
//             AnswersOffset3(12 - r1, {{
//                 {2, {-1, 0, 1, 2, 3, 4, 5, 10, 15, 20}},
//                 {4, {-3, -2, -1, 0, 1, 2, 3, 4, 5, 10}},
//                 {6, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4}},
//             }});
//             break;
//         }
//         ...
//         }
//     }
//
// Rules every problem keeps:
// - Draws happen in the order the problem lists them: each helper below draws
//   at the moment it is called, so call them in that order, and work out a
//   pronoun (HeShe() and its sisters) right after the name it belongs to when a
//   later name pick would change sGender.
// - Every loop that draws again calls LoopTurn() at each turn (the helpers
//   here already do).
// - A problem always ends with the ten entries of sAnswerStrings set (1 to 10)
//   and iCorrectAnswerIs set to the arrangement's fixed position; the
//   Answers... helpers do both.
// - Text literals are "..."_k; texts join with +; numbers become text through
//   Str(n) and money through fMoneyText(cents).  A literal written behind a
//   number in a list (" boards") carries its own leading blank.
#pragma once

#include "drill/state.h"
#include "drill/text.h"

#include <array>
#include <cstdint>
#include <initializer_list>

namespace sumbrook {

// ------------------------------------------------------------------ blocks

void mProb1to10(int32_t number);
void mProb11to20(int32_t number);
void mProb21to30(int32_t number);
void mProb31to40(int32_t number);
void mProb41to50(int32_t number);
void mProb51to60(int32_t number);
void mProb61to70(int32_t number);
void mProb71to80(int32_t number);
void mProb81to90(int32_t number); // 81 to 87

// ------------------------------------------------- vocabulary and pickers

// 1 to n: the truncation of rnd() * n + 1.
int32_t fRandomTo(int32_t n);
// A name index 0 to 60, never the one picked last; sets sGender and iLastName.
int32_t fPickName();
// An item index 0 to 50; items have no memory.
int32_t fPickItem();
// A price in cents for an item phrase, from min to max - 1 of its row.
int32_t fPriceOf(const Text &item);
// "$d.cc"; empty for a negative cents part.
Text fMoneyText(int32_t cents);

Text NameAt(int32_t index); // asNames(index)
Text ItemAt(int32_t index); // asItems(index)

// One turn of a redraw loop: lets the runtime run its background tasks.
void LoopTurn();

// ---------------------------------------------------------- working fields

ProblemFields &P();        // the current question's fields
int32_t Randomizer();      // iRandomizer, 1 to 3
int32_t ProblemNumber();   // iProbNumber
bool IsMale();             // sGender is "male"

// nameK: one fPickName, into iName[k] and sName[k]; returns the index.
int32_t DrawName(int k);
// nameK drawn as a boy's (male) or girl's (female) name: fPickName again
// and again until sGender has that tag.
int32_t DrawBoysName(int k);
int32_t DrawGirlsName(int k);
// nameK redrawn until its index differs from the names of the given slots.
int32_t DrawNameDiffering(int k, std::initializer_list<int> otherSlots);
// itemK: one fPickItem, into iItem[k] and sItem[k]; returns the index.
int32_t DrawItem(int k);
// itemK redrawn until its index differs from the items of the given slots.
int32_t DrawItemDiffering(int k, std::initializer_list<int> otherSlots);

Text Name(int k); // sName[k]
Text Item(int k); // sItem[k]

// "r: lo..n": fRandomTo(n) redrawn without limit until it is at least lo.
int32_t DrawAtLeast(int32_t n, int32_t lo);
// "r: 1..n; below b: v": one draw, v if it came out below b.
int32_t DrawOr(int32_t n, int32_t below, int32_t instead);
// "r: 1..n, redrawn up to t times while below b; still below b: v".
int32_t DrawRetry(int32_t n, int32_t below, int32_t times, int32_t instead);

// Keeps a number in slot rK (iRandom[k], sRandom[k]) and returns it.
int32_t SetR(int k, int32_t value);
// Keeps a scratch value in tK (iTemp[k], sTemp[k]) and returns it.
int32_t SetT(int k, int32_t value);
// Keeps the price (iPrice, sPrice as money text) and returns it.
int32_t SetPrice(int32_t cents);

// -------------------------------------------------------------- the words

// The first form for "male", the second for "female", by sGender now.
Text HeShe();  // "He" / "She"
Text heshe();  // "he" / "she"
Text HisHer(); // "His" / "Her"
Text hisher(); // "his" / "her"
Text HimHer(); // "Him" / "Her"
Text himher(); // "him" / "her"
Text CRLF();   // carriage return and line feed

// ------------------------------------------------------- text, tip, answers

void SetText(const Text &problemText); // sProblemString
void SetTip(const Text &tip);          // sTip

using Ten = std::array<int32_t, 10>;

// One hand-written arrangement: the position of the correct entry (1 to 10)
// and the ten values of the list (offsets or plain values, by the helper).
struct Arrangement {
    int32_t correct;
    Ten values;
};
using ThreeArrangements = std::array<Arrangement, 3>;

// Entry `entry` (1 to 10) of sAnswerStrings.
void SetAnswer(int32_t entry, const Text &text);
// iCorrectAnswerIs.
void SetCorrect(int32_t position);

// "{T+k}" (+ after): Str(T + k[i]) followed by `after`.
void AnswersOffset(int32_t T, const Ten &k, int32_t correct, const Text &after = Text());
// Plain values: Str(v[i]) followed by `after`.
void AnswersValue(const Ten &v, int32_t correct, const Text &after = Text());
// "{$T+k}": fMoneyText(T + k[i]).
void AnswersMoneyOffset(int32_t T, const Ten &k, int32_t correct);
// Money of plain values: fMoneyText(v[i]).
void AnswersMoneyValue(const Ten &v, int32_t correct);
// Ten literal texts.
void AnswersText(const std::array<Text, 10> &texts, int32_t correct);

// The same, choosing the list by iRandomizer (arrangements 1, 2, 3 in order).
void AnswersOffset3(int32_t T, const ThreeArrangements &lists, const Text &after = Text());
void AnswersValue3(const ThreeArrangements &lists, const Text &after = Text());
void AnswersMoneyOffset3(int32_t T, const ThreeArrangements &lists);
// The arrangement iRandomizer chooses (a copy, so a list written in place
// may be passed).
Arrangement Chosen(const ThreeArrangements &lists);

} // namespace sumbrook
