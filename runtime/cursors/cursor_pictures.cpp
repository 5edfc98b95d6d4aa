// Each picture is drawn as text: '#' black, '.' white, ' ' see-through.
#include "cursors/cursor_pictures.h"

namespace kelp {
namespace {

struct Drawing {
    CursorKind kind;
    int hotRow, hotColumn;
    const char *rows[16];
};

const Drawing kDrawings[] = {
    {kCursorHandOpen,
     9,
     8,
     {"      ##        ", "   ## #..###    ", "  #..##..#..#   ", "  #..##..#..# # ",
      "   #..#..#..##.#", "   #..#..#..#..#", " ## #.......#..#", "#..##..........#",
      "#...#.........# ", " #............# ", "  #...........# ", "  #..........#  ",
      "   #.........#  ", "    #.......#   ", "     #......#   ", "     #......#   "}},
    {kCursorHandClosed,
     9,
     8,
     {"                ", "                ", "                ", "                ",
      "    ## ## ##    ", "   #..#..#..##  ", "   #.........#.#", "    #..........#",
      "   ##..........#", "  #............#", "  #...........# ", "   #..........# ",
      "    #.........# ", "     #.......#  ", "      #......#  ", "      #......#  "}},
    {kCursorArrowEastWest,
     7,
     7,
     {"                ", "                ", "                ", "                ",
      "    .      .    ", "   .#.    .#.   ", "  .##......##.  ", " .############. ",
      "  .##......##.  ", "   .#.    .#.   ", "    .      .    ", "                ",
      "                ", "                ", "                ", "                "}},
    {kCursorArrowNorthSouth,
     7,
     7,
     {"       .        ", "      .#.       ", "     .###.      ", "    .#####.     ",
      "      .#.       ", "      .#.       ", "      .#.       ", "      .#.       ",
      "      .#.       ", "      .#.       ", "      .#.       ", "    .#####.     ",
      "     .###.      ", "      .#.       ", "       .        ", "                "}},
    {kCursorArrowNortheastSouthwest,
     7,
     7,
     {"                ", "       ......   ", "        .####.  ", "         .###.  ",
      "        .####.  ", "       .###.#.  ", "      .###. .   ", "     .###.      ",
      "  . .###.       ", " .#.###.        ", " .####.         ", " .###.          ",
      " .####.         ", "  ......        ", "                ", "                "}},
    {kCursorArrowNorthwestSoutheast,
     7,
     7,
     {"                ", "  ......        ", " .####.         ", " .###.          ",
      " .####.         ", " .#.###.        ", "  . .###.       ", "     .###.      ",
      "      .###. .   ", "       .###.#.  ", "        .####.  ", "         .###.  ",
      "        .####.  ", "       ......   ", "                ", "                "}},
    {kCursorSplitterEastWest,
     8,
     8,
     {"      .##.      ", "      .##.      ", "      .##.      ", "      .##.      ",
      "      .##.      ", "   .  .##.  .   ", "  .#. .##. .#.  ", " .##...##...##. ",
      ".#############. ", " .##...##...##. ", "  .#. .##. .#.  ", "   .  .##.  .   ",
      "      .##.      ", "      .##.      ", "      .##.      ", "      .##.      "}},
    {kCursorSplitterNorthSouth,
     8,
     8,
     {"       .        ", "      .#.       ", "     .###.      ", "    .#####.     ",
      "      .#.       ", "................", "################", "################",
      "................", "      .#.       ", "    .#####.     ", "     .###.      ",
      "      .#.       ", "       .        ", "                ", "                "}},
    {kCursorFingerPointer,
     0,
     7,
     {"      ##        ", "     #..#       ", "     #..#       ", "     #..#       ",
      "     #..###     ", "     #..#..##   ", "  ## #..#..#.#  ", " #..##.......#  ",
      " #...#.......#  ", "  #..........#  ", "  #..........#  ", "   #.........#  ",
      "   #........#   ", "    #.......#   ", "    #.......#   ", "    #########   "}},
};

} // namespace

bool BuiltInCursorPicture(CursorKind kind, CursorPicture &out) {
    for (const Drawing &d : kDrawings) {
        if (d.kind != kind)
            continue;
        out = CursorPicture{};
        for (int row = 0; row < 16; ++row)
            for (int column = 0; column < 16 && d.rows[row][column]; ++column) {
                const char c = d.rows[row][column];
                const int byte = row * 2 + column / 8;
                const uint8_t bit = uint8_t(1u << (column % 8));
                if (c == '#')
                    out.image[byte] |= bit;
                if (c == '#' || c == '.')
                    out.mask[byte] |= bit;
            }
        out.hotRow = d.hotRow;
        out.hotColumn = d.hotColumn;
        return true;
    }
    return false;
}

} // namespace kelp
