// A stream of cursor positions in a plot: the path on the screen with the places where it rests,
// and x and y over time.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/formats/PathThinner.h"
#include "tools/formats/Rests.h"
#include "tools/formats/StepGraph.h"
#include "tools/formats/TimedRecords.h"
#include "tools/formats/VisitedPlaces.h"

namespace formats {

/// Used by one thread.
class PointSeries : public TimedRecords {
 public:
  static constexpr bool kHasScreen = true;

  PointSeries(std::string name, std::string label)
      : TimedRecords(std::move(name), std::move(label)) {}

  void add(double seconds, const ZRKMetaData::Point& point);

  /// The last position holds until `seconds`.
  void finish(double seconds) { m_rests.finish(seconds); }

  /// The bounding box of the points. Requires: not `isEmpty`.
  const Area& bounds() const { return m_bounds; }

  void drawScreen(Svg& svg, const ScreenFrame& frame, const TimeScale& time) const;

  /// Draws what the marks mean, from `top` downwards.
  void drawLegend(Svg& svg, double top) const;

  const char* screenTitle() const { return "cursor path"; }
  std::vector<TimePanel> timePanels() const;
  void note(std::vector<std::string>& notes) const;

 private:
  void drawPath(Svg& svg, const ScreenFrame& frame, const TimeScale& time) const;
  bool isVisited() const;
  std::vector<PathLine> drawnLines() const;
  std::string errorText() const;
  double dotRadius(double duration) const;

  // Keeps the picture of a million points below 2 MB: a point takes about 12 bytes.
  static constexpr std::size_t kMaxPathPoints = 60'000;

  static constexpr double kMaxPathError = 16;  // pixels: a path that is further off misleads

  PathThinner m_path{kMaxPathPoints};
  VisitedPlaces m_places{kMaxPathPoints};
  RestFinder m_rests;
  Area m_bounds{};
  StepGraph m_x{{"#0065a8", "px", true, false}};
  StepGraph m_y{{"#b34700", "px", true, true}};
};

}  // namespace formats
