#include "listbox/width_expressions.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace kelp::listbox {
namespace {

bool IsStar(const ColumnWidth &c) { return !c.expr[0].empty() && c.expr[0].back() == '*'; }

// A number as an expression shows it: no exponent, up to 7 decimals, no
// trailing zeros.
std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.7f", value);
    std::string s = text;
    s.erase(s.find_last_not_of('0') + 1);
    if (!s.empty() && s.back() == '.')
        s.pop_back();
    return s;
}

std::string_view Trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t'))
        s.remove_suffix(1);
    return s;
}

// One of a column's three figures in a content `width`, with `free` pixels
// not yet taken by the columns before and `left` columns still to place.
int32_t Pixels(const WidthExpr &e, int32_t width, int32_t free, size_t left) {
    switch (e.kind) {
    case WidthKind::Percent: return int32_t(double(width) * e.value / 100.0);
    case WidthKind::Fixed: return int32_t(e.value);
    case WidthKind::None: return left ? std::max(free, 0) / int32_t(left) : 0;
    case WidthKind::Star: return 0;
    }
    return 0;
}

WidthExpr Parsed(const std::string &text, WidthRole role) {
    WidthExpr e;
    std::string ignored;
    ParseWidth(text, role, &e, &ignored);
    return e;
}

} // namespace

bool ParseWidth(std::string_view text, WidthRole role, WidthExpr *out, std::string *error) {
    *out = WidthExpr{};
    if (text.empty())
        return true;
    const char last = text.back();
    std::string head(text);
    double value = std::strtod(head.c_str(), nullptr);
    if (!std::isfinite(value) || value < 0)
        value = 0;
    if (last == '%') {
        *out = {WidthKind::Percent, value};
    } else if (last == '*') {
        if (role != WidthRole::Width) {
            *error = std::string(role == WidthRole::Min ? "Min" : "Max") +
                     "WidthExpression doesn't support the Asterisk ('*') format.";
            return false;
        }
        *out = {WidthKind::Star, text.size() == 1 ? 1.0 : value};
    } else if (last >= '0' && last <= '9') {
        *out = {WidthKind::Fixed, value};
    } else {
        *error = "Unrecognized expression '" + std::string(text) + "'";
        return false;
    }
    return true;
}

bool SetExpression(ColumnWidth &column, WidthRole role, std::string_view text, std::string *error) {
    WidthExpr e;
    if (!ParseWidth(text, role, &e, error))
        return false;
    column.expr[int(role)] = std::string(text);
    column.dirty[int(role)] = false;
    return true;
}

void Layout(std::vector<ColumnWidth> &columns, int32_t width) {
    int32_t free = width;
    double stars = 0;
    for (size_t i = 0; i < columns.size(); ++i) {
        ColumnWidth &c = columns[i];
        const size_t left = columns.size() - i;
        WidthExpr w = Parsed(c.expr[0], WidthRole::Width);
        WidthExpr lo = Parsed(c.expr[1], WidthRole::Min);
        WidthExpr hi = Parsed(c.expr[2], WidthRole::Max);
        // A width the user dragged stays until the expression is set again.
        if (!c.dirty[0])
            c.actual = Pixels(w, width, free, left);
        // An empty minimum or maximum sets no bound, as no expression should.
        c.actualMin = lo.kind == WidthKind::None ? 0 : Pixels(lo, width, free, left);
        c.actualMax = hi.kind == WidthKind::None ? -1 : Pixels(hi, width, free, left);
        if (c.actualMax < 0)
            c.actualMax = -1;
        if (w.kind == WidthKind::Star)
            stars += w.value;
        free -= c.actual;
    }
    if (stars > 0) {
        const double unit = std::max(free, 0) / stars;
        size_t lastStar = 0;
        for (size_t i = 0; i < columns.size(); ++i)
            if (Parsed(columns[i].expr[0], WidthRole::Width).kind == WidthKind::Star)
                lastStar = i;
        for (size_t i = 0; i < columns.size(); ++i) {
            WidthExpr w = Parsed(columns[i].expr[0], WidthRole::Width);
            if (w.kind != WidthKind::Star)
                continue;
            int32_t share = int32_t(unit * w.value);
            columns[i].nominal = share;
            columns[i].actual = i == lastStar ? std::max(free, 0) : share;
            free -= share;
        }
    }
    for (ColumnWidth &c : columns) {
        if (c.actualMax >= 0 && c.actual > c.actualMax)
            c.actual = c.actualMax;
        c.actual = std::max(c.actual, c.actualMin);
    }
}

std::string ExpressionText(const ColumnWidth &column, WidthRole role, int32_t width) {
    const std::string &text = column.expr[int(role)];
    if (!column.dirty[int(role)])
        return text;
    const int32_t pixels = role == WidthRole::Width ? column.actual
                           : role == WidthRole::Min ? column.actualMin
                                                    : column.actualMax;
    if (!text.empty() && text.back() == '%' && width > 0)
        return Number(double(pixels) * 100.0 / width) + "%";
    return Number(pixels);
}

bool SetActualWidth(std::vector<ColumnWidth> &columns, size_t index, int32_t pixels) {
    if (index >= columns.size())
        return false;
    pixels = std::max(pixels, 0);
    const bool anyStar = std::any_of(columns.begin(), columns.end(), IsStar);
    ColumnWidth &c = columns[index];
    if (!anyStar) {
        c.actual = pixels;
        c.dirty[0] = true;
        return true;
    }
    if (index + 1 == columns.size())
        return false;
    ColumnWidth &next = columns[index + 1];
    const int32_t change = c.actual - pixels;
    c.actual = pixels;
    next.actual += change;
    if (index + 2 == columns.size())
        next.nominal += change;
    for (ColumnWidth *d : {&c, &next})
        if (!IsStar(*d))
            d->dirty[0] = true;
    if (!IsStar(c) && !IsStar(next))
        return true;
    // Star weights are rewritten in proportion to the smallest star column.
    int32_t unit = 0;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (!IsStar(columns[i]))
            continue;
        int32_t w = i + 1 == columns.size() ? columns[i].nominal : columns[i].actual;
        if (w > 0 && (unit == 0 || w < unit))
            unit = w;
    }
    unit = unit ? unit : 1;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (!IsStar(columns[i]))
            continue;
        int32_t w = i + 1 == columns.size() ? columns[i].nominal : columns[i].actual;
        columns[i].expr[0] = Number(double(w) / unit) + "*";
    }
    return true;
}

bool SetColumnWidths(std::vector<ColumnWidth> &columns, std::string_view text, std::string *error) {
    std::vector<std::string> pieces;
    while (true) {
        size_t comma = text.find(',');
        pieces.emplace_back(Trim(text.substr(0, comma)));
        if (comma == std::string_view::npos)
            break;
        text.remove_prefix(comma + 1);
    }
    std::vector<ColumnWidth> next = columns;
    for (size_t i = 0; i < next.size(); ++i) {
        std::string piece = i < pieces.size() && !pieces[i].empty() ? pieces[i] : "1*";
        if (!SetExpression(next[i], WidthRole::Width, piece, error))
            return false;
    }
    columns = std::move(next);
    return true;
}

std::string ColumnWidthsText(const std::vector<ColumnWidth> &columns, int32_t width) {
    std::string text;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (i)
            text += ", ";
        text += ExpressionText(columns[i], WidthRole::Width, width);
    }
    return text;
}

} // namespace kelp::listbox
