// Character counting by encoding word, and the two searches every text
// function builds on.
#include "string_functions/text_units.h"

#include <emmintrin.h>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace kelp::text {

long UnitsToBytes(const string &s, long from, long count) {
    const long length = s.Length();
    if (count < 1 || from >= length)
        return 0;
    if (IsUTF8(s)) {
        const uint8_t *p = Bytes(s) + from, *end = Bytes(s) + length;
        return AdvanceUTF8(p, end, count) - p;
    }
    const long rest = length - from;
    if (IsUTF16(s))
        return count > rest / 2 ? rest : count * 2;
    return std::min(count, rest);
}

long BytesToUnits(const string &s, long bytes) {
    if (IsUTF8(s)) {
        const uint8_t *p = Bytes(s);
        long n = 0;
        for (long i = 0; i < bytes; ++i)
            n += (p[i] & 0xC0) != 0x80;
        return n;
    }
    if (IsUTF16(s))
        return bytes / 2;
    return bytes;
}

// Candidates within this many bytes of the start are tried by a plain scan
// before the C library's memmem: its set-up costs more than the scan when
// matches lie close together, as ReplaceAll meets them one after another.
constexpr long kNearWindow = 64;

// The forward scan over candidates in [start, stop): memchr to each place
// the first byte occurs, then the rest compared in line.
static long ScanFind(const uint8_t *t, const uint8_t *p, long m, long start, long stop) {
    const uint8_t first = p[0];
    for (const uint8_t *q = t + start, *end = t + stop; q < end; ++q) {
        q = static_cast<const uint8_t *>(std::memchr(q, first, static_cast<size_t>(end - q)));
        if (q == nullptr)
            return -1;
        long j = 1;
        while (j < m && q[j] == p[j])
            ++j;
        if (j == m)
            return q - t;
    }
    return -1;
}

// A near match by the scan, a far one by memmem: both give the first match
// from start, as any correct search does.
long ExactFind(const char *text, long n, const char *find, long m, long start) {
    if (n <= 0)
        return -1;
    if (m <= 0)
        return start;
    if (start < 0)
        start = 0;
    if (start >= n || n - start < m)
        return -1;
    const auto *t = reinterpret_cast<const uint8_t *>(text);
    const long places = n - m + 1; // candidates lie in [start, places)
    const long near = std::min(places, start + kNearWindow);
    const long hit = ScanFind(t, reinterpret_cast<const uint8_t *>(find), m, start, near);
    if (hit >= 0 || near == places)
        return hit;
    const void *far =
        memmem(text + near, static_cast<size_t>(n - near), find, static_cast<size_t>(m));
    return far == nullptr ? -1 : static_cast<const char *>(far) - text;
}

ExactSearcher::ExactSearcher(const char *text, long length, const char *find, long findLength)
    : mText(text), mFind(find), mTextLength(length), mFindLength(findLength) {}

long ExactSearcher::Next(long start) {
    return ExactFind(mText, mTextLength, mFind, mFindLength, start);
}

namespace {

struct UpperTable {
    uint8_t map[256];
    // For each folded byte, the bytes that fold to it: up to two kept, and
    // a count of 3 meaning "more".
    uint8_t sources[256][2];
    uint8_t sourceCount[256] = {};
    UpperTable() {
        for (int c = 0; c < 256; ++c)
            map[c] = static_cast<uint8_t>(std::toupper(c));
        for (int c = 0; c < 256; ++c) {
            uint8_t &n = sourceCount[map[c]];
            if (n < 2)
                sources[map[c]][n] = static_cast<uint8_t>(c);
            if (n < 3)
                ++n;
        }
    }
};
const UpperTable &Upper() {
    static const UpperTable table;
    return table;
}

// The first of [from, end) that is a or b; end when there is none.  Sixteen
// bytes at a time: a letter's two cases are found as fast as one byte.
const uint8_t *FindEither(const uint8_t *from, const uint8_t *end, uint8_t a, uint8_t b) {
    const __m128i wantA = _mm_set1_epi8(static_cast<char>(a));
    const __m128i wantB = _mm_set1_epi8(static_cast<char>(b));
    const uint8_t *q = from;
    for (; end - q >= 16; q += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(q));
        const int hits = _mm_movemask_epi8(
            _mm_or_si128(_mm_cmpeq_epi8(block, wantA), _mm_cmpeq_epi8(block, wantB)));
        if (hits != 0)
            return q + __builtin_ctz(static_cast<unsigned>(hits));
    }
    for (; q < end; ++q)
        if (*q == a || *q == b)
            return q;
    return end;
}

