// A text that is on screen for a time.
#pragma once

#include <cstdint>
#include <string>

namespace formats {

/// A plain value. Times are in ticks of a CueClock, `end` is after `start`.
struct Cue {
  std::int64_t start = 0;
  std::int64_t end = 0;
  std::string text;  ///< plain, not escaped
};

}  // namespace formats
