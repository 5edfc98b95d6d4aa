// The drill's command-line print modes: a whole round, or one problem, as
// JSON lines, with no screen needed.
//
//   sumbrook --print-round --mode 1|2|3 --length N [--seed S]
//   sumbrook --print-problem P [--randomizer 1|2|3] [--seed S]
//
// --classic, with a print mode or without, uses the classic edition of the
// texts instead of the corrected one.
#pragma once

#include <cstdio>

namespace sumbrook {

enum class PrintMode { None, Round, Problem };

struct PrintRequest {
    PrintMode mode = PrintMode::None;
    int practiceMode = 0; // --mode
    int length = 0;       // --length
    int problem = 0;      // --print-problem
    int randomizer = 0;   // --randomizer, 0 when drawn
    bool seeded = false;  // --seed given
    unsigned seed = 0;
    bool classic = false; // --classic: the bank's texts and draws as first written
};

// Reads the arguments (argv[0] is the program).  Returns false with a
// one-line message in `error` when they are not usable.  No print option at
// all gives mode None.
bool ParsePrintRequest(int argc, char *const *argv, PrintRequest &request, char *error,
                       std::size_t errorSize);

// Runs a parsed request, writing one JSON object per question to `out`.
void RunPrintRequest(const PrintRequest &request, std::FILE *out);

// Writes the current question as one JSON line.
void PrintCurrentProblem(std::FILE *out);

} // namespace sumbrook
