// A stream of texts or of cursor images in a plot: what held from when to when.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/formats/HeldValues.h"
#include "tools/formats/PlotLayout.h"
#include "tools/formats/TimedRecords.h"

namespace formats {

/// Keeps the beginning of a text only. Used by one thread.
class SpanSeries : public TimedRecords {
 public:
  static constexpr bool kHasScreen = false;

  SpanSeries(std::string name, std::string label)
      : TimedRecords(std::move(name), std::move(label)) {}

  void add(double seconds, const std::string& text);
  void add(double seconds, const ZRKMetaData::CursorImage& image);

  /// The last value holds until `seconds`.
  void finish(double seconds) { m_spans.finish(seconds); }

  std::vector<TimePanel> timePanels() const;
  void note(std::vector<std::string>& notes) const;

 private:
  static constexpr std::size_t kSpans = 400;  // more cannot be told apart in the picture's width

  HeldValues<std::string> m_spans{kSpans};
};

}  // namespace formats
