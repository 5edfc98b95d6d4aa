// InStr, Replace, CountFields, NthField, Split and Join, in their byte and
// character forms.
#include "kelp/arrays.h"
#include "kelp/string_functions.h"
#include "string_functions/text_units.h"

#include <cstring>
#include <optional>
#include <vector>

using namespace kelp;
using namespace kelp::text;

// ------------------------------------------------------------------ InStr

extern "C" int32_t StringInStrB(int32_t start, stringStorage *source, stringStorage *find) {
    const string s = Arg(source), f = Arg(find);
    if (s.IsEmpty())
        return 0;
    if (f.IsEmpty())
        return start;
    const long at =
        ExactFind(s.CString(), s.Length(), f.CString(), f.Length(), static_cast<long>(start) - 1);
    return at < 0 ? 0 : static_cast<int32_t>(at + 1);
}

extern "C" int32_t StringExtendsInStrB(stringStorage *source, int32_t start, stringStorage *find) {
    return StringInStrB(start, source, find);
}

namespace {

// The caseless search in characters: 1-based start and result, 0 for none.
int32_t InStrCharacters(int32_t start, const string &sourceIn, const string &findIn) {
    if (sourceIn.IsEmpty())
        return 0;
    // Both texts go to one word by the rule every comparison follows: were
    // only the pattern put into the source's word, a character the source
    // can't hold would become a "?" that matches a literal one.
    string source = sourceIn, find = findIn;
    ConvertToSameEncoding(source, find);
    if (find.IsEmpty())
        return start;
    long index = static_cast<long>(start) - 1;
    if (index < 0)
        index = 0;
    long byteStart;
    if (IsUTF16(source)) {
        byteStart = index * 2;
    } else if (IsUTF8(source)) {
        byteStart = UnitsToBytes(source, 0, index);
        if (index > 0 && byteStart >= source.Length())
            return 0;
    } else {
        byteStart = index;
    }
    if (byteStart >= source.Length())
        return 0;
    const long at = FoldFind(source, find, byteStart);
    if (at < 0)
        return 0;
    return static_cast<int32_t>(BytesToUnits(source, at) + 1);
}

} // namespace

extern "C" int32_t StringInStr(int32_t start, stringStorage *source, stringStorage *find) {
    return InStrCharacters(start, Arg(source), Arg(find));
}

extern "C" int32_t StringExtendsInStr(stringStorage *source, int32_t start, stringStorage *find) {
    return StringInStr(start, source, find);
}

extern "C" int32_t StringDBCSInStr(int32_t start, stringStorage *source, stringStorage *find) {
    return StringInStr(start, source, find);
}

// ---------------------------------------------------------------- Replace

namespace {

// Which search a walk takes: exact, or caseless.
struct Finder {
    bool exact;
};

// Offsets of the non-overlapping matches, left to right; `limit` of them at
// most (0: all).
std::vector<long> Matches(const string &s, const string &f, Finder find, size_t limit) {
    std::vector<long> at;
    const long length = s.Length(), step = f.Length();
    // One searcher for the whole walk: its set-up is paid once.
    std::optional<ExactSearcher> exact;
    std::optional<FoldSearcher> folded;
    if (find.exact)
        exact.emplace(s.CString(), length, f.CString(), step);
    else
        folded.emplace(s, f);
    for (long from = 0; from < length;) {
        const long hit = exact ? exact->Next(from) : folded->Next(from);
        if (hit < 0)
            break;
        at.push_back(hit);
        if (limit != 0 && at.size() >= limit)
            break;
        from = hit + step;
    }
    return at;
}

string Rebuild(const string &s, const std::vector<long> &at, long findLength, const string &with) {
    if (at.empty())
        return s;
    const long total = s.Length() + static_cast<long>(at.size()) * (with.Length() - findLength);
    if (total <= 0)
        return string();
    stringStorage *record = NewStringStorage(total, true);
    if (record == nullptr)
        return s; // no room: the text stays as it was
    char *out = reinterpret_cast<char *>(record->buffer + 1);
    const char *in = s.CString();
    const char *withBytes = with.CString();
    const size_t withLength = static_cast<size_t>(with.Length());
    long from = 0;
    for (long hit : at) {
        std::memcpy(out, in + from, static_cast<size_t>(hit - from));
        out += hit - from;
        std::memcpy(out, withBytes, withLength);
        out += withLength;
        from = hit + findLength;
    }
    std::memcpy(out, in + from, static_cast<size_t>(s.Length() - from));
    record->encoding = s.Encoding();
    return string::Adopt(record);
}

stringStorage *Replace(stringStorage *source, stringStorage *find, stringStorage *with, bool exact,
                       bool all) {
    const string s = Arg(source);
    if (s.IsEmpty() || find == nullptr || find->length == 0)
        return Out(s);
    string f = Arg(find), w = Arg(with);
    if (!exact) {
        f = InEncoding(f, s.Encoding());
        w = InEncoding(w, s.Encoding());
    }
    // A pattern without letters is found faster by the exact search.
    const Finder finder{exact || IsCaseless(f)};
    return Out(Rebuild(s, Matches(s, f, finder, all ? 0 : 1), f.Length(), w));
}

} // namespace

