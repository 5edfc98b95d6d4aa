// Helpers for the bank's tests: building one problem with a chosen
// arrangement, and reading the numbers back out of its text.
#pragma once

#include "bank/corrections.h"
#include "bank/problem_kit.h"
#include "drill/round.h"
#include "drill/state.h"
#include "drill/vocabulary.h"

#include <cstdint>
#include <string>
#include <vector>

namespace drilltest {

// Pools filled and a fresh selection, in the classic edition or the
// corrected one.
inline void PrepareDrill(bool classic = false) {
    static bool filled = false;
    if (!filled) {
        sumbrook::mFillPools();
        filled = true;
    }
    sumbrook::SetClassic(classic);
    sumbrook::ResetForSelection();
}

// Builds problem `number` with arrangement `randomizer` the way a round does,
// but with the arrangement fixed.
inline void Build(int32_t number, int32_t randomizer) {
    sumbrook::ClearWorkingFields();
    sumbrook::P().iRandomizer = randomizer;
    sumbrook::P().iProbNumber = number;
    sumbrook::mSetProblem();
}

inline std::string Answer(int32_t entry) { return sumbrook::P().sAnswerStrings.Get(entry).ToStd(); }
inline std::string CorrectText() { return Answer(sumbrook::P().iCorrectAnswerIs); }
inline std::string ProblemText() { return sumbrook::P().sProblemString.ToStd(); }
inline std::string TipText() { return sumbrook::Drill().sTip.ToStd(); }

// The money amounts of a text ("$12.34" gives 1234), in order.
inline std::vector<int32_t> MoneyIn(const std::string &s) {
    std::vector<int32_t> out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '$')
            continue;
        size_t j = i + 1;
        bool negative = false;
        if (j < s.size() && s[j] == '-') {
            negative = true;
            ++j;
        }
        int32_t dollars = 0;
        while (j < s.size() && isdigit(static_cast<unsigned char>(s[j])))
            dollars = dollars * 10 + (s[j++] - '0');
        int32_t cents = 0;
        if (j + 2 < s.size() + 1 && s[j] == '.') {
            cents = (s[j + 1] - '0') * 10 + (s[j + 2] - '0');
            j += 3;
        }
        out.push_back((negative ? -1 : 1) * (dollars * 100) + cents);
        i = j - 1;
    }
    return out;
}

// The plain whole numbers of a text, leaving money amounts out, in order.
inline std::vector<int32_t> NumbersIn(const std::string &s) {
    std::vector<int32_t> out;
    size_t i = 0;
    while (i < s.size()) {
        if (s[i] == '$') {
            ++i;
            while (i < s.size() &&
                   (isdigit(static_cast<unsigned char>(s[i])) || s[i] == '.' || s[i] == '-'))
                ++i;
            continue;
        }
        if (isdigit(static_cast<unsigned char>(s[i]))) {
            int32_t v = 0;
            while (i < s.size() && isdigit(static_cast<unsigned char>(s[i])))
                v = v * 10 + (s[i++] - '0');
            out.push_back(v);
            continue;
        }
        ++i;
    }
    return out;
}

} // namespace drilltest
