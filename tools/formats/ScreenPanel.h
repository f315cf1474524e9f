// The part of a plot that shows the screen: its rectangle with axes in pixels.
#pragma once

#include <optional>

#include "tools/formats/PlotLayout.h"
#include "tools/formats/ScreenSize.h"

namespace formats {

/// What a picture of the screen shows: the screen and everything on it. Without a screen, the
/// bounding box of what is drawn, with a margin; without either, a screen of common size. Narrow
/// areas are widened.
Area panelArea(const std::optional<ScreenSize>& screen, const std::optional<Area>& bounds);

/// Immutable.
class ScreenPanel {
 public:
  /// `bounds` is the extent of what will be drawn, absent where there is nothing.
  ScreenPanel(double top, const std::optional<ScreenSize>& screen,
              const std::optional<Area>& bounds)
      : ScreenPanel(top, screen, panelArea(screen, bounds)) {}

  /// Shows exactly `area`.
  ScreenPanel(double top, const std::optional<ScreenSize>& screen, const Area& area);

  const ScreenFrame& frame() const { return m_frame; }

  /// The lower end of the panel with its axis.
  double bottom() const;

  /// The screen, below everything else.
  void drawBackground(Svg& svg) const;

  enum class Grid { Lines, Ticks };

  /// The frame with axis titles, and lines across it or ticks.
  void drawAxes(Svg& svg, Grid grid) const;

  /// A text in the middle, where there is nothing else to show.
  void drawMessage(Svg& svg, std::string_view message) const;

  /// What is drawn between the two is cut at the panel's edge.
  void beginClip(Svg& svg) const;
  void endClip(Svg& svg) const;

  /// The colours of time, right of the panel. Returns where the next part of the legend begins.
  double drawTimeLegend(Svg& svg, const TimeScale& time) const;

 private:
  std::optional<ScreenSize> m_screen;
  ScreenFrame m_frame;
};

}  // namespace formats
