#include "tools/formats/CursorMarks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

namespace formats {

namespace {

struct Button {
  double seconds;
  int down;
};

struct Position {
  double seconds;
  int x;
  int y;
};

struct MarkCase {
  const char* name;
  std::vector<Position> positions;
  std::vector<std::string> lines;  // start, end, style and place
  std::vector<Button> buttons = {};
};

void PrintTo(const MarkCase& c, std::ostream* out) {
  *out << c.name;
}

// "0.00-0.50 Cursor 1.5,2.5" for a line of 0.5 s.
std::string shownLine(const std::string& line) {
  static const std::regex form(
      R"(Dialogue: 1,0:00:0(.*),0:00:0(.*),(C\w+),,0,0,0,,\{\\pos\((.*)\)\\p4\}m [-mb0-9 ]+\n)");
  return std::regex_replace(line, form, "$1-$2 $3 $4");
}

class Marks : public testing::TestWithParam<MarkCase> {};

TEST_P(Marks, Are) {
  const MarkCase& c = GetParam();
  std::vector<std::string> lines;
  CursorMarks marks({640, 480}, CueClock(100, {10, 1}), [&lines](std::string_view line) {
    lines.push_back(shownLine(std::string(line)));
  });
  for (const Button& button : c.buttons) marks.addButtons(button.seconds, button.down);
  for (const Position& p : c.positions) {
    marks.add(p.seconds, ZRKMetaData::Point(p.x, p.y));
  }
  marks.finish(500);
  EXPECT_EQ(lines, c.lines);
}

INSTANTIATE_TEST_SUITE_P(
    Cursor, Marks,
    testing::Values(
        MarkCase{"NoneWithoutPositions", {}, {}, {{1, 1}}},
        MarkCase{"HoldFromTheBeginningToTheEnd",
                 {{1, 10, 20}, {2, -3, 0}},
                 {"0.00-2.00 Cursor 10.5,20.5", "2.00-5.00 Cursor -2.5,0.5"}},
        MarkCase{"AreOneLineWhileNothingMoves",
                 {{0, 1, 1}, {1, 1, 1}, {2, 2, 1}, {3, 2, 1}},
                 {"0.00-2.00 Cursor 1.5,1.5", "2.00-5.00 Cursor 2.5,1.5"}},
        MarkCase{"ShowTheLastRecordOfAFrame",
                 {{0, 1, 1}, {0.96, 2, 2}, {1.04, 3, 3}},
                 {"0.00-1.00 Cursor 1.5,1.5", "1.00-5.00 Cursor 3.5,3.5"}},
        MarkCase{"TakeWhatHoldsAtTheBeginning",
                 {{-2, 1, 1}, {-1, 2, 2}, {1, 3, 3}},
                 {"0.00-1.00 Cursor 2.5,2.5", "1.00-5.00 Cursor 3.5,3.5"}},
        MarkCase{"LeaveOutFallingAndImpossibleTimes",
                 {{0, 1, 1}, {2, 2, 2}, {1, 3, 3}, {NAN, 4, 4}, {INFINITY, 5, 5}, {1e9, 6, 6}},
                 {"0.00-2.00 Cursor 1.5,1.5", "2.00-5.00 Cursor 2.5,2.5"}},
        MarkCase{"AreNotDrawnBesideTheScreen",
                 {{0, INT32_MIN, 0}, {1, 0, INT32_MAX}, {2, 645, 0}, {3, 700, 0}},
                 {"2.00-3.00 Cursor 645.5,0.5"}},
        MarkCase{"AreRingsWhileAButtonIsDown",
                 {{0, 1, 1}, {2, 2, 2}},
                 {"0.00-1.00 Cursor 1.5,1.5", "1.00-2.00 Click 1.5,1.5", "2.00-3.00 Click 2.5,2.5",
                  "3.00-5.00 Cursor 2.5,2.5"},
                 {{1, 1}, {2.5, 3}, {3, 0}, {4, 0}}},
        MarkCase{
            "ShowTheShortestClick",
            {{0, 1, 1}},
            {"0.00-1.00 Cursor 1.5,1.5", "1.00-1.15 Click 1.5,1.5", "1.15-5.00 Cursor 1.5,1.5"},
            {{1, 1}, {1, 0}}},
        MarkCase{
            "MergeClicksThatFollowAtOnce",
            {{0, 1, 1}},
            {"0.00-1.00 Cursor 1.5,1.5", "1.00-2.00 Click 1.5,1.5", "2.00-5.00 Cursor 1.5,1.5"},
            {{1, 1}, {1, 0}, {1.1, 1}, {2, 0}}},
        MarkCase{"AreRingsToTheEndWhenAButtonStaysDown",
                 {{0, 1, 1}},
                 {"0.00-1.00 Cursor 1.5,1.5", "1.00-5.00 Click 1.5,1.5"},
                 {{1, 1}}}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace

}  // namespace formats