extern "C" stringStorage *StringReplace(stringStorage *source, stringStorage *find,
                                        stringStorage *with) {
    return Replace(source, find, with, false, false);
}
extern "C" stringStorage *StringReplaceAll(stringStorage *source, stringStorage *find,
                                           stringStorage *with) {
    return Replace(source, find, with, false, true);
}
extern "C" stringStorage *StringReplaceB(stringStorage *source, stringStorage *find,
                                         stringStorage *with) {
    return Replace(source, find, with, true, false);
}
extern "C" stringStorage *StringReplaceAllB(stringStorage *source, stringStorage *find,
                                            stringStorage *with) {
    return Replace(source, find, with, true, true);
}

// ----------------------------------------------------------------- Fields

namespace {

struct Fields {
    string source, separator;
    Finder finder{true};
};

Fields Prepare(stringStorage *source, stringStorage *separator, bool exact) {
    Fields f{Arg(source), Arg(separator)};
    if (!exact)
        f.separator = InEncoding(f.separator, f.source.Encoding());
    f.finder = Finder{exact || IsCaseless(f.separator)};
    return f;
}

int32_t CountFields(stringStorage *source, stringStorage *separator, bool exact) {
    if (source == nullptr || source->length == 0)
        return 0;
    if (separator == nullptr || separator->length == 0)
        return 1;
    const Fields f = Prepare(source, separator, exact);
    return static_cast<int32_t>(Matches(f.source, f.separator, f.finder, 0).size()) + 1;
}

stringStorage *NthField(stringStorage *source, stringStorage *separator, int32_t n, bool exact) {
    if (source == nullptr || source->length == 0 || separator == nullptr ||
        separator->length == 0 || n < 1)
        return nullptr;
    const Fields f = Prepare(source, separator, exact);
    const long step = f.separator.Length();
    // The walk keeps one searcher, so a far field costs no set-up per
    // separator passed.
    std::optional<ExactSearcher> searcher;
    std::optional<FoldSearcher> folded;
    if (f.finder.exact)
        searcher.emplace(f.source.CString(), f.source.Length(), f.separator.CString(), step);
    else
        folded.emplace(f.source, f.separator);
    const auto next = [&](long from) {
        return searcher ? searcher->Next(from) : folded->Next(from);
    };
    long from = 0;
    for (int32_t k = 1; k < n; ++k) {
        const long hit = next(from);
        if (hit < 0)
            return nullptr;
        from = hit + step;
    }
    const long end = next(from);
    return Out(mid(f.source, from, (end < 0 ? f.source.Length() : end) - from));
}

RuntimeArray *Split(stringStorage *source, stringStorage *separator, bool exact) {
    const string s = Arg(source);
    std::vector<string> parts;
    if (!s.IsEmpty()) {
        if (separator != nullptr && separator->length > 0) {
            const Fields f = Prepare(source, separator, exact);
            long from = 0;
            for (long hit : Matches(s, f.separator, f.finder, 0)) {
                parts.push_back(mid(s, from, hit - from));
                from = hit + f.separator.Length();
            }
            parts.push_back(mid(s, from, s.Length() - from));
        } else {
            // One unit each: a character of UTF-8 text, a byte otherwise.
            const uint32_t word = exact ? kEncodingUnknown : s.Encoding();
            const uint8_t *p = Bytes(s), *end = p + s.Length();
            while (p < end) {
                const uint8_t *next = (!exact && IsUTF8(s)) ? AdvanceUTF8(p, end, 1) : p + 1;
                parts.push_back(string::FromBytes(p, next - p, word));
                p = next;
            }
        }
    }
    RuntimeArray *array = CreateArray(1, kArrayString, static_cast<int32_t>(parts.size()) - 1);
    if (array == nullptr)
        return nullptr;
    auto set = reinterpret_cast<kelp_array1_set_str>(array->operations[kArraySlotSet]);
    for (size_t i = 0; i < parts.size(); ++i)
        set(array, parts[i].Storage(), static_cast<int32_t>(i));
    return array;
}

} // namespace

