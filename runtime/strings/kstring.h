#pragma once
// kelp::string: the runtime's own string value.
//
// A string is one pointer to a reference-counted stringStorage record
// (include/kelp/records.h), or null for the empty string: a zero-length text
// is always null, never a record of length 0.  The record carries its
// encoding word, and the word takes part in every concatenation and
// comparison.  Records and buffers come from the small-block allocator.
//
// Reference rules at the boundary with compiled code:
//  - a function that returns a string returns an owned reference;
//  - arguments are borrowed: wrap them with string::Wrap (adds a reference),
//    and hand results back with ExtractStringStorage (adds one more before the
//    local's destructor drops its own);
//  - a record with a count above 1 is never written to (copy on write).
//
// Positions inside this class are 0-based byte offsets; the language's
// 1-based positions are the caller's business.
#include "kelp/records.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kelp {

// ----------------------------------------------------------- encoding words

// True for the Unicode family (words 256 to 511): a byte copy to or from such
// an encoding is never valid.
inline bool IsUnicodeFamily(uint32_t encoding) { return encoding >= 256 && encoding <= 511; }

// The system default encoding on this platform: ISO Latin 1.
constexpr uint32_t kSystemDefaultEncoding = kEncodingLatin1;

// The word that two texts share when joined.  Equal words stay; ASCII with
// UTF-8 gives UTF-8; ASCII with any word outside the Unicode family gives
// that word.  Otherwise `force` picks UTF-16 (one side exactly UTF-16 and
// neither UTF-8) or UTF-8, and without `force` the answer is unknown.
uint32_t CommonEncoding(uint32_t a, uint32_t b, bool force);

// The 256-entry upper-casing table: ASCII letters to upper case, the rest of
// ASCII unchanged, the high half folded over the Macintosh Roman repertoire.
// Names, class names and map keys compare through it.
extern const uint8_t kUpperCaseTable[256];

class string;

// Brings two strings to one encoding and answers it.  May replace either
// handle by a converted copy (pass your own copies).  Both null: ASCII; one
// null: the other's word; either unknown: unknown and nothing converted.
// When neither side can hold the other's bytes as they are, both go to UTF-8
// (or UTF-16 when one side is UTF-16 and neither is UTF-8); a conversion that
// comes out empty answers unknown and leaves that side alone.
uint32_t ConvertToSameEncoding(string &a, string &b);

// A new reference to `s` converted to `target` through the C library's
// iconv.  Unknown target, empty or unknown source, or the same word: `s`
// itself.  ASCII-only bytes into an encoding that holds ASCII are copied.
// Characters without a counterpart become "?" (one per source byte); a
// conversion that can't be done gives `s` unchanged.
string ConvertEncoding(const string &s, uint32_t target);
string GetUTF8String(const string &s);
// Unknown text is read as the system default for this conversion.
string GetUTF16String(const string &s);
string ConvertToSystemEncoding(const string &s);

// The iconv name of an encoding word, or null when it has none.
const char *IconvNameForEncoding(uint32_t encoding);

// ---------------------------------------------------------------- the class

class string {
public:
    // The empty string.
    string() noexcept = default;

    // A copy of a C string, encoding ASCII.  A null pointer is a failed
    // assertion "str" and gives the empty string.
    string(const char *cstr);

    // A copy of `length` bytes (NULs included); the encoding stays unknown
    // until the caller sets it.  A null source with a positive length gives a
    // record of that length filled with zero bytes.  Length below 1: empty.
    string(const char *bytes, long length);

    // Copy of bytes with a given encoding word.
    static string FromBytes(const void *bytes, long length, uint32_t encoding);
    // Text that is known to be UTF-8 (toolkit text, constants of the image).
    static string FromUTF8(const char *text);
    static string FromUTF8(const char *text, long length);
    static string FromUTF8(std::string_view text) {
        return FromUTF8(text.data(), static_cast<long>(text.size()));
    }
    // An array of 32-bit characters: UTF-16 (0x0100) keeping the low 16 bits
    // of each, two NUL bytes behind the units.
    static string FromWide(const uint32_t *chars, long count);

    // A handle on a borrowed record: adds a reference.
    static string Wrap(stringStorage *record);
    // A handle that takes over a reference the caller owns (no count change).
    static string Adopt(stringStorage *record);

    string(const string &other) noexcept;
    string(string &&other) noexcept : mStorage(other.mStorage) { other.mStorage = nullptr; }
    string &operator=(const string &other) noexcept;
    string &operator=(string &&other) noexcept;
    ~string();

    // An owned reference for the caller of a runtime function (count + 1).
    stringStorage *ExtractStringStorage() const;
    // The record itself, borrowed (no count change); null when empty.
    stringStorage *Storage() const { return mStorage; }
    // Gives up this handle's reference to the caller and becomes empty.
    stringStorage *Release();

