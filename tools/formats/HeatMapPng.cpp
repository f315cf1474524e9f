#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "text/Png.h"
#include "text/Printable.h"
#include "tools/formats/Canvas.h"
#include "tools/formats/Colors.h"
#include "tools/formats/HeatMap.h"
#include "tools/formats/HeatScale.h"

namespace formats {

namespace {

constexpr int kLeft = 90;  // of the map; tick labels stand left of it
constexpr int kTop = 74;
constexpr int kMaxWidth = 1280;
constexpr int kMaxHeight = HeatGrid::kMaxSide;
constexpr int kLegendGap = 24;
constexpr int kLegendWidth = 150;
constexpr int kText = 2;  // scale of the letters
constexpr int kTitle = 3;
constexpr int kLineHeight = Canvas::kGlyphHeight * kText + 8;
constexpr int kHalfLetter = Canvas::kGlyphHeight * kText / 2;

// The palette: the levels of heat, then these.
enum Ink : Canvas::Index { White = HeatScale::kLevels, Paper, Line, Gray, Black };

std::string palette() {
  std::string bytes;
  const auto add = [&bytes](Color color) {
    for (const unsigned char channel : {color.red, color.green, color.blue}) {
      bytes += static_cast<char>(channel);
    }
  };
  for (int level = 0; level < HeatScale::kLevels; ++level) {
    add(heatColor(HeatScale::shareOfLevel(level)));
  }
  constexpr std::array<unsigned char, 5> kGrays = {255, 250, 160, 95, 20};
  for (const unsigned char gray : kGrays) add({gray, gray, gray});
  return bytes;
}

// Where the map stands. Cells are whole pixels wide; the last ones may be cut.
struct MapFrame {
  int cell;  // pixels of the picture
  int width;
  int height;

