// Measures, styles and scales that the parts of a plot share. Lengths are pixels of the picture.
#pragma once

#include <functional>
#include <string>

#include "tools/formats/Svg.h"

namespace formats {

constexpr double kPlotWidth = 1200;
constexpr double kPlotLeft = 84;     ///< of the panels; tick labels stand left of it
constexpr double kPlotRight = 1010;  ///< of the panels; legends stand right of it
constexpr double kLegendLeft = 1030;
constexpr double kSmallFont = 11;
constexpr double kTitleFont = 12.5;

constexpr const char* kTitleStyle = "font-size=\"12.5\" font-weight=\"600\" fill=\"#222222\"";
constexpr const char* kAxisStyle = "font-size=\"11\" fill=\"#555555\"";
constexpr const char* kTickStyle = "stroke=\"#9a9a9a\"";
constexpr const char* kGridStyle = "stroke=\"#e6e6e6\"";
constexpr const char* kFrameStyle = "fill=\"none\" stroke=\"#9a9a9a\"";

/// The time axis, which all panels share. Requires: `first` < `last`.
struct TimeScale {
  double first;  ///< seconds
  double last;

  double shareOf(double seconds) const { return (seconds - first) / (last - first); }
  double xOf(double seconds) const {
    return kPlotLeft + shareOf(seconds) * (kPlotRight - kPlotLeft);
  }
};

/// What a screen panel shows, in pixels of the recording.
struct Area {
  double left;
  double top;
  double right;
  double bottom;

  double width() const { return right - left; }
  double height() const { return bottom - top; }
  void include(const Area& other);
};

/// Where a screen panel stands and what it shows.
struct ScreenFrame {
  Area area;
  double left;  ///< of the panel in the picture
  double top;
  double scale;  ///< picture pixels per recording pixel, above 0

  double xOf(double x) const { return left + (x - area.left) * scale; }
  double yOf(double y) const { return top + (y - area.top) * scale; }
  double right() const { return left + area.width() * scale; }
  double bottom() const { return top + area.height() * scale; }

  /// The attribute that maps recording pixels, relative to the area's corner, into the panel.
  std::string transform() const;
};

/// A panel that shares the time axis.
struct TimePanel {
  std::string title;
  double height;
  std::function<void(Svg&, double top, const TimeScale&)> draw;
};

/// A number of things for people: 1,234,567.
std::string groupedNumber(unsigned long long number);

}  // namespace formats
