// Tools the project did not write, as oracles: Python's codecs and the C
// library's iconv program.
#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace enctest {

// What a command writes to its standard output.
inline std::string RunCommand(const std::string &command) {
    std::string out;
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe)
        return out;
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
        out.append(buffer, n);
    pclose(pipe);
    return out;
}

inline std::string FromHex(const std::string &hex) {
    std::string bytes;
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return bytes;
}

inline std::string ToHex(const std::string &bytes) {
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    for (unsigned char c : bytes) {
        hex.push_back(digits[c >> 4]);
        hex.push_back(digits[c & 15]);
    }
    return hex;
}

// The bytes converted by the iconv program; `-c` leaves out what it can't.
inline std::string IconvTool(const std::string &bytes, const char *from, const char *to,
                             bool omitInvalid = false) {
    char path[] = "/tmp/kelp-iconv-XXXXXX";
    int fd = mkstemp(path);
    if (fd < 0)
        return "";
    FILE *f = fdopen(fd, "wb");
    fwrite(bytes.data(), 1, bytes.size(), f);
    fclose(f);
    std::string out = RunCommand(std::string(omitInvalid ? "iconv -c -f " : "iconv -f ") + from +
                                 " -t " + to + " " + path);
    remove(path);
    return out;
}

} // namespace enctest
