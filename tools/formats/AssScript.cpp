#include "tools/formats/AssScript.h"

#include <fmt/format.h>

#include <algorithm>

namespace formats {

namespace {

std::string clock(std::int64_t ticks) {
  const std::int64_t seconds = ticks / kAssTicksPerSecond;
  return fmt::format("{}:{:02}:{:02}.{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60,
                     ticks % kAssTicksPerSecond);
}

}  // namespace

std::string assHeader(const ScreenSize& screen) {
  // Colours are &HAABBGGRR; an alpha of FF is transparent. Border style 3 is a box.
  const int shorter = std::min(screen.width, screen.height);
  const int fontSize = std::max(shorter / 22, 8);
  return fmt::format(
      "[Script Info]\n"
      "ScriptType: v4.00+\n"
      "PlayResX: {width}\n"
      "PlayResY: {height}\n"
      "WrapStyle: 0\n"
      "ScaledBorderAndShadow: yes\n"
      "\n"
      "[V4+ Styles]\n"
      "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, "
      "BackColour, "
      "Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, "
      "Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\n"
      "Style: Keys,DejaVu Sans,{font},&H00FFFFFF,&H00FFFFFF,&H40101010,&H00000000,"
      "0,0,0,0,100,100,0,0,3,{box},0,2,{margin},{margin},{margin},1\n"
      "Style: Cursor,DejaVu Sans,{font},&H2000D7FF,&H00FFFFFF,&H40101010,&H00000000,"
      "0,0,0,0,100,100,0,0,1,2,0,5,0,0,0,1\n"
      "Style: Click,DejaVu Sans,{font},&H003030FF,&H00FFFFFF,&H40101010,&H00000000,"
      "0,0,0,0,100,100,0,0,1,2,0,5,0,0,0,1\n"
      "\n"
      "[Events]\n"
      "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n",
      fmt::arg("width", screen.width), fmt::arg("height", screen.height),
      fmt::arg("font", fontSize), fmt::arg("box", std::max(fontSize / 5, 1)),
      fmt::arg("margin", fontSize));
}

std::string assDialogue(const AssLine& line) {
  return fmt::format("Dialogue: {},{},{},{},,0,0,0,,{}\n", line.layer, clock(line.start),
                     clock(line.end), line.style, line.text);
}

}  // namespace formats
