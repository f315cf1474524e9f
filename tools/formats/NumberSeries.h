// A stream of numbers in a plot: one step graph.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/formats/StepGraph.h"
#include "tools/formats/TimedRecords.h"

namespace formats {

/// Used by one thread.
class NumberSeries : public TimedRecords {
 public:
  static constexpr bool kHasScreen = false;

  NumberSeries(std::string name, std::string label, bool isWhole)
      : TimedRecords(std::move(name), std::move(label)), m_graph({"#00664b", "", isWhole, false}) {}

  /// Numbers above 2^53 are drawn as the nearest double.
  template <class Number>
  void add(double seconds, Number value) {
    if (accepts(seconds)) m_graph.add(seconds, static_cast<double>(value));
  }

  void finish(double /*seconds*/) {}

  std::vector<TimePanel> timePanels() const {
    return {{title(), StepGraph::kHeight, [this](Svg& svg, double top, const TimeScale& time) {
               m_graph.draw(svg, top, time, name());
             }}};
  }

  void note(std::vector<std::string>& notes) const {
    noteLeftOut(notes);
    m_graph.note(name(), notes);
  }

 private:
  StepGraph m_graph;
};

}  // namespace formats
