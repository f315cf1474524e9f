// Searches among rising values.
#pragma once

#include <cstddef>

namespace Kestova {

/// Returns the index of the first of `count` rising values that is not below `value`, or `count`.
///
/// The result of a comparison is a number and not a branch, because about half of the branches of a
/// search are mispredicted. Where the values are not in the cache, std::lower_bound is faster: what
/// it loads by a wrong prediction is often needed next.
template <class Value>
std::size_t sortedLowerBound(const Value* values, std::size_t count, const Value& value) {
  const Value* first = values;
  while (count > 1) {
    const std::size_t half = count / 2;
    first += static_cast<std::size_t>(first[half - 1] < value) * half;
    count -= half;
  }
  const bool isAfterLast = count == 1 && *first < value;
  return static_cast<std::size_t>(first - values) + static_cast<std::size_t>(isAfterLast);
}

/// The same, faster when the result is near `guess`, which is at most `count`. It searches 8 values
/// around the guess, and 8 times as many whenever the result is not among them.
template <class Value>
std::size_t sortedLowerBoundNear(const Value* values, std::size_t count, const Value& value,
                                 std::size_t guess) {
  for (std::size_t reach = 4;; reach *= 8) {
    const std::size_t low = guess > reach ? guess - reach : 0;
    const std::size_t high = count - guess > reach ? guess + reach : count;
    const bool isWithin =
        (low == 0 || values[low - 1] < value) && (high == count || !(values[high] < value));
    if (isWithin) return low + sortedLowerBound(values + low, high - low, value);
  }
}

/// Returns where `value` stands among `count` values that rise evenly from `first` to `last`: an
/// index below `count`, whatever the numbers are. Requires: `count` is not 0.
inline std::size_t evenIndex(double value, double first, double last, std::size_t count) {
  const double index = (value - first) / (last - first) * static_cast<double>(count);
  if (!(index > 0)) return 0;  // not a number, if `first` is `last`
  const std::size_t max = count - 1;
  return index < static_cast<double>(max) ? static_cast<std::size_t>(index) : max;
}

}  // namespace Kestova
