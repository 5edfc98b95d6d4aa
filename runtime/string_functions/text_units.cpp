// Character counting by encoding word, and the two searches every text
// function builds on.
#include "string_functions/text_units.h"

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

namespace {
// Bad-character shifts of the long-pattern search; one table for the
// process, as the runtime's functions run on one thread at a time.
int32_t gShift[256];
} // namespace

// The plain forward scan: memchr to each candidate first byte, then the rest.
// Short patterns are compared in line, where a call to memcmp per candidate
// would cost more than the comparison.
static long ScanFind(const uint8_t *t, long n, const uint8_t *p, long m, long start) {
    const uint8_t first = p[0];
    const uint8_t *end = t + n - m + 1;
    for (const uint8_t *q = t + start; q < end;) {
        q = static_cast<const uint8_t *>(std::memchr(q, first, static_cast<size_t>(end - q)));
        if (q == nullptr)
            return -1;
        if (m <= 16) {
            long j = 1;
            while (j < m && q[j] == p[j])
                ++j;
            if (j == m)
                return q - t;
        } else if (std::memcmp(q + 1, p + 1, static_cast<size_t>(m - 1)) == 0) {
            return q - t;
        }
        ++q;
    }
    return -1;
}

// Boyer-Moore with the bad-character rule only; the table holds for each
// byte its distance from the pattern's end (its last place wins).
static void BuildShifts(int32_t *shift, const uint8_t *p, long m) {
    for (int c = 0; c < 256; ++c)
        shift[c] = static_cast<int32_t>(m);
    for (long i = 0; i < m; ++i)
        shift[p[i]] = static_cast<int32_t>(m - 1 - i);
}

static long ShiftFind(const int32_t *shift, const uint8_t *t, long n, const uint8_t *p, long m,
                      long start) {
    long i = start + m - 1;
    while (i < n) {
        long j = m - 1, k = i;
        while (t[k] == p[j]) {
            if (j == 0)
                return k;
            --k;
            --j;
        }
        i = k + std::max<long>(shift[t[k]], m - j);
    }
    return -1;
}

// Long patterns with room for many candidates go by shifts; below that the
// table would cost more than it saves.
static bool UseShifts(long n, long m, long start) { return m >= 5 && n - start - m + 1 > 80; }

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
    const auto *p = reinterpret_cast<const uint8_t *>(find);
    if (UseShifts(n, m, start)) {
        BuildShifts(gShift, p, m);
        return ShiftFind(gShift, t, n, p, m, start);
    }
    return ScanFind(t, n, p, m, start);
}

ExactSearcher::ExactSearcher(const char *text, long length, const char *find, long findLength)
    : mText(reinterpret_cast<const uint8_t *>(text)),
      mFind(reinterpret_cast<const uint8_t *>(find)), mTextLength(length), mFindLength(findLength) {
}

long ExactSearcher::Next(long start) {
    if (mTextLength <= 0)
        return -1;
    if (mFindLength <= 0)
        return start;
    if (start < 0)
        start = 0;
    if (start >= mTextLength || mTextLength - start < mFindLength)
        return -1;
    if (UseShifts(mTextLength, mFindLength, start)) {
        if (!mTableReady) {
            BuildShifts(mShift, mFind, mFindLength);
            mTableReady = true;
        }
        return ShiftFind(mShift, mText, mTextLength, mFind, mFindLength, start);
    }
    return ScanFind(mText, mTextLength, mFind, mFindLength, start);
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

long FoldFindBytes(const uint8_t *t, long n, const uint8_t *p, long m, long start) {
    const uint8_t *up = Upper().map;
    const uint8_t first = up[p[0]];
    // The bytes that fold to the pattern's first one; with at most two of
    // them (a letter's two cases) the candidates are found with memchr.
    const uint8_t *starts = Upper().sources[first];
    const int count = Upper().sourceCount[first];
    auto rest = [&](long i) {
        long j = 1;
        while (j < m && up[t[i + j]] == up[p[j]])
            ++j;
        return j == m;
    };
    const long last = n - m; // the last offset where a match fits
    if (count <= 2) {
        // Windows that grow from small, so that a case which never occurs
        // costs about as much as the distance to the match, not the text.
        long from = start, window = 64;
        while (from <= last) {
            const long span = std::min(window, last - from + 1);
            long best = -1;
            for (int k = 0; k < count; ++k) {
                const auto *hit = static_cast<const uint8_t *>(
                    std::memchr(t + from, starts[k], static_cast<size_t>(span)));
                if (hit != nullptr && (best < 0 || hit - t < best))
                    best = hit - t;
            }
            if (best < 0) {
                from += span;
                if (window < 65536)
                    window *= 2;
                continue;
            }
            if (rest(best))
                return best;
            from = best + 1;
        }
        return -1;
    }
    for (long i = start; i <= last; ++i)
        if (up[t[i]] == first && rest(i))
            return i;
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
    return FoldFindBytes(Bytes(source), n, Bytes(find), m, start);
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
