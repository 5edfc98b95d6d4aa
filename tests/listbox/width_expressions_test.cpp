// Column width expressions: what they come to in pixels, what they read
// back as after a drag, and the messages of the ones refused.
#include "listbox/width_expressions.h"

#include <gtest/gtest.h>

namespace kelp::listbox {
namespace {

std::vector<ColumnWidth> Columns(size_t count, const char *widths, int32_t width) {
    std::vector<ColumnWidth> columns(count);
    std::string error;
    EXPECT_TRUE(SetColumnWidths(columns, widths, &error)) << error;
    Layout(columns, width);
    return columns;
}

std::vector<int32_t> Pixels(const std::vector<ColumnWidth> &columns) {
    std::vector<int32_t> pixels;
    for (const ColumnWidth &c : columns)
        pixels.push_back(c.actual);
    return pixels;
}

TEST(WidthExpressions, ColumnWidthsComeToPixels) {
    struct Case {
        size_t columns;
        const char *widths;
        int32_t width;
        std::vector<int32_t> pixels;
        const char *readBack;
    } cases[] = {
        {2, "50%,*", 200, {100, 100}, "50%, *"},
        {3, "10,20", 200, {10, 20, 170}, "10, 20, 1*"},
        {2, "*, 2*", 300, {100, 200}, "*, 2*"},
        {3, "*,*,*", 100, {33, 33, 34}, "*, *, *"}, // the last star takes what is left
        {3, "25%, 100, *", 400, {100, 100, 200}, "25%, 100, *"},
        {2, " , 40 ", 100, {60, 40}, "1*, 40"},
        {2, "-5, *", 100, {0, 100}, "-5, *"},   // a negative number counts as 0
        {2, "300, *", 200, {300, 0}, "300, *"}, // nothing left for the star
    };
    for (const Case &c : cases) {
        std::vector<ColumnWidth> columns = Columns(c.columns, c.widths, c.width);
        EXPECT_EQ(Pixels(columns), c.pixels) << c.widths;
        EXPECT_EQ(ColumnWidthsText(columns, c.width), c.readBack) << c.widths;
    }
}

TEST(WidthExpressions, RefusedExpressionsSayWhyAndChangeNothing) {
    struct Case {
        const char *text;
        WidthRole role;
        const char *message;
    } cases[] = {
        {"abc", WidthRole::Width, "Unrecognized expression 'abc'"},
        {"12px", WidthRole::Width, "Unrecognized expression '12px'"},
        {"*", WidthRole::Min, "MinWidthExpression doesn't support the Asterisk ('*') format."},
        {"2*", WidthRole::Max, "MaxWidthExpression doesn't support the Asterisk ('*') format."},
    };
    for (const Case &c : cases) {
        ColumnWidth column;
        column.expr[0] = "50";
        std::string error;
        EXPECT_FALSE(SetExpression(column, c.role, c.text, &error)) << c.text;
        EXPECT_EQ(error, c.message);
        EXPECT_EQ(column.expr[0], "50");
    }
    std::vector<ColumnWidth> columns = Columns(2, "10, 20", 100);
    std::string error;
    EXPECT_FALSE(SetColumnWidths(columns, "30, x", &error));
    EXPECT_EQ(ColumnWidthsText(columns, 100), "10, 20") << "a refused list keeps the old one";
}

TEST(WidthExpressions, MinimumAndMaximumBoundAColumn) {
    std::vector<ColumnWidth> columns = Columns(2, "*, 10%", 400);
    std::string error;
    ASSERT_TRUE(SetExpression(columns[0], WidthRole::Max, "50", &error));
    ASSERT_TRUE(SetExpression(columns[1], WidthRole::Min, "25%", &error));
    Layout(columns, 400);
    EXPECT_EQ(Pixels(columns), (std::vector<int32_t>{50, 100}));
    EXPECT_EQ(columns[0].actualMax, 50);
    EXPECT_EQ(columns[1].actualMax, -1) << "no maximum";
}

TEST(WidthExpressions, ADraggedWidthReadsBackInItsOwnKind) {
    struct Case {
        const char *widths;
        size_t column;
        int32_t pixels;
        bool taken;
        std::vector<int32_t> after;
        const char *readBack;
    } cases[] = {
        {"100, 100", 0, 60, true, {60, 100}, "60, 100"},
        {"50%, 50%", 1, 50, true, {100, 50}, "50%, 25%"},
        {"*, *", 0, 50, true, {50, 150}, "1*, 3*"},
        {"80, *", 0, 40, true, {40, 160}, "40, 1*"},
        {"*, *", 1, 50, false, {100, 100}, "*, *"}, // the last column of a starred list
    };
    for (const Case &c : cases) {
        std::vector<ColumnWidth> columns = Columns(2, c.widths, 200);
        EXPECT_EQ(SetActualWidth(columns, c.column, c.pixels), c.taken) << c.widths;
        EXPECT_EQ(Pixels(columns), c.after) << c.widths;
        EXPECT_EQ(ColumnWidthsText(columns, 200), c.readBack) << c.widths;
        Layout(columns, 200);
        EXPECT_EQ(Pixels(columns), c.after) << c.widths << ": a new layout keeps the drag";
    }
}

} // namespace
} // namespace kelp::listbox
