#pragma once
// The read-only mechanism over the bytes of a string, under a BinaryStream
// made on a string: the stream holds one reference to the text until it is
// closed, so the bytes can't change or vanish under it.
//
// Failure channel: writing answers false with the read-only code (100).
#include "streams/random_access_mechanism.h"
#include "strings/kstring.h"

namespace kelp {

class StringStorageMechanism : public FilePtr {
public:
    explicit StringStorageMechanism(const string &text)
        : FilePtr(text.CString(), text.Length()), mText(text) {}
    // Drops the string; the view is empty afterwards.
    bool Close() override;

private:
    string mText; // keeps the viewed bytes alive
};

} // namespace kelp
