// The drill's problem state, kept apart from any window so that the practice
// window and the command-line print modes share one copy.
//
// ModuleState holds what the drill keeps for the life of the process (the
// pools, the round's settings and totals, the name memory); ProblemFields is
// the working set of the question on screen, emptied before each question.
#pragma once

#include "drill/runtime_array.h"
#include "drill/text.h"

#include <cstdint>

namespace sumbrook {

// The working fields of one question.  Slot k of a family lives at index k
// (1 to 5); index 0 is unused so that sName[1] is name1 of the bank.
struct ProblemFields {
    Text sName[6], sItem[6], sRandom[6], sTemp[6];
    int32_t iName[6] = {-1, -1, -1, -1, -1, -1};
    int32_t iItem[6] = {-1, -1, -1, -1, -1, -1};
    int32_t iRandom[6] = {-1, -1, -1, -1, -1, -1};
    int32_t iTemp[6] = {-1, -1, -1, -1, -1, -1};
    int32_t iPrice = -1;
    Text sPrice;

    int32_t iProbNumber = -1;
    bool bProbfound = false;
    int32_t iRandomizer = 1;      // which of the three arrangements, 1 to 3
    Text sProblemString;          // the finished problem text
    StringArray sAnswerStrings;   // entries 1 to 10 are the answers
    int32_t iCorrectAnswerIs = 0; // 1 to 10 once a problem is built
};

struct ModuleState {
    // Vocabulary (filled once by mFillPools).
    StringArray asNames; // 0 to 60
    StringArray asItems; // 0 to 50
    Text sGender;        // tag of the name picked last: "male" or "female"
    int32_t iLastName = 9999;

    // Round settings and totals.
    int32_t iPracticeMode = 3; // 1 add/subtract, 2 multiply/divide, 3 all
    int32_t iTipsOn = 1;
    int32_t iRoundLength = 5;
    int32_t iQuestionsLeft = 0;
    int32_t iScore = 0;
    int32_t iMissedCount = 0;
    int32_t iLastProbNumber = 9999;
    BoolArray abProbUsed;       // 0 to 100
    StringArray asMissed;       // 0 to 100, from 1 up
    Text sTip;                  // the key word of the current problem
    bool bClassicTexts = false; // the bank's wording and draws as first written

    ProblemFields problem;
};

// The one copy of the drill's state.  The pools and arrays are created on the
// first call.
ModuleState &Drill();

} // namespace sumbrook
