#include "tools/formats/RectSeries.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/formats/Colors.h"
#include "tools/formats/SpanLane.h"

namespace formats {

namespace {

constexpr double kFaintest = 0.2;

}  // namespace

void RectSeries::add(double seconds, const ZRKMetaData::Rect& rect) {
  const bool isFirst = isEmpty();
  if (!accepts(seconds)) return;
  const double left = rect.coordinates[0];
  const double top = rect.coordinates[1];
  const double right = left + rect.coordinates[2];
  const double bottom = top + rect.coordinates[3];
  const Area area{std::min(left, right), std::min(top, bottom), std::max(left, right),
                  std::max(top, bottom)};
  if (isFirst) m_bounds = area;
  m_bounds.include(area);
  m_rects.add(seconds, area);
}

void RectSeries::drawScreen(Svg& svg, const ScreenFrame& frame, const TimeScale& time) const {
  svg.raw(fmt::format("<g id=\"{}-rects\" fill=\"none\" stroke-width=\"1.6\">\n", svgText(name())));
  for (const auto& [seconds, held] : m_rects.values()) {
    const double share = time.shareOf(held.start);
    const Area& area = held.value;
    svg.rect(frame.xOf(area.left), frame.yOf(area.top), area.width() * frame.scale,
             area.height() * frame.scale,
             fmt::format("stroke=\"{}\" stroke-opacity=\"{}\"", hexText(timeColor(share)),
                         svgNumber(kFaintest + (1 - kFaintest) * share)));
  }
  svg.raw("</g>\n");
}

void RectSeries::drawLegend(Svg& svg, double top) const {
  for (const double share : {1.0, 0.5, 0.0}) {
    const double inset = 7 * (1 - share);
    svg.rect(
        kLegendLeft + inset, top + inset, 36 - 2 * inset, 24 - 2 * inset,
        fmt::format("fill=\"none\" stroke=\"#333333\" stroke-width=\"1.6\" stroke-opacity=\"{}\"",
                    svgNumber(kFaintest + (1 - kFaintest) * share)));
  }
  svg.text(kLegendLeft + 46, top + 16, "older is fainter", kAxisStyle);
}

std::vector<TimePanel> RectSeries::timePanels() const {
  return {{titled("width \u00D7 height (px)"), kSpanLaneHeight,
           [this](Svg& svg, double top, const TimeScale& time) {
             SpanLane lane(svg, top, time);
             for (const auto& [seconds, held] : m_rects.values()) {
               lane.span(
                   held.start, held.duration,
                   fmt::format("{:.0f} \u00D7 {:.0f}", held.value.width(), held.value.height()),
                   SpanLane::Label::WholeOrNone);
             }
           }}};
}

void RectSeries::note(std::vector<std::string>& notes) const {
  noteLeftOut(notes);
  if (m_rects.width() > 0) {
    notes.push_back(fmt::format(
        "{}: {} of {} rectangles are drawn, in each {:.3g} s the one that held longest.", name(),
        groupedNumber(m_rects.values().size()), groupedNumber(recordCount()), m_rects.width()));
  }
}

}  // namespace formats
