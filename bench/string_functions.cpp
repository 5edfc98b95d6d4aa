// Speed of the string functions beside the same work done with the C++
// standard library in the same run: InStr and Replace all over 1 MB of text,
// Str and Val of a million numbers.  Prints each time and the ratio.
#include "kelp/string_functions.h"
#include "kelp/strings.h"
#include "main/wiring_table.h"
#include "strings/kstring.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

volatile long gSink;

// Best of five runs, in milliseconds.
double Time(const std::function<void()> &work) {
    double best = 1e30;
    for (int run = 0; run < 5; ++run) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        best = std::min(best, took.count());
    }
    return best;
}

void Report(const char *what, double ours, double standard) {
    std::printf("%-40s %9.3f ms   std %9.3f ms   ratio %5.2f\n", what, ours, standard,
                ours / standard);
}

} // namespace

int main() {
    kelp::WireRuntime();
    // 1 MB of words, the pattern near the end.
    std::string text;
    const char *words[] = {"apple ", "Banana ", "cherry ", "date ", "Elder ", "fig "};
    for (int i = 0; text.size() < (1u << 20); ++i)
        text += words[i % 6];
    text += "needle in the haystack";
    kelp::string source = kelp::string::FromBytes(text.data(), (long)text.size(), kEncodingASCII);
    kelp::string find = kelp::string::FromBytes("needle", 6, kEncodingASCII);
    kelp::string upperFind = kelp::string::FromBytes("NEEDLE", 6, kEncodingASCII);
    kelp::string utf8 = kelp::string::FromBytes(text.data(), (long)text.size(), kEncodingUTF8);

    Report("InStrB, 1 MB, exact",
           Time([&] { gSink = StringInStrB(1, source.Storage(), find.Storage()); }),
           Time([&] { gSink = (long)text.find("needle"); }));
    Report("InStr, 1 MB, caseless (ASCII)",
           Time([&] { gSink = StringInStr(1, source.Storage(), upperFind.Storage()); }), Time([&] {
               auto it = std::search(text.begin(), text.end(), std::begin("NEEDLE"),
                                     std::end("NEEDLE") - 1, [](char a, char b) {
                                         return std::toupper((unsigned char)a) ==
                                                std::toupper((unsigned char)b);
                                     });
               gSink = it - text.begin();
           }));
    Report("InStr, 1 MB, caseless (UTF-8)",
           Time([&] { gSink = StringInStr(1, utf8.Storage(), upperFind.Storage()); }), Time([&] {
               auto it = std::search(text.begin(), text.end(), std::begin("NEEDLE"),
                                     std::end("NEEDLE") - 1, [](char a, char b) {
                                         return std::toupper((unsigned char)a) ==
                                                std::toupper((unsigned char)b);
                                     });
               gSink = it - text.begin();
           }));

    // The same replacement done with the standard library, for the ratio.
    auto standardReplace = [&] {
        std::string out;
        out.reserve(text.size() + text.size() / 20);
        size_t from = 0, at;
        while ((at = text.find("fig", from)) != std::string::npos) {
            out.append(text, from, at - from);
            out += "pear";
            from = at + 3;
        }
        out.append(text, from, std::string::npos);
        gSink = (long)out.size();
    };
    kelp::string fig = kelp::string::FromBytes("fig", 3, kEncodingASCII);
    kelp::string pear = kelp::string::FromBytes("pear", 4, kEncodingASCII);
    Report("ReplaceAllB, 1 MB", Time([&] {
               stringStorage *r =
                   StringReplaceAllB(source.Storage(), fig.Storage(), pear.Storage());
               gSink = r->length;
               RuntimeUnlockString(r);
           }),
           Time(standardReplace));
    Report("ReplaceAll, 1 MB (caseless pattern)", Time([&] {
               stringStorage *r = StringReplaceAll(source.Storage(), fig.Storage(), pear.Storage());
               gSink = r->length;
               RuntimeUnlockString(r);
           }),
           Time(standardReplace));

    std::vector<double> numbers;
    std::srand(1);
    for (int i = 0; i < 1000000; ++i)
        numbers.push_back((std::rand() % 2000000 - 1000000) / 8.0);
    Report("Str, 1e6 numbers", Time([&] {
               long total = 0;
               for (double v : numbers) {
                   stringStorage *s = StringStr(v);
                   total += s ? s->length : 0;
                   RuntimeUnlockString(s);
               }
               gSink = total;
           }),
           Time([&] {
               long total = 0;
               char buffer[32];
               for (double v : numbers)
                   total += std::snprintf(buffer, sizeof buffer, "%.7g", v);
               gSink = total;
           }));
    std::vector<kelp::string> texts;
    std::vector<std::string> plain;
    for (double v : numbers) {
        stringStorage *s = StringStr(v);
        texts.push_back(kelp::string::Adopt(s));
        plain.emplace_back(texts.back().View());
    }
    Report("Val, 1e6 numbers", Time([&] {
               double total = 0;
               for (const kelp::string &s : texts)
                   total += StringVal(s.Storage());
               gSink = (long)total;
           }),
           Time([&] {
               double total = 0;
               for (const std::string &s : plain)
                   total += std::strtod(s.c_str(), nullptr);
               gSink = (long)total;
           }));
    return 0;
}
