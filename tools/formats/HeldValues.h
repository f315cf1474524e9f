// Values that hold until the next record, thinned to those that held longest.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "tools/formats/TimeBuckets.h"

namespace formats {

/// Keeps every value while they are few; of many, the one that held longest in each interval of
/// time. Memory does not grow with their number. Used by one thread.
template <class Value>
class HeldValues {
 public:
  struct Held {
    Value value{};
    double start = 0;         ///< seconds
    double duration = 0;      ///< seconds
    std::uint64_t count = 0;  ///< of the values that it stands for

    void merge(const Held& later) {
      const std::uint64_t all = count + later.count;
      if (later.duration > duration) *this = later;
      count = all;
    }
  };

  /// Keeps at most 2 * `count` + 1 values.
  explicit HeldValues(std::size_t count) : m_values(count) {}

  /// Requires: `seconds` is finite and not below that of the value before.
  void add(double seconds, Value value) {
    finish(seconds);
    m_present = Held{std::move(value), seconds, 0, 1};
  }

  /// The last value holds until `seconds`.
  void finish(double seconds) {
    if (!m_present) return;
    m_present->duration = seconds - m_present->start;
    m_values.add(m_present->start, *m_present);
    m_present.reset();
  }

  /// The width in seconds of the intervals; 0 while every value is kept.
  double width() const { return m_values.width(); }

  /// What `finish` ended, in the order of times.
  const std::vector<typename TimeBuckets<Held>::Bucket>& values() const {
    return m_values.buckets();
  }

 private:
  TimeBuckets<Held> m_values;
  std::optional<Held> m_present;
};

}  // namespace formats
