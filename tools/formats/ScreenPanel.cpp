#include "tools/formats/ScreenPanel.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/formats/Colors.h"
#include "tools/formats/Ticks.h"

namespace formats {

namespace {

constexpr double kMaxHeight = 540;
constexpr double kMaxAspect = 4;     // of the panel, either way; a narrower area is widened
constexpr double kLeastExtent = 16;  // recording pixels
constexpr ScreenSize kCommonScreen = {1920, 1080};

void widen(double& low, double& high, double extent) {
  const double missing = extent - (high - low);
  if (missing <= 0) return;
  low -= missing / 2;
  high += missing / 2;
}

ScreenFrame frameFor(const Area& area, double top) {
  const double width = kPlotRight - kPlotLeft;
  const double scale = std::min(width / area.width(), kMaxHeight / area.height());
  return {area, kPlotLeft + (width - area.width() * scale) / 2, top, scale};
}

}  // namespace

Area panelArea(const std::optional<ScreenSize>& screen, const std::optional<Area>& bounds) {
  const ScreenSize size = screen.value_or(kCommonScreen);
  const Area whole{0, 0, static_cast<double>(size.width), static_cast<double>(size.height)};
  Area area = bounds.value_or(whole);
  if (screen) {
    area.include(whole);
  } else if (bounds) {  // room for marks at the edge
    constexpr double kMargin = 0.02;
    const double margin = kMargin * std::max(area.width(), area.height());
    area = {area.left - margin, area.top - margin, area.right + margin, area.bottom + margin};
  }
  widen(area.left, area.right, std::max(kLeastExtent, area.height() / kMaxAspect));
  widen(area.top, area.bottom, std::max(kLeastExtent, area.width() / kMaxAspect));
  return area;
}

ScreenPanel::ScreenPanel(double top, const std::optional<ScreenSize>& screen, const Area& area)
    : m_screen(screen), m_frame(frameFor(area, top)) {}

double ScreenPanel::bottom() const {
  return m_frame.bottom() + 40;
}

void ScreenPanel::drawBackground(Svg& svg) const {
  const double width = m_frame.right() - m_frame.left;
  const double height = m_frame.bottom() - m_frame.top;
  svg.rect(m_frame.left, m_frame.top, width, height,
           m_screen ? "fill=\"#f1f1f1\"" : "fill=\"#fbfbfb\"");
  if (m_screen) {
    svg.rect(m_frame.xOf(0), m_frame.yOf(0), m_screen->width * m_frame.scale,
             m_screen->height * m_frame.scale, "fill=\"#fbfbfb\" stroke=\"#bdbdbd\"");
  }
}

void ScreenPanel::drawAxes(Svg& svg, Grid grid) const {
  const Area& area = m_frame.area;
  const double width = m_frame.right() - m_frame.left;
  const double height = m_frame.bottom() - m_frame.top;
  const auto ticksFor = [](double low, double high, double pixels) {
    return numberTicks(low, high, std::clamp(static_cast<int>(pixels / 80), 2, 10), true);
  };
  for (const Tick& tick : ticksFor(area.left, area.right, width)) {
    const double x = m_frame.xOf(tick.value);
    svg.line(x, grid == Grid::Lines ? m_frame.top : m_frame.bottom() - 4, x, m_frame.bottom(),
             grid == Grid::Lines ? kGridStyle : kTickStyle);
    svg.text(x, m_frame.bottom() + 15, tick.label, kAxisStyle, Anchor::Middle);
  }
  for (const Tick& tick : ticksFor(area.top, area.bottom, height)) {
    const double y = m_frame.yOf(tick.value);
    svg.line(m_frame.left, y, grid == Grid::Lines ? m_frame.right() : m_frame.left + 4, y,
             grid == Grid::Lines ? kGridStyle : kTickStyle);
    svg.text(m_frame.left - 8, y + 4, tick.label, kAxisStyle, Anchor::End);
  }
  svg.rect(m_frame.left, m_frame.top, width, height, kFrameStyle);
  const std::string screen = m_screen
                                 ? fmt::format("x (px), y down (px) \u00B7 screen {} \u00D7 {}",
                                               m_screen->width, m_screen->height)
                                 : "x (px), y down (px) \u00B7 screen size unknown: bounding box";
  svg.text((m_frame.left + m_frame.right()) / 2, m_frame.bottom() + 31, screen, kAxisStyle,
           Anchor::Middle);
}

void ScreenPanel::drawMessage(Svg& svg, std::string_view message) const {
  svg.text((m_frame.left + m_frame.right()) / 2, (m_frame.top + m_frame.bottom()) / 2, message,
           kAxisStyle, Anchor::Middle);
}

void ScreenPanel::beginClip(Svg& svg) const {
  svg.raw(fmt::format("<g clip-path=\"url(#clip-{0})\"><clipPath id=\"clip-{0}\">",
                      static_cast<int>(m_frame.top)));
  svg.rect(m_frame.left, m_frame.top, m_frame.right() - m_frame.left,
           m_frame.bottom() - m_frame.top, "");
  svg.raw("</clipPath>\n");
}

void ScreenPanel::endClip(Svg& svg) const {
  svg.raw("</g>\n");
}

double ScreenPanel::drawTimeLegend(Svg& svg, const TimeScale& time) const {
  constexpr double kHeight = 120;
  constexpr int kTicks = 4;
  const double top = m_frame.top + 22;
  svg.text(kLegendLeft, m_frame.top + 12, "Time", kTitleStyle);
  svg.strip(kLegendLeft, top, 12, kHeight, StripTo::Bottom, timeColor);
  for (const Tick& tick : timeTicks(time.first, time.last, kTicks)) {
    const double y = top + time.shareOf(tick.value) * kHeight;
    svg.line(kLegendLeft + 12, y, kLegendLeft + 16, y, kTickStyle);
    svg.text(kLegendLeft + 21, y + 4, tick.label, kAxisStyle);
  }
  return top + kHeight + 24;
}

}  // namespace formats
