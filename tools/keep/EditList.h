// The effect of an edit on the timeline of a recording: the parts that it kept, and their new
// times.
//
// Times are exact fractions of seconds until they are compared with a record's, so that the ends of
// a thousand parts do not drift. Plain values: copy them freely. Every function may be called from
// any thread.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "tools/series/TimeRange.h"

namespace keep {

/// A part of the original timeline, from <= t < to in seconds, that stands in the edited one from
/// `at` on. Without `to` it runs to the end of the recording.
struct Piece {
  series::ExactSeconds from;
  std::optional<series::ExactSeconds> to;
  series::ExactSeconds at;
};

/// Adds a fraction of seconds to times.
class TimeShift {
 public:
  TimeShift() = default;
  explicit TimeShift(const series::ExactSeconds& seconds);

  /// The sum, at most one unit in the last place from the exact one, or where the two nearly cancel
  /// less than 10^-25 of them. NaN and infinite times stay.
  double operator()(double seconds) const;

 private:
  double m_high = 0;  // the double nearest to the fraction
  double m_low = 0;   // the double nearest to the rest
};

/// A piece of the original timeline, in times that can be compared with those of records.
struct Segment {
  series::TimeRange range;  ///< of the original times that are kept
  TimeShift shift;          ///< from original to edited times

  /// The double nearest to the first edited time, and to the one after the last; infinite where
  /// there is none. Rounding moves no record out of them.
  double start = -std::numeric_limits<double>::infinity();
  double end = std::numeric_limits<double>::infinity();

  bool hasStart() const { return start != -std::numeric_limits<double>::infinity(); }
  double moved(double seconds) const;
};

/// More than any edit has. Each piece is searched for in each stream.
constexpr std::size_t kMaxPieces = 10'000;

/// The pieces in the order of the edited timeline, all moved by `shift`; without pieces, one
/// segment of all times. A piece without a length is left out, and nothing may be left; there may
/// be kMaxPieces. Throws std::invalid_argument above that, when a piece ends before it begins, when
/// one begins in the edited timeline before the one in front of it ends, and for times that 64-bit
/// fractions do not hold.
std::vector<Segment> segmentsOf(std::vector<Piece> pieces, const series::ExactSeconds& shift);

}  // namespace keep
