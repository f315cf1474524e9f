#include "tools/formats/CursorMarks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "text/NumberText.h"
#include "tools/formats/AssScript.h"

namespace formats {

namespace {

constexpr std::int64_t kMinClickTicks = 15;

// The unit of drawings is 1/8 pixel (\p4).
constexpr int kUnit = 8;

// A circle inside the square from (0, 0) to (2 * outer, 2 * outer), in units. The other direction
// makes it a hole.
std::string circle(int outer, int radius, bool isHole) {
  const int bend = static_cast<int>(std::lround(radius * 0.5523));  // of a quarter as Bezier curve
  const int low = outer - radius;
  const int high = outer + radius;
  const int left = isHole ? high : low;
  const int right = isHole ? low : high;
  const int toLeft = isHole ? bend : -bend;
  return fmt::format(
      "m {0} {1} b {0} {2} {3} {4} {1} {4} {5} {4} {6} {2} {6} {1} {6} {7} {5} {8} "
      "{1} {8} {3} {8} {0} {7} {0} {1}",
      left, outer, outer - bend, outer + toLeft, low, outer - toLeft, right, outer + bend, high);
}

// The middle of the pixel: 3.5 for 3, -2.5 for -3.
void appendMiddle(std::string& out, int pixel) {
  if (pixel < 0) out += '-';
  out += std::string_view(text::NumberText(pixel < 0 ? -(pixel + 1) : pixel));
  out += ".5";
}

std::string ring(int outer) {
  return circle(outer, outer, false) + " " + circle(outer, outer * 3 / 4, true);
}

}  // namespace

CursorMarks::CursorMarks(const ScreenSize& screen, const CueClock& clock,
                         std::function<void(std::string_view)> write)
    : m_screen(screen),
      m_clock(clock),
      m_write(std::move(write)),
      m_radius(std::max(std::min(screen.width, screen.height) / 45, 6)),
      m_dot(circle(m_radius * kUnit / 2, m_radius * kUnit / 2, false)),
      m_ring(ring(m_radius * kUnit)) {}

std::optional<std::int64_t> CursorMarks::tickOf(double seconds, double& last) {
  ++m_recordCount;
  const double shown = std::max(seconds, 0.0);  // what began earlier holds from the beginning
  if (!(seconds >= last) || !CueClock::isInRange(shown)) {
    ++m_leftOutCount;
    return std::nullopt;
  }
  last = seconds;
  return m_clock.tickAt(shown);
}

void CursorMarks::addButtons(double seconds, int buttons) {
  const auto tick = tickOf(seconds, m_lastButtonSeconds);
  if (!tick) return;
  const bool wasDown = m_changes.size() % 2 != 0;
  if ((buttons != 0) == wasDown) return;
  if (wasDown) {
    m_changes.push_back(std::max(*tick, m_changes.back() + kMinClickTicks));
  } else if (!m_changes.empty() && *tick <= m_changes.back()) {
    m_changes.pop_back();  // down again while the click before is still shown
  } else {
    m_changes.push_back(*tick);
  }
}

void CursorMarks::add(double seconds, const ZRKMetaData::Point& position) {
  const auto tick = tickOf(seconds, m_lastSeconds);
  if (!tick) return;
  const bool isSame = m_position && m_position->x == position.x && m_position->y == position.y;
  if (isSame) return;
  // The last record of a tick wins, as that of a frame does in a loaded parameter.
  if (m_position) show(*tick);
  m_position = position;
}

void CursorMarks::finish(std::int64_t end) {
  if (m_position) show(std::max(end, m_start + 1));
}

void CursorMarks::show(std::int64_t end) {
  while (m_start < end) {
    while (m_nextChange < m_changes.size() && m_changes[m_nextChange] <= m_start) ++m_nextChange;
    const bool isDown = m_nextChange % 2 != 0;
    const std::int64_t pieceEnd =
        m_nextChange < m_changes.size() ? std::min(end, m_changes[m_nextChange]) : end;
    if (isOnScreen()) line(m_start, pieceEnd, isDown);
    m_start = pieceEnd;
  }
}

bool CursorMarks::isOnScreen() const {
  const auto isWithin = [this](int at, int size) {
    return at >= -m_radius && at - size <= m_radius;
  };
  return isWithin(m_position->x, m_screen.width) && isWithin(m_position->y, m_screen.height);
}

void CursorMarks::line(std::int64_t start, std::int64_t end, bool isDown) {
  m_text = "{\\pos(";
  appendMiddle(m_text, m_position->x);
  m_text += ',';
  appendMiddle(m_text, m_position->y);
  m_text += ")\\p4}";
  m_text += isDown ? m_ring : m_dot;
  m_write(assDialogue(AssLine{1, start, end, isDown ? "Click" : "Cursor", m_text}));
}

}  // namespace formats
