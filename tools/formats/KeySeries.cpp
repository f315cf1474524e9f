#include "tools/formats/KeySeries.h"

#include <fmt/format.h>

#include <algorithm>

#include "text/Utf8.h"

namespace formats {

namespace {

constexpr double kHeight = 34;
constexpr double kMarkTop = 18;  // below the characters
constexpr double kRoom = 7;      // for one character

// What is printed on the key, or a dot.
std::string keyText(ZRKMetaData::int32 character) {
  switch (character) {
    case '\b':
    case 0x7F:
      return "\u232B";
    case '\t':
      return "\u21E5";
    case '\n':
    case '\r':
      return "\u21B5";
    case 0x1B:
      return "\u238B";
    case ' ':
      return "\u2423";
    default:
      break;
  }
  if (character > ' ' && character < 0x7F) return std::string(1, static_cast<char>(character));
  if (character < 0xA0 || character > 0xFFFF || (character >= 0xD800 && character < 0xF900)) {
    return "\u00B7";  // controls, surrogates and private use
  }
  const auto unit = static_cast<unsigned>(character);
  std::string text;
  if (unit < 0x800) {
    text += static_cast<char>(0xC0U | (unit >> 6U));
  } else {
    text += static_cast<char>(0xE0U | (unit >> 12U));
    text += static_cast<char>(0x80U | ((unit >> 6U) & 0x3FU));
  }
  text += static_cast<char>(0x80U | (unit & 0x3FU));
  return textWidth(text, 1) > 0.9 ? "\u00B7" : text;  // no wide ones in a narrow place
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
    labels.emplace_back(x, keyText(mark.character));
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
