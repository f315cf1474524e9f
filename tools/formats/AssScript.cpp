#include "tools/formats/AssScript.h"

#include <fmt/format.h>

#include <algorithm>

#include "text/NumberText.h"

namespace formats {

namespace {

void appendTwoDigits(std::string& out, std::int64_t number) {
  out += static_cast<char>('0' + number / 10);
  out += static_cast<char>('0' + number % 10);
}

void appendClock(std::string& out, std::int64_t ticks) {
  const std::int64_t seconds = ticks / kAssTicksPerSecond;
  out += std::string_view(text::NumberText(seconds / 3600));
  out += ':';
  appendTwoDigits(out, seconds / 60 % 60);
  out += ':';
  appendTwoDigits(out, seconds % 60);
  out += '.';
  appendTwoDigits(out, ticks % kAssTicksPerSecond);
  out += ',';
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

// Without fmt, which would take most of the time of an overlay.
std::string assDialogue(const AssLine& line) {
  constexpr std::size_t kMaxFixedBytes = 100;
  std::string out;
  out.reserve(line.text.size() + kMaxFixedBytes);
  out += "Dialogue: ";
  out += std::string_view(text::NumberText(line.layer));
  out += ',';
  appendClock(out, line.start);
  appendClock(out, line.end);
  out += line.style;
  out += ",,0,0,0,,";
  out += line.text;
  out += '\n';
  return out;
}

}  // namespace formats
