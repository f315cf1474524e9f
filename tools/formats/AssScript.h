// Advanced SubStation Alpha scripts (version v4.00+), as libass and ffmpeg read them. Every
// function may be called from any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/formats/ScreenSize.h"

namespace formats {

/// Ticks of an AssLine per second.
constexpr int kAssTicksPerSecond = 100;

struct AssLine {
  int layer = 0;           ///< higher layers cover lower ones
  std::int64_t start = 0;  ///< in ticks, from 0 to before 100 hours, as `end`
  std::int64_t end = 0;
  std::string_view style;  ///< one of `assHeader`
  std::string_view text;   ///< with its overrides; plain text escaped by assText
};

/// What comes before the lines. Positions are pixels of `screen`; a player scales them to the
/// video. Has the styles "Keys", text in a box at the foot, "Cursor" and "Click", drawings that are
/// centred on their position.
std::string assHeader(const ScreenSize& screen);

std::string assDialogue(const AssLine& line);

}  // namespace formats
