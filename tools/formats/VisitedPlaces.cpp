#include "tools/formats/VisitedPlaces.h"

#include <algorithm>
#include <cmath>

namespace formats {

bool VisitedPlaces::isNew(const PathPoint& point) {
  const auto column = static_cast<std::int64_t>(std::floor(point.x / m_side));
  const auto row = static_cast<std::int64_t>(std::floor(point.y / m_side));
  const std::uint64_t square =
      (static_cast<std::uint64_t>(column) << 32U) | (static_cast<std::uint64_t>(row) & 0xFFFFFFFFU);
  return m_squares.insert(square).second;
}

void VisitedPlaces::add(const PathPoint& point) {
  if (m_hasPoint && isNew(point)) m_lines.push_back({m_last, point});
  m_hasPoint = true;
  m_last = point;
  while (m_lines.size() > m_maxLines) {
    m_side *= 2;
    m_squares.clear();
    m_lines.erase(std::remove_if(m_lines.begin(), m_lines.end(),
                                 [this](const PathLine& line) { return !isNew(line.to); }),
                  m_lines.end());
  }
}

}  // namespace formats
