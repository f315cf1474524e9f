#include "tools/keep/SegmentExtents.h"

#include <algorithm>
#include <cmath>

namespace keep {

SegmentExtents::SegmentExtents(const std::vector<Segment>& segments) : m_segments(segments) {
  for (const Segment& segment : segments) {
    if (!segment.hasStart()) continue;
    // A record at the start is told from those before and after it.
    m_bounds.push_back(segment.range.from());
    m_bounds.push_back(std::nextafter(segment.range.from(), INFINITY));
    m_bounds.push_back(segment.range.to());
  }
  std::sort(m_bounds.begin(), m_bounds.end());
  m_bounds.erase(std::unique(m_bounds.begin(), m_bounds.end()), m_bounds.end());
  m_intervals.resize(m_bounds.size() + 1);
}

std::size_t SegmentExtents::intervalOf(double seconds) const {
  return static_cast<std::size_t>(std::upper_bound(m_bounds.begin(), m_bounds.end(), seconds) -
                                  m_bounds.begin());
}

void SegmentExtents::add(double seconds, std::uint64_t byteCount) {
  const RecordExtent record{m_all.end, byteCount};
  m_all.begin = 0;
  m_all.end += byteCount;
  m_all.byteCount += byteCount;
  if (std::isnan(seconds)) {
    ++m_timelessCount;
    return;
  }
  if (!m_first || seconds <= m_earliest) {
    m_first = record;
    m_earliest = seconds;
  }
  Interval& interval = m_intervals[intervalOf(seconds)];
  interval.begin = std::min(interval.begin, record.position);
  interval.end = m_all.end;
  interval.byteCount += byteCount;
  if (!interval.last || seconds >= interval.latest) {
    interval.last = record;
    interval.latest = seconds;
  }
}

std::vector<SegmentExtent> SegmentExtents::extents() const {
  // Up to each interval, the record at the latest time.
  std::vector<std::optional<RecordExtent>> heldAfter;
  heldAfter.reserve(m_intervals.size());
  for (const Interval& interval : m_intervals) {
    const bool isNew = interval.last || heldAfter.empty();
    heldAfter.push_back(isNew ? interval.last : heldAfter.back());
  }
  std::vector<SegmentExtent> all;
  bool isAnyWritten = false;
  for (const Segment& segment : m_segments) {
    SegmentExtent extent;
    if (!segment.hasStart()) {
      extent.end = m_all.end;
      extent.byteCount = m_all.byteCount;
      all.push_back(extent);
      continue;
    }
    Interval own;
    const std::size_t first = intervalOf(segment.range.from());
    const bool isOpen = segment.range.to() == INFINITY;
    const std::size_t end = isOpen ? m_intervals.size() : intervalOf(segment.range.to());
    for (std::size_t index = first; index < end; ++index) {
      own.begin = std::min(own.begin, m_intervals[index].begin);
      own.end = std::max(own.end, m_intervals[index].end);
      own.byteCount += m_intervals[index].byteCount;
    }
    if (own.byteCount != 0) {
      extent.begin = own.begin;
      extent.end = own.end;
      extent.byteCount = own.byteCount;
    }
    if (!m_intervals[first].last) {  // no record at the start itself
      const auto before = first == 0 ? std::nullopt : heldAfter[first - 1];
      extent.held = before;
      if (!before && (isAnyWritten || own.byteCount == 0)) extent.held = m_first;
    }
    isAnyWritten = isAnyWritten || extent.held || own.byteCount != 0;
    all.push_back(extent);
  }
  return all;
}

}  // namespace keep
