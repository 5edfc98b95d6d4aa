// Problem generation speed: builds 100,000 problems, every number of the bank
// in turn, each as a round does it (mResetVars draws the arrangement, then the
// block builds text, tip and the ten answers), and reports problems per
// second.
#include "bank/problem_kit.h"
#include "drill/round.h"
#include "drill/state.h"
#include "drill/vocabulary.h"
#include "main/wiring_table.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace sumbrook;

int main(int argc, char **argv) {
    kelp::WireRuntime();
    const int total = argc > 1 ? std::atoi(argv[1]) : 100000;
    mFillPools();
    ResetForSelection();
    RuntimeRandomSeed(20261123u);

    // Warm-up: every literal record and table made once.
    for (int32_t n = 1; n <= 87; ++n) {
        mResetVars();
        P().iProbNumber = n;
        mSetProblem();
    }

    long checksum = 0;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < total; ++i) {
        mResetVars();
        P().iProbNumber = i % 87 + 1;
        mSetProblem();
        checksum += P().iCorrectAnswerIs + P().sProblemString.Length();
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("problems: %d in %.3f s: %.0f problems per second (checksum %ld)\n", total, seconds,
                total / seconds, checksum);

    // The same through whole rounds: the search for an unused number and the
    // answer bookkeeping included.
    Drill().iPracticeMode = 3;
    Drill().iRoundLength = 25;
    const int rounds = total / 25;
    const auto roundStart = std::chrono::steady_clock::now();
    for (int r = 0; r < rounds; ++r) {
        ResetForSelection();
        StartRound();
        for (int q = 0; q < 25; ++q)
            AnswerQuestion(P().iCorrectAnswerIs);
    }
    const double roundSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - roundStart).count();
    std::printf("rounds: %d rounds of 25 in %.3f s: %.0f questions per second\n", rounds,
                roundSeconds, rounds * 25 / roundSeconds);
    return 0;
}
