// Times on the command line and the half-open range that they bound.
//
// A bound is an exact fraction of seconds. Record times are doubles, which are exact fractions too,
// and a range compares the two without rounding: 0.1 written on the command line is 1/10, which is
// less than the double 0.1, so a record at the double 0.1 is at or after it.
//
// Plain values: copy them freely. Every function may be called from any thread.
#pragma once

#include <boost/rational.hpp>
#include <limits>
#include <optional>
#include <string>

#include "tools/series/ExactFraction.h"

namespace series {

using ExactSeconds = ExactFraction;

/// Frames per second; neither part is zero.
using FrameRate = boost::rational<unsigned int>;

/// The exact sum and difference. They throw std::invalid_argument when a part of the reduced
/// fraction does not fit into 64 bits.
ExactSeconds plus(const ExactSeconds& left, const ExactSeconds& right);
ExactSeconds minus(const ExactSeconds& left, const ExactSeconds& right);

/// The time that `text` states: seconds ("12.5", "12.5s"), a clock time ("HH:MM:SS.mmm" or
/// "MM:SS.mmm", any number of hours and of decimals), a fraction of seconds ("1001/30") or a frame
/// number ("75f"), which is divided by `rate`. A leading "-" negates. Throws std::invalid_argument,
/// whose text begins with `text` and says what is accepted, for anything else, for a frame number
/// without a rate, and for a value whose reduced fraction does not fit into two 64-bit numbers.
ExactSeconds parseTime(const std::string& text, const std::optional<FrameRate>& rate);

/// The least double that is not below `time`. A double d is at or after `time` exactly when it is
/// at or after this double, so that ranges need no rational arithmetic per record.
double leastDoubleFrom(const ExactSeconds& time);

/// The times t with from <= t < to, in seconds; a bound that is absent does not restrict.
class TimeRange {
 public:
  /// Every record, NaN times included.
  TimeRange() = default;

  /// Throws std::invalid_argument when `to` is before `from`. Equal bounds are an empty range.
  TimeRange(const std::optional<ExactSeconds>& from, const std::optional<ExactSeconds>& to);

  /// The range with double bounds: NaN does not restrict.
  static TimeRange between(double from, double to);

  /// Exact. A NaN is in no range that has a bound.
  bool contains(double seconds) const {
    return m_isUnbounded || (seconds >= m_from && (m_hasEnd ? seconds < m_to : true));
  }

  bool isUnbounded() const { return m_isUnbounded; }

  /// The least double in the range, and the least after it, in seconds; infinite without a bound.
  double from() const { return m_from; }
  double to() const { return m_to; }

 private:
  bool m_isUnbounded = true;
  bool m_hasEnd = false;  // so that an infinite time is in a range without an end
  double m_from = -std::numeric_limits<double>::infinity();
  double m_to = std::numeric_limits<double>::infinity();
};

}  // namespace series