extern "C" int32_t StringCountFields(stringStorage *source, stringStorage *separator) {
    return CountFields(source, separator, false);
}
extern "C" int32_t StringCountFieldsB(stringStorage *source, stringStorage *separator) {
    return CountFields(source, separator, true);
}
extern "C" stringStorage *StringNthField(stringStorage *source, stringStorage *separator,
                                         int32_t n) {
    return NthField(source, separator, n, false);
}
extern "C" stringStorage *StringNthFieldB(stringStorage *source, stringStorage *separator,
                                          int32_t n) {
    return NthField(source, separator, n, true);
}
extern "C" RuntimeArray *StringSplit(stringStorage *source, stringStorage *separator) {
    return Split(source, separator, false);
}
extern "C" RuntimeArray *StringSplitB(stringStorage *source, stringStorage *separator) {
    return Split(source, separator, true);
}

// ------------------------------------------------------------------- Join

extern "C" stringStorage *StringJoin(RuntimeArray *array, stringStorage *separator) {
    if (array == nullptr || array->dimensions != 1 || array->upperBounds[0] < 0)
        return nullptr;
    auto *const *items = static_cast<stringStorage *const *>(array->buffer);
    const long count = static_cast<long>(array->upperBounds[0]) + 1;
    if (count == 1)
        return RuntimeLockString(items[0]);
    string sep = Arg(separator);
    uint32_t word = sep.Encoding();
    if (items[0] != nullptr)
        word = items[0]->encoding;
    for (long i = 1; i < count; ++i)
        if (items[i] != nullptr)
            word = CommonEncoding(word, items[i]->encoding, true);
    std::vector<string> parts(static_cast<size_t>(count));
    long total = 0;
    sep = InEncoding(sep, word);
    for (long i = 0; i < count; ++i) {
        parts[static_cast<size_t>(i)] = InEncoding(Arg(items[i]), word);
        total += parts[static_cast<size_t>(i)].Length();
    }
    total += (count - 1) * sep.Length();
    if (total == 0)
        return nullptr;
    stringStorage *record = NewStringStorage(total, true);
    if (record == nullptr)
        return nullptr;
    char *out = reinterpret_cast<char *>(record->buffer + 1);
    for (long i = 0; i < count; ++i) {
        if (i > 0) {
            std::memcpy(out, sep.CString(), static_cast<size_t>(sep.Length()));
            out += sep.Length();
        }
        std::memcpy(out, parts[static_cast<size_t>(i)].CString(),
                    static_cast<size_t>(parts[static_cast<size_t>(i)].Length()));
        out += parts[static_cast<size_t>(i)].Length();
    }
    record->encoding = word;
    return record;
}