    // Text length in bytes (not characters); 0 when empty.
    long Length() const { return mStorage ? mStorage->length : 0; }
    bool IsEmpty() const { return Length() == 0; }
    // buffer + 1: the text, NUL-terminated (stops at an inner NUL).  Never null.
    const char *CString() const;
    // buffer: length byte then text.  Never null.
    const uint8_t *PString() const;
    // The text as a view over all `Length()` bytes, inner NULs included.
    std::string_view View() const {
        return std::string_view(CString(), static_cast<size_t>(Length()));
    }
    // The 16-bit units of a UTF-16 record; asking it of another encoding is a
    // failed assertion and answers an empty text.
    const uint16_t *UTF16Units() const;
    // The text of a UTF-8 (or ASCII) record; another encoding is a failed
    // assertion and answers the bytes as they are.
    const char *UTF8CString() const;

    // The encoding word; ASCII for the empty string (that is what it holds).
    uint32_t Encoding() const { return mStorage ? mStorage->encoding : kEncodingASCII; }
    // Relabels the bytes (no conversion).  Shared records are copied first.
    // Does nothing on the empty string.
    void SetEncoding(uint32_t encoding);

    // Writable byte at `pos` (0-based); a shared record is copied first.
    // Out of range is a failed assertion and answers a scratch byte.
    char &MutableChar(long pos);

    // Case-insensitive (upper-casing table) after reconciling encodings;
    // bytes of the common prefix, then the shorter is less.  <0, 0, >0.
    int Compare(const string &other) const;
    // Exact bytes of the common prefix, then the shorter is less.
    int CompareWithCase(const string &other) const;

    // Concatenation with the encoding rules (see operator+ below).
    string &operator+=(const string &other);
    // Appends a C string; the left side's word stays (unknown if it was empty).
    string &operator+=(const char *text);

    // Equality as the language sees it: case-insensitive in every encoding.
    bool operator==(const string &other) const;
    bool operator!=(const string &other) const { return !(*this == other); }
    bool operator==(const char *other) const { return *this == string(other); }
    bool operator!=(const char *other) const { return !(*this == other); }

    // A one-character string of `code` in `encoding`: UTF-8 bytes for
    // UTF-8, the 16-bit unit for UTF-16, else the UTF-8 text converted.
    static string UnicodeChar(uint32_t code, uint32_t encoding);

    void swap(string &other) noexcept {
        stringStorage *t = mStorage;
        mStorage = other.mStorage;
        other.mStorage = t;
    }

private:
    explicit string(stringStorage *record) noexcept : mStorage(record) {}
    friend class StringBuilderAccess;
    stringStorage *mStorage = nullptr;
};

// Joins two strings.  An empty side gives the other side's record with a
// new reference.  Equal words: one new record with that word.  Different
// words: both are brought to a common encoding first; when there is none
// (unknown) the bytes are joined as they are and the result is unknown.
string operator+(const string &a, const string &b);
string operator+(const string &a, const char *b);
// One byte appended: below 128 the word combines with ASCII (ASCII if `a` is
// empty); 128 and above leave the word unknown.
string operator+(const string &a, char byte);

// Byte-based substrings.  Results that equal the whole source are the same
// record with a new reference.
string left(const string &s, long n);
string right(const string &s, long n);
string mid(const string &s, long pos);           // 0-based tail
string mid(const string &s, long pos, long len); // 0-based
// Remove blanks and tabs (32 and 9) only.
string ltrim(const string &s);
string rtrim(const string &s);
string trim(const string &s);

// The language's comparison (RuntimeStringCompare): case-insensitive, on
// code points for UTF-8 and 16-bit units for UTF-16.  <0, 0, >0.
int LanguageCompare(const string &a, const string &b);

// -------------------------------------------------- low-level record helpers

// A new record of `length` bytes (count 1, encoding unknown, text zeroed,
// length byte and NUL in place), or null for a length below 1.  Buffer
// allocation is soft when `soft` is set: failure gives null.
stringStorage *NewStringStorage(long length, bool soft = false);
// Count - 1, freeing buffer and record at 0.  Null is accepted.  Records
// inside a registered literal area are never freed, and a release below 0 is
// reported and ignored.
void ReleaseStringStorage(stringStorage *record);

// Marks memory that holds string constants laid down in place (an image's
// data segment): their records and buffers were never allocated, so the
// string runtime must never free them, whatever happens to their counts.
// The image binder registers each data segment it makes literals live in.
void RegisterLiteralArea(const void *begin, size_t size);
void UnregisterLiteralArea(const void *begin);
bool IsInLiteralArea(const void *address);

} // namespace kelp
