// Exact comparisons of sums and products of times. They never overflow and never throw.
#pragma once

#include "host/Kestova/RationalTime.h"
#include "host/Kestova/SafeRational.h"

namespace Kestova {

namespace detail {
int compareAnyWithDifference(const RationalTime& time, const RationalTime& later,
                             const RationalTime& earlier);
}  // namespace detail

/// Returns the sign of `time` - (`later` - `earlier`): -1, 0 or 1.
inline int compareWithDifference(const RationalTime& time, const RationalTime& later,
                                 const RationalTime& earlier) {
  int64 sum = 0;
  const bool areWhole =
      time.denominator() == 1 && later.denominator() == 1 && earlier.denominator() == 1;
  if (areWhole && !__builtin_add_overflow(time.numerator(), earlier.numerator(), &sum)) {
    return (sum > later.numerator()) - (sum < later.numerator());  // the path of frame numbers
  }
  return detail::compareAnyWithDifference(time, later, earlier);
}

/// Returns true if (`later` - `earlier`) * `rate` is below 1. `rate` is in frames per unit of the
/// times.
bool isLessThanOneFrame(const RationalTime& earlier, const RationalTime& later,
                        const SafeRational& rate);

}  // namespace Kestova
