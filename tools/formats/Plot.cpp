#include "tools/formats/Plot.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

#include "text/Counted.h"
#include "tools/formats/Colors.h"
#include "tools/formats/ScreenPanel.h"
#include "tools/formats/Ticks.h"

namespace formats {

namespace {

constexpr double kHeaderHeight = 64;
constexpr double kPanelTitleHeight = 20;
constexpr double kPanelGap = 12;
constexpr double kNoteHeight = 16;

double drawNotes(Svg& svg, double top, const std::vector<std::string>& notes) {
  double y = top;
  for (const std::string& note : notes) {
    svg.text(kPlotLeft, y + 11, note, "font-size=\"11\" fill=\"#777777\"");
    y += kNoteHeight;
  }
  return y;
}

std::string joined(const std::vector<std::string>& sentences) {
  std::string text;
  for (const std::string& sentence : sentences) text += (text.empty() ? "" : " ") + sentence;
  return text;
}

}  // namespace

void Plot::beginStream(const std::string& name, series::RecordType type) {
  series::visitRecordType(type, [&](const auto& row) {
    using Record = typename std::decay_t<decltype(row)>::type;
    using Series = SeriesOf<Record>;
    if constexpr (std::is_same_v<Series, NumberSeries>) {
      m_streams.emplace_back(NumberSeries(name, row.label, std::is_integral_v<Record>));
    } else {
      m_streams.emplace_back(Series(name, row.label));
    }
  });
}

// From the first record to the last of all streams, a second where that is no time.
TimeScale Plot::timeScale() const {
  std::optional<TimeScale> scale;
  for (const Stream& stream : m_streams) {
    std::visit(
        [&scale](const auto& series) {
          if (series.isEmpty()) return;
          if (!scale) scale = TimeScale{series.firstSeconds(), series.lastSeconds()};
          scale->first = std::min(scale->first, series.firstSeconds());
          scale->last = std::max(scale->last, series.lastSeconds());
        },
        stream);
  }
  if (!scale) return {0, 1};
  if (scale->first == scale->last)
    scale->last = scale->first + std::max(1.0, std::abs(scale->first) * 1e-9);
  return *scale;
}

std::string Plot::subtitle() const {
  unsigned long long records = 0;
  bool isEmpty = true;
  for (const Stream& stream : m_streams) {
    std::visit(
        [&](const auto& series) {
          records += series.recordCount();
          isEmpty = isEmpty && series.isEmpty();
        },
        stream);
  }
  std::string text = text::counted(m_streams.size(), "stream");
  text += records == 1 ? " \u00B7 1 record" : " \u00B7 " + groupedNumber(records) + " records";
  if (isEmpty) return text;
  const TimeScale time = timeScale();
  return text + " \u00B7 " + clockTime(time.first) + " to " + clockTime(time.last);
}

bool Plot::hasScreens() const {
  return std::any_of(m_streams.begin(), m_streams.end(), [](const Stream& stream) {
    return std::visit([](const auto& series) { return series.kHasScreen; }, stream);
  });
}

double Plot::drawScreens(Svg& svg, double top, const TimeScale& time) const {
  double y = top;
  for (const Stream& stream : m_streams) {
    std::visit(
        [&](const auto& series) {
          if constexpr (std::decay_t<decltype(series)>::kHasScreen) {
            svg.text(kPlotLeft, y + 12, series.titled(series.screenTitle()), kTitleStyle);
            y += kPanelTitleHeight;
            const ScreenPanel panel(
                y, m_options.screen,
                series.isEmpty() ? std::nullopt : std::optional(series.bounds()));
            panel.drawBackground(svg);
            panel.drawAxes(svg, ScreenPanel::Grid::Lines);
            if (!series.isEmpty()) {
              panel.beginClip(svg);
              series.drawScreen(svg, panel.frame(), time);
              panel.endClip(svg);
              series.drawLegend(svg, panel.drawTimeLegend(svg, time));
            }
            if (series.isEmpty()) panel.drawMessage(svg, "no records");
            y = panel.bottom() + kPanelGap;
          }
        },
        stream);
  }
  return y;
}

double Plot::drawTimePanels(Svg& svg, double top, const TimeScale& time) const {
  std::vector<TimePanel> panels;
  for (const Stream& stream : m_streams) {
    std::visit(
        [&panels](const auto& series) {
          for (TimePanel& panel : series.timePanels()) panels.push_back(std::move(panel));
        },
        stream);
  }
  constexpr int kMaxTicks = 10;
  const std::vector<Tick> ticks = timeTicks(time.first, time.last, kMaxTicks);
  double y = top;
  for (const TimePanel& panel : panels) {
    svg.text(kPlotLeft, y + 12, panel.title, kTitleStyle);
    y += kPanelTitleHeight;
    for (const Tick& tick : ticks) {
      svg.line(time.xOf(tick.value), y, time.xOf(tick.value), y + panel.height, kGridStyle);
    }
    panel.draw(svg, y, time);
    y += panel.height + kPanelGap;
  }
  y -= kPanelGap;
  if (hasScreens()) {
    svg.strip(kPlotLeft, y + 4, kPlotRight - kPlotLeft, 5, StripTo::Right, timeColor);
    y += 9;
  }
  for (const Tick& tick : ticks) {
    svg.line(time.xOf(tick.value), y, time.xOf(tick.value), y + 4, kTickStyle);
    svg.text(time.xOf(tick.value), y + 17, tick.label, kAxisStyle, Anchor::Middle);
  }
  svg.text((kPlotLeft + kPlotRight) / 2, y + 34, "time (m:ss)", kAxisStyle, Anchor::Middle);
  return y + 44;
}

std::string Plot::svg() {
  const TimeScale time = timeScale();
  std::vector<std::string> notes;
  for (Stream& stream : m_streams) {
    std::visit(
        [&](auto& series) {
          if (!series.isEmpty()) series.finish(time.last);
          series.note(notes);
        },
        stream);
  }
  if (notes.empty()) notes.emplace_back("Every record is drawn.");

  Svg svg(m_options.title, subtitle() + ". " + joined(notes));
  svg.text(kPlotLeft, 30, textThatFits(m_options.title, 18, kPlotRight - kPlotLeft),
           "font-size=\"18\" font-weight=\"600\" fill=\"#111111\"");
  svg.text(kPlotLeft, 48, subtitle(), "font-size=\"12\" fill=\"#666666\"");
  double y = drawScreens(svg, kHeaderHeight, time);
  y = drawTimePanels(svg, y, time);
  y = drawNotes(svg, y + 4, notes);
  return svg.document(kPlotWidth, y + 16);
}

}  // namespace formats
