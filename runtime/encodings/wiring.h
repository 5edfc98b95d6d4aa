#pragma once
namespace kelp {
// The TextEncoding and TextConverter classes and the Encodings module.
void WireEncodings();
} // namespace kelp
