// The two editions of the drill's wording over one bank.
//
// The classic edition is the bank as first written, word for word and draw
// for draw, so that a round can be compared with the original one.  The
// corrected edition, the default, is what a teacher would sign: the fixes
// live here as one table of text replacements per problem, plus the rule
// that a count of one takes a singular unit.  The few fixes that need a
// different draw are made in the problems themselves, each behind Classic().
#pragma once

#include "drill/text.h"

#include <cstdint>

namespace sumbrook {

// True while the classic edition is in use; the corrected one is the default.
bool Classic();
void SetClassic(bool classic);

// The corrected wording of a problem text, tip or answer entry of problem
// `number`: the table's replacements for that problem, then singular units
// after a lone 1.  Returns `text` untouched in the classic edition.
Text Corrected(int32_t number, const Text &text);

} // namespace sumbrook
