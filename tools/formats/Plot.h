// Draws the streams of a recording as one SVG picture: what happens on the screen, and below it
// every value over one time axis.
//
// The picture stays below 2 MB and the writer's memory below a bound, whatever the length of the
// streams: what exceeds them is thinned, and the picture says by how much (in its description and
// in notes at its foot). The bytes depend on the records and the options alone.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tools/formats/KeySeries.h"
#include "tools/formats/NumberSeries.h"
#include "tools/formats/PointSeries.h"
#include "tools/formats/RectSeries.h"
#include "tools/formats/ScreenSize.h"
#include "tools/formats/SpanSeries.h"
#include "tools/series/RecordTypes.h"

namespace formats {

struct PlotOptions {
  std::string title;  ///< any bytes
  /// Pixels; without it the screen is the bounding box of what is drawn, and the picture says so.
  std::optional<ScreenSize> screen;
};

/// Takes the streams one after the other. Used by one thread.
class Plot {
 public:
  explicit Plot(PlotOptions options) : m_options(std::move(options)) {}

  /// Begins a stream of `type`, named `name` in the picture. Names of streams are distinct.
  void beginStream(const std::string& name, series::RecordType type);

  /// A record of the stream that was begun last. A record whose time is not finite, exceeds 1e12
  /// seconds or is below the one before is left out and counted. Requires: `Record` is the type of
  /// the stream.
  template <class Record>
  void add(double seconds, const Record& record) {
    std::get<SeriesOf<Record>>(m_streams.back()).add(seconds, record);
  }

  /// The picture of all streams. Ends the use of the object.
  std::string svg();

 private:
  template <class Record>
  struct SeriesFor {
    using type = NumberSeries;
  };
  template <class Record>
  using SeriesOf = typename SeriesFor<Record>::type;
  using Stream = std::variant<NumberSeries, PointSeries, RectSeries, KeySeries, SpanSeries>;

  TimeScale timeScale() const;
  std::string subtitle() const;
  double drawScreens(Svg& svg, double top, const TimeScale& time) const;
  double drawTimePanels(Svg& svg, double top, const TimeScale& time) const;
  bool hasScreens() const;

  PlotOptions m_options;
  std::vector<Stream> m_streams;
};

template <>
struct Plot::SeriesFor<ZRKMetaData::Point> {
  using type = PointSeries;
};
template <>
struct Plot::SeriesFor<ZRKMetaData::Rect> {
  using type = RectSeries;
};
template <>
struct Plot::SeriesFor<ZRKMetaData::KeyStroke> {
  using type = KeySeries;
};
template <>
struct Plot::SeriesFor<std::string> {
  using type = SpanSeries;
};
template <>
struct Plot::SeriesFor<ZRKMetaData::CursorImage> {
  using type = SpanSeries;
};

}  // namespace formats
