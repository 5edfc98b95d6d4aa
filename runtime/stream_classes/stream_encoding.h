#pragma once
// The encoding word of a stream's text read when the program gave none.
#include <cstdint>

namespace kelp {

// An encoding argument left out or nil: a TextInputStream tags with its own
// Encoding, a BinaryStream with no known encoding.  Apart from every real
// word, as 0 is MacRoman.
constexpr uint32_t kEncodingNotGiven = 0xFFFFFFFFu;

} // namespace kelp
