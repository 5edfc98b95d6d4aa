#pragma once
// A text held as a list of style runs, for a StyledText with no field
// behind it.  Every entry's start is the sum of the lengths before it;
// reads first tidy the list, dropping empty runs and merging neighbours of
// equal style, so that a run split by a style change and changed back is
// one run again.
#include "edit_fields/style_delegate.h"

#include <vector>

namespace kelp {

class StyleStore : public StyledTextDelegate {
public:
    StyleStore();

    void SetAttribute(int32_t start, int32_t length, StyleKind kind, int32_t value,
                      const std::string &font) override;
    int32_t GetAttribute(int32_t start, int32_t length, StyleKind kind, bool *mixed,
                         std::string *font) override;
    int32_t RunCount() override;
    bool GetRun(int32_t index, StyleRunValue *run, int32_t *start) override;
    bool InsertRun(const StyleRunValue &run, int32_t index) override;
    void AppendRun(const StyleRunValue &run) override;
    bool RemoveRun(int32_t index) override;
    int32_t GetAlignment(int32_t start, int32_t length) override;
    void SetAlignment(int32_t start, int32_t length, int32_t align) override;
    std::string Text() override;
    void SetText(const std::string &utf8) override;

private:
    struct Entry {
        StyleRunValue run;
        int32_t start;  // characters before this run
        int32_t length; // characters of run.text
    };
    void Normalise();
    void Restart(size_t from);
    // The entries holding `start` and `start + length`; a position on a
    // boundary counts for the earlier entry.  Negative arguments give an
    // empty span (first 0, last -1).
    void Locate(int32_t start, int32_t length, int32_t *first, int32_t *last) const;
    // Cuts entry `index` so that a new entry begins at character `at` of it.
    void Split(size_t index, int32_t at);

    std::vector<Entry> mEntries;
};

} // namespace kelp
