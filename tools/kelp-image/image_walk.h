#pragma once
// Reading back what the linker wrote, for info and check.
#include "image/image_format.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kelp::tool {

// Reads an image from a folder of loose files, a program with an image
// appended, or an image file alone.  False with error.
bool ReadAnyImage(const std::string &path, image::Segments &out, std::string &error);

// The holes of a chain, stopping at the code's end or at a hole seen before
// (then damaged is set).
size_t CountHoles(const std::vector<uint8_t> &code, uint32_t head, size_t width, bool &damaged);

// The text of the string constant whose data offset the word at codeOffset
// holds; false when the word or the constant is out of place or damaged.
bool ConstantText(const image::Segments &s, uint32_t codeOffset, std::string &text,
                  uint64_t &dataOffset);

} // namespace kelp::tool
