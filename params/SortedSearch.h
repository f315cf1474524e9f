// A binary search among rising values.
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

}  // namespace Kestova
