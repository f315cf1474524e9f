#include "tools/formats/PathThinner.h"

#include <algorithm>
#include <cmath>

namespace formats {

namespace {

constexpr double kTimeShares = 64;     // a line takes at most this share of the path's time so far,
constexpr double kFreeSeconds = 0.01;  // or this long, so that the limit keeps few points
constexpr double kFirstTolerance = 0.25;  // pixels

bool isSamePlace(const PathPoint& left, const PathPoint& right) {
  return left.x == right.x && left.y == right.y;
}

// The two error directions of a dropped point, across its line and behind its end, add up to the
// tolerance when each is at most this share of it.
double shareOf(double tolerance) {
  return tolerance * 0.7071067811865475;
}

}  // namespace

void PathThinner::add(const PathPoint& point) {
  addThinned(point);
  if (m_kept.size() > m_maxPoints) thinMore();
}

std::vector<PathPoint> PathThinner::points() const {
  std::vector<PathPoint> points = m_kept;
  if (m_hasPending) points.push_back(m_pending);
  return points;
}

void PathThinner::addThinned(const PathPoint& point) {
  if (m_kept.empty()) {
    m_kept.push_back(point);
    return;
  }
  if (isSamePlace(point, m_hasPending ? m_pending : m_kept.back())) return;
  if (m_hasPending) {
    passPending();
    if (!reaches(point)) keepPending();
  }
  m_pending = point;
  m_hasPending = true;
}

// Whether all points passed lie near the line from the last kept point to this one.
bool PathThinner::reaches(const PathPoint& point) const {
  const PathPoint& from = m_kept.back();
  const double sinceStart = point.seconds - m_kept.front().seconds;
  if (point.seconds - from.seconds > std::max(kFreeSeconds, sinceStart / kTimeShares)) return false;
  const double x = point.x - from.x;
  const double y = point.y - from.y;
  if (m_farthest > std::sqrt(x * x + y * y) + shareOf(m_tolerance)) return false;
  if (!m_hasCone) return true;
  return m_left.x * y - m_left.y * x <= 0 && m_right.x * y - m_right.y * x >= 0 &&
         (m_left.x + m_right.x) * x + (m_left.y + m_right.y) * y > 0;
}

// Narrows the cone to the directions that pass near the pending point.
void PathThinner::passPending() {
  const PathPoint& from = m_kept.back();
  const double radius = shareOf(m_tolerance);
  const double x = m_pending.x - from.x;
  const double y = m_pending.y - from.y;
  const double square = x * x + y * y;
  m_farthest = std::max(m_farthest, std::sqrt(square));
  if (square <= radius * radius) return;  // near the start of any line
  const double tangent = std::sqrt(square - radius * radius);
  const Direction left{x * tangent - y * radius, y * tangent + x * radius};
  const Direction right{x * tangent + y * radius, y * tangent - x * radius};
  if (!m_hasCone || left.x * m_left.y - left.y * m_left.x > 0) m_left = left;
  if (!m_hasCone || right.x * m_right.y - right.y * m_right.x < 0) m_right = right;
  m_hasCone = true;
}

void PathThinner::keepPending() {
  m_kept.push_back(m_pending);
  m_hasPending = false;
  m_hasCone = false;
  m_farthest = 0;
}

void PathThinner::thinMore() {
  do {
    const std::vector<PathPoint> all = points();
    m_kept.clear();
    m_hasPending = false;
    m_hasCone = false;
    m_farthest = 0;
    m_tolerance = std::max(kFirstTolerance, 2 * m_tolerance);
    m_errorBound += m_tolerance;
    for (const PathPoint& point : all) addThinned(point);
  } while (m_kept.size() > m_maxPoints / 2);  // room for as many again: thinning stays rare
}

}  // namespace formats
