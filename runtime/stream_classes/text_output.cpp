#include "stream_classes/text_output.h"

namespace kelp {

int32_t CloseMechanism(RandomAccessMechanism &mechanism) {
    mechanism.Close();
    return mechanism.LastError();
}

void TextOutput::Write(const string &text) {
    if (mMechanism && text.Length() > 0)
        mMechanism->Write(text.CString(), text.Length());
}

void TextOutput::WriteLine(const string &text) {
    if (!mMechanism)
        return;
    Write(text);
    string delimiter = mDelimiter.IsEmpty() ? string("\n") : mDelimiter;
    uint32_t lineEncoding = text.Encoding();
    if (!text.IsEmpty() && lineEncoding != kEncodingUnknown &&
        delimiter.Encoding() != kEncodingUnknown && delimiter.Encoding() != lineEncoding)
        delimiter = ConvertEncoding(delimiter, lineEncoding);
    Write(delimiter);
}

void TextOutput::Flush() {
    if (mMechanism)
        mMechanism->Flush();
}

void TextOutput::Close() {
    if (!mMechanism)
        return;
    mStoredError = CloseMechanism(*mMechanism);
    mMechanism.reset();
}

} // namespace kelp
