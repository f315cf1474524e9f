// A path that goes everywhere, in bounded memory: the lines that reached a new place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

#include "tools/formats/PathThinner.h"

namespace formats {

/// A line of the path, from one point to the next.
struct PathLine {
  PathPoint from;
  PathPoint to;
};

/// Keeps a line when its end lies in a square of the plane that no line ended in before. The
/// squares double in size whenever too many lines are kept. For paths that PathThinner cannot
/// simplify, because they jump at every point. Used by one thread.
class VisitedPlaces {
 public:
  /// Keeps at most `maxLines` lines.
  explicit VisitedPlaces(std::size_t maxLines) : m_maxLines(maxLines) {}

  /// Requires: coordinates within 32 bits.
  void add(const PathPoint& point);

  /// In the order in which they were added, all of them between points that follow each other.
  const std::vector<PathLine>& lines() const { return m_lines; }

  /// Every point added lies within this distance, in pixels, of an end of a kept line.
  double errorBound() const { return m_side * 1.4142135623730952; }

 private:
  bool isNew(const PathPoint& point);

  std::size_t m_maxLines;
  double m_side = 1;  // pixels, of the squares
  bool m_hasPoint = false;
  PathPoint m_last{};
  std::vector<PathLine> m_lines;
  std::unordered_set<std::uint64_t> m_squares;
};

}  // namespace formats
