// The Bitwise module against python3's integers, on a table of words, shifts
// and widths that reach the edges (0, 31, 32 bits, shifts past the width).
#include "kelp/numbers.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>

namespace {

std::string Python(const std::string &program) {
    std::string out;
    if (FILE *pipe = popen(("python3 -c '" + program + "'").c_str(), "r")) {
        char buffer[4096];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            out.append(buffer, n);
        pclose(pipe);
    }
    return out;
}

TEST(Bitwise, AgreesWithPythonOnWordsShiftsAndWidths) {
    const uint32_t words[] = {0, 1, 0x80000000u, 0xFFFFFFFFu, 0x12345678u, 0xA5A5A5A5u};
    const int32_t shifts[] = {-1, 0, 1, 7, 31, 32, 40};
    const int32_t widths[] = {1, 8, 16, 31, 32, 0, 99};
    std::ostringstream ours;
    for (uint32_t a : words)
        for (uint32_t b : words)
            ours << RuntimeBitwiseAnd(a, b) << ' ' << RuntimeBitwiseOr(a, b) << ' '
                 << RuntimeBitwiseXor(a, b) << '\n';
    for (uint32_t v : words)
        for (int32_t bits : widths) {
            ours << RuntimeOnesCompliment(v, bits) << '\n';
            for (int32_t s : shifts)
                ours << RuntimeBitwiseShiftLeft(v, s, bits) << ' '
                     << RuntimeBitwiseShiftRight(v, s, bits) << '\n';
        }
    // The reference: Python integers have no width, so the mask is explicit.
    const std::string reference = Python(R"(
words = [0, 1, 0x80000000, 0xFFFFFFFF, 0x12345678, 0xA5A5A5A5]
for a in words:
    for b in words:
        print(a & b, a | b, a ^ b)
for v in words:
    for bits in [1, 8, 16, 31, 32, 0, 99]:
        n = bits if 0 < bits < 32 else 32
        m = (1 << n) - 1
        print(~v & m)
        for s in [-1, 0, 1, 7, 31, 32, 40]:
            s = max(s, 0)
            print((v << s) & m if s < n else 0, (v & m) >> s if s < n else 0)
)");
    ASSERT_FALSE(reference.empty()) << "python3 did not run";
    EXPECT_EQ(ours.str(), reference);
}

} // namespace
