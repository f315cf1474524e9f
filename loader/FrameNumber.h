// Times in seconds on the frame grid of a project.
#pragma once

#include <boost/rational.hpp>
#include <optional>

#include "host/Kestova/Integers.h"

namespace loader {

/// The frame nearest to `seconds` at `framesPerSecond`, which is an edit rate's numerator /
/// denominator: their product + 0.5, in plain doubles and in this order, truncated toward zero.
/// Halves go up; a negative time is truncated after the 0.5, so that -0.7 frames is frame 0 and
/// -1.6 is -1. Nothing for NaN and for a sum outside the signed 64-bit numbers.
inline std::optional<Kestova::int64> frameNumber(double framesPerSecond, double seconds) {
  const double sum = framesPerSecond * seconds + 0.5;
  constexpr double kBeyond = 0x1p63;
  if (!(sum >= -kBeyond && sum < kBeyond)) return std::nullopt;
  return static_cast<Kestova::int64>(sum);
}

/// `editRate` as one double, for `frameNumber`.
inline double framesPerSecond(const boost::rational<unsigned int>& editRate) {
  return static_cast<double>(editRate.numerator()) / static_cast<double>(editRate.denominator());
}

}  // namespace loader
