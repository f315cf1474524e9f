// Tick marks of axes: round values (1, 2 or 5 times a power of ten; for times the steps of a clock)
// and their labels. Labels do not depend on the locale. Thread-safe.
#pragma once

#include <string>
#include <vector>

namespace formats {

struct Tick {
  double value;
  std::string label;
};

/// At most `maxCount` + 1 ticks within [`low`, `high`]. With `onlyWhole` all are whole numbers.
/// A range too narrow for the digits of a double has one tick. Requires: finite, `low` <= `high`,
/// `maxCount` > 0.
std::vector<Tick> numberTicks(double low, double high, int maxCount, bool onlyWhole = false);

/// Ticks of an axis in seconds, labelled 0:05, 1:02:03 or 0:00.25. Same conditions.
std::vector<Tick> timeTicks(double low, double high, int maxCount);

/// Ticks at 1, 2 and 5 times powers of ten within [`low`, `high`], or only at powers of ten where
/// those are more than `maxCount`. Requires: 0 < `low` <= `high`, finite.
std::vector<Tick> logarithmicTicks(double low, double high, int maxCount);

/// The greatest of 1, 2, 5 times a power of ten that is at most `limit`. Requires: `limit` > 0.
double roundBelow(double limit);

/// A number with up to `digits` significant digits and no trailing zeros: 0.25, 1920, 2e9.
std::string shortNumber(double number, int digits = 4);

/// A time for people: 1:02:03, 2:05, 0:05.25; fractions down to milliseconds where there are any.
std::string clockTime(double seconds);

}  // namespace formats
