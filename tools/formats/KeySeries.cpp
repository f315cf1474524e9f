#include "tools/formats/KeySeries.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "tools/formats/KeyText.h"

namespace formats {

namespace {

constexpr double kHeight = 34;
constexpr double kMarkTop = 18;  // below the characters
constexpr double kRoom = 7;      // for one character

// A dot for keys without a symbol and for wide characters, which do not fit.
std::string markText(ZRKMetaData::int32 character) {
  std::string symbol = keySymbol(character);
  const bool fits = !symbol.empty() && character <= 0xFFFF && textWidth(symbol, 1) <= 0.9;
  return fits ? symbol : "\u00B7";
}

}  // namespace

void KeySeries::add(double seconds, const ZRKMetaData::KeyStroke& key) {
  if (accepts(seconds)) m_marks.add(seconds, {key.character, 1});
}

void KeySeries::draw(Svg& svg, double top, const TimeScale& time) const {
  svg.rect(kPlotLeft, top, kPlotRight - kPlotLeft, kHeight, "fill=\"#f7f7f7\" stroke=\"#d5d5d5\"");
  std::uint64_t most = 1;
  for (const auto& [seconds, mark] : m_marks.buckets()) most = std::max(most, mark.count);
  std::string marks;
  double taken = 0;
  std::size_t labelled = 0;
  std::vector<std::pair<double, std::string>> labels;
  for (const auto& [seconds, mark] : m_marks.buckets()) {
    const double x = time.xOf(seconds);
    const double share = static_cast<double>(mark.count) / static_cast<double>(most);
    const double height = (kHeight - kMarkTop) * share;
    marks += fmt::format("M{} {}v{}", svgNumber(x), svgNumber(top + kHeight),
                         svgNumber(-std::max(height, 2.0)));
    if (x - taken < kRoom) continue;
    taken = x;
    ++labelled;
    labels.emplace_back(x, markText(mark.character));
  }
  // A few characters of many would read like a text that nobody typed.
  if (m_marks.width() == 0 && 2 * labelled >= m_marks.buckets().size()) {
    for (const auto& [x, label] : labels) {
      svg.text(x, top + 13, label, "font-size=\"11\" fill=\"#1d3a57\"", Anchor::Middle);
    }
  }
  svg.raw(fmt::format("<path stroke=\"#31587f\" stroke-width=\"1.1\" d=\"{}\"/>\n", marks));
}

std::vector<TimePanel> KeySeries::timePanels() const {
  return {{title(), kHeight,
           [this](Svg& svg, double top, const TimeScale& time) { draw(svg, top, time); }}};
}

void KeySeries::note(std::vector<std::string>& notes) const {
  noteLeftOut(notes);
  if (m_marks.width() > 0) {
    notes.push_back(
        fmt::format("{}: a mark stands for the keys of {:.3g} s, its height for their number.",
                    name(), m_marks.width()));
  }
}

}  // namespace formats
