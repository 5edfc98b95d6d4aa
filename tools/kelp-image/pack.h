#pragma once
// Packing: segments appended to a copy of the runtime.
#include "image/image_format.h"

#include <string>
#include <vector>

namespace kelp::tool {

// The usage text on standard error; returns the status for bad usage.
int Usage();

// "WAVE:3:file.wav": a resource record appended to the segment.  False after
// one line on standard error when the argument or the file is bad.
bool AddResourceArgument(const std::string &arg, std::vector<uint8_t> &segment);
// "65535:build/lib/libX.so": a "KPPl" record, the library's file name (its
// length in one byte first), then the library's bytes.
bool AddPluginArgument(const std::string &arg, std::vector<uint8_t> &segment);

// Writes out as a copy of runtime, without any image it carries, with the
// segments appended.  False after one line on standard error.
bool WriteAppendedTo(const std::string &runtime, const image::Segments &segments,
                     const std::string &out);

int Pack(int argc, char **argv);

} // namespace kelp::tool
