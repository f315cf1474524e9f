// The seconds that a cursor was in each cell of a grid over the screen.
//
// A position holds until the next record; the last one holds no time. Memory depends on the number
// of cells alone, which is bounded.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/formats/PlotLayout.h"
#include "tools/formats/ScreenSize.h"
#include "tools/formats/TimedRecords.h"

namespace formats {

/// The bounding box of points, for a recording that does not state its screen.
class PointBounds {
 public:
  void add(const ZRKMetaData::Point& point);

  /// Absent without points.
  const std::optional<Area>& area() const { return m_area; }

 private:
  std::optional<Area> m_area;
};

/// Used by one thread.
class HeatGrid : public TimedRecords {
 public:
  /// At most this many cells in a row or a column, which is about a cell per pixel of the picture.
  static constexpr int kMaxSide = 1024;

  /// Covers the screen, or without one the box of `bounds` with a margin. `cell` is the side of a
  /// cell in pixels; without it about 120 cells span the longer side. A side that would give more
  /// than kMaxSide cells is enlarged, which `notes` says. `name` names the stream. Requires: `cell`
  /// is above 0.
  HeatGrid(std::string name, std::string label, const std::optional<ScreenSize>& screen,
           const std::optional<Area>& bounds, std::optional<int> cell);

  /// A record whose time is not finite, exceeds 1e12 seconds or is below the one before is left
  /// out and counted.
  void add(double seconds, const ZRKMetaData::Point& point);

  const std::optional<ScreenSize>& screen() const { return m_screen; }
  const Area& area() const { return m_area; }
  double cell() const { return m_cell; }  ///< pixels
  int columns() const { return m_columns; }
  int rows() const { return m_rows; }

  /// Seconds. Requires: 0 <= `column` < columns(), 0 <= `row` < rows().
  double secondsAt(int column, int row) const;

  double longest() const;                       ///< seconds; 0 when no time went by
  double shortest() const;                      ///< seconds, of the cells that have any
  double total() const;                         ///< seconds, off the area included
  double offArea() const { return m_offArea; }  ///< seconds

  /// What a reader of the picture has to know: enlarged cells, time off the screen.
  std::vector<std::string> notes() const;

 private:
  std::size_t indexOf(int column, int row) const;

  std::optional<ScreenSize> m_screen;
  std::optional<int> m_askedCell;
  Area m_area;
  double m_cell;
  int m_columns;
  int m_rows;
  std::vector<double> m_seconds;
  double m_offArea = 0;
  bool m_hasPoint = false;
  double m_since = 0;  // seconds
  ZRKMetaData::Point m_point;
};

}  // namespace formats
