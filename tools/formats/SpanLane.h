// A lane of labelled spans of time in a plot: what holds from when to when.
#pragma once

#include <string_view>

#include "tools/formats/PlotLayout.h"

namespace formats {

constexpr double kSpanLaneHeight = 26;

/// Draws spans in the order of their times, alternating in shade. Used by one thread.
class SpanLane {
 public:
  SpanLane(Svg& svg, double top, const TimeScale& time);

  enum class Label { Shortened, WholeOrNone };

  /// Seconds. The label may be any bytes; where it does not fit it is shortened or left out.
  void span(double start, double duration, std::string_view label, Label rule = Label::Shortened);

 private:
  Svg& m_svg;
  double m_top;
  TimeScale m_time;
  bool m_isShaded = false;
};

}  // namespace formats
