#include <fmt/format.h>

#include <map>
#include <vector>

#include "tools/formats/HeatMap.h"
#include "tools/formats/HeatScale.h"
#include "tools/formats/ScreenPanel.h"

namespace formats {

namespace {

constexpr double kHeaderHeight = 64;

// One path per colour; its unit is a cell, and neighbours in a row are one rectangle.
std::string cellPaths(const HeatGrid& grid, const HeatScale& scale) {
  std::map<int, std::string> paths;
  for (int row = 0; row < grid.rows(); ++row) {
    for (int column = 0; column < grid.columns();) {
      const int start = column;
      const double seconds = grid.secondsAt(column, row);
      if (seconds <= 0) {
        ++column;
        continue;
      }
      const int level = scale.levelOf(seconds);
      do {
        ++column;
      } while (column < grid.columns() && grid.secondsAt(column, row) > 0 &&
               scale.levelOf(grid.secondsAt(column, row)) == level);
      const int length = column - start;
      paths[level] += fmt::format("M{} {}h{}v1h-{}z", start, row, length, length);
    }
  }
  std::string markup;
  for (const auto& [level, path] : paths) {
    markup += fmt::format("<path fill=\"{}\" d=\"{}\"/>\n",
                          hexText(heatColor(HeatScale::shareOfLevel(level))), path);
  }
  return markup;
}

void drawColorBar(Svg& svg, double top, const HeatScale& scale) {
  constexpr double kHeight = 260;
  constexpr int kTicks = 12;
  svg.text(kLegendLeft, top + 12, "Time in a cell", kTitleStyle);
  svg.text(kLegendLeft, top + 28, scale.isLogarithmic() ? "s, logarithmic" : "s", kAxisStyle);
  const double barTop = top + 42;
  svg.strip(kLegendLeft, barTop, 16, kHeight, StripTo::Top, heatColor);
  svg.rect(kLegendLeft, barTop, 16, kHeight, kFrameStyle);
  for (const Tick& tick : scale.ticks(kTicks)) {
    const double share = tick.value > 0 ? scale.shareOf(tick.value) : 0;
    const double y = barTop + (1 - share) * kHeight;
    svg.line(kLegendLeft + 16, y, kLegendLeft + 20, y, kTickStyle);
    svg.text(kLegendLeft + 25, y + 4, tick.label, kAxisStyle);
  }
}

}  // namespace

std::string heatMapSubtitle(const HeatGrid& grid) {
  std::string text = grid.titled(fmt::format("{} records", groupedNumber(grid.recordCount())));
  if (grid.recordCount() == 1) text.pop_back();
  if (!grid.isEmpty()) {
    text += " \u00B7 " + clockTime(grid.firstSeconds()) + " to " + clockTime(grid.lastSeconds());
  }
  return text + fmt::format(" \u00B7 cell {} px", grid.cell());
}

std::string heatMapSvg(const HeatGrid& grid, std::string_view title) {
  const std::vector<std::string> notes = grid.notes();
  std::string description =
      "Time of the cursor in each cell of the screen. " + heatMapSubtitle(grid);
  for (const std::string& note : notes) description += ". " + note;
  Svg svg(title, description);
  svg.text(kPlotLeft, 30, textThatFits(title, 18, kPlotRight - kPlotLeft),
           "font-size=\"18\" font-weight=\"600\" fill=\"#111111\"");
  svg.text(kPlotLeft, 48, heatMapSubtitle(grid), "font-size=\"12\" fill=\"#666666\"");

  const ScreenPanel panel(kHeaderHeight, grid.screen(), grid.area());
  const HeatScale scale(grid);
  const ScreenFrame& frame = panel.frame();
  panel.drawBackground(svg);
  if (!scale.isEmpty()) {
    panel.beginClip(svg);
    svg.raw(
        fmt::format("<g transform=\"translate({} {}) scale({})\" shape-rendering=\"crispEdges\">\n",
                    svgNumber(frame.left), svgNumber(frame.top), grid.cell() * frame.scale));
    svg.raw(cellPaths(grid, scale));
    svg.raw("</g>\n");
    panel.endClip(svg);
    drawColorBar(svg, kHeaderHeight, scale);
  } else {
    panel.drawMessage(
        svg, grid.recordCount() == 0 ? "no records" : "no time goes by between the records");
  }
  panel.drawAxes(svg, ScreenPanel::Grid::Ticks);
  double y = panel.bottom() + 4;
  for (const std::string& note : notes) {
    svg.text(kPlotLeft, y + 11, note, "font-size=\"11\" fill=\"#777777\"");
    y += 16;
  }
  return svg.document(kPlotWidth, y + 16);
}

}  // namespace formats
