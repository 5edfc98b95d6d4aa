#pragma once
// Column widths of a list: the expressions a program gives ("120", "25%",
// "*", "2*"), the pixels they come to in a given content width, and the
// way back from pixels to an expression after the user drags a column edge.
// Pure arithmetic, no toolkit: the pane runs Layout on each size change.
//
// Failure channel: a refused expression returns false with the message the
// caller raises as UnsupportedFormatException; nothing changes then.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelp::listbox {

enum class WidthKind : uint8_t { None, Percent, Star, Fixed };

// Which of a column's three expressions is meant; a star is a width only.
enum class WidthRole : uint8_t { Width, Min, Max };

struct WidthExpr {
    WidthKind kind = WidthKind::None;
    double value = 0; // percent, weight or pixels; never negative
};

// Classifies `text` by its last character.  False, with `error` set to the
// message, for an expression that isn't one.
bool ParseWidth(std::string_view text, WidthRole role, WidthExpr *out, std::string *error);

struct ColumnWidth {
    std::string expr[3];                   // width, minimum, maximum as set
    int32_t actual = 0, actualMin = 0;     // pixels
    int32_t actualMax = -1;                // -1: no maximum
    int32_t nominal = 0;                   // last star column before clamping
    bool dirty[3] = {false, false, false}; // read back from the pixels
    bool resizable = true;                 // the user may drag its edge
};

// Sets expression `role` of a column after parsing it; false with `error`.
bool SetExpression(ColumnWidth &column, WidthRole role, std::string_view text, std::string *error);

// Pixels for every column in a content `width`.
void Layout(std::vector<ColumnWidth> &columns, int32_t width);

// The expression as the program reads it back: one the user changed by
// dragging is rebuilt from the pixels in its own kind.
std::string ExpressionText(const ColumnWidth &column, WidthRole role, int32_t width);

// A width set by dragging an edge or by WidthActual.  False when the
// column can't take it (the last column of a list with star columns).
bool SetActualWidth(std::vector<ColumnWidth> &columns, size_t index, int32_t pixels);

// ColumnWidths: pieces split on commas go to the columns in order, blanks
// trimmed; an empty piece and the columns left over get "1*".  False with
// `error` when a piece is refused; then no column changes.
bool SetColumnWidths(std::vector<ColumnWidth> &columns, std::string_view text, std::string *error);
std::string ColumnWidthsText(const std::vector<ColumnWidth> &columns, int32_t width);

} // namespace kelp::listbox
