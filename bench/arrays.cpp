// Speed of array sorts beside std::sort in the same run: a million 32-bit
// integers and a million strings.  Prints each time and the ratio.
#include "kelp/arrays.h"
#include "kelp/string_functions.h"
#include "kelp/strings.h"
#include "main/wiring_table.h"
#include "strings/kstring.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <strings.h>
#include <vector>

namespace {

constexpr int kCount = 1000000;

double Millis(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since)
        .count();
}

void Report(const char *what, double ours, double standard) {
    std::printf("%-40s %9.3f ms   std %9.3f ms   ratio %5.2f\n", what, ours, standard,
                ours / standard);
}

} // namespace

int main() {
    kelp::WireRuntime();
    std::mt19937 gen(42);
    std::vector<int32_t> ints(kCount);
    for (int32_t &v : ints)
        v = (int32_t)gen();

    double ours = 1e30, standard = 1e30;
    for (int run = 0; run < 3; ++run) {
        RuntimeArray *a = CreateArray(1, kArrayInt32, kCount - 1);
        std::copy(ints.begin(), ints.end(), static_cast<int32_t *>(a->buffer));
        auto sort = reinterpret_cast<kelp_array1_sort>(a->operations[kArraySlotSort]);
        auto start = std::chrono::steady_clock::now();
        sort(a);
        ours = std::min(ours, Millis(start));
        if (!std::is_sorted(static_cast<int32_t *>(a->buffer),
                            static_cast<int32_t *>(a->buffer) + kCount))
            std::printf("integer sort failed\n");
        RuntimeUnlockArray(a);

        std::vector<int32_t> copy = ints;
        start = std::chrono::steady_clock::now();
        std::sort(copy.begin(), copy.end());
        standard = std::min(standard, Millis(start));
    }
    Report("Sort, 1e6 int32", ours, standard);

    // Strings: the array sort ignores case, so std::sort gets a caseless
    // comparison too.
    std::vector<std::string> words(kCount);
    for (std::string &w : words) {
        const int length = 4 + (int)(gen() % 12);
        for (int i = 0; i < length; ++i)
            w += (char)((gen() % 2 ? 'a' : 'A') + gen() % 26);
    }
    ours = standard = 1e30;
    for (int run = 0; run < 3; ++run) {
        RuntimeArray *a = CreateArray(1, kArrayString, kCount - 1);
        auto **e = static_cast<stringStorage **>(a->buffer);
        for (int i = 0; i < kCount; ++i)
            e[i] = kelp::string::FromBytes(words[(size_t)i].data(), (long)words[(size_t)i].size(),
                                           kEncodingASCII)
                       .Release();
        auto sort = reinterpret_cast<kelp_array1_sort>(a->operations[kArraySlotSort]);
        auto start = std::chrono::steady_clock::now();
        sort(a);
        ours = std::min(ours, Millis(start));
        for (int i = 1; i < kCount; ++i)
            if (RuntimeStringCompare(e[i - 1], e[i]) > 0) {
                std::printf("string sort failed at %d\n", i);
                break;
            }
        RuntimeUnlockArray(a);

        std::vector<std::string> copy = words;
        start = std::chrono::steady_clock::now();
        std::sort(copy.begin(), copy.end(), [](const std::string &x, const std::string &y) {
            return strcasecmp(x.c_str(), y.c_str()) < 0;
        });
        standard = std::min(standard, Millis(start));
    }
    Report("Sort, 1e6 strings (caseless)", ours, standard);
    return 0;
}