  explicit MapFrame(const HeatGrid& grid) {
    const double across = grid.area().width() / grid.cell();
    const double down = grid.area().height() / grid.cell();
    cell = std::max(1, static_cast<int>(std::min(kMaxWidth / across, kMaxHeight * 0.75 / down)));
    width = std::max(1, static_cast<int>(std::lround(across * cell)));
    height = std::max(1, static_cast<int>(std::lround(down * cell)));
  }
};

void drawAxes(Canvas& canvas, const HeatGrid& grid, const MapFrame& map) {
  const Area& area = grid.area();
  const double scale = map.cell / grid.cell();
  const auto ticksFor = [](double low, double high, int pixels) {
    return numberTicks(low, high, std::clamp(pixels / 130, 2, 10), true);
  };
  for (const Tick& tick : ticksFor(area.left, area.right, map.width)) {
    const int x = kLeft + static_cast<int>(std::lround((tick.value - area.left) * scale));
    canvas.fill(x, kTop + map.height, 1, 6, Line);
    canvas.text(x, kTop + map.height + 10, tick.label, Gray, kText, Anchor::Middle);
  }
  for (const Tick& tick : ticksFor(area.top, area.bottom, map.height)) {
    const int y = kTop + static_cast<int>(std::lround((tick.value - area.top) * scale));
    canvas.fill(kLeft - 6, y, 6, 1, Line);
    canvas.text(kLeft - 10, y - kHalfLetter, tick.label, Gray, kText, Anchor::End);
  }
  canvas.frame(kLeft - 1, kTop - 1, map.width + 2, map.height + 2, Line);
}

void drawCells(Canvas& canvas, const HeatGrid& grid, const HeatScale& scale, const MapFrame& map) {
  for (int row = 0; row < grid.rows(); ++row) {
    for (int column = 0; column < grid.columns(); ++column) {
      const double seconds = grid.secondsAt(column, row);
      if (seconds <= 0) continue;
      const int left = column * map.cell;
      const int top = row * map.cell;
      canvas.fill(kLeft + left, kTop + top, std::min(map.cell, map.width - left),
                  std::min(map.cell, map.height - top),
                  static_cast<Canvas::Index>(scale.levelOf(seconds)));
    }
  }
}

void drawColorBar(Canvas& canvas, int left, const HeatScale& scale) {
  constexpr int kBarWidth = 20;
  constexpr int kBarHeight = 2 * HeatScale::kLevels;
  const int top = kTop + 2 * kLineHeight;
  canvas.text(left, kTop, "time in cell", Black, kText);
  canvas.text(left, kTop + kLineHeight, scale.isLogarithmic() ? "s, log scale" : "s", Gray, kText);
  for (int level = 0; level < HeatScale::kLevels; ++level) {
    canvas.fill(left, top + kBarHeight - 2 * (level + 1), kBarWidth, 2,
                static_cast<Canvas::Index>(level));
  }
  canvas.frame(left - 1, top - 1, kBarWidth + 2, kBarHeight + 2, Line);
  constexpr int kTicks = 12;
  for (const Tick& tick : scale.ticks(kTicks)) {
    const double share = tick.value > 0 ? scale.shareOf(tick.value) : 0;
    const int y = top + static_cast<int>(std::lround((1 - share) * (kBarHeight - 1)));
    canvas.fill(left + kBarWidth, y, 6, 1, Line);
    canvas.text(left + kBarWidth + 12, y - kHalfLetter, tick.label, Gray, kText);
  }
}

}  // namespace

std::string heatMapPng(const HeatGrid& grid, std::string_view title) {
  constexpr int kLeastHeight = 2 * HeatScale::kLevels + 2 * kLineHeight;  // of the colour bar
  constexpr int kLeastWidth = 560;                                        // of notes
  const HeatScale scale(grid);
  const MapFrame map(grid);
  const std::vector<std::string> notes = grid.notes();
  int width = kLeft + map.width + kLegendGap + kLegendWidth;
  for (const std::string& note : notes) {
    width = std::max(width, kLeft + Canvas::textWidth(note, kText) + kLegendGap);
  }
  width = std::max(
      {width, kLeastWidth, kLeft + Canvas::textWidth(heatMapSubtitle(grid), kText) + kLegendGap});
  const int axisTop = kTop + std::max(map.height, kLeastHeight);
  const int notesTop = axisTop + 44 + kLineHeight;
  Canvas canvas(width, notesTop + static_cast<int>(notes.size()) * kLineHeight + 12, White);

  std::string heading = text::printable(title);
  const auto room =
      static_cast<std::size_t>((width - kLeft - kLegendGap) / (Canvas::kGlyphAdvance * kTitle));
  if (heading.size() > room) heading.replace(room - 3, std::string::npos, "...");
  canvas.text(kLeft, 16, heading, Black, kTitle);
  canvas.text(kLeft, 46, heatMapSubtitle(grid), Gray, kText);
  canvas.fill(kLeft, kTop, map.width, map.height, Paper);
  if (scale.isEmpty()) {
    canvas.text(kLeft + map.width / 2, kTop + map.height / 2,
                grid.recordCount() == 0 ? "no records" : "no time goes by", Gray, kText,
                Anchor::Middle);
  } else {
    drawCells(canvas, grid, scale, map);
    drawColorBar(canvas, kLeft + map.width + kLegendGap, scale);
  }
  drawAxes(canvas, grid, map);
  std::string axis = "x (px), y down (px)";
  if (grid.screen())
    axis += fmt::format(" \u00B7 screen {} \u00D7 {}", grid.screen()->width, grid.screen()->height);
  canvas.text(kLeft + map.width / 2, kTop + map.height + 34, axis, Gray, kText, Anchor::Middle);
  int y = notesTop;
  for (const std::string& note : notes) {
    canvas.text(kLeft, y, note, Gray, kText);
    y += kLineHeight;
  }
  return text::indexedPng(
      {static_cast<std::uint32_t>(canvas.width()), static_cast<std::uint32_t>(canvas.height())},
      palette(), canvas.pixels());
}

}  // namespace formats
