// The cursor as drawings of an ASS script: a dot where it is, a ring while a button is down.
//
// Positions hold until the next record, and the first one holds from the beginning, as those of a
// loaded parameter do. Memory does not grow with the number of positions; a click takes 16 bytes.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/formats/CueClock.h"
#include "tools/formats/ScreenSize.h"

namespace formats {

/// Used by one thread. Throws what `write` throws.
class CursorMarks {
 public:
  /// Passes lines of a script to `write`. Requires: the clock has kAssTicksPerSecond.
  CursorMarks(const ScreenSize& screen, const CueClock& clock,
              std::function<void(std::string_view)> write);

  // Records whose time falls, is not finite or is beyond the range of the clock are left out.

  /// The buttons that are down: 0 for none. A click is shown for at least 0.15 s. Call it for all
  /// before the first position.
  void addButtons(double seconds, int buttons);

  void add(double seconds, const ZRKMetaData::Point& position);

  /// The last position holds until `end`, in ticks. Call it once.
  void finish(std::int64_t end);

  std::uint64_t recordCount() const { return m_recordCount; }
  std::uint64_t leftOutCount() const { return m_leftOutCount; }

 private:
  static constexpr double kInfinity = std::numeric_limits<double>::infinity();

  std::optional<std::int64_t> tickOf(double seconds, double& last);
  void show(std::int64_t end);
  void line(std::int64_t start, std::int64_t end, bool isDown);
  bool isOnScreen() const;

  const ScreenSize m_screen;
  const CueClock m_clock;
  const std::function<void(std::string_view)> m_write;
  const int m_radius;  // of the ring, in pixels
  const std::string m_dot;
  const std::string m_ring;
  std::string m_text;  // of a line, here to keep its memory

  std::deque<std::int64_t> m_changes;  // ticks at which a button goes down and up, in turn
  std::size_t m_nextChange = 0;
  double m_lastButtonSeconds = -kInfinity;

  std::optional<ZRKMetaData::Point> m_position;
  std::int64_t m_start = 0;  // since when it is there
  double m_lastSeconds = -kInfinity;
  std::uint64_t m_recordCount = 0;
  std::uint64_t m_leftOutCount = 0;
};

}  // namespace formats
