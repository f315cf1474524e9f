#include "tools/formats/StepGraph.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/formats/Ticks.h"

namespace formats {

namespace {

constexpr double kMaxValue = 1e300;  // differences of greater ones overflow
constexpr double kUnits = 10;        // path coordinates are whole tenths of a pixel

bool isSameStep(double left, double right) {
  return left == right || (std::isnan(left) && std::isnan(right));
}

struct ValueScale {
  double low;
  double high;
  bool growsDown;

  double yOf(double value) const {
    const double share = (value - low) / (high - low);
    return (growsDown ? share : 1 - share) * StepGraph::kHeight;
  }
};

// The range of the axis: that of the values with a margin, never empty.
ValueScale scaleFor(double least, double greatest, const StepStyle& style) {
  const double spread = greatest - least;
  const double size = std::max(std::abs(least), std::abs(greatest));
  double margin = 0.06 * spread;
  if (spread <= size * 1e-14) margin = size > 0 ? size * 0.1 : 1;
  if (style.isWhole && spread == 0) margin = std::max(1.0, size * 1e-14);
  return {least - margin, greatest + margin, style.growsDown};
}

class StepPath {
 public:
  void moveTo(double x, double y) {
    m_x = whole(x);
    m_y = whole(y);
    m_text += fmt::format("M{} {}", m_x, m_y);
    m_isDown = true;
  }
  void holdTo(double x) {
    if (m_isDown && whole(x) != m_x) m_text += fmt::format("H{}", m_x = whole(x));
  }
  void stepTo(double y) {
    if (whole(y) != m_y) m_text += fmt::format("V{}", m_y = whole(y));
  }
  void lift() { m_isDown = false; }

  bool isDown() const { return m_isDown; }
  const std::string& text() const { return m_text; }

 private:
  static long long whole(double coordinate) { return std::llround(coordinate * kUnits); }

  std::string m_text;
  bool m_isDown = false;
  long long m_x = 0;
  long long m_y = 0;
};

}  // namespace

void StepGraph::Step::merge(const Step& later) {
  least = std::fmin(least, later.least);  // which ignores gaps
  greatest = std::fmax(greatest, later.greatest);
  last = later.last;
}

void StepGraph::add(double seconds, double value) {
  if (!(std::abs(value) <= kMaxValue)) {
    value = std::numeric_limits<double>::quiet_NaN();
    ++m_gapCount;
  } else {
    m_least = m_hasValue ? std::min(m_least, value) : value;
    m_greatest = m_hasValue ? std::max(m_greatest, value) : value;
    m_hasValue = true;
  }
  const auto& steps = m_steps.buckets();
  if (!steps.empty() && isSameStep(steps.back().content.last, value)) return;  // it holds anyway
  m_steps.add(seconds, {value, value, value, value});
}

void StepGraph::draw(Svg& svg, double top, const TimeScale& time, const std::string& id) const {
  if (!m_hasValue) {
    svg.text((kPlotLeft + kPlotRight) / 2, top + kHeight / 2 + 4,
             m_gapCount == 0 ? "no records" : "no finite values", kAxisStyle, Anchor::Middle);
    svg.rect(kPlotLeft, top, kPlotRight - kPlotLeft, kHeight, kFrameStyle);
    return;
  }
  const ValueScale scale = scaleFor(m_least, m_greatest, m_style);
  constexpr int kMaxTicks = 4;
  for (const Tick& tick : numberTicks(scale.low, scale.high, kMaxTicks, m_style.isWhole)) {
    const double y = top + scale.yOf(tick.value);
    if (y < top || y > top + kHeight) continue;
    svg.line(kPlotLeft, y, kPlotRight, y, kGridStyle);
    svg.text(kPlotLeft - 8, y + 4, tick.label, kAxisStyle, Anchor::End);
  }

  StepPath path;
  for (const auto& [seconds, step] : m_steps.buckets()) {
    const double x = time.xOf(seconds) - kPlotLeft;
    path.holdTo(x);
    if (std::isnan(step.first)) path.lift();
    if (std::isnan(step.least)) continue;  // nothing but gaps
    const double start = std::isnan(step.first) ? step.least : step.first;
    if (path.isDown()) {
      path.stepTo(scale.yOf(start));
    } else {
      path.moveTo(x, scale.yOf(start));
    }
    if (step.least != step.greatest) {
      path.stepTo(scale.yOf(step.least));
      path.stepTo(scale.yOf(step.greatest));
    }
    if (std::isnan(step.last)) {
      path.lift();
    } else {
      path.stepTo(scale.yOf(step.last));
    }
  }
  path.holdTo(kPlotRight - kPlotLeft);
  svg.raw(fmt::format(
      "<path id=\"{}\" data-first-seconds=\"{}\" data-seconds-per-unit=\"{}\" "
      "data-top-value=\"{}\" "
      "data-value-per-unit=\"{}\" data-error-seconds=\"{}\" transform=\"translate({} {}) "
      "scale(.1)\" "
      "fill=\"none\" stroke=\"{}\" stroke-width=\"14\" stroke-linejoin=\"round\" "
      "stroke-linecap=\"round\" d=\"{}\"/>\n",
      svgText(id), time.first, (time.last - time.first) / (kPlotRight - kPlotLeft) / kUnits,
      scale.growsDown ? scale.low : scale.high,
      (scale.growsDown ? 1 : -1) * (scale.high - scale.low) / kHeight / kUnits, errorSeconds(),
      svgNumber(kPlotLeft), svgNumber(top), m_style.color, path.text()));
  svg.rect(kPlotLeft, top, kPlotRight - kPlotLeft, kHeight, kFrameStyle);

  const std::string unit = m_style.unit.empty() ? "" : " " + m_style.unit;
  constexpr int kDigits = 6;
  svg.text(kLegendLeft, top + 12, "max " + shortNumber(m_greatest, kDigits) + unit, kAxisStyle);
  svg.text(kLegendLeft, top + 28, "min " + shortNumber(m_least, kDigits) + unit, kAxisStyle);
}

void StepGraph::note(const std::string& what, std::vector<std::string>& notes) const {
  if (errorSeconds() > 0) {
    notes.push_back(fmt::format(
        "{}: every value is drawn within {} s of its time; least and greatest values are exact.",
        what, shortNumber(errorSeconds(), 3)));
  }
  if (m_gapCount > 0) {
    notes.push_back(fmt::format("{}: values that are not finite or exceed 1e300 are gaps ({}).",
                                what, groupedNumber(m_gapCount)));
  }
}

}  // namespace formats