long FoldFindBytes(const FoldPattern &pattern, const uint8_t *t, long n, long start) {
    const uint8_t *up = Upper().map;
    const uint8_t *folded = pattern.Folded();
    const long m = pattern.Length();
    auto rest = [&](const uint8_t *at) {
        long j = 1;
        while (j < m && up[at[j]] == folded[j])
            ++j;
        return j == m;
    };
    const uint8_t *end = t + (n - m) + 1; // one past the last place a match fits
    if (pattern.mBlockScan) {
        for (const uint8_t *q = t + start;
             (q = FindEither(q, end, pattern.mFirstA, pattern.mFirstB)) < end; ++q)
            if (rest(q))
                return q - t;
        return -1;
    }
    for (const uint8_t *q = t + start; q < end; ++q)
        if (up[*q] == folded[0] && rest(q))
            return q - t;
    return -1;
}

long FoldFindUTF16(const uint8_t *t, long n, const uint8_t *p, long m, long start) {
    const long units = n / 2, findUnits = m / 2;
    auto unit = [](const uint8_t *b, long i) {
        uint16_t u;
        std::memcpy(&u, b + 2 * i, 2);
        return UnicodeCharToUpper(u);
    };
    for (long i = start / 2; i + findUnits <= units; ++i) {
        long j = 0;
        while (j < findUnits && unit(t, i + j) == unit(p, j))
            ++j;
        if (j == findUnits)
            return 2 * i;
    }
    return -1;
}

long FoldFindUTF8(const uint8_t *t, long n, const uint8_t *p, long m, long start) {
    const uint8_t *end = t + n, *pend = p + m;
    const uint8_t *fp = p;
    const uint32_t first = UnicodeCharToUpper(UTF8DecodeAndAdvance(fp, pend));
    const bool asciiFirst = p[0] < 0x80;
    for (long i = start; i < n; ++i) {
        if ((t[i] & 0xC0) == 0x80)
            continue; // only whole characters start a match
        const uint8_t *q = t + i;
        if (asciiFirst && t[i] < 0x80) {
            if (Upper().map[t[i]] != first)
                continue;
            ++q;
        } else if (UnicodeCharToUpper(UTF8DecodeAndAdvance(q, end)) != first) {
            continue;
        }
        const uint8_t *r = fp;
        while (r < pend && q < end) {
            if (*q < 0x80 && *r < 0x80) {
                if (Upper().map[*q] != Upper().map[*r])
                    break;
                ++q;
                ++r;
                continue;
            }
            if (UnicodeCharToUpper(UTF8DecodeAndAdvance(q, end)) !=
                UnicodeCharToUpper(UTF8DecodeAndAdvance(r, pend)))
                break;
        }
        if (r == pend)
            return i;
    }
    return -1;
}

} // namespace

FoldPattern::FoldPattern(const string &find) {
    const uint8_t *p = Bytes(find);
    mFolded.resize(static_cast<size_t>(find.Length()));
    for (size_t j = 0; j < mFolded.size(); ++j)
        mFolded[j] = static_cast<char>(Upper().map[p[j]]);
    if (mFolded.empty())
        return;
    // The bytes that fold to the pattern's first one; with at most two of
    // them (a letter's two cases) the candidates are found by a block scan.
    const uint8_t first = Folded()[0];
    const int count = Upper().sourceCount[first];
    mBlockScan = count <= 2;
    mFirstA = Upper().sources[first][0];
    mFirstB = count == 2 ? Upper().sources[first][1] : mFirstA;
}

FoldSearcher::FoldSearcher(const string &source, const string &find)
    : mSource(source), mFind(find), mBytes(!IsUTF8(source) && !IsUTF16(source)),
      mPattern(mBytes ? find : string()) {}

long FoldSearcher::Next(long start) {
    if (!mBytes)
        return FoldFind(mSource, mFind, start);
    const long n = mSource.Length(), m = mFind.Length();
    if (n == 0)
        return -1;
    if (m == 0)
        return start;
    if (start < 0)
        start = 0;
    if (start >= n || n - start < m)
        return -1;
    return FoldFindBytes(mPattern, Bytes(mSource), n, start);
}

long FoldFind(const string &source, const string &find, long start) {
    const long n = source.Length(), m = find.Length();
    if (n == 0)
        return -1;
    if (m == 0)
        return start;
    if (start < 0)
        start = 0;
    if (start >= n)
        return -1;
    if (IsUTF16(source))
        return FoldFindUTF16(Bytes(source), n, Bytes(find), m, start);
    if (IsUTF8(source))
        return FoldFindUTF8(Bytes(source), n, Bytes(find), m, start);
    if (n - start < m)
        return -1;
    return FoldFindBytes(FoldPattern(find), Bytes(source), n, start);
}

bool IsCaseless(const string &s) {
    if (IsUTF8(s))
        return UTF8IsCaseless(Bytes(s), s.Length());
    if (IsUTF16(s))
        return false;
    const uint8_t *p = Bytes(s);
    for (long i = 0; i < s.Length(); ++i)
        if (std::toupper(p[i]) != p[i] || std::tolower(p[i]) != p[i])
            return false;
    return true;
}

string InEncoding(const string &s, uint32_t encoding) {
    if (s.IsEmpty() || s.Encoding() == encoding)
        return s;
    return ConvertEncoding(s, encoding);
}

} // namespace kelp::text
