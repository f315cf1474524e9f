// The byte range of the records of each segment in a stream, found in one pass over it.
//
// A stream need not be sorted by time. The records of a segment lie between two bytes, which in a
// sorted stream holds no others. Memory grows with the number of segments, not with the stream.
// Used by one thread.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "tools/keep/EditList.h"

namespace keep {

/// Byte positions count from the start of the stream's records.
struct RecordExtent {
  std::uint64_t position = 0;
  std::uint64_t size = 0;
};

struct SegmentExtent {
  /// The record whose value holds at the start of the segment: the last one before it, or where
  /// there is none, the first of the stream. Nothing for a segment without a start, where a record
  /// of the segment is at its start, and where the first record that is written has that value
  /// anyway.
  std::optional<RecordExtent> held;

  std::uint64_t begin = 0;  ///< all records of the segment are in [begin, end)
  std::uint64_t end = 0;
  std::uint64_t byteCount = 0;  ///< of the segment's records together
};

class SegmentExtents {
 public:
  /// `segments` must outlive the object.
  explicit SegmentExtents(const std::vector<Segment>& segments);

  /// The next record of the stream.
  void add(double seconds, std::uint64_t byteCount);

  /// The extents of each segment, in their order. Call it after the last record.
  std::vector<SegmentExtent> extents() const;

  /// Of records whose time is NaN. They are in no segment that has a start.
  std::uint64_t timelessCount() const { return m_timelessCount; }

 private:
  // The records between two neighbouring bounds of segments.
  struct Interval {
    std::uint64_t begin = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t end = 0;
    std::uint64_t byteCount = 0;
    double latest = 0;
    std::optional<RecordExtent> last;  // at the latest time, the last in the file
  };

  std::size_t intervalOf(double seconds) const;

  const std::vector<Segment>& m_segments;
  std::vector<double> m_bounds;       // sorted
  std::vector<Interval> m_intervals;  // before, between and after the bounds
  Interval m_all;                     // NaN times included
  std::uint64_t m_timelessCount = 0;
  double m_earliest = 0;
  std::optional<RecordExtent> m_first;  // at the earliest time, the last in the file
};

}  // namespace keep
