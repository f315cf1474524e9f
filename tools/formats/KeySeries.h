// A stream of keystrokes in a plot: one mark per key, with its character where there is room.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/formats/PlotLayout.h"
#include "tools/formats/TimeBuckets.h"
#include "tools/formats/TimedRecords.h"

namespace formats {

/// Used by one thread.
class KeySeries : public TimedRecords {
 public:
  static constexpr bool kHasScreen = false;

  KeySeries(std::string name, std::string label)
      : TimedRecords(std::move(name), std::move(label)) {}

  void add(double seconds, const ZRKMetaData::KeyStroke& key);
  void finish(double /*seconds*/) {}

  std::vector<TimePanel> timePanels() const;
  void note(std::vector<std::string>& notes) const;

 private:
  struct Mark {
    ZRKMetaData::int32 character;
    std::uint64_t count;

    void merge(const Mark& later) { count += later.count; }
  };

  void draw(Svg& svg, double top, const TimeScale& time) const;

  static constexpr std::size_t kMarks = 500;  // twice as many are one per pixel

  TimeBuckets<Mark> m_marks{kMarks};
};

}  // namespace formats
