// Exact arithmetic of fractions, wide enough that no intermediate result is cut.
#pragma once

#include "host/Kestova/Export.h"
#include "host/Kestova/Integers.h"

namespace Kestova {

/// A reduced fraction; the denominator is positive.
struct Ratio {
  int64 numerator;
  int64 denominator;
};

/// The reduced form of `numerator` / `denominator`. Throws boost::bad_rational for a zero
/// denominator and std::overflow_error when the reduced form does not fit.
KESTOVA_API Ratio reduced(int128 numerator, int128 denominator);

/// The sign of a * b - c * d, by all 192 bits: -1, 0 or 1. Requires: no factor is the lowest
/// 128-bit number.
KESTOVA_API int compareProducts(int128 a, int64 b, int128 c, int64 d);

/// `later` - `earlier` as a fraction that may not be reduced: no overflow, whatever the operands.
struct WideRatio {
  int128 numerator;
  int128 denominator;  ///< positive
};
inline WideRatio difference(const Ratio& later, const Ratio& earlier) {
  return {
      int128{later.numerator} * earlier.denominator - int128{earlier.numerator} * later.denominator,
      int128{later.denominator} * earlier.denominator};
}

}  // namespace Kestova
