#include "drill/round.h"

#include "bank/corrections.h"
#include "bank/problem_kit.h"
#include "drill/state.h"

namespace sumbrook {

void ResetForSelection() {
    ModuleState &d = Drill();
    d.iScore = 0;
    d.sTip = Text();
    d.iLastName = kNoProblem;
    d.iMissedCount = 0;
    for (int32_t i = 0; i <= 87; ++i) {
        d.abProbUsed.Set(i, false);
        d.asMissed.Set(i, Text());
    }
}

void StartRound() {
    ModuleState &d = Drill();
    d.iLastProbNumber = kNoProblem;
    d.iQuestionsLeft = d.iRoundLength;
    NextProblem();
}

void ClearWorkingFields() {
    ProblemFields &p = P();
    for (int k = 1; k <= 5; ++k) {
        p.sName[k] = Text();
        p.sItem[k] = Text();
        p.sRandom[k] = Text();
        p.sTemp[k] = Text();
        p.iName[k] = -1;
        p.iItem[k] = -1;
        p.iRandom[k] = -1;
        p.iTemp[k] = -1;
    }
    p.sPrice = Text();
    p.iPrice = -1;
    p.iProbNumber = -1;
    p.bProbfound = false;
}

void mResetVars() {
    ClearWorkingFields();
    ProblemFields &p = P();
    p.iRandomizer = fRandomTo(3);
    if (p.iRandomizer < 1)
        p.iRandomizer = 1;
}

int32_t ProblemPoolSize(int32_t practiceMode) {
    switch (practiceMode) {
    case 1: return 50;
    case 2: return 37;
    case 3: return 87;
    default: return 0;
    }
}

void mGetProbNumber() {
    ModuleState &d = Drill();
    ProblemFields &p = d.problem;
    // An unknown mode has no problems at all; don't search forever.
    if (ProblemPoolSize(d.iPracticeMode) == 0)
        return;
    while (!p.bProbfound) {
        int32_t candidate = 0;
        switch (d.iPracticeMode) {
        case 1:
            candidate = RuntimeFloatToInt(rnd() * 50 + 1);
            while (candidate < 1 || candidate > 50 || d.abProbUsed.Get(candidate)) {
                LoopTurn();
                candidate = RuntimeFloatToInt(rnd() * 50 + 1);
            }
            break;
        case 2:
            // Drawn over all 87 numbers; the first 50 are thrown back.
            candidate = RuntimeFloatToInt(rnd() * 87 + 1);
            while (candidate < 51 || candidate > 87 || d.abProbUsed.Get(candidate)) {
                LoopTurn();
                candidate = RuntimeFloatToInt(rnd() * 87 + 1);
            }
            break;
        default:
            candidate = RuntimeFloatToInt(rnd() * 87 + 1);
            while (d.abProbUsed.Get(candidate)) {
                LoopTurn();
                candidate = RuntimeFloatToInt(rnd() * 87 + 1);
            }
            break;
        }
        if (candidate != d.iLastProbNumber) {
            p.iProbNumber = candidate;
            p.bProbfound = true;
            d.iLastProbNumber = candidate;
            d.abProbUsed.Set(candidate, true);
        } else {
            LoopTurn();
        }
    }
}

void mSetProblem() {
    const int32_t n = P().iProbNumber;
    if (n >= 1 && n <= 10)
        mProb1to10(n);
    else if (n <= 20)
        mProb11to20(n);
    else if (n <= 30)
        mProb21to30(n);
    else if (n <= 40)
        mProb31to40(n);
    else if (n <= 50)
        mProb41to50(n);
    else if (n <= 60)
        mProb51to60(n);
    else if (n <= 70)
        mProb61to70(n);
    else if (n <= 80)
        mProb71to80(n);
    else if (n <= 87)
        mProb81to90(n);
}

void NextProblem() {
    mResetVars();
    mGetProbNumber();
    mSetProblem();
}

void mRecordMissed() {
    ModuleState &d = Drill();
    d.iMissedCount += 1;
    // The record is kept within the table; a round never misses more than
    // 25 problems, so this only guards against a damaged count.
    if (d.iMissedCount < 0 || d.iMissedCount > d.asMissed.UBound())
        return;
    const Text before = d.asMissed.Get(d.iMissedCount);
    // The classic record runs the tip on after one blank ("...left? subtract");
    // the corrected one labels it, as the practice window does.
    const Text joint = Classic() ? " "_k : "  Tip: "_k;
    d.asMissed.Set(d.iMissedCount, before + d.problem.sProblemString + joint + d.sTip);
}

AnswerResult AnswerQuestion(int32_t yourAnswerIs) {
    ModuleState &d = Drill();
    if (yourAnswerIs < 1)
        return AnswerResult::NoChoice;
    const bool right = yourAnswerIs == d.problem.iCorrectAnswerIs;
    if (right)
        d.iScore += 1;
    else
        mRecordMissed();
    d.iQuestionsLeft -= 1;
    if (d.iQuestionsLeft > 0)
        NextProblem();
    return right ? AnswerResult::Right : AnswerResult::Wrong;
}

} // namespace sumbrook
