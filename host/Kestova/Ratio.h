// A fraction of 64-bit numbers. Private to the library: no other header includes it.
#pragma once

#include "host/Kestova/Integers.h"

namespace Kestova {

/// A reduced fraction. The denominator is positive.
struct Ratio {
  int64 numerator;
  int64 denominator;
};

/// Returns the reduced form of `numerator` / `denominator`. Throws boost::bad_rational for a zero
/// denominator and std::overflow_error if the reduced form does not fit.
Ratio reduced(int128 numerator, int128 denominator);

}  // namespace Kestova
