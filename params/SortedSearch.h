// Finds a time among sorted times.
#pragma once

#include <cstddef>

#include "host/Kestova/RationalTime.h"

namespace Kestova {

/// Returns the index of the first of `count` rising times that is not before `time`, or `count`.
///
/// The result of a comparison is a number and not a branch: the processor would guess every second
/// branch of a search at random wrong, which costs more than the comparison.
inline std::size_t lowerBoundIndex(const RationalTime* times, std::size_t count,
                                   const RationalTime& time) {
  const RationalTime* first = times;
  while (count > 1) {
    const std::size_t half = count / 2;
    first += static_cast<std::size_t>(first[half - 1] < time) * half;
    count -= half;
  }
  const bool isAfterLast = count == 1 && *first < time;
  return static_cast<std::size_t>(first - times) + static_cast<std::size_t>(isAfterLast);
}

}  // namespace Kestova
