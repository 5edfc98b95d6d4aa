// The string class: records, references, substrings, concatenation and
// comparison with encodings.
#include "strings/kstring.h"

#include "base/fatal_report.h"
#include "containers/simple_vector.h"
#include "strings/encodings.h"
#include "strings/small_alloc.h"

#include <cstring>

namespace kelp {

namespace {

const char kStringFile[] = "Universal/string";

// Every C string that becomes a string is labelled with this word.
uint32_t gCStringEncoding = kEncodingASCII;

const uint8_t kEmptyPString[2] = {0, 0};

inline uint8_t LengthByte(long length) { return static_cast<uint8_t>(length < 256 ? length : 255); }

// Memory areas holding string constants in place (image data segments).
struct LiteralArea {
    const uint8_t *begin = nullptr;
    const uint8_t *end = nullptr;
};
// Never destroyed: strings held in static objects are released during the
// process's exit and still ask about these areas then.
SimpleVector<LiteralArea> &LiteralAreas() {
    static auto *areas = new SimpleVector<LiteralArea>;
    return *areas;
}

stringStorage *UnfilledStorage(long length, bool soft);

// A new record holding `length` bytes copied from `bytes` (zeros when null).

stringStorage *NewRecordWith(const void *bytes, long length, uint32_t encoding) {
    stringStorage *record = bytes ? UnfilledStorage(length, true) : NewStringStorage(length, true);
    if (!record)
        return nullptr;
    if (bytes)
        std::memcpy(record->buffer + 1, bytes, static_cast<size_t>(length));
    record->encoding = encoding;
    return record;
}

// A record of both texts, in order.
stringStorage *JoinRecords(const string &a, const string &b, uint32_t encoding) {
    long la = a.Length(), lb = b.Length();
    stringStorage *record = NewStringStorage(la + lb, true);
    if (!record)
        return nullptr;
    std::memcpy(record->buffer + 1, a.CString(), static_cast<size_t>(la));
    std::memcpy(record->buffer + 1 + la, b.CString(), static_cast<size_t>(lb));
    record->encoding = encoding;
    return record;
}

} // namespace

class StringBuilderAccess {
public:
    static string Make(stringStorage *record) { return string(record); }
};

namespace {
inline string AdoptRecord(stringStorage *record) { return StringBuilderAccess::Make(record); }
} // namespace

// ------------------------------------------------------------- the records

namespace {

// A record of `length` bytes whose text the caller writes; only the length
// byte and the terminator are set.
stringStorage *UnfilledStorage(long length, bool soft) {
    if (length < 1)
        return nullptr;
    if (length > 0x7FFFFFF0L) // the record counts bytes in 32 bits
        return nullptr;
    auto *record = static_cast<stringStorage *>(OSalloclen(sizeof(stringStorage), kMemFullHard));
    if (!record)
        return nullptr;
    long capacity = length + 2;
    auto *buffer = static_cast<uint8_t *>(OSalloclen(capacity, soft ? kMemFullSoft : kMemFullHard));
    if (!buffer) {
        OSfreelen(record, sizeof(stringStorage));
        return nullptr;
    }
    record->referenceCount = 1;
    record->buffer = buffer;
    record->capacity = static_cast<uint32_t>(capacity);
    record->length = static_cast<int32_t>(length);
    record->encoding = kEncodingUnknown;
    buffer[0] = LengthByte(length);
    buffer[length + 1] = 0;
    return record;
}

} // namespace

stringStorage *NewStringStorage(long length, bool soft) {
    stringStorage *record = UnfilledStorage(length, soft);
    if (record)
        std::memset(record->buffer + 1, 0, static_cast<size_t>(length));
    return record;
}

void ReleaseStringStorage(stringStorage *record) {
    if (!record)
        return;
    if (record->referenceCount <= 0) {
        // Released once too often: leave the memory alone rather than free
        // it twice.
        FatalReport(kFatalFailedAssertion, kStringFile, __LINE__, "referenceCount > 0", "");
        return;
    }
    if (--record->referenceCount > 0)
        return;
    if (IsInLiteralArea(record))
        return; // an image constant: neither record nor buffer is ours
    OSfreelen(record->buffer, record->capacity);
    OSfreelen(record, sizeof(stringStorage));
}

void RegisterLiteralArea(const void *begin, size_t size) {
    if (!begin || size == 0)
        return;
    const auto *b = static_cast<const uint8_t *>(begin);
    LiteralAreas().Append(LiteralArea{b, b + size});
}

void UnregisterLiteralArea(const void *begin) {
    SimpleVector<LiteralArea> &areas = LiteralAreas();
    for (uint32_t i = 0; i < areas.Count(); ++i)
        if (areas[i].begin == begin) {
            // Fill the hole with the last area.
            LiteralArea last = areas.Pop();
            if (i < areas.Count())
                areas[i] = last;
            return;
        }
}

bool IsInLiteralArea(const void *address) {
    const auto *p = static_cast<const uint8_t *>(address);
    SimpleVector<LiteralArea> &areas = LiteralAreas();
    for (uint32_t i = 0; i < areas.Count(); ++i)
        if (p >= areas[i].begin && p < areas[i].end)
            return true;
    return false;
}

// ------------------------------------------------------------ construction

string::string(const char *cstr) {
    if (!cstr) {
        FatalReport(kFatalFailedAssertion, kStringFile, __LINE__, "str", "");
        return;
    }
    long length = static_cast<long>(std::strlen(cstr));
    mStorage = NewRecordWith(cstr, length, gCStringEncoding);
}

string::string(const char *bytes, long length) {
    mStorage = NewRecordWith(bytes, length, kEncodingUnknown);
}

string string::FromBytes(const void *bytes, long length, uint32_t encoding) {
    return AdoptRecord(NewRecordWith(bytes, length, encoding));
}

string string::FromUTF8(const char *text) {
    if (!text)
        return string();
    return FromBytes(text, static_cast<long>(std::strlen(text)), kEncodingUTF8);
}

string string::FromUTF8(const char *text, long length) {
    if (!text)
        return string();
    return FromBytes(text, length, kEncodingUTF8);
}

string string::FromWide(const uint32_t *chars, long count) {
    if (!chars || count < 1)
        return string();
    long length = 2 * count;
    auto *record = static_cast<stringStorage *>(OSalloclen(sizeof(stringStorage), kMemFullHard));
    if (!record)
        return string();
    // Two NUL bytes behind the units, so the buffer is one byte longer.
    long capacity = length + 3;
    auto *buffer = static_cast<uint8_t *>(OSalloclen(capacity, kMemFullSoft));
    if (!buffer) {
        OSfreelen(record, sizeof(stringStorage));
        return string();
    }
    record->referenceCount = 1;
    record->buffer = buffer;
    record->capacity = static_cast<uint32_t>(capacity);
    record->length = static_cast<int32_t>(length);
    record->encoding = kEncodingUTF16;
    buffer[0] = static_cast<uint8_t>(length & 0xFF);
    for (long i = 0; i < count; ++i) {
        uint16_t unit = static_cast<uint16_t>(chars[i] & 0xFFFF);
        std::memcpy(buffer + 1 + 2 * i, &unit, 2);
    }
    buffer[length + 1] = 0;
    buffer[length + 2] = 0;
    return AdoptRecord(record);
}

string string::Wrap(stringStorage *record) {
    if (record)
        ++record->referenceCount;
    return string(record);
}

string string::Adopt(stringStorage *record) { return string(record); }

string::string(const string &other) noexcept : mStorage(other.mStorage) {
    if (mStorage)
        ++mStorage->referenceCount;
}

string &string::operator=(const string &other) noexcept {
    if (mStorage == other.mStorage)
        return *this;
    stringStorage *old = mStorage;
    mStorage = other.mStorage;
    if (mStorage)
        ++mStorage->referenceCount;
    ReleaseStringStorage(old);
    return *this;
}

string &string::operator=(string &&other) noexcept {
    if (this != &other) {
        stringStorage *old = mStorage;
        mStorage = other.mStorage;
        other.mStorage = nullptr;
        // Even when both handles held the same record, each held its own
        // reference, so the old one goes.
        ReleaseStringStorage(old);
    }
    return *this;
}

string::~string() { ReleaseStringStorage(mStorage); }

stringStorage *string::ExtractStringStorage() const {
    if (mStorage)
        ++mStorage->referenceCount;
    return mStorage;
}

stringStorage *string::Release() {
    stringStorage *record = mStorage;
    mStorage = nullptr;
    return record;
}

// ------------------------------------------------------------------- views

const char *string::CString() const {
    if (!mStorage || !mStorage->buffer)
        return reinterpret_cast<const char *>(kEmptyPString + 1);
    return reinterpret_cast<const char *>(mStorage->buffer + 1);
}

const uint8_t *string::PString() const {
    if (!mStorage || !mStorage->buffer)
        return kEmptyPString;
    return mStorage->buffer;
}

const uint16_t *string::UTF16Units() const {
    static const uint16_t kNoUnits[1] = {0};
    if (!mStorage)
        return kNoUnits;
    if (mStorage->encoding != kEncodingUTF16) {
        FatalReport(kFatalFailedAssertion, kStringFile, __LINE__, "Encoding() == kEncodingUTF16",
                    "");
        return kNoUnits;
    }
    return reinterpret_cast<const uint16_t *>(mStorage->buffer + 1);
}

const char *string::UTF8CString() const {
    if (mStorage && mStorage->encoding != kEncodingUTF8 && mStorage->encoding != kEncodingASCII)
        FatalReport(kFatalFailedAssertion, kStringFile, __LINE__, "Encoding() == kEncodingUTF8",
                    "");
    return CString();
}

// ------------------------------------------------------------ modification

void string::SetEncoding(uint32_t encoding) {
    if (!mStorage || mStorage->encoding == encoding)
        return;
    if (mStorage->referenceCount > 1) {
        stringStorage *copy = NewRecordWith(mStorage->buffer + 1, mStorage->length, encoding);
        if (!copy)
            return;
        ReleaseStringStorage(mStorage);
        mStorage = copy;
        return;
    }
    mStorage->encoding = encoding;
}

char &string::MutableChar(long pos) {
    static char scratch;
    if (!mStorage) {
        FatalReport(kFatalFailedAssertion, kStringFile, __LINE__, "not pos", "");
        scratch = 0;
        return scratch;
    }
    if (pos < 0 || pos >= mStorage->length) {
        FatalReport(kFatalFailedAssertion, kStringFile, __LINE__,
                    "not (pos < 0 || pos >= Length())", "");
        scratch = 0;
        return scratch;
    }
    if (mStorage->referenceCount > 1) {
        // Copy on write: the other holders keep their text.
        stringStorage *copy =
            NewRecordWith(mStorage->buffer + 1, mStorage->length, mStorage->encoding);
        if (!copy) {
            scratch = 0;
            return scratch;
        }
        ReleaseStringStorage(mStorage);
        mStorage = copy;
    }
    return reinterpret_cast<char *>(mStorage->buffer + 1)[pos];
}

// ---------------------------------------------------------- concatenation

uint32_t ConvertToSameEncoding(string &a, string &b) {
    if (!a.Storage() && !b.Storage())
        return kEncodingASCII;
    if (!a.Storage())
        return b.Encoding();
    if (!b.Storage())
        return a.Encoding();
    uint32_t ea = a.Encoding(), eb = b.Encoding();
    if (ea == eb)
        return ea;
    if (ea == kEncodingUnknown || eb == kEncodingUnknown)
        return kEncodingUnknown;
    uint32_t common = CommonEncoding(ea, eb, false);
    if (common != kEncodingUnknown)
        return common; // ASCII bytes are valid in the other word as they are
    uint32_t target = ((ea == kEncodingUTF16 || eb == kEncodingUTF16) && ea != kEncodingUTF8 &&
                       eb != kEncodingUTF8)
                          ? kEncodingUTF16
                          : kEncodingUTF8;
    for (string *side : {&a, &b}) {
        if (side->Encoding() == target)
            continue;
        string converted = ConvertEncoding(*side, target);
        // A conversion that came out empty, or could not be done at all,
        // leaves no common word: the caller must not relabel the bytes.
        if (converted.Length() == 0 || converted.Encoding() != target)
            return kEncodingUnknown;
        *side = converted;
    }
    return target;
}

string operator+(const string &a, const string &b) {
    if (b.Length() == 0)
        return a;
    if (a.Length() == 0)
        return b;
    if (a.Encoding() == b.Encoding())
        return AdoptRecord(JoinRecords(a, b, a.Encoding()));
    string ca = a, cb = b;
    uint32_t encoding = ConvertToSameEncoding(ca, cb);
    if (encoding == kEncodingUnknown)
        return AdoptRecord(JoinRecords(a, b, kEncodingUnknown));
    return AdoptRecord(JoinRecords(ca, cb, encoding));
}

string operator+(const string &a, const char *b) { return a + string(b); }

string operator+(const string &a, char byte) {
    uint32_t encoding;
    if (static_cast<unsigned char>(byte) >= 128)
        encoding = kEncodingUnknown;
    else if (!a.Storage())
        encoding = kEncodingASCII;
    else
        encoding = CommonEncoding(a.Encoding(), kEncodingASCII, false);
    string one = string::FromBytes(&byte, 1, encoding);
    if (a.Length() == 0)
        return one;
    return AdoptRecord(JoinRecords(a, one, encoding));
}

string &string::operator+=(const string &other) {
    if (other.Length() == 0)
        return *this;
    string joined = *this + other;
    swap(joined);
    return *this;
}

string &string::operator+=(const char *text) {
    if (!text || !*text)
        return *this;
    uint32_t encoding = mStorage ? mStorage->encoding : kEncodingUnknown;
    string right = string::FromBytes(text, static_cast<long>(std::strlen(text)), encoding);
    string joined = AdoptRecord(JoinRecords(*this, right, encoding));
    swap(joined);
    return *this;
}

// -------------------------------------------------------------- comparison

namespace {

int CompareBytes(const string &a, const string &b, bool fold) {
    const auto *pa = reinterpret_cast<const uint8_t *>(a.CString());
    const auto *pb = reinterpret_cast<const uint8_t *>(b.CString());
    long la = a.Length(), lb = b.Length();
    long n = la < lb ? la : lb;
    for (long i = 0; i < n; ++i) {
        uint8_t ca = fold ? kUpperCaseTable[pa[i]] : pa[i];
        uint8_t cb = fold ? kUpperCaseTable[pb[i]] : pb[i];
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
    return la < lb ? -1 : (la > lb ? 1 : 0);
}

// The null cases shared by every comparison; answers true when settled.
bool CompareEmpty(const string &a, const string &b, int &result) {
    if (a.Storage() == b.Storage() || (a.Length() == 0 && b.Length() == 0)) {
        result = 0;
        return true;
    }
    if (a.Length() == 0) {
        result = -1;
        return true;
    }
    if (b.Length() == 0) {
        result = 1;
        return true;
    }
    return false;
}

} // namespace

int string::Compare(const string &other) const {
    int result;
    if (CompareEmpty(*this, other, result))
        return result;
    string a = *this, b = other;
    ConvertToSameEncoding(a, b);
    return CompareBytes(a, b, true);
}

int string::CompareWithCase(const string &other) const {
    int result;
    if (CompareEmpty(*this, other, result))
        return result;
    string a = *this, b = other;
    ConvertToSameEncoding(a, b);
    return CompareBytes(a, b, false);
}

int LanguageCompare(const string &a, const string &b) {
    int result;
    if (CompareEmpty(a, b, result))
        return result;
    string ca = a, cb = b;
    uint32_t encoding = ConvertToSameEncoding(ca, cb);
    const auto *pa = reinterpret_cast<const uint8_t *>(ca.CString());
    const auto *pb = reinterpret_cast<const uint8_t *>(cb.CString());
    if (encoding == kEncodingUTF8)
        return UTF8StringCompare(pa, ca.Length(), pb, cb.Length(), true);
    if (encoding == kEncodingUTF16)
        return UCS2StringCompare(pa, ca.Length() / 2, pb, cb.Length() / 2, true);
    return CompareBytes(ca, cb, true);
}

bool string::operator==(const string &other) const { return LanguageCompare(*this, other) == 0; }

// -------------------------------------------------------------- substrings

string left(const string &s, long n) {
    long length = s.Length();
    if (n >= length)
        return s;
    if (n < 1)
        return string();
    return string::FromBytes(s.CString(), n, s.Encoding());
}

string right(const string &s, long n) {
    long length = s.Length();
    if (n >= length)
        return s;
    if (n < 1)
        return string();
    return string::FromBytes(s.CString() + (length - n), n, s.Encoding());
}

string mid(const string &s, long pos) {
    if (pos < 0)
        pos = 0;
    long length = s.Length();
    if (pos >= length)
        return string();
    if (pos == 0)
        return s;
    return string::FromBytes(s.CString() + pos, length - pos, s.Encoding());
}

string mid(const string &s, long pos, long len) {
    if (pos < 0) {
        len += pos;
        pos = 0;
    }
    long length = s.Length();
    if (pos >= length || len < 1)
        return string();
    long count = len < length - pos ? len : length - pos;
    if (pos == 0 && count == length)
        return s;
    return string::FromBytes(s.CString() + pos, count, s.Encoding());
}

namespace {
inline bool IsBlank(char c) { return c == ' ' || c == '\t'; }
} // namespace

string ltrim(const string &s) {
    const char *p = s.CString();
    long length = s.Length(), start = 0;
    while (start < length && IsBlank(p[start]))
        ++start;
    return mid(s, start);
}

string rtrim(const string &s) {
    const char *p = s.CString();
    long end = s.Length();
    while (end > 0 && IsBlank(p[end - 1]))
        --end;
    return left(s, end);
}

string trim(const string &s) { return rtrim(ltrim(s)); }

// ------------------------------------------------------------------ chars

string string::UnicodeChar(uint32_t code, uint32_t encoding) {
    if (encoding == kEncodingUTF16) {
        // One unit, or a surrogate pair beyond the Basic Multilingual Plane,
        // so that joined 16-bit text stays aligned.
        uint16_t units[2];
        long count = 1;
        if (code >= 0x10000 && code <= 0x10FFFF) {
            uint32_t v = code - 0x10000;
            units[0] = static_cast<uint16_t>(0xD800 | (v >> 10));
            units[1] = static_cast<uint16_t>(0xDC00 | (v & 0x3FF));
            count = 2;
        } else {
            units[0] = static_cast<uint16_t>(code & 0xFFFF);
        }
        return FromBytes(units, 2 * count, kEncodingUTF16);
    }
    uint8_t bytes[5];
    int n = UTF8Encode(code, bytes);
    string utf8 = FromBytes(bytes, n, kEncodingUTF8);
    if (encoding == kEncodingUTF8)
        return utf8;
    return ConvertEncoding(utf8, encoding);
}

} // namespace kelp
