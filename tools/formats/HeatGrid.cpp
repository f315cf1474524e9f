#include "tools/formats/HeatGrid.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "tools/formats/ScreenPanel.h"
#include "tools/formats/Ticks.h"

namespace formats {

namespace {

constexpr double kUsualCells = 120;  // along the longer side

Area wholePixels(const Area& area) {
  return {std::floor(area.left), std::floor(area.top), std::ceil(area.right),
          std::ceil(area.bottom)};
}

int cellsIn(double extent, double cell) {
  return std::max(1, static_cast<int>(std::ceil(extent / cell)));
}

}  // namespace

void PointBounds::add(const ZRKMetaData::Point& point) {
  const auto x = static_cast<double>(point.x);
  const auto y = static_cast<double>(point.y);
  const Area here{x, y, x + 1, y + 1};  // a point is a pixel
  if (!m_area) m_area = here;
  m_area->include(here);
}

HeatGrid::HeatGrid(std::string name, std::string label, const std::optional<ScreenSize>& screen,
                   const std::optional<Area>& bounds, std::optional<int> cell)
    : TimedRecords(std::move(name), std::move(label)),
      m_screen(screen),
      m_askedCell(cell),
      m_area(wholePixels(panelArea(screen, screen ? std::nullopt : bounds))) {
  const double longer = std::max(m_area.width(), m_area.height());
  const double least = std::ceil(longer / kMaxSide);
  const double usual = std::max(1.0, std::ceil(longer / kUsualCells));
  m_cell = std::max(least, cell ? static_cast<double>(*cell) : usual);
  m_columns = cellsIn(m_area.width(), m_cell);
  m_rows = cellsIn(m_area.height(), m_cell);
  m_seconds.resize(indexOf(0, m_rows));
}

std::size_t HeatGrid::indexOf(int column, int row) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
         static_cast<std::size_t>(column);
}

void HeatGrid::add(double seconds, const ZRKMetaData::Point& point) {
  if (!accepts(seconds)) return;
  if (m_hasPoint) {
    const double held = seconds - m_since;
    const double x = m_point.x - m_area.left;
    const double y = m_point.y - m_area.top;
    if (x >= 0 && y >= 0 && x < m_area.width() && y < m_area.height()) {
      m_seconds[indexOf(static_cast<int>(x / m_cell), static_cast<int>(y / m_cell))] += held;
    } else {
      m_offArea += held;
    }
  }
  m_hasPoint = true;
  m_since = seconds;
  m_point = point;
}

double HeatGrid::secondsAt(int column, int row) const {
  return m_seconds[indexOf(column, row)];
}

double HeatGrid::longest() const {
  return *std::max_element(m_seconds.begin(), m_seconds.end());
}

double HeatGrid::shortest() const {
  double shortest = longest();
  for (const double seconds : m_seconds) {
    if (seconds > 0) shortest = std::min(shortest, seconds);
  }
  return shortest;
}

double HeatGrid::total() const {
  return isEmpty() ? 0 : lastSeconds() - firstSeconds();
}

std::vector<std::string> HeatGrid::notes() const {
  std::vector<std::string> notes;
  noteLeftOut(notes);
  if (!m_screen && recordCount() > 0)
    notes.emplace_back("Screen size unknown: the bounding box of the points is shown.");
  if (m_askedCell && m_cell > *m_askedCell) {
    notes.push_back(fmt::format("Cells of {} px are enlarged to {} px: at most {} fit a side.",
                                *m_askedCell, m_cell, kMaxSide));
  }
  if (m_offArea > 0) {
    notes.push_back(fmt::format("{} s ({} %) off the screen are not shown.", shortNumber(m_offArea),
                                shortNumber(100 * m_offArea / total(), 2)));
  }
  return notes;
}

}  // namespace formats
