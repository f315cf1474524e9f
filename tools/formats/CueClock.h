// Converts the times of records to the ticks in which a caption format counts.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/series/TimeRange.h"

namespace formats {

/// Plain values. A player shows a cue on every frame whose time is not before the cue's start, so
/// that times are rounded down: a record at the time of a frame is shown on that frame.
class CueClock {
 public:
  /// Record times are used as they are.
  explicit CueClock(int ticksPerSecond) : m_ticksPerSecond(ticksPerSecond) {}

  /// Record times first move to the frame on which a loaded parameter has them
  /// (loader/FrameNumber.h). Up to `ticksPerSecond` frames per second, no two frames share a tick,
  /// and a cue appears on exactly that frame.
  CueClock(int ticksPerSecond, const series::FrameRate& rate)
      : m_ticksPerSecond(ticksPerSecond), m_rate(rate) {}

  /// Whether captions can hold the time: it is finite, from 0 to before 100 hours, because the
  /// formats write hours with two digits.
  static bool isInRange(double seconds) { return seconds >= 0 && seconds < kMaxSeconds; }

  /// The last tick of a time of two-digit hours.
  std::int64_t maxTick() const { return std::int64_t{kMaxSeconds} * m_ticksPerSecond - 1; }

  /// Never falls when `seconds` rises. Requires: `seconds` is in range.
  std::int64_t tickAt(double seconds) const;

  int ticksPerSecond() const { return m_ticksPerSecond; }

 private:
  static constexpr int kMaxSeconds = 100 * 3600;

  int m_ticksPerSecond;
  std::optional<series::FrameRate> m_rate;
};

}  // namespace formats
