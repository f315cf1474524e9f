#include "tools/recording/Cursors.h"

#include <algorithm>
#include <string_view>

#include "text/Png.h"

namespace recording {

namespace {

// Drawings of one character per pixel: '#' is black, '.' is white, ' ' is transparent, as is what
// lines of a drawing lack at their ends. Each begins after its first line break.

constexpr std::string_view kArrow = R"(
#
##
#.#
#..#
#...#
#....#
#.....#
#......#
#.......#
#........#
#.........#
#..........#
#......######
#...#..#
#..# #..#
#.#  #..#
##    #..#
#     #..#
       #..#
        ##
)";

constexpr std::string_view kBeam = R"(
 ####.####
#....#....#
 ###...###
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
    #.#
 ###...###
#....#....#
 ####.####
)";

constexpr std::string_view kHand = R"(
     ##
    #..#
    #..#
    #..#
    #..#
    #..###
    #..#..###
    #..#..#..##
    #..#..#..#.#
 ## #..#..#..#..#
#..##........#..#
#...#...........#
 #..............#
  #.............#
  #.............#
   #...........#
   #...........#
    #.........#
    #.........#
     #.......#
     #########
)";

Bytes pngOf(std::string_view drawing) {
  constexpr std::string_view kBlack("\x00\x00\x00\xFF", 4);
  constexpr std::string_view kWhite("\xFF\xFF\xFF\xFF", 4);
  constexpr std::string_view kTransparent("\x00\x00\x00\x00", 4);
  std::vector<std::string_view> lines;
  std::size_t width = 0;
  drawing.remove_prefix(1);
  while (!drawing.empty()) {
    lines.push_back(drawing.substr(0, drawing.find('\n')));
    width = std::max(width, lines.back().size());
    drawing.remove_prefix(lines.back().size() + 1);
  }
  Bytes pixels;
  for (const std::string_view line : lines) {
    for (std::size_t x = 0; x < width; ++x) {
      const char pixel = x < line.size() ? line[x] : ' ';
      pixels += pixel == '#' ? kBlack : pixel == '.' ? kWhite : kTransparent;
    }
  }
  return text::rgbaPng(
      {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(lines.size())}, pixels);
}

}  // namespace

const std::vector<Cursor>& sampleCursors() {
  static const std::vector<Cursor> cursors = {
      {pngOf(kArrow), 0, 0}, {pngOf(kBeam), 5, 9}, {pngOf(kHand), 5, 0}};
  return cursors;
}

}  // namespace recording
