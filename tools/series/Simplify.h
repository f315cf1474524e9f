// Drops the records of a stream that change nothing under step interpolation, or little.
//
// A record holds until the next one; before the first record, the first one holds; of records at
// one time, the last one holds. Without the dropped records the value at every time is the same, or
// within the tolerance. Dropping again what was kept drops nothing.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "tools/series/ExactSum.h"
#include "tools/series/RecordStream.h"

namespace series {

/// Whether two numbers differ by at most `tolerance`, compared without rounding. NaN equals NaN.
inline bool isWithin(double left, double right, double tolerance) {
  if (std::isnan(left) || std::isnan(right)) return std::isnan(left) && std::isnan(right);
  if (left == right) return true;  // also infinities
  const double high = std::max(left, right);
  const double low = std::min(left, right);
  const ExactSum difference = exactSum(high, -low);
  if (difference.value != tolerance) return difference.value < tolerance;
  return difference.error <= 0;  // the rounded difference decides nothing
}

inline bool isWithin(std::int64_t left, std::int64_t right, double tolerance) {
  const auto high = static_cast<std::uint64_t>(std::max(left, right));
  const auto difference = high - static_cast<std::uint64_t>(std::min(left, right));
  constexpr double kLimit = 0x1p64;  // above every difference
  return tolerance >= kLimit || difference <= static_cast<std::uint64_t>(tolerance);
}

/// Whether dropping `record` while `held` holds changes no number by more than `tolerance`. Texts,
/// and the identifiers and bytes of images, must be equal.
template <class Number>
std::enable_if_t<std::is_arithmetic_v<Number>, bool> isDroppable(Number held, Number record,
                                                                 double tolerance) {
  using Wide = std::conditional_t<std::is_integral_v<Number>, std::int64_t, double>;
  return isWithin(Wide{held}, Wide{record}, tolerance);
}
inline bool isDroppable(const std::string& held, const std::string& record, double /*tolerance*/) {
  return held == record;
}
inline bool isDroppable(const ZRKMetaData::Point& held, const ZRKMetaData::Point& record,
                        double tolerance) {
  return isDroppable(held.x, record.x, tolerance) && isDroppable(held.y, record.y, tolerance);
}
inline bool isDroppable(const ZRKMetaData::Rect& held, const ZRKMetaData::Rect& record,
                        double tolerance) {
  for (std::size_t i = 0; i < std::size(held.coordinates); ++i) {
    if (!isDroppable(held.coordinates[i], record.coordinates[i], tolerance)) return false;
  }
  return true;
}
/// A record without bytes shows the image that its identifier stands for.
inline bool isDroppable(const ZRKMetaData::CursorImage& held,
                        const ZRKMetaData::CursorImage& record, double /*tolerance*/) {
  return held.m_imageId == record.m_imageId && (record.m_dataSize == 0 || held == record);
}

/// Records of this type are values that hold. A keystroke is an event: the second "l" of "hello"
/// changes no value, but it was typed.
template <class Record>
constexpr bool kIsHeld = !std::is_same_v<Record, ZRKMetaData::KeyStroke>;

/// Passes on the records that must be kept, each when the next one is added. Keystrokes all pass.
/// Memory does not grow with the number of records. Used by one thread.
template <class Record>
class Simplifier {
 public:
  /// `tolerance` is in the unit of the values; 0 keeps every value. Requires: finite, not negative.
  explicit Simplifier(double tolerance) : m_tolerance(tolerance) {}

  /// Calls `keep(seconds, record)` for the record before, where it must be kept. Requires:
  /// `seconds` is not NaN and not below that of the record before (see `timesNeverFall`).
  template <class Keep>
  void add(double seconds, const Record& record, Keep&& keep) {
    if constexpr (kIsHeld<Record>) {
      if (m_isPending && seconds == m_seconds && !isNeededLater(m_pending)) {
        ++m_droppedCount;
      } else {
        finish(keep);
      }
      m_seconds = seconds;
      m_pending = record;
      m_isPending = true;
    } else {
      keep(seconds, record);
    }
  }

  /// The same for the last record. Call it when all are added.
  template <class Keep>
  void finish([[maybe_unused]] Keep&& keep) {
    if constexpr (kIsHeld<Record>) {
      if (!m_isPending) return;
      m_isPending = false;
      if (m_hasKept && isDroppable(m_kept, m_pending, m_tolerance)) {
        ++m_droppedCount;
        return;
      }
      keep(m_seconds, std::as_const(m_pending));
      std::swap(m_kept, m_pending);
      m_hasKept = true;
    }
  }

  std::uint64_t droppedCount() const { return m_droppedCount; }

 private:
  template <class Value>
  static bool isNeededLater(const Value& /*value*/) {
    return false;
  }
  // Later records may refer to the image, even when it is never shown at its own time.
  static bool isNeededLater(const ZRKMetaData::CursorImage& image) { return image.m_dataSize != 0; }

  double m_tolerance;
  double m_seconds = 0;  // of m_pending
  Record m_pending{};
  bool m_isPending = false;
  Record m_kept{};  // the last one that was kept
  bool m_hasKept = false;
  std::uint64_t m_droppedCount = 0;
};

/// Whether the times of the records in `range` never fall and are no NaN, up to the end or to
/// damage. Reads the stream as `forEachRecord` does.
template <class Record>
bool timesNeverFall(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                    const TimeRange& range) {
  bool isRising = true;
  double before = -std::numeric_limits<double>::infinity();
  try {
    forEachRecord<Record>(parser, id, range, [&](double seconds, const Record&) {
      isRising = seconds >= before;
      before = seconds;
      return isRising;
    });
  } catch (const DamagedStream&) {  // the records before it count
  }
  return isRising;
}

}  // namespace series
