#include "tools/formats/PointSeries.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/formats/Colors.h"
#include "tools/formats/Ticks.h"

namespace formats {

namespace {

constexpr int kColors = 64;  // that a path is drawn in
constexpr double kGreatestDot = 15;

int colorIndex(const TimeScale& time, double seconds) {
  return std::clamp(static_cast<int>(time.shareOf(seconds) * kColors), 0, kColors - 1);
}

std::string colorOf(int index) {
  return hexText(timeColor((index + 0.5) / kColors));
}

bool isSamePlace(const PathPoint& left, const PathPoint& right) {
  return left.x == right.x && left.y == right.y;
}

// How often the lines would cover the panel.
double coverageOf(const std::vector<PathLine>& lines, const ScreenFrame& frame) {
  double length = 0;
  for (const PathLine& line : lines) {
    const double x = line.to.x - line.from.x;
    const double y = line.to.y - line.from.y;
    length += std::sqrt(x * x + y * y);
  }
  return length / frame.scale / (frame.area.width() * frame.area.height());
}

void drawStart(Svg& svg, double x, double y) {
  svg.circle(x, y, 4.5, "fill=\"#ffffff\" stroke=\"#222222\" stroke-width=\"1.6\"");
}

void drawEnd(Svg& svg, double x, double y) {
  svg.rect(x - 4, y - 4, 8, 8, "fill=\"#222222\" stroke=\"#ffffff\" stroke-width=\"1.2\"");
}

}  // namespace

void PointSeries::add(double seconds, const ZRKMetaData::Point& point) {
  const bool isFirst = isEmpty();
  if (!accepts(seconds)) return;
  const auto x = static_cast<double>(point.x);
  const auto y = static_cast<double>(point.y);
  const Area here{x, y, x, y};
  if (isFirst) m_bounds = here;
  m_bounds.include(here);
  m_path.add({seconds, x, y});
  m_places.add({seconds, x, y});
  m_rests.add(seconds, x, y);
  m_x.add(seconds, x);
  m_y.add(seconds, y);
}

void PointSeries::drawScreen(Svg& svg, const ScreenFrame& frame, const TimeScale& time) const {
  const std::vector<PathPoint> points = m_path.points();
  drawPath(svg, frame, time);
  for (const Rest& rest : m_rests.rests()) {
    svg.circle(frame.xOf(rest.x), frame.yOf(rest.y), dotRadius(rest.duration),
               fmt::format("fill=\"{}\" fill-opacity=\".45\" stroke=\"#ffffff\" stroke-width=\"1\"",
                           colorOf(colorIndex(time, rest.seconds))));
  }
  drawStart(svg, frame.xOf(points.front().x), frame.yOf(points.front().y));
  drawEnd(svg, frame.xOf(points.back().x), frame.yOf(points.back().y));
}

// One path per colour, in recording pixels, so that the vertices are the records themselves. A line
// has the colour of its end: where it begins the cursor may have rested long.
void PointSeries::drawPath(Svg& svg, const ScreenFrame& frame, const TimeScale& time) const {
  const std::vector<PathLine> lines = drawnLines();
  const double coverage = coverageOf(lines, frame);
  const double width = coverage > 1 ? 0.7 : 1.3;
  svg.raw(fmt::format(
      "<g id=\"{}-path\" data-error-px=\"{}\" data-error-kind=\"{}\" {} fill=\"none\" "
      "stroke-width=\"{:.6g}\" stroke-linejoin=\"round\" stroke-linecap=\"round\" "
      "stroke-opacity=\"{}\">\n",
      svgText(name()), errorText(), isVisited() ? "visited" : "in-order", frame.transform(),
      width / frame.scale, svgNumber(std::clamp(0.85 / coverage, 0.2, 0.85))));
  std::string markup;
  int color = -1;
  PathPoint last{};
  for (const PathLine& line : lines) {
    const int nextColor = colorIndex(time, line.to.seconds);
    const bool isContinued = nextColor == color && isSamePlace(line.from, last);
    if (nextColor != color) {
      markup +=
          fmt::format("{}<path stroke=\"{}\" d=\"", color < 0 ? "" : "\"/>\n", colorOf(nextColor));
      color = nextColor;
    }
    if (isContinued) {
      markup += ' ';
    } else {
      markup += fmt::format("M{:.0f} {:.0f}l", line.from.x - frame.area.left,
                            line.from.y - frame.area.top);
    }
    markup += fmt::format("{:.0f} {:.0f}", line.to.x - line.from.x, line.to.y - line.from.y);
    last = line.to;
  }
  svg.raw(markup);
  svg.raw(lines.empty() ? "</g>\n" : "\"/>\n</g>\n");
}

// Whether lines that reach new places are drawn, since the path cannot be simplified well.
bool PointSeries::isVisited() const {
  return m_path.errorBound() > kMaxPathError && m_places.errorBound() < m_path.errorBound();
}

std::vector<PathLine> PointSeries::drawnLines() const {
  if (isVisited()) return m_places.lines();
  std::vector<PathLine> lines;
  const std::vector<PathPoint> points = m_path.points();
  for (std::size_t index = 1; index < points.size(); ++index) {
    lines.push_back({points[index - 1], points[index]});
  }
  return lines;
}

// The bound in pixels, rounded up.
std::string PointSeries::errorText() const {
  const double bound = isVisited() ? m_places.errorBound() : m_path.errorBound();
  return svgNumber(std::ceil(bound * 100) / 100);
}

// The area of a dot is in proportion to the time.
double PointSeries::dotRadius(double duration) const {
  return kGreatestDot * std::sqrt(duration / m_rests.rests().front().duration);
}

void PointSeries::drawLegend(Svg& svg, double top) const {
  double y = top;
  drawStart(svg, kLegendLeft + 6, y);
  svg.text(kLegendLeft + 22, y + 4, "start", kAxisStyle);
  y += 20;
  drawEnd(svg, kLegendLeft + 6, y);
  svg.text(kLegendLeft + 22, y + 4, "end", kAxisStyle);
  if (m_rests.rests().empty()) return;
  y += 34;
  svg.text(kLegendLeft, y, "Rests", kTitleStyle);
  y += 12;
  const double longest = m_rests.rests().front().duration;
  double previous = 0;
  for (const double share : {1.0, 0.3, 0.1}) {
    const double duration = roundBelow(longest * share);
    if (duration == previous || duration < RestFinder::kLeastDuration) continue;
    previous = duration;
    const double radius = dotRadius(duration);
    y += radius;
    svg.circle(kLegendLeft + kGreatestDot, y, radius,
               "fill=\"#555555\" fill-opacity=\".45\" stroke=\"#ffffff\"");
    svg.text(kLegendLeft + 2 * kGreatestDot + 8, y + 4, shortNumber(duration) + " s", kAxisStyle);
    y += std::max(radius, 6.0) + 6;
  }
  svg.text(kLegendLeft, y + 10,
           m_rests.rests().size() == RestFinder::kMaxRests
               ? fmt::format("the {} longest", RestFinder::kMaxRests)
               : fmt::format("of {} s or more", RestFinder::kLeastDuration),
           kAxisStyle);
}

std::vector<TimePanel> PointSeries::timePanels() const {
  const auto panel = [this](const char* axis, const StepGraph& graph) {
    return TimePanel{titled(std::string(axis) + " (px)"), StepGraph::kHeight,
                     [this, axis, &graph](Svg& svg, double top, const TimeScale& time) {
                       graph.draw(svg, top, time, name() + "-" + axis);
                     }};
  };
  return {panel("x", m_x), panel("y", m_y)};
}

void PointSeries::note(std::vector<std::string>& notes) const {
  noteLeftOut(notes);
  if (isVisited()) {
    notes.push_back(fmt::format(
        "{} path: {} lines of {} are drawn; every record lies within {} px of the end of one.",
        name(), groupedNumber(m_places.lines().size()), groupedNumber(recordCount()), errorText()));
  } else if (m_path.errorBound() > 0) {
    notes.push_back(fmt::format(
        "{} path: thinned to {} points; every record lies within {} px of the line drawn.", name(),
        groupedNumber(m_path.points().size()), errorText()));
  }
  m_x.note(name() + " x", notes);
  m_y.note(name() + " y", notes);
}

}  // namespace formats
