#pragma once
namespace kelp {
// The string functions' library class (EndOfLine).
void WireStringFunctions();
} // namespace kelp
