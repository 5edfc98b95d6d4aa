#pragma once
// The input mask of an edit field: which characters each position takes,
// and the literal characters the field shows before the next input.
#include <string>
#include <string_view>

namespace kelp {

enum class MaskResult {
    kAccepted,    // every input character found its place
    kRejected,    // the walk stopped at a character the mask refused
    kInvalidMask, // the mask holds the reserved "~"
};

struct MaskOutcome {
    MaskResult result = MaskResult::kAccepted;
    std::string text; // what was accepted, UTF-8
    std::string tail; // literals due next, after a full acceptance
};

// Walks `input` against `mask`, both UTF-8, character by character.  Bytes
// that are not UTF-8 count as one character each, so damaged text is
// refused rather than read past.  This function can't fail otherwise.
MaskOutcome ApplyMask(std::string_view input, std::string_view mask);

// The message raised for a mask holding "~".
extern const char *const kInvalidMaskMessage;

} // namespace kelp
