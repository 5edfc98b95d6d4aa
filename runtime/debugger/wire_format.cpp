#include "debugger/wire_format.h"

namespace kelp::debugger {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";
constexpr char kLineEnd = '\r';

int DigitValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

} // namespace

std::string HexNumber(uint64_t value, int bytes) {
    std::string text(static_cast<size_t>(bytes) * 2, '0');
    for (size_t i = text.size(); i-- > 0; value >>= 4)
        text[i] = kDigits[value & 0xF];
    return text;
}

bool ParseHexNumber(std::string_view field, int bytes, uint64_t &value) {
    if (field.empty() || field.size() > static_cast<size_t>(bytes) * 2)
        return false;
    uint64_t v = 0;
    for (char c : field) {
        int d = DigitValue(c);
        if (d < 0)
            return false;
        v = (v << 4) | static_cast<uint64_t>(d);
    }
    value = v;
    return true;
}

std::string HexString(uint32_t encoding, std::string_view bytes) {
    std::string text = HexNumber(encoding, 4);
    text.reserve(text.size() + 1 + bytes.size() * 2);
    text += ':';
    for (unsigned char c : bytes) {
        text += kDigits[c >> 4];
        text += kDigits[c & 0xF];
    }
    return text;
}

bool ParseHexString(std::string_view field, uint32_t &encoding, std::string &bytes) {
    size_t colon = field.find(':');
    uint64_t word = 0;
    if (colon == std::string_view::npos || !ParseHexNumber(field.substr(0, colon), 4, word))
        return false;
    std::string_view digits = field.substr(colon + 1);
    if (digits.size() % 2 != 0)
        return false;
    std::string out;
    out.reserve(digits.size() / 2);
    for (size_t i = 0; i < digits.size(); i += 2) {
        int hi = DigitValue(digits[i]), lo = DigitValue(digits[i + 1]);
        if (hi < 0 || lo < 0)
            return false;
        out += static_cast<char>(hi << 4 | lo);
    }
    encoding = static_cast<uint32_t>(word);
    bytes = std::move(out);
    return true;
}

std::vector<std::string_view> SplitFields(std::string_view data) {
    std::vector<std::string_view> fields;
    size_t i = 0;
    while (i < data.size()) {
        if (data[i] == ' ') {
            ++i;
            continue;
        }
        size_t end = data.find(' ', i);
        if (end == std::string_view::npos)
            end = data.size();
        fields.push_back(data.substr(i, end - i));
        i = end;
    }
    return fields;
}

void LineSplitter::Feed(const char *bytes, size_t count) {
    // Drop what was handed out before growing, so the buffer stays bounded
    // by one line and one read.
    if (mStart > 0) {
        mBuffer.erase(0, mStart);
        mStart = 0;
    }
    mBuffer.append(bytes, count);
}

LineSplitter::Result LineSplitter::Next(std::string &command, std::string &data) {
    for (;;) {
        size_t end = mBuffer.find(kLineEnd, mStart);
        if (mDiscarding) {
            if (end == std::string::npos) {
                mBuffer.clear();
                mStart = 0;
                break;
            }
            mStart = end + 1;
            mDiscarding = false;
            return Result::kOverlong;
        }
        if (end == std::string::npos) {
            if (Pending() > kMaxLineBytes) {
                mDiscarding = true;
                continue;
            }
            break;
        }
        if (end - mStart > kMaxLineBytes) {
            mStart = end + 1;
            return Result::kOverlong;
        }
        std::string_view line(mBuffer.data() + mStart, end - mStart);
        mStart = end + 1;
        size_t blank = line.find(' ');
        command.assign(line.substr(0, blank));
        data.assign(blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1));
        return Result::kLine;
    }
    return Result::kNone;
}

} // namespace kelp::debugger
