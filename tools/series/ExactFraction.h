// Exact fractions of 64-bit numbers. Plain values; every function may be called from any thread.
#pragma once

#include <optional>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace series {

__extension__ using int128 = __int128;

/// A reduced fraction with a positive denominator.
struct ExactFraction {
  ZRKMetaData::int64 numerator = 0;
  ZRKMetaData::int64 denominator = 1;
};

/// Returns `numerator` / `denominator` reduced; nothing when the reduced form does not fit. -2^63
/// does not fit, so that each numerator has a negative. Requires: `denominator` is positive.
std::optional<ExactFraction> reducedFraction(int128 numerator, int128 denominator);

}  // namespace series
