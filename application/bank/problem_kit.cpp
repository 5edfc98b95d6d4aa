// The helpers of the problem kit: slots, pronouns, text and the ten answers.
#include "bank/problem_kit.h"
#include "bank/corrections.h"
#include "drill/vocabulary.h"

namespace sumbrook {

ProblemFields &P() { return Drill().problem; }
int32_t Randomizer() { return P().iRandomizer; }
int32_t ProblemNumber() { return P().iProbNumber; }
bool IsMale() { return SameText(Drill().sGender, "male"_k); }

namespace {

int32_t KeepName(int k, int32_t index) {
    P().iName[k] = index;
    P().sName[k] = NameAt(index);
    return index;
}

int32_t KeepItem(int k, int32_t index) {
    P().iItem[k] = index;
    P().sItem[k] = ItemAt(index);
    return index;
}

bool TagIs(const Text &tag) { return SameText(Drill().sGender, tag); }

int32_t DrawNameTagged(int k, const Text &tag) {
    int32_t idx = fPickName();
    while (!TagIs(tag)) {
        LoopTurn();
        idx = fPickName();
    }
    return KeepName(k, idx);
}

} // namespace

int32_t DrawName(int k) { return KeepName(k, fPickName()); }
int32_t DrawBoysName(int k) { return DrawNameTagged(k, "male"_k); }
int32_t DrawGirlsName(int k) { return DrawNameTagged(k, "female"_k); }

int32_t DrawNameDiffering(int k, std::initializer_list<int> otherSlots) {
    auto clashes = [&](int32_t idx) {
        for (int other : otherSlots)
            if (P().iName[other] == idx) return true;
        return false;
    };
    int32_t idx = fPickName();
    while (clashes(idx)) {
        LoopTurn();
        idx = fPickName();
    }
    return KeepName(k, idx);
}

int32_t DrawItem(int k) { return KeepItem(k, fPickItem()); }

int32_t DrawItemDiffering(int k, std::initializer_list<int> otherSlots) {
    // "a pencil, pencils, and a ruler" are not three different items to a
    // child, so the corrected edition tells items apart by kind.
    const bool byKind = !Classic();
    auto clashes = [&](int32_t idx) {
        for (int other : otherSlots) {
            const int32_t taken = P().iItem[other];
            if (byKind ? ItemKind(taken) == ItemKind(idx) : taken == idx) return true;
        }
        return false;
    };
    int32_t idx = fPickItem();
    while (clashes(idx)) {
        LoopTurn();
        idx = fPickItem();
    }
    return KeepItem(k, idx);
}

Text Name(int k) { return P().sName[k]; }
Text Item(int k) { return P().sItem[k]; }

int32_t DrawAtLeast(int32_t n, int32_t lo) {
    int32_t v = fRandomTo(n);
    while (v < lo) {
        LoopTurn();
        v = fRandomTo(n);
    }
    return v;
}

int32_t DrawOr(int32_t n, int32_t below, int32_t instead) {
    const int32_t v = fRandomTo(n);
    return v < below ? instead : v;
}

int32_t DrawRetry(int32_t n, int32_t below, int32_t times, int32_t instead) {
    int32_t v = fRandomTo(n);
    for (int32_t i = 0; i < times && v < below; ++i) {
        LoopTurn();
        v = fRandomTo(n);
    }
    return v < below ? instead : v;
}

int32_t SetR(int k, int32_t value) {
    P().iRandom[k] = value;
    P().sRandom[k] = Str(value);
    return value;
}

int32_t SetT(int k, int32_t value) {
    P().iTemp[k] = value;
    P().sTemp[k] = Str(value);
    return value;
}

int32_t SetPrice(int32_t cents) {
    P().iPrice = cents;
    P().sPrice = fMoneyText(cents);
    return cents;
}

Text HeShe() { return IsMale() ? "He"_k : "She"_k; }
Text heshe() { return IsMale() ? "he"_k : "she"_k; }
Text HisHer() { return IsMale() ? "His"_k : "Her"_k; }
Text hisher() { return IsMale() ? "his"_k : "her"_k; }
Text HimHer() { return IsMale() ? "Him"_k : "Her"_k; }
Text himher() { return IsMale() ? "him"_k : "her"_k; }
Text CRLF() { return "\r\n"_k; }

// Every text a problem makes passes through the corrected edition's fixes,
// so that the bank itself keeps one wording.
void SetText(const Text &problemText) {
    P().sProblemString = Corrected(ProblemNumber(), problemText);
}
void SetTip(const Text &tip) { Drill().sTip = Corrected(ProblemNumber(), tip); }

void SetAnswer(int32_t entry, const Text &text) {
    P().sAnswerStrings.Set(entry, Corrected(ProblemNumber(), text));
}
void SetCorrect(int32_t position) { P().iCorrectAnswerIs = position; }

void AnswersOffset(int32_t T, const Ten &k, int32_t correct, const Text &after) {
    for (int32_t i = 0; i < 10; ++i) SetAnswer(i + 1, Str(T + k[i]) + after);
    SetCorrect(correct);
}

void AnswersValue(const Ten &v, int32_t correct, const Text &after) {
    for (int32_t i = 0; i < 10; ++i) SetAnswer(i + 1, Str(v[i]) + after);
    SetCorrect(correct);
}

void AnswersMoneyOffset(int32_t T, const Ten &k, int32_t correct) {
    for (int32_t i = 0; i < 10; ++i) SetAnswer(i + 1, fMoneyText(T + k[i]));
    SetCorrect(correct);
}

void AnswersMoneyValue(const Ten &v, int32_t correct) {
    for (int32_t i = 0; i < 10; ++i) SetAnswer(i + 1, fMoneyText(v[i]));
    SetCorrect(correct);
}

void AnswersText(const std::array<Text, 10> &texts, int32_t correct) {
    for (int32_t i = 0; i < 10; ++i) SetAnswer(i + 1, texts[i]);
    SetCorrect(correct);
}

Arrangement Chosen(const ThreeArrangements &lists) {
    // iRandomizer is 1 to 3 once mResetVars has run; anything else falls
    // back to the first arrangement rather than reading past the lists.
    const int32_t r = Randomizer();
    return lists[(r >= 1 && r <= 3) ? r - 1 : 0];
}

void AnswersOffset3(int32_t T, const ThreeArrangements &lists, const Text &after) {
    const Arrangement a = Chosen(lists);
    AnswersOffset(T, a.values, a.correct, after);
}

void AnswersValue3(const ThreeArrangements &lists, const Text &after) {
    const Arrangement a = Chosen(lists);
    AnswersValue(a.values, a.correct, after);
}

void AnswersMoneyOffset3(int32_t T, const ThreeArrangements &lists) {
    const Arrangement a = Chosen(lists);
    AnswersMoneyOffset(T, a.values, a.correct);
}

} // namespace sumbrook
