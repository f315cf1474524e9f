// The sum of two doubles without rounding.
#pragma once

namespace series {

/// value + error is exact, and value the double nearest to it. Requires: no overflow.
struct ExactSum {
  double value = 0;
  double error = 0;
};

/// D. E. Knuth, "The Art of Computer Programming", volume 2, section 4.2.2, theorem B.
inline ExactSum exactSum(double left, double right) {
  const double value = left + right;
  const double shareOfRight = value - left;
  return {value, (left - (value - shareOfRight)) + (right - shareOfRight)};
}

}  // namespace series
