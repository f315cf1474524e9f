// Converts times in seconds to frame numbers.
#pragma once

#include <boost/rational.hpp>
#include <optional>

#include "host/Kestova/Integers.h"

namespace loader {

/// Returns the frame number of `seconds` at `framesPerSecond`: their product plus 0.5, computed in
/// doubles in this order and truncated toward zero. Halves round up. Because the sum is truncated,
/// -0.7 frames is frame 0 and -1.6 frames is frame -1. Returns nothing when the sum is NaN or
/// outside the range of int64.
inline std::optional<Kestova::int64> frameNumber(double framesPerSecond, double seconds) {
  const double sum = framesPerSecond * seconds + 0.5;
  constexpr double kLimit = 0x1p63;  // the first double above the range
  if (!(sum >= -kLimit && sum < kLimit)) return std::nullopt;
  return static_cast<Kestova::int64>(sum);
}

/// Returns `editRate`, in frames per second, as one double.
inline double framesPerSecond(const boost::rational<unsigned int>& editRate) {
  return static_cast<double>(editRate.numerator()) / static_cast<double>(editRate.denominator());
}

}  // namespace loader
