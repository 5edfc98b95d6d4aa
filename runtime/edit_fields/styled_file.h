#pragma once
// Styled text as a file: Rich Text, the text form of styled text that word
// processors everywhere read and write.  A field's runs (bold, italic,
// underline, font, size, colour) are written as RTF groups and read back;
// RTF from elsewhere is read as far as those run attributes go, and what
// else it holds (pictures, style sheets, fields) is passed over.
//
// Failure channel: none.  The reader takes any bytes: damage ends a group
// early or is read as text, never more than the input is walked.
#include "edit_fields/style_delegate.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelp {

// True when the bytes begin as an RTF file does ("{\rtf").
bool IsRichText(std::string_view bytes);
// The runs as an RTF document; text is UTF-8 with "\n" between lines.
std::string RunsToRichText(const std::vector<StyleRunValue> &runs);
// The runs of an RTF document, neighbours of one style merged; text UTF-8
// with "\n" between lines.
std::vector<StyleRunValue> RunsFromRichText(std::string_view rtf);

} // namespace kelp
