// The points where a cursor rested longest. A position holds until the next record.
#pragma once

#include <cstddef>
#include <vector>

namespace formats {

struct Rest {
  double seconds;   ///< when it began
  double duration;  ///< seconds
  double x;         ///< pixels, the mean over the time
  double y;
};

/// Finds the longest rests of a stream in constant memory. Used by one thread.
class RestFinder {
 public:
  static constexpr double kRadius = 6;           ///< pixels that a resting hand may move
  static constexpr double kLeastDuration = 0.5;  ///< seconds
  static constexpr std::size_t kMaxRests = 48;   ///< more dots would cover the path

  /// Requires: finite values, `seconds` not below that of the record before.
  void add(double seconds, double x, double y);

  /// Ends the stream: the last position holds until `seconds`.
  void finish(double seconds);

  /// Longest first.
  const std::vector<Rest>& rests() const { return m_rests; }

 private:
  void hold(double seconds);
  void closeRest();

  std::vector<Rest> m_rests;
  bool m_hasRecord = false;
  double m_lastSeconds = 0;
  double m_lastX = 0;
  double m_lastY = 0;
  Rest m_rest{};      // the present one; its position is the first record's
  double m_sumX = 0;  // of the distance from there, times seconds
  double m_sumY = 0;
};

}  // namespace formats
