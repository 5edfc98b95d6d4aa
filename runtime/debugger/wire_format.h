#pragma once
// The debugger link's text protocol: one message per line ended by a
// carriage return, a command, a blank and the data.  Numbers are upper-case
// hexadecimal at the full width of the value (addresses 16 digits on this
// port); strings are the encoding word in 8 digits, ":" and the bytes in
// hexadecimal.  Everything here is pure text work, so the fuzzer drives it
// without a socket.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelp::debugger {

// The longest line the program accepts; a longer one is dropped whole.
// Room for a string of 32 KiB in an SS command.
constexpr size_t kMaxLineBytes = 64 * 1024;
constexpr int kAddressBytes = 8;

// value at `bytes` bytes: 2 * bytes digits, most significant first.
std::string HexNumber(uint64_t value, int bytes);
// A field of at most 2 * bytes hexadecimal digits (either case); a short one
// counts as padded with zeros on the left.  False for an empty field, a
// longer one or any other character.
bool ParseHexNumber(std::string_view field, int bytes, uint64_t &value);

std::string HexString(uint32_t encoding, std::string_view bytes);
// False unless the field is 1 to 8 digits, ":" and an even count of digits.
bool ParseHexString(std::string_view field, uint32_t &encoding, std::string &bytes);

// The data's fields, split at blanks (runs of blanks count as one).
std::vector<std::string_view> SplitFields(std::string_view data);

// Cuts the byte stream from the IDE into messages.  Bytes wait until their
// carriage return comes; a line longer than kMaxLineBytes is dropped up to
// and including its carriage return, so the buffer never holds much more
// than one line.
class LineSplitter {
public:
    enum class Result { kNone, kLine, kOverlong };
    void Feed(const char *bytes, size_t count);
    // The next whole message, split at its first blank into command and
    // data; kOverlong when the carriage return of a dropped line came.
    Result Next(std::string &command, std::string &data);
    size_t Pending() const { return mBuffer.size() - mStart; }

private:
    std::string mBuffer;      // bytes not yet handed out, from mStart
    size_t mStart = 0;        // first byte not yet consumed
    bool mDiscarding = false; // inside an overlong line
};

} // namespace kelp::debugger
