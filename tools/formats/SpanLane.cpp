#include "tools/formats/SpanLane.h"

#include <algorithm>

namespace formats {

SpanLane::SpanLane(Svg& svg, double top, const TimeScale& time)
    : m_svg(svg), m_top(top), m_time(time) {
  m_svg.rect(kPlotLeft, top, kPlotRight - kPlotLeft, kSpanLaneHeight,
             "fill=\"#f7f7f7\" stroke=\"#d5d5d5\"");
}

void SpanLane::span(double start, double duration, std::string_view label, Label rule) {
  const double left = m_time.xOf(start);
  const double right = m_time.xOf(start + duration);
  m_isShaded = !m_isShaded;
  m_svg.rect(left, m_top + 0.5, std::max(right - left, 0.3), kSpanLaneHeight - 1,
             m_isShaded ? "fill=\"#d3e0ee\"" : "fill=\"#e8eff7\"");
  m_svg.line(left, m_top, left, m_top + kSpanLaneHeight, "stroke=\"#31587f\" stroke-width=\"1.2\"");
  constexpr double kPadding = 5;
  const std::string text = textThatFits(label, kSmallFont, right - left - 2 * kPadding);
  if (text.empty() || (rule == Label::WholeOrNone && text != label)) return;
  m_svg.text(left + kPadding, m_top + 17, text, "font-size=\"11\" fill=\"#1d3a57\"");
}

}  // namespace formats
