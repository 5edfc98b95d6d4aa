#include "edit_fields/style_store.h"

#include "edit_fields/utf8_text.h"

#include <algorithm>

namespace kelp {

namespace {

bool HasValue(const StyleRunValue &run, StyleKind kind, int32_t value, const std::string &font) {
    switch (kind) {
    case kStyleKindBold: return run.bold == (value != 0);
    case kStyleKindItalic: return run.italic == (value != 0);
    case kStyleKindUnderline: return run.underline == (value != 0);
    case kStyleKindSize: return run.size == value;
    case kStyleKindFont: return run.font == font;
    case kStyleKindColor: return run.color == value;
    }
    return true;
}

void Assign(StyleRunValue &run, StyleKind kind, int32_t value, const std::string &font) {
    switch (kind) {
    case kStyleKindBold: run.bold = value != 0; break;
    case kStyleKindItalic: run.italic = value != 0; break;
    case kStyleKindUnderline: run.underline = value != 0; break;
    case kStyleKindSize: run.size = value; break;
    case kStyleKindFont: run.font = font; break;
    case kStyleKindColor: run.color = value; break;
    }
}

int32_t ValueOf(const StyleRunValue &run, StyleKind kind) {
    switch (kind) {
    case kStyleKindBold: return run.bold;
    case kStyleKindItalic: return run.italic;
    case kStyleKindUnderline: return run.underline;
    case kStyleKindSize: return run.size;
    case kStyleKindColor: return run.color;
    case kStyleKindFont: return 0;
    }
    return 0;
}

} // namespace

StyleStore::StyleStore() { mEntries.push_back(Entry{StyleRunValue{}, 0, 0}); }

void StyleStore::Restart(size_t from) {
    int32_t start = from == 0 ? 0 : mEntries[from - 1].start + mEntries[from - 1].length;
    for (size_t i = from; i < mEntries.size(); ++i) {
        mEntries[i].start = start;
        start += mEntries[i].length;
    }
}

void StyleStore::Normalise() {
    for (size_t i = 1; i < mEntries.size();) {
        if (mEntries[i].length == 0 && mEntries.size() > 1) {
            mEntries.erase(mEntries.begin() + static_cast<long>(i));
            continue;
        }
        if (mEntries[i - 1].run.SameStyle(mEntries[i].run) &&
            mEntries[i - 1].run.alignment == mEntries[i].run.alignment) {
            mEntries[i - 1].run.text += mEntries[i].run.text;
            mEntries[i - 1].length += mEntries[i].length;
            mEntries.erase(mEntries.begin() + static_cast<long>(i));
            continue;
        }
        ++i;
    }
    // An empty first run gives way to a following one.
    if (mEntries.size() > 1 && mEntries[0].length == 0)
        mEntries.erase(mEntries.begin());
    Restart(0);
}

void StyleStore::Locate(int32_t start, int32_t length, int32_t *first, int32_t *last) const {
    *first = 0, *last = -1;
    if (start < 0 || length < 0)
        return;
    int32_t f = -1, l = -1;
    const int32_t end = start + length;
    for (size_t i = 0; i < mEntries.size() && (f < 0 || l < 0); ++i) {
        const Entry &e = mEntries[i];
        if (f < 0 && start >= e.start && start <= e.start + e.length)
            f = static_cast<int32_t>(i);
        if (l < 0 && end >= e.start && end <= e.start + e.length)
            l = static_cast<int32_t>(i);
    }
    *first = f < 0 ? 0 : f;
    *last = l < 0 ? static_cast<int32_t>(mEntries.size()) - 1 : l;
}

void StyleStore::Split(size_t index, int32_t at) {
    Entry &e = mEntries[index];
    const size_t cut = ByteOffset(e.run.text, at);
    Entry tail{e.run, e.start + at, e.length - at};
    tail.run.text = e.run.text.substr(cut);
    e.run.text.resize(cut);
    e.length = at;
    mEntries.insert(mEntries.begin() + static_cast<long>(index) + 1, tail);
}

void StyleStore::SetAttribute(int32_t start, int32_t length, StyleKind kind, int32_t value,
                              const std::string &font) {
    Normalise();
    int32_t first, last;
    Locate(start, length, &first, &last);
    const int32_t end = start + length;
    for (int32_t i = first; i <= last && i < static_cast<int32_t>(mEntries.size()); ++i) {
        size_t index = static_cast<size_t>(i);
        if (HasValue(mEntries[index].run, kind, value, font))
            continue;
        // Only the characters inside the range change: a head before it
        // and a tail after it keep the old value.
        if (start > mEntries[index].start &&
            start < mEntries[index].start + mEntries[index].length) {
            Split(index, start - mEntries[index].start);
            ++index, ++i, ++last;
        }
        if (end > mEntries[index].start && end < mEntries[index].start + mEntries[index].length)
            Split(index, end - mEntries[index].start);
        const Entry &e = mEntries[index];
        if (e.start < end && e.start + e.length > start)
            Assign(mEntries[index].run, kind, value, font);
    }
}

int32_t StyleStore::GetAttribute(int32_t start, int32_t length, StyleKind kind, bool *mixed,
                                 std::string *font) {
    Normalise();
    int32_t first, last;
    Locate(start, length, &first, &last);
    if (last < first) {
        if (font)
            font->clear();
        return 0;
    }
    const StyleRunValue &head = mEntries[static_cast<size_t>(first)].run;
    bool differs = false;
    for (int32_t i = first + 1; i <= last && !differs; ++i) {
        const StyleRunValue &run = mEntries[static_cast<size_t>(i)].run;
        differs = kind == kStyleKindFont ? run.font != head.font
                                         : ValueOf(run, kind) != ValueOf(head, kind);
    }
    if (kind == kStyleKindFont) {
        if (font)
            *font = differs ? std::string() : head.font;
        return 0;
    }
    if (!differs) {
        if (mixed)
            *mixed = false;
        return ValueOf(head, kind);
    }
    return kind == kStyleKindSize || kind == kStyleKindColor ? -1 : ValueOf(head, kind);
}

int32_t StyleStore::RunCount() {
    Normalise();
    return static_cast<int32_t>(mEntries.size());
}

bool StyleStore::GetRun(int32_t index, StyleRunValue *run, int32_t *start) {
    Normalise();
    if (index < 0 || index >= static_cast<int32_t>(mEntries.size()))
        return false;
    *run = mEntries[static_cast<size_t>(index)].run;
    if (start)
        *start = mEntries[static_cast<size_t>(index)].start;
    return true;
}

bool StyleStore::InsertRun(const StyleRunValue &run, int32_t index) {
    if (index < 0 || index > static_cast<int32_t>(mEntries.size()))
        return false;
    mEntries.insert(mEntries.begin() + index, Entry{run, 0, CharCount(run.text)});
    Restart(static_cast<size_t>(index));
    return true;
}

void StyleStore::AppendRun(const StyleRunValue &run) {
    mEntries.push_back(Entry{run, 0, CharCount(run.text)});
    Restart(mEntries.size() - 1);
}

bool StyleStore::RemoveRun(int32_t index) {
    if (index < 0 || index >= static_cast<int32_t>(mEntries.size()))
        return false;
    mEntries.erase(mEntries.begin() + index);
    if (mEntries.empty())
        mEntries.push_back(Entry{StyleRunValue{}, 0, 0});
    Restart(
        static_cast<size_t>(std::min<int32_t>(index, static_cast<int32_t>(mEntries.size()) - 1)));
    return true;
}

// Alignment belongs to paragraphs: the runs of one are split off from its
// neighbours' so that setting it leaves the paragraphs around it alone, and
// it is read from the run that holds the paragraph's first character.
int32_t StyleStore::GetAlignment(int32_t start, int32_t) {
    Normalise();
    for (const Entry &e : mEntries)
        if (start >= e.start && start < e.start + e.length)
            return e.run.alignment;
    return mEntries.empty() ? 0 : mEntries.back().run.alignment;
}

void StyleStore::SetAlignment(int32_t start, int32_t length, int32_t align) {
    Normalise();
    if (start < 0 || length < 0)
        return;
    const int32_t end = start + length;
    for (size_t i = 0; i < mEntries.size(); ++i) {
        Entry &e = mEntries[i];
        if (start > e.start && start < e.start + e.length) {
            Split(i, start - e.start);
            continue; // the tail is the next entry
        }
        if (end > e.start && end < e.start + e.length)
            Split(i, end - e.start);
        const Entry &f = mEntries[i];
        if (f.start >= start && f.start + f.length <= end && (f.length > 0 || length == 0))
            mEntries[i].run.alignment = align;
    }
}

std::string StyleStore::Text() {
    std::string text;
    for (const Entry &e : mEntries)
        text += e.run.text;
    return text;
}

void StyleStore::SetText(const std::string &utf8) {
    mEntries.clear();
    StyleRunValue run;
    run.text = utf8;
    mEntries.push_back(Entry{run, 0, CharCount(utf8)});
}

} // namespace kelp
