#include "entry/print_modes.h"

#include "bank/problem_kit.h"
#include "drill/round.h"
#include "drill/state.h"
#include "drill/vocabulary.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace sumbrook {

namespace {

// A whole decimal number from lo to hi and nothing else.
bool ReadNumber(const char *text, long long lo, long long hi, long long &value) {
    if (text == nullptr || *text == '\0')
        return false;
    for (const char *c = text; *c; ++c)
        if (*c < '0' || *c > '9')
            return false;
    errno = 0;
    char *end = nullptr;
    const unsigned long long v = std::strtoull(text, &end, 10);
    if (errno != 0 || *end != '\0')
        return false;
    if (v > static_cast<unsigned long long>(hi) || static_cast<long long>(v) < lo)
        return false;
    value = static_cast<long long>(v);
    return true;
}

void AppendJsonString(std::string &out, std::string_view s) {
    out += '"';
    for (const char ch : s) {
        const unsigned char c = static_cast<unsigned char>(ch);
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\r': out += "\\r"; break;
        case '\n': out += "\\n"; break;
        case '\t': out += "\\t"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        default:
            if (c < 0x20) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", c);
                out += buf;
            } else {
                out += ch;
            }
        }
    }
    out += '"';
}

// The state of a process that has just shown the welcome window and then the
// exercise selection window: pools filled, totals and tables reset.
void PrepareAsAfterSelection() {
    static bool filled = false;
    if (!filled) {
        mFillPools();
        filled = true;
    }
    ResetForSelection();
    Drill().iLastProbNumber = kNoProblem;
}

} // namespace

bool ParsePrintRequest(int argc, char *const *argv, PrintRequest &r, char *error,
                       std::size_t errorSize) {
    r = PrintRequest{};
    bool modeGiven = false, lengthGiven = false;
    auto fail = [&](const std::string &message) {
        std::snprintf(error, errorSize, "sumbrook: %s", message.c_str());
        return false;
    };
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i] ? argv[i] : "";
        auto value = [&](const char *what) -> const char * {
            if (i + 1 >= argc || argv[i + 1] == nullptr)
                return nullptr;
            (void)what;
            return argv[++i];
        };
        long long n = 0;
        if (arg == "--print-round") {
            if (r.mode == PrintMode::Problem)
                return fail("--print-round and --print-problem can't be used together");
            r.mode = PrintMode::Round;
        } else if (arg == "--print-problem") {
            if (r.mode == PrintMode::Round)
                return fail("--print-round and --print-problem can't be used together");
            const char *v = value("problem");
            if (!v)
                return fail("--print-problem needs a problem number from 1 to 87");
            if (!ReadNumber(v, 1, 87, n))
                return fail("problem number must be from 1 to 87, not \"" + std::string(v) + "\"");
            r.mode = PrintMode::Problem;
            r.problem = static_cast<int>(n);
        } else if (arg == "--mode") {
            const char *v = value("mode");
            if (!v || !ReadNumber(v, 1, 3, n))
                return fail(
                    "--mode must be 1 (add and subtract), 2 (multiply and divide) or 3 (all)");
            r.practiceMode = static_cast<int>(n);
            modeGiven = true;
        } else if (arg == "--length") {
            const char *v = value("length");
            if (!v || !ReadNumber(v, 0, 1000000, n) || n < 1)
                return fail("--length must be a number of questions, at least 1");
            r.length = static_cast<int>(n);
            lengthGiven = true;
        } else if (arg == "--randomizer") {
            const char *v = value("randomizer");
            if (!v || !ReadNumber(v, 1, 3, n))
                return fail("--randomizer must be 1, 2 or 3");
            r.randomizer = static_cast<int>(n);
        } else if (arg == "--seed") {
            const char *v = value("seed");
            if (!v || !ReadNumber(v, 0, 4294967295LL, n))
                return fail("--seed must be a whole number from 0 to 4294967295");
            r.seeded = true;
            r.seed = static_cast<unsigned>(n);
        } else if (arg == "--classic") {
            r.classic = true;
        } else {
            return fail("unknown argument \"" + std::string(arg) + "\"");
        }
    }
    if (r.mode == PrintMode::None) {
        // --seed alone seeds the windowed drill, so a round can be replayed.
        if (modeGiven || lengthGiven || r.randomizer)
            return fail("--mode, --length and --randomizer need --print-round or --print-problem");
        return true;
    }
    if (r.mode == PrintMode::Round) {
        if (!modeGiven)
            return fail("--print-round needs --mode 1, 2 or 3");
        if (!lengthGiven)
            return fail("--print-round needs --length N");
        if (r.randomizer)
            return fail("--randomizer goes with --print-problem only");
        const int pool = ProblemPoolSize(r.practiceMode);
        // A round never asks a problem twice, so it can't be longer than
        // the problems of its mode.
        if (r.length > pool)
            return fail("--length " + std::to_string(r.length) + " is more than the " +
                        std::to_string(pool) + " problems of mode " +
                        std::to_string(r.practiceMode));
    } else {
        if (modeGiven || lengthGiven)
            return fail("--mode and --length go with --print-round only");
    }
    return true;
}

void PrintCurrentProblem(std::FILE *out) {
    const ModuleState &d = Drill();
    const ProblemFields &p = d.problem;
    std::string line = "{\"number\": " + std::to_string(p.iProbNumber) +
                       ", \"randomizer\": " + std::to_string(p.iRandomizer) + ", \"text\": ";
    AppendJsonString(line, p.sProblemString.View());
    line += ", \"tip\": ";
    AppendJsonString(line, d.sTip.View());
    line += ", \"answers\": [";
    for (int32_t i = 1; i <= 10; ++i) {
        if (i > 1)
            line += ", ";
        AppendJsonString(line, p.sAnswerStrings.Get(i).View());
    }
    line += "], \"correct\": " + std::to_string(p.iCorrectAnswerIs) + "}\n";
    std::fwrite(line.data(), 1, line.size(), out);
}

void RunPrintRequest(const PrintRequest &r, std::FILE *out) {
    if (r.mode == PrintMode::None)
        return;
    if (r.seeded)
        RuntimeRandomSeed(r.seed);
    PrepareAsAfterSelection();
    ModuleState &d = Drill();
    if (r.mode == PrintMode::Round) {
        d.iPracticeMode = r.practiceMode;
        d.iRoundLength = r.length;
        StartRound();
        for (int q = 1; q <= r.length; ++q) {
            if (q > 1) {
                d.iQuestionsLeft -= 1;
                NextProblem();
            }
            PrintCurrentProblem(out);
        }
        return;
    }
    if (r.randomizer) {
        ClearWorkingFields();
        d.problem.iRandomizer = r.randomizer;
    } else {
        mResetVars();
    }
    d.problem.iProbNumber = r.problem;
    mSetProblem();
    PrintCurrentProblem(out);
}

} // namespace sumbrook
