// The scale between the time in a cell and its colour.
#pragma once

#include <vector>

#include "tools/formats/HeatGrid.h"
#include "tools/formats/Ticks.h"

namespace formats {

/// Logarithmic where times differ by more than a factor of 20, since rests are far longer than
/// passages; else linear from 0. Immutable.
class HeatScale {
 public:
  static constexpr int kLevels = 200;  ///< colours that are told apart

  explicit HeatScale(const HeatGrid& grid);

  /// Whether there is any time to show; without it nothing else may be asked.
  bool isEmpty() const { return m_high <= 0; }

  bool isLogarithmic() const { return m_isLogarithmic; }

  /// 0 to 1. Requires: `seconds` is above 0.
  double shareOf(double seconds) const;

  /// 0 to kLevels - 1. Requires: `seconds` is above 0.
  int levelOf(double seconds) const;

  /// In seconds, from low to high.
  std::vector<Tick> ticks(int maxCount) const;

  static double shareOfLevel(int level) { return (level + 0.5) / kLevels; }

 private:
  double m_low;   // seconds at 0
  double m_high;  // seconds at 1
  bool m_isLogarithmic;
};

}  // namespace formats
