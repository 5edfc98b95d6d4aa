// Fuzz entry for the debugger link's command parser.  Commands themselves
// are not run: memory commands write where the bytes say, which would
// only fuzz the fuzzer.  The session tests drive them with bad input.
#include "debugger_input.h"

#include "debugger/wire_format.h"

#include <cstdlib>
#include <string>

using namespace kelp::debugger;

namespace {

void Check(bool condition) {
    if (!condition)
        std::abort();
}

void ReadField(std::string_view field) {
    for (int bytes : {1, 2, 4, 8}) {
        uint64_t value = 0;
        if (ParseHexNumber(field, bytes, value)) {
            Check(field.size() <= size_t(bytes) * 2);
            uint64_t again = 0;
            Check(ParseHexNumber(HexNumber(value, bytes), bytes, again) && again == value);
        }
    }
    uint32_t encoding = 0;
    std::string text;
    if (ParseHexString(field, encoding, text)) {
        uint32_t encoding2 = 0;
        std::string text2;
        Check(ParseHexString(HexString(encoding, text), encoding2, text2));
        Check(encoding2 == encoding && text2 == text);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 1)
        return 0;
    // The first byte picks the read size, so lines are cut at every place.
    const size_t piece = 1 + data[0] % 64 * 97;
    LineSplitter splitter;
    std::string command, payload;
    for (size_t at = 1; at < size; at += piece) {
        const size_t n = size - at < piece ? size - at : piece;
        splitter.Feed(reinterpret_cast<const char *>(data + at), n);
        for (;;) {
            LineSplitter::Result r = splitter.Next(command, payload);
            if (r == LineSplitter::Result::kNone)
                break;
            if (r == LineSplitter::Result::kOverlong)
                continue;
            Check(command.find('\r') == std::string::npos &&
                  command.find(' ') == std::string::npos);
            Check(payload.find('\r') == std::string::npos);
            Check(command.size() + payload.size() <= kMaxLineBytes);
            for (std::string_view field : SplitFields(payload)) {
                Check(!field.empty() && field.find(' ') == std::string_view::npos);
                ReadField(field);
            }
        }
        Check(splitter.Pending() <= kMaxLineBytes + piece);
    }
    return 0;
}
