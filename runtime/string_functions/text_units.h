// What the string functions share: borrowing arguments and handing out
// results, counting characters by the encoding word, and the two searches.
#pragma once
#include "kelp/records.h"
#include "kelp/strings.h"
#include "strings/encodings.h"
#include "strings/kstring.h"

#include <cstdint>
#include <string>

namespace kelp::text {

// An argument is borrowed: the wrapper takes its own reference.
inline string Arg(stringStorage *s) { return string::Wrap(s); }
// A result goes to the caller with the one reference the wrapper holds.
inline stringStorage *Out(string s) { return s.Release(); }

inline bool IsUTF8(const string &s) { return s.Encoding() == kEncodingUTF8; }
inline bool IsUTF16(const string &s) { return s.Encoding() == kEncodingUTF16; }
inline const uint8_t *Bytes(const string &s) {
    return reinterpret_cast<const uint8_t *>(s.CString());
}

// Bytes taken by the first `count` characters from byte `from` on.
long UnitsToBytes(const string &s, long from, long count);
// Characters in the first `bytes` bytes.
long BytesToUnits(const string &s, long bytes);

// The exact byte search: zero-based start and result, -1 when not found.
long ExactFind(const char *text, long length, const char *find, long findLength, long start);

// The exact byte search run many times with one pattern over one text, as
// ReplaceAll, CountFields and Split do.  `Next(start)` gives what ExactFind
// gives for the same arguments.  Both texts must outlive the searcher.
class ExactSearcher {
public:
    ExactSearcher(const char *text, long length, const char *find, long findLength);
    long Next(long start);

private:
    const char *mText, *mFind;
    long mTextLength, mFindLength;
};

// The caseless search over two strings of one word: zero-based byte start
// and result, -1 when not found.  Offsets of UTF-16 text stay even.
long FoldFind(const string &source, const string &find, long byteStart);

// A pattern of a byte word folded once for the caseless search, with the
// bytes its first one folds from.
class FoldPattern {
public:
    explicit FoldPattern(const string &find);
    const uint8_t *Folded() const { return reinterpret_cast<const uint8_t *>(mFolded.data()); }
    long Length() const { return static_cast<long>(mFolded.size()); }
    bool mBlockScan = false; // at most two bytes fold to the first: scan for them
    uint8_t mFirstA = 0, mFirstB = 0;

private:
    std::string mFolded;
};

// The caseless search run many times with one pattern over one text, as
// ReplaceAll, CountFields and Split do: `Next(start)` gives what FoldFind
// gives, with the pattern folded once.  Both strings must outlive it.
class FoldSearcher {
public:
    FoldSearcher(const string &source, const string &find);
    long Next(long start);

private:
    const string &mSource, &mFind;
    bool mBytes; // a byte word: the folded pattern is used
    FoldPattern mPattern;
};

// True when the text has no letters whose case could differ, so the exact
// search finds what the caseless one would.
bool IsCaseless(const string &s);

// `s` in the word `encoding`, unchanged when it has that word already.
string InEncoding(const string &s, uint32_t encoding);

} // namespace kelp::text
