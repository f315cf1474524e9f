#include "tools/formats/Rests.h"

#include <algorithm>

namespace formats {

void RestFinder::add(double seconds, double x, double y) {
  if (m_hasRecord) hold(seconds);
  const double fromX = x - m_rest.x;
  const double fromY = y - m_rest.y;
  if (!m_hasRecord || fromX * fromX + fromY * fromY > kRadius * kRadius) {
    if (m_hasRecord) closeRest();
    m_rest = {seconds, 0, x, y};
    m_sumX = 0;
    m_sumY = 0;
  }
  m_hasRecord = true;
  m_lastSeconds = seconds;
  m_lastX = x;
  m_lastY = y;
}

void RestFinder::finish(double seconds) {
  if (!m_hasRecord) return;
  hold(seconds);
  closeRest();
  m_hasRecord = false;
}

// The last position holds until now.
void RestFinder::hold(double seconds) {
  const double held = seconds - m_lastSeconds;
  m_rest.duration += held;
  m_sumX += held * (m_lastX - m_rest.x);
  m_sumY += held * (m_lastY - m_rest.y);
}

void RestFinder::closeRest() {
  if (m_rest.duration < kLeastDuration) return;
  if (m_rests.size() == kMaxRests && m_rests.back().duration >= m_rest.duration) return;
  Rest rest = m_rest;
  rest.x += m_sumX / rest.duration;
  rest.y += m_sumY / rest.duration;
  const auto next = std::upper_bound(
      m_rests.begin(), m_rests.end(), rest,
      [](const Rest& left, const Rest& right) { return left.duration > right.duration; });
  m_rests.insert(next, rest);
  if (m_rests.size() > kMaxRests) m_rests.pop_back();
}

}  // namespace formats
