// The round engine without a window: choosing the next problem, building it,
// and the bookkeeping of answers.  The practice window and the command-line
// print modes both run a round through these.
#pragma once

#include <cstdint>

namespace sumbrook {

inline constexpr int32_t kNoProblem = 9999; // iLastProbNumber / iLastName: none yet

// What opening the exercise selection window resets: the totals, the tip,
// the name memory, and the used and missed tables.
void ResetForSelection();

// The start of a round, as the practice window opens: no answer chosen, no
// problem before, all questions to come, and the first problem built.
void StartRound();

// Empties the question's working fields and draws iRandomizer.
void mResetVars();
// mResetVars without the draw of iRandomizer.
void ClearWorkingFields();
// Draws a problem number of the practice mode that this round hasn't asked
// and that differs from the one before; marks it used.
void mGetProbNumber();
// Builds problem iProbNumber through the block of ten that holds it.
void mSetProblem();
// The three steps of each new question, in order.
void NextProblem();

// The largest round a practice mode can hold without running out of
// problems: 50, 37 or 87; 0 for an unknown mode.
int32_t ProblemPoolSize(int32_t practiceMode);

enum class AnswerResult { NoChoice, Right, Wrong };

// The OK button's bookkeeping for a chosen answer (0 for none): a right
// answer scores, a wrong one is recorded as missed, either way a question is
// used up.  With questions left, the next problem is built.
AnswerResult AnswerQuestion(int32_t yourAnswerIs);
// Appends the problem text and its tip to asMissed at the next index.
void mRecordMissed();

} // namespace sumbrook
