// A stream of rectangles in a plot: outlines on the screen, older ones fainter, and their sizes
// over time.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/formats/HeldValues.h"
#include "tools/formats/PlotLayout.h"
#include "tools/formats/TimedRecords.h"

namespace formats {

/// The four coordinates are read as left, top, width and height, as the host reads them. Used by
/// one thread.
class RectSeries : public TimedRecords {
 public:
  static constexpr bool kHasScreen = true;

  RectSeries(std::string name, std::string label)
      : TimedRecords(std::move(name), std::move(label)) {}

  void add(double seconds, const ZRKMetaData::Rect& rect);

  /// The last rectangle holds until `seconds`.
  void finish(double seconds) { m_rects.finish(seconds); }

  /// The bounding box of the rectangles. Requires: not `isEmpty`.
  const Area& bounds() const { return m_bounds; }

  void drawScreen(Svg& svg, const ScreenFrame& frame, const TimeScale& time) const;

  /// Draws what the marks mean, from `top` downwards.
  void drawLegend(Svg& svg, double top) const;

  const char* screenTitle() const { return "rectangles"; }
  std::vector<TimePanel> timePanels() const;
  void note(std::vector<std::string>& notes) const;

 private:
  static constexpr std::size_t kRects = 100;  // more outlines cannot be told apart

  HeldValues<Area> m_rects{kRects};
  Area m_bounds{};
};

}  // namespace formats
