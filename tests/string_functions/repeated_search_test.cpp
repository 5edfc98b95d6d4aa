// The repeated exact search that ReplaceAll, CountFields and Split walk
// with: it must find what a fresh search finds at every start, whichever
// way (shift table or forward scan) each step takes.
#include "text_kit.h"

#include "kelp/arrays.h"
#include "string_functions/text_units.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <string>
#include <vector>

using namespace texttest;

namespace {

// Texts over a small alphabet so that patterns match often and part-way;
// with zero bytes and high bytes in it, as binary data has.
std::string RandomText(std::mt19937 &rng, size_t length, const std::string &alphabet) {
    std::string out(length, ' ');
    std::uniform_int_distribution<size_t> pick(0, alphabet.size() - 1);
    for (char &c : out)
        c = alphabet[pick(rng)];
    return out;
}

long Reference(const std::string &text, const std::string &find, long start) {
    if (text.empty())
        return -1;
    if (find.empty())
        return start;
    if (start < 0)
        start = 0;
    if (start >= (long)text.size())
        return -1;
    const size_t at = text.find(find, (size_t)start);
    return at == std::string::npos ? -1 : (long)at;
}

const std::string kAlphabet = std::string("ab\0\xff", 4);

TEST(RepeatedExactSearch, EveryStartAgreesWithAFreshSearch) {
    std::mt19937 rng(20261123);
    for (long m : {1L, 2L, 4L, 5L, 6L, 9L, 17L, 40L}) {
        for (int round = 0; round < 6; ++round) {
            const std::string text = RandomText(rng, 300 + 97 * round, kAlphabet);
            // A pattern cut from the text matches at least once; a random
            // one over the same letters tests near misses.
            const size_t cut = std::uniform_int_distribution<size_t>(0, text.size() - m)(rng);
            for (const std::string &find :
                 {text.substr(cut, (size_t)m), RandomText(rng, (size_t)m, kAlphabet)}) {
                kelp::text::ExactSearcher searcher(text.data(), (long)text.size(), find.data(), m);
                for (long start = -2; start <= (long)text.size() + 1; ++start) {
                    const long expected = Reference(text, find, start);
                    ASSERT_EQ(searcher.Next(start), expected) << "m " << m << " start " << start;
                    ASSERT_EQ(kelp::text::ExactFind(text.data(), (long)text.size(), find.data(), m,
                                                    start),
                              expected)
                        << "m " << m << " start " << start;
                }
            }
        }
    }
}

TEST(RepeatedExactSearch, EmptyTextAndEmptyPatternKeepTheirRules) {
    kelp::text::ExactSearcher none("", 0, "ab", 2);
    EXPECT_EQ(none.Next(0), -1);
    kelp::text::ExactSearcher empty("abc", 3, "", 0);
    EXPECT_EQ(empty.Next(7), 7);
    EXPECT_EQ(empty.Next(-3), -3);
}

// Replacing a long pattern many times over: each match is found, also
// after the walk has gone from the table search to the plain scan near the
// end of the text, and bytes between matches are kept as they were.
TEST(RepeatedExactSearch, ReplaceAllCountAndSplitFollowEveryMatch) {
    std::mt19937 rng(7);
    for (const std::string &find : {std::string("xyzzy"), std::string("ab"),
                                    std::string("abcabcabcd"), std::string("\0\0\0\0\0\0", 6)}) {
        for (int round = 0; round < 4; ++round) {
            std::string text;
            std::vector<std::string> pieces;
            for (int i = 0; i < 200; ++i) {
                pieces.push_back(RandomText(rng, (size_t)(i % 7 == 0 ? 0 : 1 + i % 13), "cdefg"));
                text += pieces.back();
                if (i + 1 < 200)
                    text += find;
            }
            std::string expected;
            for (size_t i = 0; i < pieces.size(); ++i)
                expected += (i ? "<>" : "") + pieces[i];

            SCOPED_TRACE(testing::Message() << "find of " << find.size() << " round " << round);
            Arg source(text, kEncodingASCII), pattern(find, kEncodingASCII),
                with("<>", kEncodingASCII);
            stringStorage *replaced = StringReplaceAllB(source, pattern, with);
            EXPECT_EQ(WordOf(replaced), kEncodingASCII);
            EXPECT_EQ(Take(replaced), expected);
            EXPECT_EQ(StringCountFieldsB(source, pattern), 200);
            EXPECT_EQ(Take(StringNthFieldB(source, pattern, 200)), pieces.back());
            EXPECT_EQ(Take(StringNthFieldB(source, pattern, 101)), pieces[100]);

            RuntimeArray *parts = StringSplitB(source, pattern);
            ASSERT_NE(parts, nullptr);
            EXPECT_EQ(parts->upperBounds[0], 199);
            RuntimeUnlockArray(parts);
        }
    }
}

// Overlapping candidates: matches never overlap and the leftmost wins.
TEST(RepeatedExactSearch, OverlappingCandidatesTakeTheLeftmostAndStepPastIt) {
    const std::string text = std::string(203, 'a');
    Arg source(text, kEncodingASCII), five("aaaaa", kEncodingASCII), two("aa", kEncodingASCII),
        b("b", kEncodingASCII);
    EXPECT_EQ(Take(StringReplaceAllB(source, five, b)), std::string(40, 'b') + "aaa");
    EXPECT_EQ(Take(StringReplaceAllB(source, two, b)), std::string(101, 'b') + "a");
    EXPECT_EQ(StringCountFieldsB(source, five), 41);
}

// The caseless byte search as it was first written: the first place from
// start where every byte agrees with the pattern's after folding.  Kept as the
// reference for the block scan that replaced it.
long FoldReference(const std::string &text, const std::string &find, long start) {
    auto up = [](char c) { return std::toupper((unsigned char)c); };
    for (long i = std::max(start, 0L); i + (long)find.size() <= (long)text.size(); ++i) {
        size_t j = 0;
        while (j < find.size() && up(text[(size_t)i + j]) == up(find[j]))
            ++j;
        if (j == find.size())
            return i;
    }
    return -1;
}

TEST(RepeatedCaselessSearch, BlockScanFindsWhatTheByteByByteSearchFound) {
    std::mt19937 rng(20261125);
    const std::string alphabet = std::string("aAbB\0\xff\xe9\xc9-", 9);
    for (uint32_t word : {kEncodingASCII, kEncodingLatin1}) {
        for (long m : {1L, 2L, 3L, 7L, 20L}) {
            for (int round = 0; round < 8; ++round) {
                const std::string text = RandomText(rng, 20 + 61 * round, alphabet);
                const size_t cut = std::uniform_int_distribution<size_t>(0, text.size() - m)(rng);
                for (std::string find :
                     {text.substr(cut, (size_t)m), RandomText(rng, (size_t)m, alphabet)}) {
                    for (char &c : find) // the other case where there is one
                        c = rng() % 2 ? (char)std::toupper((unsigned char)c)
                                      : (char)std::tolower((unsigned char)c);
                    const kelp::string s = kelp::string::FromBytes(text.data(), (long)text.size(),
                                                                   word),
                                       f = kelp::string::FromBytes(find.data(), m, word);
                    for (long start = 0; start <= (long)text.size(); ++start)
                        ASSERT_EQ(kelp::text::FoldFind(s, f, start),
                                  FoldReference(text, find, start))
                            << "m " << m << " start " << start;
                    // ReplaceAll walks the same search from match to match.
                    std::string expected;
                    long from = 0;
                    for (long at; (at = FoldReference(text, find, from)) >= 0; from = at + m)
                        expected += text.substr((size_t)from, (size_t)(at - from)) + "<>";
                    expected += text.substr((size_t)from);
                    Arg with("<>", word);
                    EXPECT_EQ(Take(StringReplaceAll(s.Storage(), f.Storage(), with)), expected);
                }
            }
        }
    }
}

} // namespace
