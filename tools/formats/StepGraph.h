// A number that holds until the next record, drawn over time.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tools/formats/PlotLayout.h"
#include "tools/formats/TimeBuckets.h"

namespace formats {

/// How a graph looks and what its axis says.
struct StepStyle {
  const char* color;
  std::string unit;  ///< empty for none
  bool isWhole;      ///< whole numbers have no ticks between them
  bool growsDown;    ///< greater values stand lower, as on a screen
};

/// Memory does not grow with the number of records: when they are many, those of one interval of
/// time are drawn as the first, the least, the greatest and the last of them. Used by one thread.
class StepGraph {
 public:
  explicit StepGraph(StepStyle style) : m_style(std::move(style)) {}

  /// A value that is not finite, or exceeds 1e300 and so cannot be scaled, is a gap. Requires:
  /// `seconds` is finite and not below that of the record before.
  void add(double seconds, double value);

  /// Draws into the panel at `top`; the last value holds to the end of the time scale. `id` is the
  /// graph's name in the markup.
  void draw(Svg& svg, double top, const TimeScale& time, const std::string& id) const;

  /// Says what was merged and what are gaps; `what` names the graph.
  void note(const std::string& what, std::vector<std::string>& notes) const;

  static constexpr double kHeight = 84;

  /// The width in seconds of the intervals that were merged; 0 for none.
  double errorSeconds() const { return m_steps.width(); }

 private:
  // Values in the order of their times; NaN for a gap.
  struct Step {
    double first;
    double least;
    double greatest;
    double last;

    void merge(const Step& later);
  };

  // The picture has 926 pixels of width: at least two intervals each.
  static constexpr std::size_t kIntervals = 2000;

  StepStyle m_style;
  TimeBuckets<Step> m_steps{kIntervals};
  std::uint64_t m_gapCount = 0;
  bool m_hasValue = false;
  double m_least = 0;
  double m_greatest = 0;
};

}  // namespace formats
